#include "commands/progress.h"

#include <fmt/core.h>

namespace lab {

namespace {

constexpr std::chrono::milliseconds TerminalStep(200);
constexpr std::chrono::milliseconds PipeStep(10000);

std::string timeLeft(const Progress& progress) {
    return progress.secondsLeft > 0.0 ? fmt::format(", about {:.0f} s left", progress.secondsLeft) : "";
}

}  // namespace

std::string progressText(const Progress& progress) {
    return fmt::format("pair {} of at most {}, {} of {} points decided{}", progress.pair, progress.mostPairs,
                       progress.closedPoints, progress.points, timeLeft(progress));
}

std::string measureProgressText(const Progress& progress) {
    return fmt::format("process {} of {}, {} of {} points visited by it{}", progress.pair, progress.mostPairs,
                       progress.closedPoints, progress.points, timeLeft(progress));
}

void ProgressLine::show(const std::string& text) {
    const auto now = std::chrono::steady_clock::now();
    if (now - m_last < (m_terminal ? TerminalStep : PipeStep)) {
        return;
    }
    m_last = now;
    if (m_terminal) {
        fmt::print(m_file, "\r\033[K{}", text);
        std::fflush(m_file);
        m_shown = true;
    } else {
        say(text);
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
