#pragma once

#include <cstdio>

#include "text/mrstring.h"

/// Bits of the open mode of a stream.
enum IoMode : int {
    IO_READ = 0x1,      ///< open for reading; wins over the write bits
    IO_WRITE = 0x2,     ///< open for writing, what was there is lost
    IO_APPEND = 0x4,    ///< with IO_WRITE: keep what was there
    IO_BINARY = 0x8,    ///< add "b" to the mode of the open call
    IO_NOPATH = 0x100,  ///< take the name as it stands, without input or output directory
};

/// One open file. Closes it at its end; the process's standard streams are flushed and left open. A write
/// that fails is told on g_ostrm once a file, and the run goes on.
class io_stream {
  public:
    /// Opens `name`; `mode` is a set of IoMode bits. A relative name gets the session's input or output
    /// directory. A file that can't be opened leaves isOpen() false, with a message on g_ostrm if `verbose`.
    io_stream(mrString name, int mode, bool verbose);
    /// Over a standard stream of the process.
    explicit io_stream(FILE* standard, const char* name = "") : m_file(standard), m_name(name) {}
    io_stream(const io_stream&) = delete;
    io_stream& operator=(const io_stream&) = delete;
    virtual ~io_stream();

    bool isOpen() const { return m_file != nullptr; }
    FILE* file() const { return m_file; }
    void flush();
    /// Flushes, and returns when the system has the content on its disk, so that it outlives a loss of power.
    void sync();
    void close();

  protected:
    /// Tells what the system says of the operation before, unless a failure of this file was told already.
    void reportUnwritten();

    FILE* m_file;

  private:
    bool isStandard() const { return m_file == stdin || m_file == stdout; }

    mrString m_name;
    bool m_unwritten = false;
};

class o_stream : public io_stream {
  public:
    using io_stream::io_stream;

    void write(const mrString& text);
};

class i_stream : public io_stream {
  public:
    using io_stream::io_stream;

    /// Reads one line of any length without its line end. False at the end of the file, or without a file.
    bool getline(mrString& line);
    /// True if nothing is left; looks one character ahead.
    bool atEnd();
};

/// Writes the text as it stands. Without a file it goes to the console: a stream whose opening failed is not
/// to be written.
o_stream& operator<<(o_stream& stream, mrString text);

extern i_stream c_in;   ///< standard input
extern o_stream c_out;  ///< standard output
