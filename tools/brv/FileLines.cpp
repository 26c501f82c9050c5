#include "FileLines.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace brvTool {

namespace {

std::string trimmed(const std::string& text)
{
    const char* const blanks = " \t\r";
    const std::size_t begin = text.find_first_not_of(blanks);
    return begin == std::string::npos ? std::string() : text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

bool isSame(const FileLine& left, const FileLine& right)
{
    return !left.name.empty() && left.section == right.section && left.name == right.name;
}

} // namespace

FileLines::FileLines(const std::string& path) : path_(path)
{
    std::ifstream file(std::filesystem::u8path(path));
    std::string section = "Common", text;
    for (int number = 1; std::getline(file, text); ++number) {
        if (number == 1 && text.compare(0, 3, "\xEF\xBB\xBF") == 0) {
            text.erase(0, 3);
        }
        text = trimmed(text);
        if (text.empty() || text[0] == '#' || text[0] == ';') {
            continue;
        }
        if (text[0] == '[' && text.find(']') != std::string::npos) {
            section = trimmed(text.substr(1, text.find(']') - 1));
        } else {
            const std::size_t equals = text.find('=');
            lines_.push_back({number, section, equals != std::string::npos && text[0] != '[' ? trimmed(text.substr(0, equals)) : "", text});
        }
    }
}

std::string FileLines::placeOf(const std::string& section, const std::string& name) const
{
    const auto found = std::find_if(lines_.rbegin(), lines_.rend(), [&](const FileLine& each) { return isSame(each, {0, section, name, ""}); });
    return found != lines_.rend() ? place(*found) : path_;
}

std::vector<FileLine> FileLines::repeated() const
{
    std::vector<FileLine> result;
    for (auto line = lines_.begin(); line != lines_.end(); ++line) {
        if (std::any_of(line + 1, lines_.end(), [&](const FileLine& later) { return isSame(*line, later); })) {
            result.push_back(*line);
        }
    }
    return result;
}

std::vector<FileLine> FileLines::ignored() const
{
    std::vector<FileLine> result;
    std::copy_if(lines_.begin(), lines_.end(), std::back_inserter(result), [](const FileLine& line) { return line.name.empty(); });
    return result;
}

std::vector<std::string> FileLines::sections() const
{
    std::vector<std::string> result;
    for (const FileLine& line : lines_) {
        if (!line.name.empty() && std::find(result.begin(), result.end(), line.section) == result.end()) {
            result.push_back(line.section);
        }
    }
    return result;
}

} // namespace brvTool
