#pragma once

#include <memory>
#include <vector>

#include "stream/mroutputfile.h"

/// Output files that all receive the same text, in the order of adding. The streams opened here belong to the
/// list, others that were put in it do not; at the end it closes them all.
class mrFileList : public mrList<o_stream*> {
  public:
    mrFileList() = default;
    mrFileList(const mrFileList&) = delete;
    mrFileList& operator=(const mrFileList&) = delete;
    ~mrFileList() override;

    /// Opens a file by its full name and adds it; false, with a message, if it can't be had. What
    /// mrOutputFile says of its content holds.
    bool addStream(mrString name, bool append);
    void flush();
    void sync();
    /// Adds the sizes of the files opened here, -1 for what is no file on a disk.
    void addSizes(std::vector<long long>& sizes) const;
    /// Takes back what was written since; `size` is that of the first file opened here, and is moved behind
    /// that of the last.
    void cutBack(std::vector<long long>::const_iterator& size);
    /// Takes back what stands behind the last line end of each file.
    void cutHalfLines();
    /// Closes the files; they stay on the list.
    void close();

  protected:
    void write(const mrString& text);

  private:
    std::vector<std::unique_ptr<mrOutputFile>> m_opened;
};
