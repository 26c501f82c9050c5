#include "brvUtils/os/windows/CrashDialog.h"

#include "brvUtils/os/CrashReport.h"
#include "brvUtils/os/windows/WideText.h"
#include "brvUtils/os/windows/CrashThread.h"

#include <windows.h>

#include <shellapi.h>

extern "C" IMAGE_DOS_HEADER __ImageBase; // the module that the linker puts this into

namespace brvUtils::os {
namespace {

constexpr UINT_PTR timer = 1;
constexpr UINT timerPeriod = 1000; // ms
constexpr int countdownStart = 20;
constexpr INT_PTR leaveIt = 0;
constexpr INT_PTR openFolder = 1;

int countdown = 0; // there is one such dialog at most

struct Report
{
    const char* text;
    const char* folder;
    bool shown;
};

INT_PTR CALLBACK onMessage(HWND dialog, UINT message, WPARAM parameter, LPARAM text) noexcept
{
    switch (message) {
    case WM_INITDIALOG:
        SetDlgItemTextW(dialog, BRV_CRASH_TEXT, reinterpret_cast<const wchar_t*>(text));
        countdown = countdownStart;
        SetDlgItemInt(dialog, BRV_CRASH_COUNTDOWN, countdownStart, FALSE);
        SetTimer(dialog, timer, timerPeriod, nullptr);
        SetFocus(GetDlgItem(dialog, IDOK)); // the text would be shown as selected
        return FALSE;
    case WM_TIMER:
        --countdown;
        SetDlgItemInt(dialog, BRV_CRASH_COUNTDOWN, static_cast<UINT>(countdown), TRUE);
        if (countdown <= 0) {
            EndDialog(dialog, leaveIt);
        }
        return TRUE;
    case WM_COMMAND:
        if (LOWORD(parameter) == IDOK || LOWORD(parameter) == IDCANCEL) {
            EndDialog(dialog, LOWORD(parameter) == IDOK ? openFolder : leaveIt);
            return TRUE;
        }
        return FALSE;
    case WM_CLOSE: EndDialog(dialog, leaveIt); return TRUE;
    default: return FALSE;
    }
}

/// Whether somebody can see a dialog; the desktop of a service has nobody before it.
bool hasUser() noexcept
{
    USEROBJECTFLAGS flags {};
    return GetUserObjectInformationW(GetProcessWindowStation(), UOI_FLAGS, &flags, sizeof flags, nullptr)
        && (flags.dwFlags & WSF_VISIBLE) != 0;
}

void openInShell(const char* folder) noexcept
{
    WidePath path;
    if (!path.set(folder)) {
        return;
    }
    const CrashDeadline deadline;
    SHELLEXECUTEINFOW what {};
    what.cbSize = sizeof what;
    what.fMask = SEE_MASK_NOASYNC | SEE_MASK_FLAG_NO_UI; // the process ends right behind this
    what.lpFile = path.text();
    what.nShow = SW_SHOWNORMAL;
    ShellExecuteExW(&what);
}

void show(void* argument)
{
    Report& report = *static_cast<Report*>(argument);
    WideText<4096> text;
    text.set(report.text);
    const INT_PTR result = DialogBoxParamW(reinterpret_cast<HINSTANCE>(&__ImageBase), MAKEINTRESOURCEW(BRV_CRASH_DIALOG), nullptr,
        onMessage, reinterpret_cast<LPARAM>(text.text()));
    report.shown = result == leaveIt || result == openFolder;
    if (result == openFolder) {
        openInShell(report.folder);
    }
}

} // namespace

void showCrashReport(const char* text, const char* folder) noexcept
{
    // On a thread without windows and messages of its own: those of the one that crashed would come to life in the dialog.
    Report report { text, folder, false };
    if (!hasUser() || !runOnCrashThread(show, &report) || !report.shown) {
        writeCrashLine(text);
        writeCrashLine("\r\n");
    }
}

} // namespace brvUtils::os
