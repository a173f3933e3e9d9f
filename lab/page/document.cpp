#include "page/document.h"

#include <fmt/core.h>

#include <cstdint>
#include <stdexcept>
#include <utility>

#include "machine/sha256.h"
#include "page/parts.h"

namespace lab {

namespace {

/// Bytes that are given as hexadecimal digits, in base64. Their number is no multiple of three, so that at
/// least one "=" ends them, as with the 32 of SHA-256.
std::string base64OfHex(std::string_view digits) {
    constexpr std::string_view letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    std::uint32_t bits = 0;
    int waiting = 0;  // bits that no letter stands for yet
    for (const char digit : digits) {
        const int value = digit <= '9' ? digit - '0' : digit - 'a' + 10;
        bits = bits << 4 | static_cast<std::uint32_t>(value);
        waiting += 4;
        if (waiting >= 6) {
            waiting -= 6;
            text += letters[bits >> waiting & 63U];
        }
    }
    if (waiting > 0) {
        text += letters[bits << (6 - waiting) & 63U];
    }
    text.append((4 - text.size() % 4) % 4, '=');
    return text;
}

/// What a policy lets run: the texts with these hashes.
std::string sources(const std::vector<std::string_view>& texts) {
    std::string list;
    for (const std::string_view text : texts) {
        list += fmt::format(" 'sha256-{}'", base64OfHex(sha256(text)));
    }
    return list.empty() ? " 'none'" : list;
}

std::string policy(const Page& page) {
    return fmt::format("default-src 'none'; script-src{}; style-src{}; base-uri 'none'; form-action 'none'",
                       sources(page.scripts), sources(page.styles));
}

/// JSON whose texts cannot end the element they stand in. All of these are found within texts only.
std::string inScript(std::string_view json) {
    std::string text;
    text.reserve(json.size());
    for (std::size_t i = 0; i < json.size(); ++i) {
        const std::string_view rest = json.substr(i);
        if (json[i] == '<' || json[i] == '>' || json[i] == '&') {
            text += fmt::format("\\u{:04x}", static_cast<unsigned>(json[i]));
        } else if (rest.starts_with("\u2028") || rest.starts_with("\u2029")) {
            text += rest.starts_with("\u2028") ? "\\u2028" : "\\u2029";
            i += 2;
        } else {
            text += json[i];
        }
    }
    return text;
}

}  // namespace

std::string_view part(std::string_view name) {
    const auto found = parts.find(name);
    if (found == parts.end()) {
        throw std::logic_error(fmt::format("no part \"{}\" was built in", name));
    }
    return found->second;
}

Page pageOfParts(std::string title, std::string_view summary) {
    Page page;
    page.title = std::move(title);
    page.body = fmt::format(
        "<a class=\"skip\" href=\"#main\">Skip to the answer</a>\n<nav id=\"nav\" "
        "aria-label=\"Sections\"></nav>\n"
        "<main id=\"main\" tabindex=\"-1\"></main>\n<noscript><p>{}</p></noscript>",
        escaped(summary));
    page.styles = {part("uPlot.min.css"), part("base.css")};
    page.scripts = {part("uPlot.iife.min.js"), part("dom.js"),  part("verdict.js"),
                    part("chart.js"),          part("grid.js"), part("table.js")};
    return page;
}

std::string document(const Page& page) {
    std::string text = fmt::format(
        "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
        "<meta http-equiv=\"Content-Security-Policy\" content=\"{}\">\n"
        "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
        "<meta name=\"color-scheme\" content=\"light dark\">\n<title>{}</title>\n",
        policy(page), escaped(page.title));
    for (const std::string_view style : page.styles) {
        text.append("<style>").append(style).append("</style>\n");
    }
    text.append("</head>\n<body>\n").append(page.body).append("\n");
    for (const PageData& data : page.data) {
        text += fmt::format("<script type=\"application/json\" id=\"{}\">", data.id);
        text.append(inScript(data.json)).append("</script>\n");
    }
    for (const std::string_view script : page.scripts) {
        text.append("<script>").append(script).append("</script>\n");
    }
    return text + "</body>\n</html>\n";
}

std::string escaped(std::string_view text) {
    std::string safe;
    for (const char c : text) {
        switch (c) {
            case '<':
                safe += "&lt;";
                break;
            case '>':
                safe += "&gt;";
                break;
            case '&':
                safe += "&amp;";
                break;
            case '"':
                safe += "&quot;";
                break;
            default:
                safe += c;
        }
    }
    return safe;
}

}  // namespace lab
