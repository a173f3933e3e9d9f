#include "turns/instrument.h"

#include <stdexcept>
#include <string_view>

namespace lab {

namespace {

constexpr std::chrono::milliseconds QuitGrace(300);

/// What can be shown of a line that is none of an instrument.
std::string shown(std::string_view line) {
    std::string text;
    for (const char c : line.substr(0, 60)) {
        text.push_back(c >= ' ' && c < '\x7f' ? c : '?');
    }
    return "\"" + text + "\"";
}

}  // namespace

Instrument::Instrument(const ChildStart& start, std::chrono::milliseconds patience)
    : m_child(start, patience) {
    std::string line;
    switch (m_child.hear(line)) {
        case Child::Answer::Gone: {
            const std::string end = m_child.ending();
            const std::string words = m_child.lastWords();
            throw std::runtime_error(start.program + " takes no turns: " + end +
                                     (words.empty() ? "" : ": " + words));
        }
        case Child::Answer::Silent:
            throw std::runtime_error(start.program + " takes no turns: no answer");
        case Child::Answer::Line:
            break;
    }
    const auto message = parseMessage(line);
    const auto* hello = message ? std::get_if<HelloMessage>(&*message) : nullptr;
    if (hello == nullptr) {
        throw std::runtime_error(start.program + " takes no turns: it says " + shown(line));
    }
    if (hello->version != ProtocolVersion) {
        throw std::runtime_error(start.program + " takes turns by version " + std::to_string(hello->version) +
                                 ", this program by version " + std::to_string(ProtocolVersion));
    }
    m_hello = *hello;
}

bool Instrument::lose(const std::string& what) {
    m_loss = Loss{what, false};
    m_point.reset();
    m_child.finish();
    return false;
}

/// Nothing at a loss.
std::optional<Message> Instrument::hear() {
    std::string line;
    switch (m_child.hear(line)) {
        case Child::Answer::Gone:
            lose(m_child.ending());
            return std::nullopt;
        case Child::Answer::Silent:
            lose("no answer");
            return std::nullopt;
        case Child::Answer::Line:
            break;
    }
    auto message = parseMessage(line);
    if (!message) {
        lose("says " + shown(line));
    }
    return message;
}

bool Instrument::hearPoint() {
    m_point.reset();
    while (auto message = hear()) {
        if (auto* point = std::get_if<PointMessage>(&*message)) {
            m_lastFunction = point->function;
            m_point = std::move(*point);
            return true;
        }
        if (auto* result = std::get_if<ResultMessage>(&*message)) {
            m_result = std::move(*result);
        } else if (std::holds_alternative<EndMessage>(*message)) {
            m_ended = true;
            return false;
        } else {
            return lose("does not keep to the order of the lines");
        }
    }
    return false;
}

bool Instrument::step() { return leave("next"); }

bool Instrument::skip() { return leave("skip"); }

bool Instrument::leave(const char* word) {
    if (m_loss || m_ended) {
        return false;
    }
    if (m_point) {
        m_child.say(word);
    }
    return hearPoint();
}

Take Instrument::take(long long calls, int blocks) {
    Take take;
    m_child.say("take " + std::to_string(calls) + " " + std::to_string(blocks));
    while (auto message = hear()) {
        if (const auto* status = std::get_if<StatusMessage>(&*message)) {
            take.status = status->status;
        } else if (auto* ticks = std::get_if<TicksMessage>(&*message)) {
            take.ticks = std::move(*ticks);
            return take;
        } else if (auto* result = std::get_if<ResultMessage>(&*message)) {
            m_result = std::move(*result);
            m_point.reset();
            take.loss = Loss{m_result.word, true};
            return take;
        } else {
            lose("does not keep to the order of the lines");
            break;
        }
    }
    take.loss = m_loss;
    return take;
}

void Instrument::quit() {
    if (!m_loss) {
        m_child.say("quit");
        m_child.finish(QuitGrace);
    }
}

}  // namespace lab
