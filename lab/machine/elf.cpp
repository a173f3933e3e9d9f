#include "machine/elf.h"

#include <elf.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace lab {

namespace {

struct Elf32 {
    using Header = Elf32_Ehdr;
    using Segment = Elf32_Phdr;
    using Section = Elf32_Shdr;
    using Entry = Elf32_Dyn;
    using Symbol = Elf32_Sym;
};

struct Elf64 {
    using Header = Elf64_Ehdr;
    using Segment = Elf64_Phdr;
    using Section = Elf64_Shdr;
    using Entry = Elf64_Dyn;
    using Symbol = Elf64_Sym;
};

/// Empty if the file ends before.
std::string_view part(std::string_view file, std::uint64_t offset, std::uint64_t size) {
    if (offset > file.size() || size > file.size() - offset) {
        return {};
    }
    return file.substr(static_cast<std::size_t>(offset), static_cast<std::size_t>(size));
}

/// A record at any alignment; nothing if the file ends before.
template <class Record>
std::optional<Record> record(std::string_view file, std::uint64_t offset) {
    const std::string_view bytes = part(file, offset, sizeof(Record));
    if (bytes.empty()) {
        return std::nullopt;
    }
    Record result;
    std::memcpy(&result, bytes.data(), sizeof result);
    return result;
}

std::uint64_t padded(std::uint64_t size) { return (size + 3) & ~std::uint64_t{3}; }

std::string buildIdOf(std::string_view notes) {
    std::uint64_t at = 0;
    // the header of a note is the same in both widths
    while (const auto note = record<Elf32_Nhdr>(notes, at)) {
        const std::uint64_t name = at + sizeof *note;
        const std::uint64_t content = name + padded(note->n_namesz);
        if (note->n_type == NT_GNU_BUILD_ID && part(notes, name, 4) == std::string_view("GNU\0", 4)) {
            std::string text;
            for (const char c : part(notes, content, note->n_descsz)) {
                const auto byte = static_cast<unsigned char>(c);
                text.push_back("0123456789abcdef"[byte >> 4]);
                text.push_back("0123456789abcdef"[byte & 15]);
            }
            return text;
        }
        at = content + padded(note->n_descsz);
    }
    return "";
}

template <class Elf>
std::optional<typename Elf::Section> sectionAt(std::string_view file, const typename Elf::Header& header,
                                               std::uint64_t index) {
    return record<typename Elf::Section>(file, std::uint64_t{header.e_shoff} + index * header.e_shentsize);
}

template <class Elf>
std::string_view contentOf(std::string_view file, const typename Elf::Section& section) {
    return part(file, section.sh_offset, section.sh_size);
}

template <class Elf>
std::string sonameOf(std::string_view file, const typename Elf::Header& header) {
    for (unsigned i = 0; i < header.e_shnum; ++i) {
        const auto table = sectionAt<Elf>(file, header, i);
        const auto texts = table && table->sh_type == SHT_DYNAMIC
                               ? sectionAt<Elf>(file, header, table->sh_link)
                               : std::nullopt;
        const std::string_view entries = texts ? contentOf<Elf>(file, *table) : std::string_view();
        for (std::uint64_t at = 0; const auto entry = record<typename Elf::Entry>(entries, at);
             at += sizeof *entry) {
            const std::string_view names = contentOf<Elf>(file, *texts);
            if (entry->d_tag == DT_SONAME && entry->d_un.d_val < names.size()) {
                const std::string_view name = names.substr(static_cast<std::size_t>(entry->d_un.d_val));
                return std::string(name.substr(0, name.find('\0')));
            }
        }
    }
    return "";
}

template <class Elf>
std::optional<ElfFacts> factsOf(std::string_view file, int bits) {
    const auto header = record<typename Elf::Header>(file, 0);
    if (!header) {
        return std::nullopt;
    }
    ElfFacts facts{bits, header->e_machine, "", sonameOf<Elf>(file, *header)};
    for (unsigned i = 0; i < header->e_phnum && facts.buildId.empty(); ++i) {
        const auto segment = record<typename Elf::Segment>(
            file, std::uint64_t{header->e_phoff} + std::uint64_t{i} * header->e_phentsize);
        if (!segment) {
            return std::nullopt;
        }
        if (segment->p_type == PT_NOTE) {
            facts.buildId = buildIdOf(part(file, segment->p_offset, segment->p_filesz));
        }
    }
    return facts;
}

bool startsWithName(std::string_view names, std::uint64_t at, std::string_view name) {
    return at < names.size() && names.size() - at > name.size() &&
           names.substr(static_cast<std::size_t>(at), name.size()) == name &&
           names[static_cast<std::size_t>(at) + name.size()] == '\0';
}

template <class Elf>
std::string_view codeOf(std::string_view file, std::string_view function) {
    const auto header = record<typename Elf::Header>(file, 0);
    for (unsigned i = 0; header && i < header->e_shnum; ++i) {
        const auto table = sectionAt<Elf>(file, *header, i);
        if (!table || (table->sh_type != SHT_DYNSYM && table->sh_type != SHT_SYMTAB)) {
            continue;
        }
        const auto texts = sectionAt<Elf>(file, *header, table->sh_link);
        const std::string_view names = texts ? contentOf<Elf>(file, *texts) : std::string_view();
        const std::string_view symbols = contentOf<Elf>(file, *table);
        for (std::uint64_t at = 0; const auto symbol = record<typename Elf::Symbol>(symbols, at);
             at += sizeof *symbol) {
            const auto home = sectionAt<Elf>(file, *header, symbol->st_shndx);
            if (symbol->st_shndx != SHN_UNDEF && home && home->sh_type == SHT_PROGBITS &&
                startsWithName(names, symbol->st_name, function)) {
                return part(file, std::uint64_t{home->sh_offset} + (symbol->st_value - home->sh_addr),
                            symbol->st_size);
            }
        }
    }
    return {};
}

/// 32 or 64; 0 if that is no ELF file of this byte order.
int bitsOf(std::string_view file) {
    if (file.size() < EI_NIDENT || std::memcmp(file.data(), ELFMAG, SELFMAG) != 0 ||
        file[EI_DATA] != ELFDATA2LSB) {
        return 0;
    }
    return file[EI_CLASS] == ELFCLASS32 ? 32 : file[EI_CLASS] == ELFCLASS64 ? 64 : 0;
}

}  // namespace

std::optional<ElfFacts> elfFacts(std::string_view file) {
    switch (bitsOf(file)) {
        case 32:
            return factsOf<Elf32>(file, 32);
        case 64:
            return factsOf<Elf64>(file, 64);
        default:
            return std::nullopt;
    }
}

std::string_view elfCode(std::string_view file, std::string_view function) {
    switch (bitsOf(file)) {
        case 32:
            return codeOf<Elf32>(file, function);
        case 64:
            return codeOf<Elf64>(file, function);
        default:
            return {};
    }
}

}  // namespace lab
