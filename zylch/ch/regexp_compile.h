#pragma once

/// From the text of a pattern to its program.
///
/// Syntax and meaning are those of ECMAScript patterns on bytes: alternatives, groups (...) and (?:...),
/// lookahead (?=...) and (?!...), sets in brackets, the escapes \d \w \s \b and their opposites, \n \t \r \f
/// \v \xHH, a backslash before punctuation, back references \1 to \9, quantifiers * + ? {n} {n,} {n,m} and
/// their lazy forms, ^ $ and the dot. A brace that begins no quantifier stands for itself. Option x leaves
/// out blanks and what follows a # up to the end of its line, except in brackets. Case is that of the 26
/// Latin letters.

#include <cstdint>

#include "regexp_state.h"

namespace zylch::regexp {

/// The most bytes of a pattern, and the most groups that stand in each other.
inline constexpr std::uint32_t MaxPattern = 65535;
inline constexpr int MaxDepth = 100;

/// Compiles `pattern` under `options` (bits of Option) and fills all of `head` but the magic word. `code` has
/// room for `head.codeWords` words as a first call with null gave them. Returns -1, or the place of the
/// fault: a bracket, parenthesis or brace that is not closed or is closed without need, a backslash whose
/// escape does not exist or refers to no group, a range whose ends are reversed, a quantifier that has
/// nothing to repeat, a group that is too deep, the end of what fits.
int compile(const char* pattern, std::uint32_t options, Head& head, std::uint32_t* code);

}  // namespace zylch::regexp
