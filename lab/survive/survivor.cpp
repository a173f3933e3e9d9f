#include "survive/survivor.h"

namespace lab {

namespace {

constexpr int DescriptorsGone = 76;  // exit status of the instrument
constexpr int ChancesToProgress = 3;
constexpr int StoppedBefore = 130;  // exit status, as after a signal at a shell

std::string reasonOf(const ProcessEnd& end) {
    return !end.killed && end.status == DescriptorsGone ? "the files of the run were closed" : end.words;
}

/// What the processes of a run share.
class Survivor {
  public:
    Survivor(const SupervisedStart& start, double patience, const Say& say)
        : m_start(start), m_patience(patience), m_say(say) {}

    SurvivedRun run() {
        m_run.stopped = Requests::any();
        while (!m_run.stopped || m_run.content.begun) {
            const std::size_t size = m_journal.size();
            const std::size_t beginnings = m_run.content.beginnings;
            const ProcessEnd end = runSupervised(nextStart(), m_journal, m_patience);
            m_idle = m_journal.size() == size ? m_idle + 1 : 0;
            m_run.content = m_journal.read();
            m_run.stopped = Requests::any();
            m_run.status = end.status;
            if (isOver(end)) {
                return m_run;
            }
            if (m_run.content.inProgress() != nullptr) {
                settle(*m_run.content.inProgress(), end, m_run.content.beginnings - beginnings == 1);
            } else if (!m_run.content.left) {
                m_say("the instrument " + reasonOf(end) + " between two functions; the run goes on");
            }
            if (m_run.stopped) {
                m_journal.add("stop");
            }
        }
        m_run.status = StoppedBefore;
        return m_run;
    }

  private:
    /// A later process has no need to measure the tick frequency.
    SupervisedStart nextStart() const {
        SupervisedStart start = m_start;
        if (m_run.content.begun) {
            start.environment.push_back("METRIG_MHZ=" + std::to_string(m_run.content.mhz));
        }
        return start;
    }

    bool isOver(const ProcessEnd& end) {
        if (m_run.content.ended) {
            if (end.killed) {
                m_say("the instrument " + end.words + " after all was written");
                m_run.status = 0;
            }
            return true;
        }
        if (!m_run.content.begun) {
            if (end.killed) {
                m_say("the instrument " + end.words + " before its first function");
            }
            return true;
        }
        if (Requests::repeated()) {
            return true;
        }
        if (m_idle >= ChancesToProgress) {
            m_say("the instrument " + end.words + " again and again; the run is given up");
            m_run.status = end.killed ? end.status : 1;
            return true;
        }
        return false;
    }

    /// Writes what becomes of the function that the process ended in.
    void settle(const JournalContent::Test& test, const ProcessEnd& end, bool isFirst) {
        const std::string reason = reasonOf(end);
        if (isFirst || !test.canBeTakenBack || m_run.stopped) {
            m_journal.add("lost " + reason);
            return;
        }
        m_say(test.function + ": " + reason + ", maybe by a function before it; it is measured anew");
        m_journal.add("again");
    }

    const SupervisedStart& m_start;
    double m_patience;
    const Say& m_say;
    Journal m_journal;
    SurvivedRun m_run;
    int m_idle = 0;
};

}  // namespace

SurvivedRun survive(const SupervisedStart& start, double patience, const Say& say) {
    return Survivor(start, patience, say).run();
}

std::vector<std::string> complaintsOf(const SupervisedStart& start, double patience) {
    Journal journal;
    journal.add("probe");
    SupervisedStart probe = start;
    probe.silent = true;
    probe.environment.emplace_back("METRIG_MHZ=1000");  // nothing is measured by it
    runSupervised(probe, journal, patience);
    return journal.read().complaints;
}

}  // namespace lab
