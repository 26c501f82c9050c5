#include "brvUtils/os/CrashReport.h"

#include "brvUtils/os/windows/CrashDialog.h"
#include "testing/CapturedOutput.h"
#include "testing/TemporaryFolder.h"

#include <string>
#include <thread>

#include <gtest/gtest.h>
#include <windows.h>

namespace os = brvUtils::os;

namespace {

bool screenThere()
{
    const HWND window = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
    if (window != nullptr) {
        DestroyWindow(window);
    }
    return window != nullptr;
}

/// A report to a user whom the test plays.
class CrashReport : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!screenThere()) {
            GTEST_SKIP() << "there is no screen";
        }
    }

    void show(const std::string& text, const std::string& folder)
    {
        program_ = std::thread([=] { os::showCrashReport(text.c_str(), folder.c_str()); });
        while (dialog_ == nullptr) {
            EnumWindows(findOwn, reinterpret_cast<LPARAM>(&dialog_));
            std::this_thread::yield();
        }
        send(WM_NULL, 0); // answered once it is ready
    }

    void end()
    {
        program_.join();
        dialog_ = nullptr;
    }

    void send(UINT message, WPARAM parameter) { SendMessageW(dialog_, message, parameter, 0); }

    std::wstring control(int number)
    {
        wchar_t text[200] = {};
        GetDlgItemTextW(dialog_, number, text, 200);
        return text;
    }

    bool open() { return IsWindow(dialog_) && IsWindowVisible(dialog_); }

private:
    static BOOL CALLBACK findOwn(HWND window, LPARAM found) noexcept
    {
        DWORD process = 0;
        GetWindowThreadProcessId(window, &process);
        const bool own = process == GetCurrentProcessId() && IsWindowVisible(window) && GetDlgItem(window, BRV_CRASH_COUNTDOWN) != nullptr;
        if (own) {
            *reinterpret_cast<HWND*>(found) = window;
        }
        return !own;
    }

    HWND dialog_ = nullptr;
    std::thread program_;
};

TEST_F(CrashReport, showsItsTextAndGoesAfterTwentyTicks)
{
    const brvTesting::CapturedOutput captured;
    show("K\xc3\xb6nnte\r\nhelfen", "Z:\\there is no such folder");
    EXPECT_EQ(control(BRV_CRASH_TEXT), L"K\u00f6nnte\r\nhelfen");
    const int start = std::stoi(control(BRV_CRASH_COUNTDOWN));
    EXPECT_LE(start, 20);
    while (open()) { // the clock may tick as well
        send(WM_TIMER, 1);
    }
    end();
    EXPECT_EQ(captured.err(), "");
}

TEST_F(CrashReport, opensTheFolderOnlyWhenTheUserSaysOk)
{
    const brvTesting::TemporaryFolder folder;
    // The shell opens what it is given, which need not be a folder: this leaves a trace.
    const std::string script = folder.write("open.cmd", "@mkdir \"%~dp0opened\"\r\n");
    const std::string trace = folder.file("opened");
    for (const WPARAM button : {IDCANCEL, IDOK}) {
        ASSERT_FALSE(os::crashPathExists(trace.c_str()));
        show("text", script);
        send(WM_COMMAND, button);
        end();
    }
    while (!os::crashPathExists(trace.c_str())) {
        std::this_thread::yield();
    }
}

} // namespace

/// As services have it: a window station that nobody sees.
TEST(CrashReportWithoutScreen, isWrittenToTheErrorStream)
{
    const HWINSTA before = GetProcessWindowStation();
    const HWINSTA unseen = CreateWindowStationW(nullptr, 0, WINSTA_ALL_ACCESS, nullptr);
    ASSERT_NE(unseen, nullptr);
    ASSERT_TRUE(SetProcessWindowStation(unseen));
    const brvTesting::CapturedOutput captured;
    os::showCrashReport("a\r\nb", "C:\\");
    EXPECT_EQ(captured.err(), "a\nb\n");
    SetProcessWindowStation(before);
    CloseWindowStation(unseen);
}
