#include "brvUtils/os/linux/ElfSection.h"

#include <cstddef>
#include <elf.h>

namespace brvUtils::os {
namespace {

/// The numbers of a section's header that matter.
struct Section
{
    std::uint32_t name = 0;
    std::uint32_t type = SHT_NULL;
    FilePart part;
};

/// The table of sections.
struct Table
{
    bool is64Bit = false;
    std::uint64_t offset = 0;
    unsigned entrySize = 0;
    unsigned count = 0;
    unsigned names = 0; ///< The section with the names.
};

bool readTable(const InputFile& file, Table& table)
{
    FileHeader<EI_NIDENT> id;
    if (!id.read(file, 0) || id.get<std::uint32_t>(0) != 0x464C457F || id.get<std::uint8_t>(EI_DATA) != ELFDATA2LSB) {
        return false;
    }
    table.is64Bit = id.get<std::uint8_t>(EI_CLASS) == ELFCLASS64;
    if (!table.is64Bit && id.get<std::uint8_t>(EI_CLASS) != ELFCLASS32) {
        return false;
    }
    FileHeader<sizeof(Elf64_Ehdr)> head64;
    FileHeader<sizeof(Elf32_Ehdr)> head32;
    if (table.is64Bit ? !head64.read(file, 0) : !head32.read(file, 0)) {
        return false;
    }
    const std::size_t sizes = table.is64Bit ? offsetof(Elf64_Ehdr, e_shentsize) : offsetof(Elf32_Ehdr, e_shentsize);
    const auto size = [&](std::size_t place) { return table.is64Bit ? head64.u16(sizes + place) : head32.u16(sizes + place); };
    table.offset = table.is64Bit ? head64.u64(offsetof(Elf64_Ehdr, e_shoff)) : head32.u32(offsetof(Elf32_Ehdr, e_shoff));
    table.entrySize = size(0);
    table.count = size(2); // 0 for 65,280 and more, which no module has
    table.names = size(4);
    return table.offset != 0 && table.entrySize >= (table.is64Bit ? sizeof(Elf64_Shdr) : sizeof(Elf32_Shdr));
}

bool readSection(const InputFile& file, const Table& table, unsigned index, Section& section)
{
    const std::uint64_t offset = table.offset + std::uint64_t{index} * table.entrySize;
    if (index >= table.count || offset < table.offset) {
        return false;
    }
    if (table.is64Bit) {
        FileHeader<sizeof(Elf64_Shdr)> head;
        const bool isRead = head.read(file, offset);
        section = {head.u32(offsetof(Elf64_Shdr, sh_name)), head.u32(offsetof(Elf64_Shdr, sh_type)),
            {head.u64(offsetof(Elf64_Shdr, sh_offset)), head.u64(offsetof(Elf64_Shdr, sh_size))}};
        return isRead;
    }
    FileHeader<sizeof(Elf32_Shdr)> head;
    const bool isRead = head.read(file, offset);
    section = {head.u32(offsetof(Elf32_Shdr, sh_name)), head.u32(offsetof(Elf32_Shdr, sh_type)),
        {head.u32(offsetof(Elf32_Shdr, sh_offset)), head.u32(offsetof(Elf32_Shdr, sh_size))}};
    return isRead;
}

/// Whether a name stands, with its 0, at a place of the names' section.
bool isNamed(const InputFile& file, const FilePart& names, std::uint32_t place, const std::string& name)
{
    std::string found(name.size() + 1, '\0');
    return place <= names.size && names.size - place >= found.size() && names.offset <= file.size() &&
        readWhole(file, names.offset + place, found.data(), found.size()) && found.compare(0, found.size(), name.c_str(), found.size()) == 0;
}

} // namespace

FilePart elfSection(const InputFile& file, const std::string& name)
{
    Table table;
    Section names;
    if (!readTable(file, table) || !readSection(file, table, table.names, names)) {
        return {};
    }
    for (unsigned i = 1; i < table.count; ++i) {
        Section section;
        if (!readSection(file, table, i, section)) {
            return {};
        }
        if (section.type == SHT_PROGBITS && isNamed(file, names.part, section.name, name)) {
            return section.part;
        }
    }
    return {};
}

} // namespace brvUtils::os
