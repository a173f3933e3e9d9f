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
#include "timing/mrfloat.h"

class TestSession : public mrSession {
  public:
    static constexpr int NotListed = 100;

    void listTests(int mode) override { m_listed = mode; }

    int m_listed = NotListed;
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
        for (mrFileList* files : {static_cast<mrFileList*>(&g_cstrm), static_cast<mrFileList*>(&g_qstrm),
                                  static_cast<mrFileList*>(&g_ustrm)}) {
            dropFiles(*files, files->begin());
        }
        zyl_Init = nullptr;
        zylEnvironment = nullptr;
        std::filesystem::remove_all(m_folder);
    }

    std::string path(const std::string& name) const { return m_folder + "/" + name; }

    void writeFile(const std::string& name, const std::string& text) const {
        std::ofstream(path(name), std::ios::binary) << text;
    }

    std::string readFile(const std::string& name) const {
        std::ifstream file(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    /// Parses the words of `line` as arguments of <folder>/metrig, in a new session. Returns what was
    /// printed, the folder shown as "<dir>".
    std::string parse(const std::string& line) {
        // Like the program's own session, these are never deleted.
        static auto& sessions = *new std::vector<TestSession*>;
        session = sessions.emplace_back(new TestSession);
        session->initSession();
        std::vector<std::string> words{path("metrig")};
        std::istringstream rest(line);
        words.insert(words.end(), std::istream_iterator<std::string>(rest), {});
        std::vector<char*> values;
        for (std::string& word : words) {
            values.push_back(word.data());
        }
        CapturedOutput output(MSG_ERR);
        passed = session->parseCommandLine(static_cast<int>(values.size()), values.data());
        const std::string text = output.text();
        dropFiles(g_ostrm, ++g_ostrm.begin());
        return withoutFolder(text);
    }

    /// What is printed by `action` at the level of the options.
    template <class Action>
    std::string printed(Action action) {
        CapturedOutput output(MSG_ERR | MSG_WARN | MSG_PERF);
        action();
        return withoutFolder(output.text());
    }

    /// Puts back what keys set for the whole process.
    static void resetSettings();

    TestSession* session = nullptr;
    bool passed = false;

  private:
    std::string withoutFolder(std::string text) const {
        for (std::size_t at = 0; (at = text.find(m_folder)) != std::string::npos;) {
            text.replace(at, m_folder.size(), "<dir>");
        }
        return text;
    }

    static void dropFiles(mrFileList& files, mrFileList::iterator from) {
        while (from != files.end()) {
            (*from)->close();
            from = files.erase(from);
        }
    }

    std::string m_folder;
};

inline void SessionTest::resetSettings() {
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
    s_hintHide = true;
    s_numThreads = 0;
    s_cpuFeature = 0;
    g_istrm.dataList().clear();
    g_istrm.deleteIniFile();
    g_istrm.deleteIStream();
}
