#pragma once

#include "stream/mrstream.h"

/// A file that a run writes as long as it lasts. What an earlier run left in it stays until the first text
/// goes there, so that a run that comes to nothing has lost nothing.
class mrOutputFile : public o_stream {
  public:
    /// Opens a file by its full name and claims it. One that can't be opened, or that this run or another one
    /// writes already, leaves isOpen() false, with a message on g_ostrm. With `append` the text goes after
    /// what is there, on a line of its own.
    mrOutputFile(mrString name, bool append);
    ~mrOutputFile() override;

    /// For a file that this run uses otherwise: true, with a message, if it is one of its outputs, which then
    /// leaves it as it is for good.
    static bool isWritten(const mrString& name);
    static void reportTwoKeys(const mrString& name);

    /// Bytes; -1 if it is no file on a disk, which can't be cut.
    long long size() const;
    /// Leaves the first `size` bytes; nothing is done for a negative one.
    void cut(long long size);
    /// Takes back what stands behind the last line end.
    void cutHalfLine();

  protected:
    void prepare(std::string& text) override;

  private:
    bool claim();
    bool isFile(const mrString& name) const;
    bool endsWithinLine() const;
    void startEmpty();

    static mrOutputFile* s_newest;
    mrOutputFile* m_older;
    bool m_append;
    bool m_begun = false;
    bool m_isGivenUp = false;
};
