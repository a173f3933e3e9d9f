#pragma once

/// The journal of a supervised run, as its supervisor sees it. docs/surviving.md tells the lines.

#include <cstddef>
#include <string>
#include <vector>

namespace lab {

/// What stands in a journal.
struct JournalContent {
    struct Test {
        std::string function;
        bool canBeTakenBack = false;  ///< what it wrote: all outputs are files on a disk
        std::string word;             ///< of the result, as in the summary; empty: in progress or lost
        bool leftOut = false;         ///< by the ini file: it counts nowhere
        bool lost = false;            ///< the line that says so stands there
    };

    bool begun = false;          ///< the outputs have their heads
    int mhz = 0;                 ///< tick frequency, where it has begun
    bool ended = false;          ///< all is written
    bool left = false;           ///< the last process has left the rest to another one
    std::size_t beginnings = 0;  ///< of tests, those that were taken back too
    std::vector<Test> tests;
    std::vector<std::string> complaints;  ///< each once

    /// The test that the last process was in; null between tests.
    const Test* inProgress() const;
};

/// Lines of no known form are passed over.
JournalContent parseJournal(const std::string& text);

/// A file in memory that a child writes by its descriptor.
class Journal {
  public:
    /// std::runtime_error if the system refuses it, here and below.
    Journal();
    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;
    ~Journal();

    int descriptor() const { return m_file; }
    /// Bytes; grows with all that a child does.
    std::size_t size() const;
    /// A question waits for the user.
    bool asks() const;
    /// What a child that was killed wrote of a line is taken away.
    JournalContent read();
    /// For the next child. `line` is without its line end.
    void add(const std::string& line);

  private:
    std::string text() const;

    int m_file;
};

}  // namespace lab
