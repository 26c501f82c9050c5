#include "brvUtils/os/MachineSetting.h"

#include "brvUtils/os/Encoding.h"
#include "brvUtils/os/windows/ScopedHandle.h"

#include <windows.h>

namespace brvUtils::os {
namespace {

constexpr const wchar_t* root = L"Software\\Vantrel\\Oxby\\";
constexpr DWORD longestText = 255; // bytes of UTF-8, and no fewer than 16-bit units

/// Keeps others out from a look at a new key until its text is there. A holder that is killed frees it.
class Turn
{
public:
    // Asks for no more than to wait for it, which services allow to administrators.
    Turn() : mutex_(CreateMutexExW(nullptr, L"Global\\brvUtils-machine-setting", 0, SYNCHRONIZE))
    {
        if (mutex_.open()) { // else one of a user who keeps it from others, most likely without the right to write settings
            WaitForSingleObject(mutex_.get(), INFINITE);
        }
    }
    ~Turn()
    {
        if (mutex_.open()) {
            ReleaseMutex(mutex_.get());
        }
    }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

private:
    ScopedHandle mutex_;
};

class Key
{
public:
    Key(const std::wstring& path, std::wstring name)
    {
        error_ = static_cast<ErrorCode>(RegCreateKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, name.data(), REG_OPTION_NON_VOLATILE,
            KEY_ALL_ACCESS, nullptr, &key_, nullptr));
    }
    ~Key()
    {
        if (error_ == error::none) {
            RegCloseKey(key_);
        }
    }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;

    ErrorCode error() const { return error_; }

    bool isNew() const
    {
        DWORD values = 0;
        return RegQueryInfoKeyW(key_, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &values, nullptr, nullptr, nullptr, nullptr)
            == ERROR_SUCCESS && values == 0;
    }

    void store(const std::wstring& name, const std::wstring& text) const
    {
        const auto bytes = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
        RegSetValueExW(key_, name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()), bytes);
        RegFlushKey(key_);
    }

    ErrorCode read(const std::wstring& name, std::string& text) const
    {
        wchar_t buffer[longestText + 2] = {}; // what others stored may lack its zero
        DWORD bytes = (longestText + 1) * sizeof(wchar_t);
        DWORD kind = REG_NONE;
        const auto result = static_cast<ErrorCode>(
            RegQueryValueExW(key_, name.c_str(), nullptr, &kind, reinterpret_cast<BYTE*>(buffer), &bytes));
        if (result != error::none && result != ERROR_MORE_DATA) {
            return result;
        }
        const std::string stored = utf8FromWide(buffer);
        if (result == ERROR_MORE_DATA || kind != REG_SZ || stored.size() > longestText) {
            return error::invalidData;
        }
        text = stored;
        return error::none;
    }

private:
    HKEY key_ = nullptr;
    ErrorCode error_;
};

} // namespace

ErrorCode machineSetting(const std::string& subKey, const std::string& name, std::string& text)
{
    const std::wstring wideName = wideFromUtf8(name.c_str());
    const Turn turn;
    const Key key(root + wideFromUtf8(subKey), wideName);
    if (key.error() != error::none) {
        return key.error();
    }
    if (key.isNew()) {
        key.store(wideName, wideFromUtf8(text.c_str()));
    }
    return key.read(wideName, text);
}

ErrorCode removeMachineSettings(const std::string& subKey)
{
    return static_cast<ErrorCode>(RegDeleteTreeW(HKEY_LOCAL_MACHINE, (root + wideFromUtf8(subKey)).c_str()));
}

} // namespace brvUtils::os
