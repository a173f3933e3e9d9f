#pragma once

/// Small tests that are run, and what they leave on the console and in the table.

#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <string>

#include "mr.h"
#include "output/mrcstream.h"
#include "output/mristream.h"
#include "support/captured_output.h"
#include "support/float_flags.h"
#include "support/scripted_clock.h"
#include "test/mrtest.h"

/// A test that notes its steps, and whose steps can be replaced. It measures by the scripted loop entry.
class Job : public mrTest {
  public:
    explicit Job(const char* name = "job", const char* info = "TimsJob//MR_REG")
        : mrTest(nullptr, ScriptedEntries::init, ScriptedEntries::loop, nullptr, name, "perf/p_job.cpp",
                 info) {}

    void beginTest() override {
        steps += "begin ";
        mrTest::beginTest();
    }
    bool canStart() override {
        steps += "canStart ";
        for (mrParameter* parm : parms) {
            m_parms.append(parm);
        }
        return starts();
    }
    void flushStart() override { steps += "flushStart "; }
    bool initData() override {
        steps += "init ";
        return data();
    }
    void constToOstrm() override { steps += "const "; }
    mrResult runTiming() override {
        steps += "time ";
        return timing ? timing() : mrTest::runTiming();
    }
    void flushData() override { steps += "flush "; }
    void endTest() override { steps += "end"; }
    double getDivisor() override { return divisor; }
    double getFlops() override { return flops; }
    mrString getUnit() override { return unit(); }
    bool isHotLine() override { return hot ? hot() : mrTest::isHotLine(); }

    mrList<mrParameter*> parms;
    std::function<bool()> starts = [] { return true; };
    std::function<bool()> data = [] { return true; };
    std::function<mrResult()> timing;
    std::function<mrString()> unit = [] { return "e"; };
    std::function<bool()> hot;
    double divisor = 1.0;
    double flops = 0.0;
    std::string steps;
};

/// Takes the lines of g_cstrm, in the place of its files; the table has the columns of a function, one
/// parameter and the results.
class CapturedTable {
  public:
    CapturedTable() {
        m_files.append(m_file.stream());
        g_cstrm.swap(m_files);
        mrTest::m_numParmsColm = 2;
        mrTest::m_numResultColm = 6;
    }
    CapturedTable(const CapturedTable&) = delete;
    CapturedTable& operator=(const CapturedTable&) = delete;
    ~CapturedTable() {
        g_cstrm.swap(m_files);
        mrTest::m_numParmsColm = 0;
        mrTest::m_numResultColm = 0;
    }

    std::string text() { return m_file.text(); }

  private:
    MemoryFile m_file;
    mrList<o_stream*> m_files;
};

/// One job with one parameter, "size" of 1 and 2, measured once for each. All is put back at its end.
struct JobRun : ScriptedTiming {
    JobRun() {
        g_tool = mrTool();
        g_tool.setMethodLoop(1);
        size.setName("size");
        size.add(1);
        size.add(2);
        job.parms.append(&size);
    }
    ~JobRun() {
        g_tool = mrTool();
        mrTest::m_cache = false;
        mrTest::m_hot = 0;
        mrTest::m_pressing = false;
        mrTest::clearCtrlStatus();
        mrSession::m_nameExit = false;
        g_istrm.deleteIniFile();
    }

    /// Runs at a console level; returns what is printed, without the boxes of title and result.
    std::string printed(OutputLevel level) {
        CapturedOutput output(level);
        result = job.run();
        EXPECT_EQ(g_ostrm.outLevel(), level);
        std::istringstream lines(output.text());
        std::string text;
        for (std::string line; std::getline(lines, line);) {
            const bool box = !line.empty() && (line.front() == '|' || line.front() == '+');
            text += box ? "" : line + "\n";
        }
        return text;
    }

    KeptFloatState kept;
    CapturedTable table;
    mrIterator<int> size;
    Job job;
    int result = -1;
};
