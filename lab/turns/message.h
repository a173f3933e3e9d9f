#pragma once

/// The lines of an instrument that takes turns.

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace lab {

/// Version of the line protocol that is spoken here.
constexpr int ProtocolVersion = 1;

struct HelloMessage {
    int version = 0;
    int mhz = 0;
    std::string library;  ///< line that the library says of itself
};

/// A combination whose data are made.
struct PointMessage {
    std::string function;
    std::string unit;      ///< what figures are per: "e", "b", ...
    double divisor = 1.0;  ///< units of one call
    std::vector<std::pair<std::string, std::string>> parameters;

    /// The parameters as one text, "name=value name=value".
    std::string parameterText() const;
    bool operator==(const PointMessage&) const = default;
};

/// Ticks of one turn.
struct TicksMessage {
    long long empty = 0;            ///< of a stretch with nothing in it
    long long loop = 0;             ///< of the bare loop of as many calls as a block has
    std::vector<long long> blocks;  ///< fewer than asked for after a negative status
};

/// The library's status, when it is not 0.
struct StatusMessage {
    int status = 0;
};

/// A test has ended.
struct ResultMessage {
    std::string function;
    std::string word;  ///< OK, EXCPTFAIL, ...
};

struct EndMessage {};

using Message =
    std::variant<HelloMessage, PointMessage, TicksMessage, StatusMessage, ResultMessage, EndMessage>;

/// Nothing if the line, without its line end, is none that an instrument says.
std::optional<Message> parseMessage(std::string_view line);

/// Undoes the percent escapes; nothing if one is broken.
std::optional<std::string> unescaped(std::string_view text);

}  // namespace lab
