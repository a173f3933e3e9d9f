#pragma once

/// A target reads one input and must survive it. Under libFuzzer the inputs are made up; among the tests they
/// are the files of tests/fuzz/inputs/<target>, seeds and former findings alike (driver/replay.cpp).

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// A promise of the code under test; a broken one is a finding.
inline void mustHold(bool promise) {
    if (!promise) {
        std::abort();
    }
}

/// Takes an input apart, part by part.
class Input {
  public:
    Input(const std::uint8_t* data, std::size_t size) : m_rest(reinterpret_cast<const char*>(data), size) {}

    /// What stands before the next line end, or all that is left.
    std::string line() {
        const std::size_t end = m_rest.find('\n');
        std::string text = m_rest.substr(0, end);
        m_rest.erase(0, end == std::string::npos ? end : end + 1);
        return text;
    }
    const std::string& rest() const { return m_rest; }

  private:
    std::string m_rest;
};
