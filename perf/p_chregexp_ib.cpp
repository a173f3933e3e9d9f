// Searches by regular expressions: texts and patterns come from "reperf.txt" in the current directory, and
// each pattern of each text is one step of the walk. The figure is clocks per search.

#include "p_regexp.h"
#include "zy.h"

namespace {

constexpr const char* SourceFile = "perf/p_chregexp_ib";
constexpr int Capacity = 1000;
constexpr int ShownText = 20;

/// One task of the file: a text, options, and the patterns to try on it.
struct MyTriplet {
    mrString source;
    mrString options;
    mrIterator<mrString> patterns;
};

/// Tasks can be walked but not typed in.
[[maybe_unused]] MyTriplet& operator<<(MyTriplet& task, mrString&) { return task; }
[[maybe_unused]] mrString& operator<<(mrString& text, const MyTriplet&) { return text; }

const mrString fileName = "reperf.txt";
mrIterator<MyTriplet> tasks;
MyTriplet myPair;
bool inited = false;
mrString pat;
const Zyl8u* pSrc;
int srcLen;
void* pRegExpState = nullptr;
ZylRegExpFind pFind[Capacity];
int NumFind;

ZY_ENTRY int tinit_zylsRegExpFind_8u() {
    NumFind = Capacity;
    return 0;
}

ZY_ENTRY int tcall_zylsRegExpFind_8u() {
    return zylsRegExpFind_8u(pSrc, srcLen, pRegExpState, pFind, &NumFind);
}

/// Takes the rest of a line that begins with `tag`.
bool takeLine(i_stream& file, const char* tag, mrString& rest) {
    mrString line;
    file.getline(line);
    rest = line.substr(2);
    return line.beginsWith(tag);
}

bool readTask(i_stream& file) {
    MyTriplet task;
    if (!takeLine(file, "S:", task.source) || !takeLine(file, "K:", task.options)) {
        return false;
    }
    mrString line;
    while (file.getline(line) && line.beginsWith("P:")) {
        task.patterns.add(line.substr(2));
    }
    if (!(line == "EOS")) {
        return false;
    }
    tasks.add(task);
    return true;
}

class TimchRegExpFind : public zyPatternTest {
  public:
    using zyPatternTest::zyPatternTest;

    /// Reads the file once per process. A file that is not there leaves the walk empty; one that does not
    /// keep to the format is read anew next time.
    bool canStart() override {
        if (inited) {
            return true;
        }
        tasks.reset();
        i_stream file(fileName, IO_READ | IO_NOPATH, false);
        while (!file.atEnd()) {
            if (!readTask(file)) {
                return false;
            }
        }
        inited = true;
        return true;
    }

    bool canContinue() override {
        if (!nextPattern()) {
            return false;
        }
        pSrc = bytes(myPair.source);
        srcLen = myPair.source.length();
        pat = myPair.patterns.value();
        const char* options = myPair.options.empty() ? nullptr : myPair.options.c_str();
        if (!compilePattern(pat.c_str(), options, pRegExpState)) {
            return false;
        }
        NumFind = Capacity;
        return true;
    }

    void flushData() override { freeState(pRegExpState); }

    void parmsToOstrm() override {
        g_ostrm << myPair.source.substr(0, ShownText) << " " << pat.substr(0, ShownText) << " ";
    }

    void parmsToCstrm() override {
        g_cstrm << myPair.source.substr(0, ShownText);
        g_cstrm << pat.substr(0, ShownText);
    }

  private:
    /// The next pattern of the task, or the first of the next task.
    bool nextPattern() const {
        if (!m_first && myPair.patterns.nextValue()) {
            return true;
        }
        if (!(m_first ? tasks.firstValue() : tasks.nextValue())) {
            return false;
        }
        myPair = tasks.value();
        return myPair.patterns.firstValue();
    }
};

ZY_REG_I(TimchRegExpFind, zylsRegExpFind_8u, tinit_zylsRegExpFind_8u)

}  // namespace
