#include "brvUtils/data/internal/CsvHeader.h"

#include <algorithm>
#include <unordered_set>

namespace brvUtils::csv {

bool Header::read(const os::InputFile& file, const Progress& progress)
{
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    constexpr std::size_t firstStep = 4096;
    constexpr std::size_t largestStep = 4 * 1024 * 1024;
    std::size_t lineFeed = std::string::npos;
    while (lineFeed == std::string::npos && length_ < file.size()) {
        const std::uint64_t rest = file.size() - length_;
        const std::size_t step = std::min(std::max(line_.size(), firstStep), largestStep);
        line_.resize(line_.size() + static_cast<std::size_t>(std::min<std::uint64_t>(step, rest)));
        std::size_t got = 0;
        if (file.read(length_, &line_[length_], line_.size() - length_, got) != os::error::none || got < line_.size() - length_) {
            line_.resize(length_ + got); // the file ends earlier now
            lineFeed = line_.find('\n', length_);
            length_ = file.size();
            break;
        }
        lineFeed = line_.find('\n', length_);
        length_ = line_.size();
        if (step == largestStep && !progress(length_)) {
            return false;
        }
    }
    if (lineFeed != std::string::npos) {
        length_ = lineFeed + 1;
        line_.resize(lineFeed - (lineFeed > 0 && line_[lineFeed - 1] == '\r'));
    }
    if (line_.compare(0, mark.size(), mark) == 0) {
        line_.erase(0, mark.size());
    }
    return true;
}

void Header::split(Table& table, const std::vector<std::string>& wanted) const
{
    const std::unordered_set<std::string_view> wantedNames(wanted.begin(), wanted.end());
    const auto isWanted = [&](std::string_view name) { return wantedNames.empty() || wantedNames.count(name) != 0; };
    const std::string_view line = line_;
    std::size_t count = 0;
    for (std::size_t begin = 0; !line.empty() && begin <= line.size();) {
        const std::size_t end = std::min(line.find(table.separator, begin), line.size());
        table.names.push_back(line.substr(begin, end - begin));
        count = isWanted(table.names.back()) ? table.names.size() : count;
        begin = end + 1;
    }
    table.names.resize(count);
    table.kinds = std::vector<std::atomic<Kind>>(count);
    for (std::size_t i = 0; i < count; ++i) {
        table.kinds[i] = isWanted(table.names[i]) ? Kind::unknown : Kind::unwanted;
    }
}

} // namespace brvUtils::csv
