// The numbers of the crash dialog and its controls, for the resource compiler as well.
#define BRV_CRASH_DIALOG 101
#define BRV_CRASH_TEXT 1001
#define BRV_CRASH_COUNTDOWN 1002
