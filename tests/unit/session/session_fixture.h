#pragma once

/// Sessions for tests: each takes a command line, in a folder of its own.

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "mr.h"
#include "output/mrcstream.h"
#include "output/mristream.h"
#include "support/captured_output.h"
#include "test/mrmemory.h"
#include "timing/mrfloat.h"

class TestSession : public mrSession {
  public:
    void listTests(int mode) override { m_listed = mode; }

    int m_listed = 100;
};

class SessionTest : public testing::Test {
  protected:
    void SetUp() override {
        char name[] = "/tmp/metrig_session_XXXXXX";
        m_folder = mkdtemp(name);
        zyl_Init = [] { return 0; };
        zylEnvironment = [] {};
        resetSettings();
    }

    void TearDown() override {
        resetSettings();
        zyl_Init = nullptr;
        zylEnvironment = nullptr;
        std::filesystem::remove_all(m_folder);
    }

    std::string path(const std::string& name) const { return m_folder + "/" + name; }

    void writeFile(const std::string& name, const std::string& text) const {
        std::ofstream(path(name), std::ios::binary) << text;
    }

    /// Parses the words of `line` as arguments of <folder>/metrig, in a new session with settings put back.
    /// Returns what was printed, the folder shown as "<dir>".
    std::string parse(const std::string& line) {
        resetSettings();
        // Like the program's own session, these are never deleted.
        static auto& sessions = *new std::vector<TestSession*>;
        session = sessions.emplace_back(new TestSession);
        session->initSession();
        std::istringstream text(path("metrig") + " " + line);
        std::vector<std::string> words(std::istream_iterator<std::string>(text), {});
        std::vector<char*> values;
        for (std::string& word : words) {
            values.push_back(word.data());
        }
        return printed(
            [&] { passed = session->parseCommandLine(static_cast<int>(values.size()), values.data()); });
    }

    /// What is printed by `action` at the level of the options, the folder shown as "<dir>".
    template <class Action>
    std::string printed(Action action) {
        CapturedOutput output(MSG_ERR | MSG_WARN | MSG_PERF);
        action();
        std::string text = output.text();
        for (std::size_t at = 0; (at = text.find(m_folder)) != std::string::npos;) {
            text.replace(at, m_folder.size(), "<dir>");
        }
        return text;
    }

    TestSession* session = nullptr;
    bool passed = false;

  private:
    /// Puts back what keys set for the whole process.
    static void resetSettings() {
        static const unsigned on87 = ts87Base::Exception;
        static const unsigned onSSX = tsSSXBase::Exception;
        ts87Base::Exception = on87;
        tsSSXBase::Exception = onSSX;
        is_W_flagUsed = false;
        g_tool = mrTool();
        mrTool::m_numMilliseconds = 100;
        mrTool::m_minNumLoops = 8;
        mrTool::m_numExtLoops = 8;
        mrTool::m_priority = 0;
        mrTest::m_pressing = false;
        mrTest::m_cache = false;
        mrTest::m_hot = 0;
        mrTestList::m_startFunc = "";
        s_version = false;
        s_hintArg = 0;
        g_istrm.dataList().clear();
        g_istrm.deleteIniFile();
        g_istrm.deleteIStream();
        mrSetAlignByByte(true);
        mrSetVectorAlign(0);
        mrSetAlignSrc(true);
        mrSetVectorShift(512);
        g_cstrm.clear();
        g_qstrm.clear();
        g_ustrm.clear();
    }

    std::string m_folder;
};
