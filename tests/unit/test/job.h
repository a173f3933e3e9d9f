#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <string>

#include "mr.h"
#include "output/mrcstream.h"
#include "output/mristream.h"
#include "support/float_flags.h"
#include "support/scripted_clock.h"

/// A test that notes its steps by a letter each, and whose steps can be replaced. It measures by the scripted
/// loop entry.
class Job : public mrTest {
  public:
    explicit Job(const char* info = "TimsJob//MR_REG")
        : mrTest(nullptr, ScriptedTiming::init, ScriptedTiming::loop, nullptr, "job", "perf/p_job.cpp",
                 info) {}

    void beginTest() override { steps += 'b', mrTest::beginTest(); }
    bool canStart() override {
        steps += 's';
        m_parms.append(parms);
        return starts();
    }
    bool initData() override { return steps += 'i', data(); }
    void constToOstrm() override { steps += 'c'; }
    mrResult runTiming() override { return steps += 't', timing ? timing() : mrTest::runTiming(); }
    void flushData() override { steps += 'f'; }
    void flushStart() override { steps += 'F'; }
    void endTest() override { steps += 'e'; }
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

/// Takes the lines of g_cstrm in the place of its files. There are columns for a function, one parameter and
/// the results.
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
        g_istrm.deleteIniFile();
    }

    /// The results of the two measurements.
    void answer(mrResult first, mrResult second) { results = {first, second}; }
    /// Runs at a console level; returns what is printed, without the boxes of title and result.
    std::string printed(OutputLevel level) {
        CapturedOutput output(level);
        result = job.run();
        EXPECT_EQ(g_ostrm.outLevel(), level);
        std::istringstream lines(output.text());
        std::string text;
        for (std::string line; std::getline(lines, line);) {
            text += line.empty() || std::strchr("|+", line.front()) == nullptr ? line + "\n" : "";
        }
        return text;
    }

    KeptFloatState kept;
    CapturedTable table;
    mrIterator<int> size;
    Job job;
    int result = -1;
};
