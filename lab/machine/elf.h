#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace lab {

/// What an object file says of itself.
struct ElfFacts {
    int bits = 0;         ///< 32 or 64
    int machine = 0;      ///< e_machine: 3 x86, 62 x86-64
    std::string buildId;  ///< hexadecimal; empty without such a note
    std::string soname;   ///< that others ask for it by; empty without one
};

/// Of the bytes of a file; nothing if they are no ELF file of this byte order, or a broken one.
std::optional<ElfFacts> elfFacts(std::string_view file);

/// The bytes of a function that the object offers to others, or has a symbol for; empty if there is none of
/// that name.
std::string_view elfCode(std::string_view file, std::string_view function);

}  // namespace lab
