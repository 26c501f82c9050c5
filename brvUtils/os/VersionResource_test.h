#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace versionTest {

/// Bytes of a file, low byte first.
inline std::string u16(std::size_t number)
{
    return {static_cast<char>(number & 0xFF), static_cast<char>(number >> 8 & 0xFF)};
}
inline std::string u32(std::size_t number)
{
    return u16(number & 0xFFFF) + u16(number >> 16 & 0xFFFF);
}
inline std::string u64(std::uint64_t number)
{
    return u32(number & 0xFFFFFFFFu) + u32(number >> 32);
}
inline std::string padded(std::string bytes, std::size_t step = 4)
{
    bytes.resize((bytes.size() + step - 1) / step * step);
    return bytes;
}
inline void put(std::string& bytes, std::size_t place, const std::string& part)
{
    bytes.replace(place, part.size(), part);
}
inline std::string utf16(const std::u16string& text)
{
    std::string bytes;
    for (const char16_t unit : text + u'\0') {
        bytes += u16(unit);
    }
    return bytes;
}

/// One block of a version resource, with what it holds behind its value.
inline std::string block(const std::u16string& name, std::size_t valueSize, unsigned type, const std::string& value,
    const std::vector<std::string>& children = {})
{
    std::string bytes = u16(0) + u16(valueSize) + u16(type) + utf16(name);
    if (!value.empty() || !children.empty()) {
        bytes = padded(bytes) + value;
    }
    for (const std::string& child : children) {
        bytes = padded(bytes) + child;
    }
    put(bytes, 0, u16(bytes.size()));
    return bytes;
}

/// An entry with a text.
inline std::string entry(const std::u16string& name, const std::u16string& text)
{
    return block(name, text.size() + 1, 1, utf16(text));
}

inline std::string translation(const std::vector<std::pair<unsigned, unsigned>>& pairs)
{
    std::string value;
    for (const auto& [language, codePage] : pairs) {
        value += u16(language) + u16(codePage);
    }
    return block(u"VarFileInfo", 0, 1, "", {block(u"Translation", value.size(), 0, value)});
}

/// A whole resource of the usual make: the fixed part, one table of entries, and the language that is told of it.
inline std::string resource(const std::vector<std::string>& entries, const std::u16string& table = u"040904b0", unsigned language = 0x0409,
    unsigned codePage = 0x04B0)
{
    return block(u"VS_VERSION_INFO", 52, 0, u32(0xFEEF04BD) + std::string(48, '\0'),
        {block(u"StringFileInfo", 0, 1, "", {block(table, 0, 1, "", entries)}), translation({{language, codePage}})});
}

/// An executable of Windows, of headers and one section, which has a resource tree.
struct PeImage
{
    bool is64Bit = true;
    unsigned type = 16;
    unsigned name = 1;
    std::vector<std::pair<unsigned, std::string>> languages; ///< With their data, in the order of the tree.

    static constexpr std::size_t tree = 0x400;    ///< Where the tree lies in the file,
    static constexpr std::size_t address = 0x1000; ///< and in memory.
    static constexpr std::size_t kinds = tree, names = tree + 24, leaves = tree + 48;

    std::size_t dataEntries() const { return leaves + 16 + 8 * languages.size(); }

    std::string bytes() const
    {
        std::string bytes = section();
        const std::size_t size = bytes.size();
        return headers(size) + padded(bytes, 0x200);
    }

private:
    static std::string directory(std::size_t entries) { return std::string(14, '\0') + u16(entries); }

    std::string section() const
    {
        std::string bytes = directory(1) + u32(type) + u32(0x80000000u | (names - tree));
        bytes += directory(1) + u32(name) + u32(0x80000000u | (leaves - tree)) + directory(languages.size());
        for (std::size_t i = 0; i < languages.size(); ++i) {
            bytes += u32(languages[i].first) + u32(dataEntries() - tree + 16 * i);
        }
        std::string data;
        const std::size_t begin = address + dataEntries() - tree + 16 * languages.size();
        for (const auto& language : languages) {
            bytes += u32(begin + data.size()) + u32(language.second.size()) + u32(0) + u32(0);
            data += padded(language.second, 8);
        }
        return bytes + data;
    }

    std::string headers(std::size_t size) const
    {
        std::string bytes = padded("MZ", 60) + u32(64) + std::string("PE\0\0", 4);
        const std::size_t optionalSize = is64Bit ? 240 : 224;
        bytes += u16(is64Bit ? 0x8664 : 0x14C) + u16(1) + std::string(12, '\0') + u16(optionalSize) + u16(is64Bit ? 0x2022 : 0x2102);
        std::string optional(optionalSize, '\0');
        put(optional, 0, u16(is64Bit ? 0x20B : 0x10B));
        if (is64Bit) {
            put(optional, 24, u64(0x180000000));
        } else {
            put(optional, 28, u32(0x10000000));
        }
        put(optional, 32, u32(0x1000) + u32(0x200) + u32(6) + u32(0) + u32(6) + u32(0));
        put(optional, 56, u32(address + (size + 0xFFF) / 0x1000 * 0x1000) + u32(tree) + u32(0) + u16(3));
        const std::size_t directories = optionalSize - 128;
        put(optional, directories - 4, u32(16));
        put(optional, directories + 16, u32(address) + u32(size));
        bytes += optional + padded(".rsrc", 8) + u32(size) + u32(address) + u32((size + 0x1FF) / 0x200 * 0x200) + u32(tree) +
            std::string(12, '\0') + u32(0x40000040);
        return padded(bytes, tree);
    }
};

inline std::string peFile(const std::string& resource, bool is64Bit = true)
{
    PeImage image;
    image.is64Bit = is64Bit;
    image.languages = {{0x0409, resource}};
    return image.bytes();
}

/// A shared library of Linux that has nothing but a section, and the sections that every one has.
struct ElfImage
{
    bool is64Bit = true;
    std::string name = ".rsrc.version";
    std::string data;

    std::size_t headSize() const { return is64Bit ? 64 : 52; }
    std::size_t entrySize() const { return is64Bit ? 64 : 40; }
    std::size_t table() const { return padded(std::string(dataPlace() + data.size(), '\0'), 8).size(); }
    std::size_t namesPlace() const { return headSize(); }
    std::size_t dataPlace() const { return padded(std::string(headSize(), '\0') + names(), 8).size(); }

    std::string bytes() const
    {
        std::string bytes = std::string("\x7F" "ELF", 4) + static_cast<char>(is64Bit ? 2 : 1) + "\1\1";
        bytes = padded(bytes, 16) + u16(3) + u16(is64Bit ? 62 : 3) + u32(1);
        bytes += word(0) + word(0) + word(table()) + u32(0) + u16(headSize()) + u16(0) + u16(0) + u16(entrySize()) + u16(3) + u16(1);
        bytes = padded(bytes + names(), 8) + data;
        bytes = padded(bytes, 8) + std::string(entrySize(), '\0');
        return bytes + section(1, 3, namesPlace(), names().size()) + section(11, 1, dataPlace(), data.size());
    }

private:
    std::string names() const { return std::string("\0.shstrtab\0", 11) + name + '\0'; }
    std::string word(std::size_t number) const { return is64Bit ? u64(number) : u32(number); }
    std::string section(std::size_t nameAt, unsigned type, std::size_t offset, std::size_t size) const
    {
        return u32(nameAt) + u32(type) + word(0) + word(0) + word(offset) + word(size) + u32(0) + u32(0) + word(1) + word(0);
    }
};

inline std::string elfFile(const std::string& resource, bool is64Bit = true)
{
    ElfImage image;
    image.is64Bit = is64Bit;
    image.data = resource;
    return image.bytes();
}

} // namespace versionTest
