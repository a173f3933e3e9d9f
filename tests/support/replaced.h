#pragma once

#include <string>

/// `text` with `now` wherever `before` stood.
inline std::string replaced(std::string text, const std::string& before, const std::string& now) {
    for (std::size_t at = 0; (at = text.find(before, at)) != std::string::npos; at += now.size()) {
        text.replace(at, before.size(), now);
    }
    return text;
}
