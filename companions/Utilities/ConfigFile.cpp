#include "Utilities/ConfigFile.h"

#include "Utilities/internal/ConfigLines.h"
#include "brvUtils/os/FileSystem.h"

#include <algorithm>
#include <charconv>
#include <vector>

namespace os = brvUtils::os;

namespace Utilities {

using internal::ConfigLines;
using internal::trimmed;

namespace {

constexpr const char* common = "Common";

/// The whole of `text` is one number that `Number` holds.
template <typename Number>
bool parse(std::string_view text, int base, Number& number)
{
    const char* const end = text.data() + text.size();
    Number parsed{};
    const auto [stopped, error] = std::from_chars(text.data(), end, parsed, base);
    if (error != std::errc() || stopped != end) {
        return false;
    }
    number = parsed;
    return true;
}

/// Whether a file gives back these texts, blanks cut off, when it is written with them.
bool canBeHeld(std::string_view section, std::string_view key, std::string_view value)
{
    const std::string text = '[' + std::string(section) + "]\n" + std::string(key) + " = " + std::string(value);
    ConfigLines lines(text);
    return lines.next() && lines.kind() == ConfigLines::Kind::section && lines.next()
        && lines.kind() == ConfigLines::Kind::entry && lines.section() == section && lines.key() == key
        && lines.value() == value && !lines.next();
}

} // namespace

ConfigFile::ConfigFile(const std::string& path)
{
    load(path);
}

bool ConfigFile::load(const std::string& path)
{
    fileName_ = path;
    text_.clear();
    changes_.clear();
    sections_.clear();
    loaded_ = os::readFile(fileName_, text_) == os::error::none;

    Section* section = &sections_[common];
    for (ConfigLines lines(text_); lines.next();) {
        if (lines.kind() == ConfigLines::Kind::section) {
            section = &sections_[std::string(lines.section())];
        } else if (lines.kind() == ConfigLines::Kind::entry) {
            put(*section, lines.key(), lines.value());
        }
    }
    return loaded_;
}

void ConfigFile::put(Section& section, std::string_view key, std::string_view value)
{
    const auto [entry, isNew] = section.try_emplace(std::string(key));
    entry->second.value = value;
    if (isNew) {
        entry->second.place = ++entriesPut_;
    }
}

const std::string* ConfigFile::find(const std::string& section, const std::string& key) const
{
    const auto found = sections_.find(section);
    if (found == sections_.end()) {
        return nullptr;
    }
    const auto entry = found->second.find(key);
    return entry != found->second.end() ? &entry->second.value : nullptr;
}

std::string ConfigFile::operator[](const std::string& key) const
{
    const std::string* value = find(section_, key);
    if (value == nullptr) {
        value = find(common, key);
    }
    return value != nullptr ? *value : std::string();
}

bool ConfigFile::readString(const std::string& key, std::string& value) const
{
    const std::string* found = find(section_, key);
    if (found == nullptr) {
        return false;
    }
    value = *found;
    return true;
}

bool ConfigFile::readInt(const std::string& key, int& value) const
{
    const std::string* found = find(section_, key);
    if (found == nullptr) {
        return false;
    }
    const bool plus = found->size() > 1 && found->front() == '+' && found->at(1) != '-';
    return parse(std::string_view(*found).substr(plus ? 1 : 0), 10, value);
}

bool ConfigFile::readHexaUnsignedInt(const std::string& key, unsigned int& value) const
{
    const std::string* found = find(section_, key);
    if (found == nullptr) {
        return false;
    }
    const std::string_view start = std::string_view(*found).substr(0, 2);
    return parse(std::string_view(*found).substr(start == "0x" || start == "0X" ? 2 : 0), 16, value);
}

std::list<std::string> ConfigFile::getVariablesNames(const std::string& section) const
{
    std::vector<const Section::value_type*> entries;
    if (const auto found = sections_.find(section); found != sections_.end()) {
        for (const auto& entry : found->second) {
            entries.push_back(&entry);
        }
    }
    std::sort(entries.begin(), entries.end(),
        [](const auto* a, const auto* b) { return a->second.place < b->second.place; });
    std::list<std::string> names;
    for (const auto* entry : entries) {
        names.push_back(entry->first);
    }
    return names;
}

bool ConfigFile::setEntry(const std::string& key, const std::string& section, const std::string& value)
{
    if (!canBeHeld(trimmed(section), trimmed(key), trimmed(value))) {
        return false;
    }
    put(sections_[std::string(trimmed(section))], trimmed(key), trimmed(value));
    return true;
}

bool ConfigFile::modifyEntry(const std::string& key, const std::string& section, const std::string& value)
{
    if (!setEntry(key, section, value)) {
        return false;
    }
    changes_.push_back({std::string(trimmed(section)), std::string(trimmed(key)), std::string(trimmed(value))});
    return true;
}

bool ConfigFile::modifyEntry(const std::string& key, const std::string& value)
{
    return modifyEntry(key, section_, value) && save(fileName_);
}

void ConfigFile::deleteEntry(const std::string& key, const std::string& section)
{
    Change change{std::string(trimmed(section)), std::string(trimmed(key)), std::nullopt};
    if (const auto found = sections_.find(change.section); found != sections_.end()) {
        found->second.erase(change.key);
    }
    changes_.push_back(std::move(change));
}

} // namespace Utilities
