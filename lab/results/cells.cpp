/// metrig writes a value as it is, so a text with a comma in it looks like two cells. Texts are cut off at
/// some width, and one that is long enough to hold commas mostly was. The greatest length seen on other lines
/// of the function therefore tells most joints: no value is longer than that, and a value of just that length
/// was cut off there.

#include "results/cells.h"

#include <algorithm>
#include <span>

namespace lab {
namespace {

/// More commas than this are not tried: there are too many ways.
constexpr std::size_t mostSurplus = 4;

using Cells = std::vector<std::string>;

/// All ways to join `cells` to so many values, none longer than `width`.
class Joints {
  public:
    Joints(std::span<const std::string> cells, std::size_t count, std::size_t width)
        : m_count(count), m_width(width) {
        tryFrom(cells);
    }

    /// The only way there is; or else the only one with a value that was cut off. Empty: it cannot be told.
    Cells only() const {
        if (m_ways.size() == 1) {
            return m_ways.front();
        }
        Cells found;
        for (const Cells& way : m_ways) {
            if (hasCutValue(way)) {
                if (!found.empty()) {
                    return {};
                }
                found = way;
            }
        }
        return found;
    }

  private:
    void tryFrom(std::span<const std::string> cells) {
        if (m_way.size() == m_count) {
            if (cells.empty()) {
                m_ways.push_back(m_way);
            }
            return;
        }
        const std::size_t left = m_count - m_way.size();
        std::string value;
        for (std::size_t i = 0; i + left <= cells.size(); ++i) {
            value += (i > 0 ? "," : "") + cells[i];
            if (value.size() > m_width) {
                return;
            }
            m_way.push_back(value);
            tryFrom(cells.subspan(i + 1));
            m_way.pop_back();
        }
    }

    bool hasCutValue(const Cells& way) const {
        return std::any_of(way.begin(), way.end(), [&](const std::string& value) {
            return value.size() == m_width && value.find(',') != std::string::npos;
        });
    }

    std::size_t m_count;
    std::size_t m_width;
    Cells m_way;
    std::vector<Cells> m_ways;
};

}  // namespace

std::vector<std::string> splitCells(std::string_view line) {
    std::vector<std::string> cells;
    for (;;) {
        const std::size_t comma = line.find(',');
        cells.emplace_back(line.substr(0, comma));
        if (comma == std::string_view::npos) {
            return cells;
        }
        line.remove_prefix(comma + 1);
    }
}

bool joinCells(std::vector<std::string>& cells, std::size_t count, std::size_t width) {
    if (cells.size() <= count) {
        return true;
    }
    if (count > 1 && cells.size() - count <= mostSurplus) {
        const Cells only = Joints(cells, count, width).only();
        if (!only.empty()) {
            cells = only;
            return true;
        }
    }
    for (std::size_t i = count; i < cells.size(); ++i) {
        cells[count - 1] += "," + cells[i];
    }
    cells.resize(count);
    return count == 1;
}

}  // namespace lab
