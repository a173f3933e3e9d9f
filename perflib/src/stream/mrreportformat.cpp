#include "stream/mrreportformat.h"

#include <algorithm>
#include <iterator>

namespace {

/// The column of the right frame.
constexpr int FrameColumn = 78;

}  // namespace

mrReportFormat::mrReportFormat(int colms, const int (&positions)[NumItems]) : m_numColms(colms) {
    std::copy(std::begin(positions), std::end(positions), m_colmPos);
}

mrString mrReportFormat::firstLine() {
    m_box = true;
    return sepLine();
}

mrString mrReportFormat::lastLine() {
    m_box = false;
    return sepLine();
}

mrString mrReportFormat::sepLine() {
    mrString line = "+";
    line.resize(FrameColumn, '-');
    return line + "+\n";
}

mrString mrReportFormat::getLine(mrString a, mrString b, mrString c, mrString d, mrString e,
                                 mrString f) const {
    const mrString* items[NumItems] = {&a, &b, &c, &d, &e, &f};
    mrString line;
    setStartLine(line);
    for (int i = 0; i < NumItems; ++i) {
        setItem(line, *items[i], m_colmPos[i]);
    }
    setEndLine(line);
    return line;
}

void mrReportFormat::setStartLine(mrString& line) const { line << (m_box ? "|" : " "); }

void mrReportFormat::setEndLine(mrString& line) const {
    if (m_box && setOffsetLine(line, FrameColumn)) {
        line << "|";
    }
    line << "\n";
}

void mrReportFormat::setItem(mrString& line, mrString text, int pos) {
    if (text.empty()) {
        return;
    }
    const int start = pos < 0 ? -pos - 1 - text.length() : pos;
    if (start < 0) {
        return;
    }
    // An item right after the frame, at column 1, gets its blank this way too.
    const int end = getLastLen(line);
    setItemLeft(line, text, start > end ? start : end + 1);
}

void mrReportFormat::setItemLeft(mrString& line, mrString text, int pos) {
    setOffsetLine(line, pos);
    line << text;
}

bool mrReportFormat::setOffsetLine(mrString& line, int pos) {
    const int end = getLastLen(line);
    if (end > pos) {
        return false;
    }
    line << mrString().padRight(pos - end);
    return true;
}

int mrReportFormat::getLastLen(mrString line) { return line.length() - (line.rfind("\n") + 1); }

bool mrReportFormat::getPieceItem(mrString& text, mrString& piece, int limit) {
    if (limit >= text.length()) {
        return false;
    }
    piece = text;
    int cut = mrString::npos;
    while (cut == mrString::npos || cut > limit) {
        const int blank = piece.rfind(" ");
        if (blank == mrString::npos) {
            break;
        }
        cut = blank;
        piece = text.substr(0, cut);
    }
    if (cut == mrString::npos) {
        return false;
    }
    text = text.substr(cut + 1);
    return true;
}

mrString mrReportFormat::getTimeStr(int seconds) {
    return mrFormat("%02d:%02d:%02d", seconds / 3600, seconds / 60 % 60, seconds % 60);
}
