#include "store/turncode.h"

#include <cmath>
#include <cstdint>

namespace lab {

namespace {

void putNumber(std::string& bytes, std::uint64_t number) {
    for (; number >= 0x80; number >>= 7) {
        bytes.push_back(static_cast<char>(number | 0x80));
    }
    bytes.push_back(static_cast<char>(number));
}

/// What the next turn's numbers are counted from.
struct Numbers {
    std::int64_t calls = 0;
    std::int64_t empty = 0;
    std::int64_t loop = 0;
    std::int64_t microseconds = 0;
    std::int64_t ticks = 0;
};

/// From `last`, which becomes `number`. In 64 bits that wrap.
void putStep(std::string& bytes, std::int64_t& last, std::int64_t number) {
    const auto step =
        static_cast<std::int64_t>(static_cast<std::uint64_t>(number) - static_cast<std::uint64_t>(last));
    putNumber(bytes, (static_cast<std::uint64_t>(step) << 1) ^ static_cast<std::uint64_t>(step >> 63));
    last = number;
}

class Reader {
  public:
    explicit Reader(std::string_view bytes) : m_bytes(bytes) {}

    bool good() const { return m_good; }
    bool atEnd() const { return m_at == m_bytes.size(); }
    std::size_t left() const { return m_bytes.size() - m_at; }

    std::uint64_t number() {
        std::uint64_t value = 0;
        for (int shift = 0; shift < 64; shift += 7) {
            if (atEnd()) {
                break;
            }
            const auto byte = static_cast<unsigned char>(m_bytes[m_at++]);
            value |= std::uint64_t{byte & 0x7FU} << shift;
            if (byte < 0x80) {
                return value;
            }
        }
        m_good = false;
        return 0;
    }

    std::int64_t step(std::int64_t& last) {
        const std::uint64_t value = number();
        const std::uint64_t step = (value >> 1) ^ (~(value & 1) + 1);
        last = static_cast<std::int64_t>(static_cast<std::uint64_t>(last) + step);
        return last;
    }

  private:
    std::string_view m_bytes;
    std::size_t m_at = 0;
    bool m_good = true;
};

}  // namespace

std::string encodeTurns(std::span<const Turn> turns) {
    std::string bytes;
    Numbers last;
    for (const Turn& turn : turns) {
        putNumber(bytes, static_cast<std::uint64_t>(turn.epoch) << 1 | (turn.side == Side::newer ? 1 : 0));
        putStep(bytes, last.calls, turn.calls);
        putStep(bytes, last.empty, turn.empty);
        putStep(bytes, last.loop, turn.loop);
        putStep(bytes, last.microseconds, std::llround(turn.seconds * 1e6));
        putNumber(bytes, turn.ticks.size());
        for (const std::int64_t ticks : turn.ticks) {
            putStep(bytes, last.ticks, ticks);
        }
    }
    return bytes;
}

std::optional<std::vector<Turn>> decodeTurns(std::string_view bytes) {
    Reader reader(bytes);
    std::vector<Turn> turns;
    Numbers last;
    while (reader.good() && !reader.atEnd()) {
        Turn turn;
        const std::uint64_t head = reader.number();
        turn.side = (head & 1) != 0 ? Side::newer : Side::older;
        turn.epoch = static_cast<int>(head >> 1);
        turn.calls = reader.step(last.calls);
        turn.empty = reader.step(last.empty);
        turn.loop = reader.step(last.loop);
        turn.seconds = static_cast<double>(reader.step(last.microseconds)) * 1e-6;
        const std::uint64_t blocks = reader.number();
        if (!reader.good() || blocks > reader.left()) {
            return std::nullopt;
        }
        for (std::uint64_t i = 0; i < blocks; ++i) {
            turn.ticks.push_back(reader.step(last.ticks));
        }
        turns.push_back(std::move(turn));
    }
    return reader.good() ? std::optional(std::move(turns)) : std::nullopt;
}

}  // namespace lab
