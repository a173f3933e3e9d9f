#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <string>

#include "session/mr.h"
#include "stream/mrcstream.h"
#include "stream/mristream.h"
#include "support/float_flags.h"
#include "support/scripted_clock.h"

/// A test that notes its steps by a letter each, and whose steps can be replaced. It measures by the scripted
/// loop entry.
class Job : public mrTest {
  public:
    Job()
        : mrTest(nullptr, ScriptedTiming::init, ScriptedTiming::loop, nullptr, "job", "perf/p_job.cpp",
                 "TimsJob//MR_REG") {}

    void beginTest() override { steps += 'b', mrTest::beginTest(); }
    bool canStart() override {
        steps += 's';
        m_parms.append(parms);
        return starts();
    }
    bool initData() override { return steps += 'i', data(); }
    void constToOstrm() override { steps += 'c'; }
    mrResult runTiming() override { return steps += 't', mrTest::runTiming(); }
    void flushData() override { steps += 'f'; }
    void flushStart() override { steps += 'F'; }
    void endTest() override { steps += 'e'; }
    double getDivisor() override { return divisor; }
    double getFlops() override { return flops; }
    mrString getUnit() override { return "e"; }
    bool isHotLine() override { return hot(); }

    mrList<mrParameter*> parms;
    std::function<bool()> starts = [] { return true; };
    std::function<bool()> data = [] { return true; };
    std::function<bool()> hot = [] { return false; };
    double divisor = 1.0;
    double flops = 0.0;
    std::string steps;
};

/// Takes the lines of g_cstrm. There are columns for a function, one parameter and the results.
class CapturedTable : public MemoryFile {
  public:
    CapturedTable() {
        g_cstrm.append(stream());
        mrTest::m_numParmsColm = 2;
        mrTest::m_numResultColm = 6;
    }
    ~CapturedTable() {
        g_cstrm.clear();
        mrTest::m_numParmsColm = 0;
        mrTest::m_numResultColm = 0;
    }
};

/// One job with one parameter, "size" of 1 and 2, measured once for each. All is put back at its end.
struct JobRun : ScriptedTiming {
    JobRun() {
        g_tool.setMethodLoop(1);
        size.setName("size");
        size.add(1);
        size.add(2);
        job.parms.append(&size);
    }
    ~JobRun() {
        g_tool = mrTool();
        mrTest::m_cache = false;
        mrTest::m_hot = MR_HOT_NONE;
    }

    /// Runs at a console level; returns what is printed, without the boxes of title and result.
    std::string printed(OutputLevel level) {
        CapturedOutput output(level);
        result = job.run();
        EXPECT_EQ(g_ostrm.outLevel(), level);
        std::istringstream lines(output.text());
        std::string text;
        for (std::string line; std::getline(lines, line);) {
            text += line.starts_with('|') || line.starts_with('+') ? "" : line + "\n";
        }
        return text;
    }

    KeptFloatState kept;
    CapturedTable table;
    mrIterator<int> size;
    Job job;
    int result = -1;
};
