#pragma once

#include <cstdio>
#include <string>

#include "text/mrstring.h"

/// Bits of the open mode of a stream.
enum IoMode : int {
    IO_READ = 0x1,      ///< open for reading; wins over the write bits
    IO_WRITE = 0x2,     ///< open for writing, what was there is lost
    IO_APPEND = 0x4,    ///< with IO_WRITE: keep what was there
    IO_BINARY = 0x8,    ///< add "b" to the mode of the open call
    IO_NOPATH = 0x100,  ///< take the name as it stands, without input or output directory
};

/// One open file. Closes it at its end; the process's standard streams are left open.
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

  protected:
    /// False, with errno set, if the system could not write what was left.
    bool closeFile();

    FILE* m_file;
    mrString m_name;
};

/// A file that is written. A write that fails is told on g_ostrm once a file, and the run goes on: what the
/// system did not take of a named file is kept, up to a limit, and offered again with the next text, so that
/// a disk that has room again gets whole lines.
class o_stream : public io_stream {
  public:
    o_stream(mrString name, int mode, bool verbose);
    using io_stream::io_stream;
    ~o_stream() override { close(); }

    void write(const mrString& text);
    void flush();
    /// Flushes, and returns when the system has the content on its disk, so that it outlives a loss of power.
    void sync();
    void close();

  protected:
    /// Sees the text that is about to go to a named file, and may change it; the file is open.
    virtual void prepare(std::string& /*text*/) {}
    /// Tells what the system says of the operation before, unless a failure of this file was told already.
    void reportUnwritten();

  private:
    void send();
    void limitPending();

    std::string m_pending;  ///< of a named file: text that the system has not taken
    bool m_isNamed = false;
    bool m_unwritten = false;
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
