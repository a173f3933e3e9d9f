#include "turns/message.h"

#include <charconv>
#include <cstddef>

namespace lab {

namespace {

/// The words of a line, one blank between each two.
class Words {
  public:
    explicit Words(std::string_view line) : m_rest(line) {}

    bool atEnd() const { return m_ended; }
    std::string_view rest() const { return m_rest; }

    std::string_view next() {
        const std::size_t blank = m_rest.find(' ');
        const std::string_view word = m_rest.substr(0, blank);
        m_ended = blank == std::string_view::npos;
        m_rest = m_ended ? std::string_view() : m_rest.substr(blank + 1);
        return word;
    }

  private:
    std::string_view m_rest;
    bool m_ended = false;
};

template <class Number>
std::optional<Number> number(std::string_view word) {
    Number value{};
    const char* end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data(), end, value);
    return error == std::errc() && stop == end ? std::optional(value) : std::nullopt;
}

std::optional<Message> hello(Words words) {
    const auto version = number<int>(words.next());
    if (!version) {
        return std::nullopt;
    }
    // what another version says after its number is not for this one to judge
    const auto mhz = number<int>(words.next());
    return HelloMessage{*version, mhz.value_or(0), std::string(words.rest())};
}

std::optional<Message> point(Words words) {
    PointMessage message;
    const auto function = unescaped(words.next());
    const auto unit = unescaped(words.next());
    const auto divisor = number<double>(words.next());
    if (!function || function->empty() || !unit || !divisor) {
        return std::nullopt;
    }
    message.function = *function;
    message.unit = *unit;
    message.divisor = *divisor;
    while (!words.atEnd()) {
        const std::string_view word = words.next();
        const std::size_t sign = word.find('=');
        const auto name = unescaped(word.substr(0, sign));
        if (sign == std::string_view::npos || !name) {
            return std::nullopt;
        }
        const auto value = unescaped(word.substr(sign + 1));
        if (!value) {
            return std::nullopt;
        }
        message.parameters.emplace_back(*name, *value);
    }
    return message;
}

std::optional<Message> ticks(Words words) {
    TicksMessage message;
    const auto empty = number<long long>(words.next());
    const auto loop = number<long long>(words.next());
    if (!empty || !loop) {
        return std::nullopt;
    }
    message.empty = *empty;
    message.loop = *loop;
    while (!words.atEnd()) {
        const auto block = number<long long>(words.next());
        if (!block || *block < 0) {
            return std::nullopt;
        }
        message.blocks.push_back(*block);
    }
    return message;
}

std::optional<Message> status(Words words) {
    const auto value = number<int>(words.next());
    return value && words.atEnd() ? std::optional<Message>(StatusMessage{*value}) : std::nullopt;
}

std::optional<Message> result(Words words) {
    const auto function = unescaped(words.next());
    const auto word = unescaped(words.rest());
    return function && word ? std::optional<Message>(ResultMessage{*function, *word}) : std::nullopt;
}

int hexDigit(char c) {
    return c >= '0' && c <= '9'   ? c - '0'
           : c >= 'A' && c <= 'F' ? c - 'A' + 10
           : c >= 'a' && c <= 'f' ? c - 'a' + 10
                                  : -1;
}

}  // namespace

std::string PointMessage::parameterText() const {
    std::string text;
    for (const auto& [name, value] : parameters) {
        text.append(text.empty() ? "" : " ").append(name).append("=").append(value);
    }
    return text;
}

std::optional<std::string> unescaped(std::string_view text) {
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            plain.push_back(text[i]);
            continue;
        }
        if (text.size() - i < 3 || hexDigit(text[i + 1]) < 0 || hexDigit(text[i + 2]) < 0) {
            return std::nullopt;
        }
        plain.push_back(static_cast<char>(hexDigit(text[i + 1]) * 16 + hexDigit(text[i + 2])));
        i += 2;
    }
    return plain;
}

std::optional<Message> parseMessage(std::string_view line) {
    Words words(line);
    const std::string_view kind = words.next();
    if (kind == "metrig-turns") {
        return hello(words);
    }
    if (kind == "point") {
        return point(words);
    }
    if (kind == "ticks") {
        return ticks(words);
    }
    if (kind == "status") {
        return status(words);
    }
    if (kind == "result") {
        return result(words);
    }
    if (line == "end") {
        return EndMessage{};
    }
    return std::nullopt;
}

}  // namespace lab
