#include "brvUtils/os/windows/ChildCommandText.h"

#include "brvUtils/os/Encoding.h"

#include <map>

#include <windows.h>

namespace brvUtils::os {

namespace {

/// Programs take backslashes as they are except in front of a quotation mark, where each stands for half of one.
std::wstring quoted(const std::wstring& argument)
{
    std::wstring text = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t character : argument) {
        if (character == L'"') {
            text.append(backslashes + 1, L'\\');
        }
        backslashes = character == L'\\' ? backslashes + 1 : 0;
        text += character;
    }
    return text.append(backslashes, L'\\') + L'"';
}

/// Names of variables differ in more than the case of letters.
struct ByName
{
    bool operator()(const std::wstring& left, const std::wstring& right) const
    {
        return CompareStringOrdinal(left.c_str(), -1, right.c_str(), -1, TRUE) == CSTR_LESS_THAN;
    }
};

} // namespace

std::wstring commandLineOf(const ChildCommand& command)
{
    std::wstring line = L'"' + wideFromUtf8(command.program) + L'"';
    for (const std::string& argument : command.arguments) {
        line += L' ' + quoted(wideFromUtf8(argument));
    }
    return line;
}

std::wstring environmentBlockOf(const ChildCommand& command)
{
    std::map<std::wstring, std::wstring, ByName> variables;
    wchar_t* const ours = GetEnvironmentStringsW();
    for (const wchar_t* entry = ours; *entry != L'\0'; entry += std::char_traits<wchar_t>::length(entry) + 1) {
        const std::wstring text = entry;
        const std::size_t equals = text.find(L'=', 1); // The current folders of drives begin with one.
        variables[text.substr(0, equals)] = text.substr(equals + 1);
    }
    FreeEnvironmentStringsW(ours);
    for (const auto& [name, value] : command.environment) {
        variables[wideFromUtf8(name)] = wideFromUtf8(value);
    }
    std::wstring block;
    for (const auto& [name, value] : variables) {
        block += name + L'=' + value + L'\0';
    }
    return block + L'\0';
}

} // namespace brvUtils::os
