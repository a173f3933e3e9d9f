/// Line by line: the title of a run, the head, lines of names, lines of results; then the lines are named
/// whose values hold commas, since they are told apart by what other lines hold.

#include "results/resulttable.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <istream>
#include <stdexcept>
#include <string_view>

#include "results/cells.h"

namespace lab {
namespace {

using Cells = std::vector<std::string>;

constexpr int mostLines = 200000;
constexpr std::size_t mostBytes = std::size_t(64) << 20;
constexpr std::size_t longestLine = 4096;
constexpr std::size_t mostColumns = 32;  // that metrig writes
constexpr std::size_t mostCells = 64;    // with commas in values
constexpr std::array<std::string_view, 5> titleNames{"CPU", "OS", "Computer", "Library", "Start"};
/// The columns behind the parameters; one more, "Interest", may follow.
const Cells resultColumns{"Comment", "Clocks", "per", "Time (usec)", "MFlops"};
constexpr std::string_view unfilled = "-";

[[noreturn]] void fail(int line, const std::string& what) {
    throw std::runtime_error("line " + std::to_string(line) + ": " + what);
}

/// The start of a text, for a message.
std::string beginning(const std::string& text) {
    constexpr std::size_t enough = 40;
    return "\"" + text.substr(0, enough) + (text.size() > enough ? "...\"" : "\"");
}

/// Lines of at most so many bytes; what stands after the last line end is no line.
class Lines {
  public:
    explicit Lines(std::istream& file) : m_file(*file.rdbuf()) {}

    bool next(std::string& line) {
        constexpr int end = std::char_traits<char>::eof();
        line.clear();
        if (m_number == mostLines || m_bytes > mostBytes) {
            fail(m_number + 1, "a table as long as this is not read");
        }
        for (int c = m_file.sbumpc(); c != end; c = m_file.sbumpc()) {
            if (c == '\n') {
                if (!line.empty() && line.back() == '\r') {
                    line.pop_back();
                }
                ++m_number;
                m_bytes += line.size();
                return true;
            }
            if (c == '\0' || line.size() == longestLine) {
                fail(m_number + 1, c == '\0' ? "a byte of 0: this is no text" : "too long for a table");
            }
            line.push_back(static_cast<char>(c));
        }
        m_isCut = !line.empty();
        return false;
    }
    int number() const { return m_number; }
    bool isCut() const { return m_isCut; }

  private:
    std::streambuf& m_file;
    int m_number = 0;
    std::size_t m_bytes = 0;
    bool m_isCut = false;
};

/// Types of a library function as the second cell has them: "8u", "16u32u".
bool isTypes(std::string_view cell) {
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    while (!cell.empty()) {
        const auto digits =
            static_cast<std::size_t>(std::find_if_not(cell.begin(), cell.end(), isDigit) - cell.begin());
        if (digits == 0 || digits == cell.size() ||
            std::string_view("usf").find(cell[digits]) == std::string_view::npos) {
            return false;
        }
        cell.remove_prefix(digits + 1);
        cell.remove_prefix(cell.starts_with('c') ? 1 : 0);
    }
    return true;
}

/// The cells before the parameters: three for a function of the library, base name, types, descriptor.
std::size_t nameCells(const Cells& cells) { return cells[1] == unfilled || isTypes(cells[1]) ? 3 : 1; }

std::string wholeName(const Cells& cells) {
    std::string name = cells[0];
    for (std::size_t i = 1; i < nameCells(cells) && cells[i] != unfilled; ++i) {
        name += "_" + cells[i];
    }
    return name;
}

class Reader {
  public:
    Reader(std::istream& file, const ParameterNames& given) : m_lines(file), m_given(given) {}

    ResultTable read() {
        std::string line;
        while (m_lines.next(line)) {
            take(line);
        }
        if (m_columns == 0) {
            fail(m_lines.number() + 1, "the file ends before the head of a table (\"function,Parm1,...\")");
        }
        if (m_lines.isCut()) {
            warn(m_lines.number() + 1, "without its end, left out");
        }
        for (Waiting& waiting : m_waiting) {
            finish(waiting);
        }
        return std::move(m_table);
    }

  private:
    /// A line that has more cells than columns.
    struct Waiting {
        std::size_t row;
        int line;
        std::size_t firstColumn;
        std::size_t surplus;
        Cells values;
    };

    void warn(int line, const std::string& what) {
        m_table.warnings.push_back("line " + std::to_string(line) + ": " + what);
    }

    void take(const std::string& line) {
        const Cells cells = splitCells(line);
        if (std::find(titleNames.begin(), titleNames.end(), cells[0]) != titleNames.end()) {
            takeTitle(cells[0], line);
        } else if (cells[0] == "function") {
            takeHead(cells);
        } else if (m_awaitsHead) {
            fail(m_lines.number(), "no line of a table of results: " + beginning(line));
        } else if (cells.size() < m_columns || cells.size() > mostCells) {
            fail(m_lines.number(), std::to_string(cells.size()) + " cells where the head has " +
                                       std::to_string(m_columns) + ": " + beginning(line));
        } else if (cells[m_comment] == "parmNames") {
            takeNames(cells);
        } else {
            takeResult(cells);
        }
    }

    void takeTitle(const std::string& name, const std::string& line) {
        if (name == titleNames[0] || m_table.runs.empty()) {
            m_table.runs.emplace_back();
            m_awaitsHead = true;
        }
        m_table.runs.back().emplace_back(name, line.substr(std::min(line.size(), name.size() + 1)));
    }

    void takeHead(const Cells& cells) {
        const auto comment = std::find(cells.begin(), cells.end(), resultColumns[0]);
        m_comment = static_cast<std::size_t>(comment - cells.begin());
        Cells behind(comment, cells.end());
        m_isHot = !behind.empty() && behind.back() == "Interest";
        if (m_isHot) {
            behind.pop_back();
        }
        constexpr std::size_t fewest = 3;  // cells of a name
        if (behind != resultColumns || m_comment < fewest || cells.size() > mostColumns) {
            fail(m_lines.number(), "not the head of a table of results");
        }
        m_columns = cells.size();
        m_awaitsHead = false;
    }

    void takeNames(const Cells& cells) {
        Cells names(cells.begin() + static_cast<std::ptrdiff_t>(nameCells(cells)),
                    cells.begin() + static_cast<std::ptrdiff_t>(m_comment));
        while (!names.empty() && names.back() == unfilled) {
            names.pop_back();
        }
        m_table.names[wholeName(cells)] = names;
    }

    std::optional<double> figure(const std::string& cell) const {
        if (cell == unfilled) {
            return std::nullopt;
        }
        double value = 0;
        const char* const end = cell.data() + cell.size();
        const auto [rest, error] = std::from_chars(cell.data(), end, value);
        if (error != std::errc() || rest != end || !std::isfinite(value)) {
            fail(m_lines.number(), beginning(cell) + " is no figure");
        }
        return value;
    }

    /// Commas in values move the results to the right, so these are counted from the end.
    void takeResult(const Cells& cells) {
        const std::size_t surplus = cells.size() - m_columns;
        const Cells results(cells.begin() + static_cast<std::ptrdiff_t>(m_comment + surplus), cells.end());
        if (m_table.runs.empty()) {
            m_table.runs.emplace_back();
        }
        ResultRow row;
        row.run = static_cast<int>(m_table.runs.size()) - 1;
        row.function = wholeName(cells);
        row.comment = results[0] == unfilled ? "" : results[0];
        row.clocks = figure(results[1]);
        row.unit = results[2] == unfilled || results[2] == " " ? "" : results[2];
        row.microseconds = figure(results[3]);
        row.mflops = figure(results[4]);
        row.hot = m_isHot && results.back() == "Hot";
        const std::size_t first = nameCells(cells);
        const Cells values(cells.begin() + static_cast<std::ptrdiff_t>(first),
                           cells.end() - static_cast<std::ptrdiff_t>(results.size()));
        if (surplus > 0) {
            m_waiting.push_back({m_table.rows.size(), m_lines.number(), first, surplus, values});
        } else {
            noteWidth(row.function, values);
            nameParameters(row, values, first);
        }
        m_table.rows.push_back(std::move(row));
    }

    void noteWidth(const std::string& function, const Cells& values) {
        std::size_t& width = m_widths[function];
        for (const std::string& value : values) {
            width = std::max(width, value.size());
        }
    }

    void nameParameters(ResultRow& row, const Cells& values, std::size_t firstColumn) const {
        const auto named = m_table.names.find(row.function);
        const auto given = m_given.find(row.function);
        static const Cells none;
        const Cells& names = named != m_table.names.end() ? named->second
                             : given != m_given.end()     ? given->second
                                                          : none;
        for (std::size_t i = 0; i < values.size(); ++i) {
            if (i < names.size()) {
                row.parameters.emplace_back(names[i], values[i]);
            } else if (values[i] != unfilled) {
                row.parameters.emplace_back("Parm" + std::to_string(firstColumn + i), values[i]);
            }
        }
    }

    void finish(Waiting& waiting) {
        ResultRow& row = m_table.rows[waiting.row];
        Cells& values = waiting.values;
        while (!values.empty() && values.back() == unfilled) {
            values.pop_back();
        }
        if (values.size() <= waiting.surplus) {
            fail(waiting.line, std::to_string(waiting.surplus) + " cells more than the head has");
        }
        if (!joinCells(values, values.size() - waiting.surplus, m_widths[row.function])) {
            warn(waiting.line, "a value holds a comma, and which one cannot be told");
        }
        nameParameters(row, values, waiting.firstColumn);
    }

    Lines m_lines;
    const ParameterNames& m_given;
    ResultTable m_table;
    std::size_t m_columns = 0;  ///< of the head; 0: there was none
    std::size_t m_comment = 0;  ///< the first column of results
    bool m_isHot = false;
    bool m_awaitsHead = true;
    std::map<std::string, std::size_t> m_widths;  ///< the greatest of a value, by function
    std::vector<Waiting> m_waiting;
};

}  // namespace

ResultTable readResults(std::istream& file, const ParameterNames& names) {
    return Reader(file, names).read();
}

}  // namespace lab
