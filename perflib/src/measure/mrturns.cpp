#include "measure/mrturns.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>
#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "machine/mrlibrary.h"
#include "machine/mrstop.h"
#include "measure/mrtool.h"
#include "stream/mrostream.h"

namespace {

constexpr const char* Greeting = "metrig-turns 1 ";
constexpr int MostCalls = 1000000;
constexpr int MostBlocks = 4096;
constexpr int LongestLine = 256;  // of a driver
constexpr int WarmUpShare = 8;
constexpr int EmptyReadings = 5;

/// Blanks, percent signs and control characters as %XX, so that nothing breaks a line or a word.
mrString escaped(const mrString& text) {
    mrString result;
    for (int i = 0; i < text.length(); ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        if (c <= ' ' || c == '%' || c == 0x7F) {
            result << mrFormat("%%%02X", c);
        } else {
            result << static_cast<char>(c);
        }
    }
    return result;
}

/// Between two readings of the clock with nothing in between; the least of some.
Zyl64u emptyStretch() {
    Zyl64u least = ~Zyl64u{0};
    for (int i = 0; i < EmptyReadings; ++i) {
        const Zyl64u start = zyl_StartCpuClocks();
        least = std::min(least, zyl_StopCpuClocks() - start);
    }
    return least;
}

}  // namespace

void mrTurns::begin(mrString library) {
    const char* channels = std::getenv("METRIG_TURNS");
    if (channels == nullptr) {
        return;
    }
    m_driven = true;
    int used = 0;
    if (std::sscanf(channels, "%d,%d%n", &m_in, &m_out, &used) != 2 || channels[used] != '\0' ||
        fcntl(m_in, F_GETFD) < 0 || fcntl(m_out, F_GETFD) < 0) {
        endRun(mrString("METRIG_TURNS names no two open descriptors: ") + channels);
        return;
    }
    send(mrString(Greeting) + mrText(mrCpuTicker::getFreq()) + " " + library);
}

void mrTurns::serve(const mrTurnPoint& point, mrTool& tool) {
    mrString head;
    head << "point " << escaped(point.function) << " " << escaped(point.unit) << " "
         << mrFormat("%.17g", point.divisor);
    for (const mrTurnPoint::Parameter& parameter : point.parameters) {
        head << " " << escaped(parameter.name) << "=" << escaped(parameter.value);
    }
    m_leavesTest = false;
    send(head);
    if (tool.m_funcInit != nullptr) {
        tool.m_funcInit();  // an in-place function may not meet data that it has already changed
    }
    mrString line;
    while (!m_over && readLine(line)) {
        int calls = 0;
        int blocks = 0;
        int used = 0;
        if (line == "next") {
            return;
        }
        if (line == "skip") {
            m_leavesTest = true;
            return;
        }
        if (line == "quit") {
            m_leavesTest = true;
            std::raise(SIGTERM);
            return;
        }
        if (std::sscanf(line.c_str(), "take %7d %7d%n", &calls, &blocks, &used) != 2 ||
            used != line.length() || calls < 1 || calls > MostCalls || blocks < 1 || blocks > MostBlocks ||
            calls > INT_MAX / blocks) {
            endRun(mrString("the driver of the turns sends no command: ") + escaped(line));
            return;
        }
        take(calls, blocks, tool);
    }
}

void mrTurns::take(int calls, int blocks, mrTool& tool) {
    static mrBlockTicks raw;  // outlives a crash inside the entry
    mrBlockTicks::wanted = &raw;
    raw.blocks.reserve(static_cast<std::size_t>(blocks));
    tool.takeBlocks(std::max(1, calls / WarmUpShare), 1);
    const Zyl64u empty = emptyStretch();
    raw.blocks.clear();
    raw.status = 0;
    tool.takeBlocks(calls, blocks);
    if (raw.status != 0) {
        send(mrString("status ") + mrText(raw.status));
    }
    mrString ticks;
    ticks << "ticks " << empty << " " << raw.bareLoop;
    for (const Zyl64u block : raw.blocks) {
        ticks << " " << block;
    }
    send(ticks);
}

void mrTurns::endTest(mrString function, mrString word) {
    m_leavesTest = false;
    if (m_driven) {
        send(mrString("result ") + escaped(function) + " " + escaped(word));
    }
}

void mrTurns::end() {
    if (m_driven) {
        send("end");
        m_over = true;
    }
}

/// A line of the driver without its end. The wait ends with the run: a signal that asks for the end
/// interrupts it.
bool mrTurns::readLine(mrString& line) {
    for (;;) {
        const int end = m_pending.find("\n", 0);
        if (end != mrString::npos) {
            line = m_pending.substr(0, end);
            m_pending = m_pending.substr(end + 1);
            return true;
        }
        if (m_pending.length() > LongestLine) {
            endRun("the driver of the turns sends a line without an end");
            return false;
        }
        pollfd ready = {m_in, POLLIN, 0};
        const bool waited = poll(&ready, 1, -1) == 1;
        if (mrStop::asked()) {
            return false;
        }
        char buffer[LongestLine + 1];
        const ssize_t count = waited ? read(m_in, buffer, sizeof buffer - 1) : -1;
        if (count > 0 && std::memchr(buffer, '\0', static_cast<std::size_t>(count)) != nullptr) {
            endRun("the driver of the turns sends no text");
            return false;
        }
        if (count > 0) {
            buffer[count] = '\0';
            m_pending << buffer;
        } else if (count == 0 || errno != EINTR) {
            endRun("the driver of the turns has gone");
            return false;
        }
    }
}

void mrTurns::send(mrString line) {
    if (m_over) {
        return;
    }
    line << "\n";
    const char* rest = line.c_str();
    auto left = static_cast<std::size_t>(line.length());
    while (left > 0) {
        const ssize_t count = write(m_out, rest, left);
        if (count >= 0) {
            rest += count;
            left -= static_cast<std::size_t>(count);
        } else if (errno != EINTR) {
            endRun("the driver of the turns has gone");
            return;
        }
    }
}

void mrTurns::endRun(mrString reason) {
    m_over = true;
    m_leavesTest = true;
    g_ostrm << MSG_ERR << "-- " << reason << "\n" << MSG_END;
    std::raise(SIGTERM);
}
