#include "session_fixture.h"

namespace {

using Conditions = SessionTest;

TEST_F(Conditions, SelectTheListedTests) {
    mrTest ab(nullptr, nullptr, "ab", "/src/p_one", "TimsZoo/group/mark");
    mrTest ax(nullptr, nullptr, "ax", "/src/p_two", "TimsZoo");
    mrTest b(nullptr, nullptr, "b", "/src/p_two", "TimsPond/x");
    mrTestList tests;
    for (mrTest* test : {&ab, &ax, &b}) {
        tests.append(test);
    }
    pTestList = &tests;
    mrCpuTicker::m_freqMHz = 1000;  // else the title takes seconds to measure it
    const std::pair<const char*, const char*> rows[] = {
        {"-fa", "ab ax "},
        {"-f=ab -f-ab", "ab ax b "},  // equal beats not, and not lets the others pass
        {"-f=b -fa -f-x", "ab b "},
        {"-f+a -f+b", "ab "},
        {"-f-a", "b "},
        {"-fa -f-b -tZoo -kand", "ax "},
        {"-f=b -tZoo", ""},
        {"-f=b -tZoo -kor", "ab ax b "},
        {"-tgroup", ""},
        {"-m=p_two", "ax b "},
        {"-msrc", ""},
        {"-t+Tims -t-Zoo -mtwo", "b "},
        {"-f- -t= -m", "ab ax b "},
    };
    for (const auto& [line, expected] : rows) {
        parse(line);
        MemoryFile table;
        g_cstrm.append(table.stream());
        const std::string text = printed([&] { session->mrSession::listTests(0); });
        g_cstrm.clear();
        std::string names;
        for (const std::string name : {"ab", "ax", "b"}) {
            names += text.find("\t" + name + "\t") != std::string::npos ? name + " " : "";
        }
        EXPECT_EQ(names, expected) << line;
        EXPECT_NE(table.text().find("Function,Test,Source"), std::string::npos);
    }
    mrCpuTicker::m_freqMHz = 0;
    pTestList = nullptr;
}

}  // namespace
