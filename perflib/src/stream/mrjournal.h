#pragma once

#include <sys/types.h>

#include <ctime>
#include <vector>

#include "text/mrstring.h"

/// The journal of a run that another program, the supervisor, watches over. METRIG_JOURNAL=<descriptor> in
/// the environment names an open file; without it nothing of this is done. A process adds to it what it
/// begins and what it has done, a line each. When it dies, the supervisor writes what is to become of the
/// test in progress into the same file and starts the next process, which passes over all that is done
/// without a word and goes on behind it. docs/surviving.md tells the lines.
///
/// A function that closes the descriptors of the run would make it go on without a trace: the process ends at
/// the next line then, with the exit status DescriptorsGone.
class mrJournal {
  public:
    static constexpr int DescriptorsGone = 76;
    static constexpr int LeftOut = -1;   ///< the ini file does not name the test
    static constexpr int NoResult = -2;  ///< the test was begun, no more

    /// What earlier processes left of a test.
    struct Test {
        std::time_t start = 0;
        std::vector<long long> sizes{};  ///< of the output files, when it began
        int result = NoResult;           ///< an mrResult, or one of the two above
        mrString lostBy{};               ///< how the process ended in it; empty: it did not
    };

    struct Answer {
        bool left = false;  ///< by a signal
        mrString text{};
    };

    /// What a combination hands on to the next one.
    struct Position {
        int tableLines = 0;
        int vectorShift = 0;
    };

    /// Reads the environment and what stands in the file. Before anything is written.
    void open();
    bool kept() const { return m_file >= 0; }
    /// The run only looks for what is wrong with its keys: it writes nothing, asks nothing, measures nothing.
    bool isProbe() const { return m_isProbe; }
    /// An earlier process wrote to the outputs of this run.
    bool resumes() const { return m_resumes; }
    /// Nothing of what is put out goes anywhere: an earlier process put it out, or none will.
    bool silent() const { return m_silent; }

    /// The tests begin, in a process that was started at `start`; returns when the first one of the run was.
    /// For a journal that is kept; the calls below do nothing before.
    std::time_t begin(int mhz, std::time_t start, const Position& position);
    /// What earlier processes left of the next test; null when it was not begun. With the last such test the
    /// silence ends. Stays valid until the next call.
    const Test* nextEarlier();
    void beginTest(const mrString& name, std::time_t start, const std::vector<long long>& sizes);
    /// Sizes of the outputs as they were when a test began that is to be measured anew; empty: none is.
    const std::vector<long long>& takenBack() const { return m_takenBack; }
    /// A combination is done.
    void at(const Position& position);
    const Position& position() const { return m_position; }
    /// `result` is an mrResult or LeftOut, `word` that of the summary.
    void endTest(int result, const mrString& word);
    /// After a crash the rest is for a process that was not there. Does not return where a journal is kept.
    void leaveProcess();
    void end();

    /// The answer that an earlier process got to the next question; null: it is to be asked.
    const Answer* nextAnswer();
    void ask();
    void answer(const Answer& given);

    /// Of a probe: something in the keys does nothing.
    void complain(const mrString& text);

    /// A descriptor of the run, which has to stay what it is now.
    void watch(int descriptor);

  private:
    struct Identity {
        int number;
        dev_t device;
        ino_t file;
    };

    void read();
    void readLine(const mrString& line);
    void readOutcome(const mrString& line);
    void endSilence();
    void add(const mrString& line);
    bool isWhole() const;

    int m_file = -1;
    std::vector<Identity> m_descriptors;
    bool m_isProbe = false;
    bool m_resumes = false;
    bool m_silent = false;
    bool m_begun = false;  ///< by this process
    bool m_stops = false;  ///< the run was asked to end
    std::time_t m_start = 0;
    std::vector<Test> m_tests;
    std::size_t m_nextTest = 0;
    std::vector<Answer> m_answers;
    std::size_t m_nextAnswer = 0;
    std::size_t m_commonAnswers = 0;  ///< before the first test
    std::vector<long long> m_takenBack;
    Position m_position;
    Position m_before;  ///< of the last test
};

extern mrJournal g_journal;
