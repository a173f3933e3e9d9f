#pragma once

/// The state of a run while it runs, on standard error.

#include <chrono>
#include <cstdio>
#include <string>

#include "compare/comparison.h"

namespace lab {

/// On a terminal one line that is rewritten, else a line every ten seconds.
class ProgressLine {
  public:
    ProgressLine(std::FILE* file, bool terminal) : m_file(file), m_terminal(terminal) {}
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;
    ~ProgressLine() { clear(); }

    void show(const std::string& text);
    /// A line that stays.
    void say(const std::string& text);
    /// Takes the rewritten line away.
    void clear();

  private:
    std::FILE* m_file;
    bool m_terminal;
    bool m_shown = false;
    std::chrono::steady_clock::time_point m_last = std::chrono::steady_clock::now();
};

/// "pair 5 of at most 40, 312 of 438 points decided, about 12 s left".
std::string progressText(const Progress& progress);
/// "process 5 of 10, 312 of 438 points visited by it, about 12 s left".
std::string measureProgressText(const Progress& progress);

}  // namespace lab
