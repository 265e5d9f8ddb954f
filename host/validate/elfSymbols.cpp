#include "validate/elfSymbols.h"

#include <elf.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <stdexcept>
#include <string_view>

namespace orv {
namespace {

constexpr std::array<std::string_view, 5> kMadeByLinkers{"_init", "_fini", "_edata", "_end",
                                                         "__bss_start"};

/// A copy of the record at `offset`: the bytes need not be aligned.
template <class Record>
Record At(std::span<const std::uint8_t> bytes, std::uint64_t offset)
{
    if (offset > bytes.size() || bytes.size() - offset < sizeof(Record))
        throw std::runtime_error("the file ends within its tables");
    Record record{};
    std::memcpy(&record, bytes.data() + offset, sizeof record);
    return record;
}

std::span<const std::uint8_t> Content(std::span<const std::uint8_t> file, const Elf64_Shdr& section)
{
    if (section.sh_offset > file.size() || file.size() - section.sh_offset < section.sh_size)
        throw std::runtime_error("the file ends within its tables");
    return file.subspan(section.sh_offset, section.sh_size);
}

Elf64_Ehdr Header(std::span<const std::uint8_t> file)
{
    constexpr unsigned char kOurOrder =
        std::endian::native == std::endian::little ? ELFDATA2LSB : ELFDATA2MSB;
    const auto header = At<Elf64_Ehdr>(file, 0);
    const bool known = std::memcmp(header.e_ident, ELFMAG, SELFMAG) == 0 &&
                       header.e_ident[EI_CLASS] == ELFCLASS64 &&
                       header.e_ident[EI_DATA] == kOurOrder && header.e_type == ET_DYN;
    if (!known) throw std::runtime_error("not a 64-bit shared object");
    return header;
}

Elf64_Shdr Section(std::span<const std::uint8_t> file, const Elf64_Ehdr& header,
                   std::uint32_t index)
{
    if (index >= header.e_shnum) throw std::runtime_error("a table names a section that is not");
    return At<Elf64_Shdr>(file, header.e_shoff + std::uint64_t{index} * header.e_shentsize);
}

std::string NameAt(std::span<const std::uint8_t> names, std::uint32_t offset)
{
    if (offset >= names.size()) throw std::runtime_error("a symbol's name lies outside the names");
    const auto rest = names.subspan(offset);
    return {rest.begin(), std::ranges::find(rest, 0)};
}

bool IsOffered(const Elf64_Sym& symbol)
{
    const unsigned char binding = ELF64_ST_BIND(symbol.st_info);
    const unsigned char visibility = ELF64_ST_VISIBILITY(symbol.st_other);
    return symbol.st_shndx != SHN_UNDEF && binding != STB_LOCAL &&
           (visibility == STV_DEFAULT || visibility == STV_PROTECTED);
}

std::vector<std::string> Offered(std::span<const std::uint8_t> symbols,
                                 std::span<const std::uint8_t> names)
{
    std::vector<std::string> offered;
    for (std::uint64_t at = 0; at + sizeof(Elf64_Sym) <= symbols.size(); at += sizeof(Elf64_Sym)) {
        const auto symbol = At<Elf64_Sym>(symbols, at);
        if (!IsOffered(symbol)) continue;
        std::string name = NameAt(names, symbol.st_name);
        if (std::ranges::find(kMadeByLinkers, name) == kMadeByLinkers.end())
            offered.push_back(std::move(name));
    }
    return offered;
}

}  // namespace

std::vector<std::string> ExportedNames(std::span<const std::uint8_t> file)
{
    const Elf64_Ehdr header = Header(file);
    for (std::uint32_t index = 0; index < header.e_shnum; ++index) {
        const Elf64_Shdr table = Section(file, header, index);
        if (table.sh_type != SHT_DYNSYM) continue;
        const Elf64_Shdr names = Section(file, header, table.sh_link);
        return Offered(Content(file, table), Content(file, names));
    }
    throw std::runtime_error("it has no table of dynamic symbols");
}

}  // namespace orv
