#include "commands/progress.h"

#include <fmt/core.h>

namespace lab {

namespace {

constexpr std::chrono::milliseconds TerminalStep(200);
constexpr std::chrono::milliseconds PipeStep(10000);

}  // namespace

std::string progressText(const Progress& progress) {
    const std::string left =
        progress.secondsLeft > 0.0 ? fmt::format(", about {:.0f} s left", progress.secondsLeft) : "";
    return fmt::format("pair {} of at most {}, {} of {} points decided{}", progress.pair, progress.mostPairs,
                       progress.closedPoints, progress.points, left);
}

void ProgressLine::show(const Progress& progress) {
    const auto now = std::chrono::steady_clock::now();
    if (now - m_last < (m_terminal ? TerminalStep : PipeStep)) {
        return;
    }
    m_last = now;
    if (m_terminal) {
        fmt::print(m_file, "\r\033[K{}", progressText(progress));
        std::fflush(m_file);
        m_shown = true;
    } else {
        say(progressText(progress));
    }
}

void ProgressLine::say(const std::string& text) {
    clear();
    fmt::print(m_file, "{}\n", text);
    std::fflush(m_file);
}

void ProgressLine::clear() {
    if (m_shown) {
        fmt::print(m_file, "\r\033[K");
        std::fflush(m_file);
        m_shown = false;
    }
}

}  // namespace lab
