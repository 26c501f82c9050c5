#include "brvUtils/os/PeResource.h"

#include <vector>

namespace brvUtils::os {
namespace {

constexpr std::uint32_t versionType = 16;
constexpr std::uint32_t versionName = 1;
constexpr std::uint32_t neutral = 0;
constexpr std::uint32_t americanEnglish = 0x0409;

/// The most sections that the loader of Windows takes. Looked through for each language, so that more would take hours.
constexpr unsigned mostSections = 96;

/// The headers of a file's sections, and where its resources are said to lie in memory.
struct Sections
{
    std::vector<FileHeader<40>> headers;
    std::uint32_t resources = 0;
};

bool readHeaders(const InputFile& file, Sections& sections)
{
    FileHeader<64> dos;
    if (!dos.read(file, 0) || dos.u16(0) != 0x5A4D) {
        return false;
    }
    const std::uint64_t begin = dos.u32(60);
    FileHeader<26> head; // signature, file header and the kind of the optional header
    if (!head.read(file, begin) || head.u32(0) != 0x00004550) {
        return false;
    }
    const std::uint16_t kind = head.u16(24);
    if (kind != 0x10B && kind != 0x20B) {
        return false;
    }
    const std::size_t countPlace = kind == 0x20B ? 108 : 92;
    const std::uint64_t optional = begin + 24;
    FileHeader<24> directories; // how many, and the first three
    if (!directories.read(file, optional + countPlace) || directories.u32(0) < 3) {
        return false;
    }
    const unsigned count = head.u16(6);
    if (count > mostSections) {
        return false;
    }
    for (unsigned i = 0; i < count; ++i) {
        if (!sections.headers.emplace_back().read(file, optional + head.u16(20) + 40 * i)) {
            return false;
        }
    }
    sections.resources = directories.u32(20);
    return sections.resources != 0;
}

/// The place in the file of an address in memory.
bool findAddress(const Sections& sections, std::uint32_t address, std::uint64_t& offset)
{
    for (const FileHeader<40>& section : sections.headers) {
        const std::uint32_t begin = section.u32(12);
        if (address >= begin && address - begin < section.u32(16)) {
            offset = std::uint64_t{section.u32(20)} + (address - begin);
            return true;
        }
    }
    return false;
}

/// One directory of the resource tree, which has three levels: kinds, names, languages. Offsets count from the tree's begin.
class Directory
{
public:
    bool read(const InputFile& file, std::uint64_t tree, std::uint32_t offset)
    {
        FileHeader<16> head;
        if (!head.read(file, tree + offset)) {
            return false;
        }
        named_ = head.u16(12);
        entries_.resize((std::size_t{named_} + head.u16(14)) * entrySize);
        return readWhole(file, tree + offset + 16, entries_.data(), entries_.size());
    }

    /// The offset of the directory with a number.
    bool directory(std::uint32_t id, std::uint32_t& offset) const { return find(id, true, offset); }
    /// The same of the description of data.
    bool data(std::uint32_t id, std::uint32_t& offset) const { return find(id, false, offset); }

    /// Those of all descriptions of data, in their order.
    std::vector<std::uint32_t> allData() const
    {
        std::vector<std::uint32_t> all;
        std::uint32_t offset = 0;
        for (std::size_t i = 0; i < entries_.size(); i += entrySize) {
            if (matches(i, false, offset)) {
                all.push_back(offset);
            }
        }
        return all;
    }

private:
    static constexpr std::size_t entrySize = 8;
    static constexpr std::uint32_t directoryBit = 0x80000000u;

    bool find(std::uint32_t id, bool isDirectory, std::uint32_t& offset) const
    {
        for (std::size_t i = named_ * entrySize; i < entries_.size(); i += entrySize) {
            if (littleEndian<std::uint32_t>(&entries_[i]) == id) {
                return matches(i, isDirectory, offset);
            }
        }
        return false;
    }

    bool matches(std::size_t entry, bool isDirectory, std::uint32_t& offset) const
    {
        const auto to = littleEndian<std::uint32_t>(&entries_[entry + 4]);
        offset = to & ~directoryBit;
        return ((to & directoryBit) != 0) == isDirectory;
    }

    std::size_t named_ = 0;
    std::vector<char> entries_;
};

/// The directory of a version resource's languages.
struct Languages
{
    Sections sections;
    std::uint64_t tree = 0;
    Directory directory;

    bool read(const InputFile& file)
    {
        std::uint32_t offset = 0;
        // Three steps, whatever the tree says: one that loops leads nowhere.
        return readHeaders(file, sections) && findAddress(sections, sections.resources, tree) && directory.read(file, tree, 0) &&
            directory.directory(versionType, offset) && directory.read(file, tree, offset) &&
            directory.directory(versionName, offset) && directory.read(file, tree, offset);
    }

    /// What a description of data tells. False when it is not within the file, or no section has the address.
    bool data(const InputFile& file, std::uint32_t offset, FilePart& part) const
    {
        FileHeader<16> data;
        if (!data.read(file, tree + offset) || !findAddress(sections, data.u32(0), part.offset)) {
            return false;
        }
        part.size = data.u32(4);
        return true;
    }
};

} // namespace

FilePart peVersionResource(const InputFile& file)
{
    Languages languages;
    if (!languages.read(file)) {
        return {};
    }
    std::uint32_t offset = 0;
    if (!languages.directory.data(neutral, offset) && !languages.directory.data(americanEnglish, offset)) {
        const std::vector<std::uint32_t> all = languages.directory.allData();
        if (all.empty()) {
            return {};
        }
        offset = all.front();
    }
    FilePart part;
    return languages.data(file, offset, part) ? part : FilePart();
}

PeTree peVersionTree(const InputFile& file)
{
    Languages languages;
    if (!languages.read(file)) {
        return PeTree::none;
    }
    bool isWhole = true;
    for (const std::uint32_t offset : languages.directory.allData()) {
        FilePart part;
        if (!languages.data(file, offset, part)) {
            return PeTree::none;
        }
        isWhole = isWhole && isWithin(file, part);
    }
    return isWhole ? PeTree::withTheData : PeTree::toTheData;
}

} // namespace brvUtils::os
