#pragma once

/// Sessions for tests: each takes a command line, in a folder of its own.

#include <gtest/gtest.h>

#include <iterator>
#include <sstream>
#include <tuple>
#include <vector>

#include "parameter/mrmemory.h"
#include "session/mr.h"
#include "stream/mrcstream.h"
#include "stream/mristream.h"
#include "support/captured_output.h"
#include "support/float_flags.h"
#include "support/replaced.h"
#include "support/temp_folder.h"

class SessionTest : public testing::Test {
  protected:
    SessionTest() {
        zyl_Init = [] { return 0; };
        zylEnvironment = [] {};
    }
    ~SessionTest() override {
        resetSettings();
        zyl_Init = nullptr;
        zylEnvironment = nullptr;
    }

    /// Parses the words of `line` as arguments of <folder>/metrig, in a new session with settings put back.
    /// Returns what was printed, the folder shown as "<dir>".
    std::string parse(const std::string& line) {
        resetSettings();
        // Like the program's own session, these are never deleted.
        static auto& sessions = *new std::vector<mrSession*>;
        session = sessions.emplace_back(new mrSession);
        session->initSession();
        std::istringstream text(m_folder.path("metrig") + " " + line);
        std::vector<std::string> words(std::istream_iterator<std::string>(text), {});
        std::vector<char*> values;
        for (std::string& word : words) {
            values.push_back(word.data());
        }
        const int count = static_cast<int>(values.size());
        return printed([&] { passed = session->parseCommandLine(count, values.data()); });
    }

    /// What is printed by `action` at the level of the options, the folder shown as "<dir>".
    template <class Action>
    std::string printed(Action action) {
        CapturedOutput output(MSG_ERR | MSG_WARN | MSG_PERF);
        action();
        return replaced(output.text(), m_folder.path(), "<dir>/");
    }

    const TempFolder m_folder;
    mrSession* session = nullptr;
    bool passed = false;

  private:
    /// Puts back what keys set for the whole process.
    static void resetSettings() {
        auto settings =
            std::tie(is_W_flagUsed, g_tool, mrTool::m_numMilliseconds, mrTool::m_minNumLoops,
                     mrTool::m_numExtLoops, mrTool::m_priority, mrTest::m_pressing, mrTest::m_cache,
                     mrTest::m_hot, mrTestList::m_startFunc, s_version, s_hintArg);
        static const auto before =
            std::apply([](auto&... values) { return std::tuple(values...); }, settings);
        settings = before;
        g_istrm.dataList().clear();
        g_istrm.deleteIniFile();
        g_istrm.deleteIStream();
        mrSetAlignByByte(true);
        mrSetVectorAlign(0);
        mrSetAlignSrc(true);
        mrSetVectorShift(512);
        g_cstrm.close();
        g_qstrm.close();
        g_ustrm.close();
    }

    const KeptFloatState m_floatState;
};
