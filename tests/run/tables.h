#pragma once

/// Reading what a run left: its lines and its tables.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "support/golden.h"
#include "support/program.h"
#include "support/replaced.h"

using Cells = std::vector<std::string>;

inline Cells operator+(Cells cells, const Cells& more) {
    cells.insert(cells.end(), more.begin(), more.end());
    return cells;
}

inline Cells split(const std::string& text, char separator) {
    Cells parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);) {
        parts.push_back(part);
    }
    return parts;
}

inline Cells linesOf(const std::string& text) { return split(text, '\n'); }

/// The cells as a line of a table.
inline std::string joined(const Cells& cells) {
    std::string line;
    for (const std::string& cell : cells) {
        line += (line.empty() ? "" : ",") + cell;
    }
    return line;
}

inline bool holds(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

/// The lines of `text` that begin so.
inline Cells linesWith(const std::string& text, const std::string& start) {
    Cells lines = linesOf(text);
    std::erase_if(lines, [&](const std::string& line) { return !line.starts_with(start); });
    return lines;
}

/// A performance or a summary table.
struct Table {
    explicit Table(const std::string& text) {
        std::vector<Cells>* part = &head;
        for (const std::string& line : linesOf(text)) {
            if (line.starts_with("function,") || line.starts_with("Function,")) {
                title = line;
                part = &rows;
            } else if (line == "END_DATA") {
                part = &end;
            } else {
                part->push_back(split(line, ','));
            }
        }
    }

    /// The cells of column `index`, row by row.
    Cells column(std::size_t index) const {
        Cells cells;
        for (const Cells& row : rows) {
            cells.push_back(index < row.size() ? row[index] : "(none)");
        }
        return cells;
    }

    /// The end block as "name=value" parts, without dots and padding, those of value 0 left out.
    std::string counters() const {
        std::string text;
        for (const Cells& pair : end) {
            if (pair.size() == 2 && pair[1] != "0" && pair[0] != ".Total time     ") {
                const std::size_t last = pair[0].find_last_not_of(' ');
                const std::size_t first = pair[0].find_first_not_of('.');
                text += pair[0].substr(first, last + 1 - first) + "=" + pair[1] + " ";
            }
        }
        return text;
    }

    std::vector<Cells> head;  ///< what was measured, and where
    std::string title;
    std::vector<Cells> rows;
    std::vector<Cells> end;  ///< of a summary
};

/// Columns of the performance table and of the summary.
enum ResultColumn : std::size_t { CommentColumn = 9, ClocksColumn = 10, UnitColumn = 11, ResultWidth = 14 };
enum SummaryColumn : std::size_t {
    StatusColumn87 = 3,
    StatusColumnSSX = 5,
    WordColumn = 9,
    SummaryWidth = 11
};

/// Every row of the table whole, with a figure above 0.
inline void expectFigures(const Table& table) {
    for (const Cells& row : table.rows) {
        ASSERT_EQ(row.size(), ResultWidth) << row[0];
        EXPECT_GT(std::atof(row[ClocksColumn].c_str()), 0.0) << row[0] << " " << row[1] << " " << row[3];
    }
}

/// An ordinary end: exit status 0 and nothing on standard error.
inline void expectCleanEnd(const Outcome& outcome) {
    EXPECT_EQ(outcome.status, 0) << "signal " << outcome.signal << "\n" << outcome.output;
    EXPECT_EQ(outcome.errors, "");
}
