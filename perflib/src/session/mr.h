#pragma once

#include "job/mrconditions.h"
#include "job/mrregistry.h"
#include "session/mrbinding.h"
#include "session/mrcommandlist.h"
#include "session/mroption.h"
#include "stream/mrcstream.h"
#include "stream/mrfilenames.h"
#include "stream/mrostream.h"
#include "text/mrstates.h"

/// The session: one object per process, reached through pSession, that goes through a run in a fixed order.
/// Virtual, so that a suite can register a session class of its own.
class mrSession : public mrFileNames, public mrNameLines {
  public:
    mrSession() = default;
    mrSession(const mrSession&) = delete;
    mrSession& operator=(const mrSession&) = delete;
    virtual ~mrSession();

    /// Fills the option table (session/mroptions.cpp).
    virtual void initSession();
    /// The whole run; 1 if a test failed. The process's exit code does not depend on it.
    virtual int run(int argc, char** argv);

    // Column titles of the performance table.
    virtual void funcTitleToCStream() { mrFuncTitleToCStream(); }
    virtual void parmsTitleToCStream() { mrParmsTitleToCStream(); }
    virtual void resultTitleToCStream();
    virtual void putTableTitle();
    virtual void putTableTitleLine();
    static void mrFuncTitleToCStream();
    static void mrParmsTitleToCStream();
    /// Alternative titles of the library-bound layer, for a session class that wants them.
    static void zyFuncTitleToCStream();
    static void zyParmsTitleToCStream();

    virtual bool startSession() { return true; }
    virtual void updateOptions();
    /// Reads and applies all keys; false if a file named by one of them can't be had.
    virtual bool parseCommandLine(int argc, char** argv);

    // Help and enumeration (session/mrhelp.cpp).
    virtual void listTests(int mode);
    virtual void hint(char arg, bool hide);
    virtual void hint_quick(bool hide);
    virtual void hint_full(bool hide);
    virtual void hint_descr(char key);
    /// True if help or version was asked for, and the run is to end.
    bool hintOutput();
    /// True if the tests were only listed, and the run is to end.
    bool enumOutput();

    virtual void outputHeader();
    virtual void outputFooter();
    virtual void outputSignal();

    // The dialogue for what holds for all tests (session/mrcommondata.cpp).
    virtual void readCommonData();
    int readTimingMethod();
    int readTestParameters();
    int readDataOffset();
    static mrString getEnterTitle(mrString text);

    // What the keys set.

    /// What the dialogue asks on the console, bits of the mode.
    enum Ask : int { AskTiming = 1, AskCommon = 2, AskAlignment = 4, AskEachTest = 8, AskAll = 15 };
    void unopenedFile() { m_unopened = 1; }
    void addAskMode(int mode) { m_askMode |= mode; }
    void setBatMode(bool batch) { m_batMode = batch; }
    void addLevelMode(OutputLevel level) { m_levelMode |= level; }
    void setQuickMode(bool quick) { m_quickMode = quick; }
    void setEnumMode(int mode) { m_enumMode = mode; }
    void setIniMode(mrString name, bool write);
    void setSglName(mrString name) { m_sglName = name; }
    void addCondition(RunCondition* condition) { m_conditions->append(condition); }
    void logicCondition(int logic) { m_conditions->m_logic = logic; }
    mrOption* getOption(char key);
    void applyOption(char key, mrString arg);
    void initOption(char key, mrString help, mrOption::Info info, mrOption::Apply apply, mrString descr,
                    bool hidden);

    /// True if an exit key of at least this level (mrExitLevel) was given.
    static bool isExit(int level) { return m_exitLevel >= level; }
    static mrString getExitInfo();

    static mrCommandList* pCmdList;  ///< the parsed keys, kept for the process
    static int m_exitLevel;

  private:
    void bindEnvironment();
    static void registerCpuTest();
    bool startRun(int argc, char** argv);
    bool sortTests();
    int runTests();
    static void beginJournal();
    /// Tells the journal what is wrong with the keys (session/mrprobe.cpp).
    void probeTests();
    static void deleteTests();
    void selectTestParameters();
    void readCommandLine(int argc, char** argv);
    bool readCfgFile(mrString& line, mrString& name);
    void setPaths();
    bool openIniFile();
    void expandFileKeys();
    void keepFilesApart();

    /// Connects the console for one group of questions, under a title, or takes it away. Returns the bit if
    /// it asks.
    int beginQuestions(Ask group, const char* title);

    std::unique_ptr<mrConditions> m_conditions;
    mrList<mrOption*> m_options;
    int m_askMode = 0;
    bool m_batMode = false;
    OutputLevel m_levelMode = MSG_ERR;
    bool m_quickMode = false;
    int m_enumMode = MR_LIST_NOTHING;  ///< mrListMode
    int m_unopened = 0;
    mrStringList m_keyFiles;
    mrString m_iniName;
    bool m_iniWrite = false;
    mrString m_cmdText;  ///< report of the option pass
    mrString m_sglName;
};

extern bool s_version;       ///< -v was given
extern char s_hintArg;       ///< MR_HINT_NONE, MR_HINT_QUICK, else the character after the key
extern bool s_hintHide;      ///< hidden keys stay out of the help
extern int s_numThreads;     ///< of -N
extern Zyl64u s_cpuFeature;  ///< of -T
extern const char* const MR_version;
