#include "show/columns.h"

#include <fmt/core.h>

#include <algorithm>
#include <cstddef>

namespace lab {

std::string aligned(const std::vector<Cells>& rows) {
    std::vector<std::size_t> widths(rows.empty() ? 0 : rows.front().size());
    for (const Cells& cells : rows) {
        for (std::size_t i = 0; i < widths.size(); ++i) {
            widths[i] = std::max(widths[i], cells[i].size());
        }
    }
    std::string text;
    for (const Cells& cells : rows) {
        std::string line = fmt::format("{:{}}", cells.front(), widths.front());
        for (std::size_t i = 1; i + 1 < widths.size(); ++i) {
            line += widths[i] > 0 ? fmt::format("  {:>{}}", cells[i], widths[i]) : "";
        }
        line += "  " + cells.back();
        text += line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
    }
    return text;
}

}  // namespace lab
