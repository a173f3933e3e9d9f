#pragma once

/// What the streams print, kept in memory for tests to compare.

#include <cstdio>
#include <cstdlib>
#include <string>

#include "stream/mrostream.h"

/// The whole text, NUL bytes included.
inline std::string str(const mrString& text) {
    return {text.c_str(), static_cast<std::size_t>(text.length())};
}

/// An output file in memory.
class MemoryFile {
  public:
    MemoryFile() : m_stream(open_memstream(&m_buffer, &m_size)) {}
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() {
        m_stream.close();
        std::free(m_buffer);
    }

    o_stream* stream() { return &m_stream; }
    /// What was written so far.
    std::string text() {
        m_stream.flush();
        return {m_buffer, m_size};
    }

  private:
    char* m_buffer = nullptr;
    std::size_t m_size = 0;
    o_stream m_stream;
};

/// Takes what goes to g_ostrm, in place of its files, at the given output level; all is put back at its end.
class CapturedOutput {
  public:
    explicit CapturedOutput(OutputLevel level) : m_levelBefore(g_ostrm.outLevel()) {
        m_files.append(m_file.stream());
        g_ostrm.swap(m_files);
        g_ostrm.setOutLevel(level);
    }
    CapturedOutput(const CapturedOutput&) = delete;
    CapturedOutput& operator=(const CapturedOutput&) = delete;
    ~CapturedOutput() {
        g_ostrm.swap(m_files);
        g_ostrm.setOutLevel(m_levelBefore);
    }

    std::string text() { return m_file.text(); }

  private:
    MemoryFile m_file;
    mrList<o_stream*> m_files;
    OutputLevel m_levelBefore;
};
