#include "session_fixture.h"
#include "stream/mrinventory.h"

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
    const auto listing = [this](const std::string& line) {
        parse(line);
        MemoryFile table;
        g_cstrm.append(table.stream());
        printed([&] { EXPECT_TRUE(session->enumOutput()); });
        g_cstrm.clear();
        return table.text();
    };
    const std::pair<const char*, const char*> rows[] = {
        {"-f=ab -f-ab", "ab ax b "},  // equal beats not, and not lets the others pass
        {"-f=b -fa -f-x", "ab b "},      {"-f+a -f+b", "ab "},
        {"-fa -f-b -tZoo -kand", "ax "}, {"-f=b -tZoo", ""},
        {"-f=b -tZoo -kor", "ab ax b "}, {"-tgroup", ""},
        {"-m=p_two", "ax b "},           {"-msrc", ""},
        {"-t+Tims -t-Zoo -mtwo", "b "},  {"-f- -t= -m", "ab ax b "},
    };
    for (const auto& [line, expected] : rows) {
        const std::string text = listing(std::string("-e ") + line);
        std::string names;
        for (const std::string name : {"ab", "ax", "b"}) {
            names += text.find("," + name + ",") != text.npos ? name + " " : "";
        }
        EXPECT_EQ(names, expected) << line;
    }
    mrStringList* const before = std::exchange(g_pLibFuncList, nullptr);
    mrRegLibFunc("ab");
    mrRegLibFunc("none");
    EXPECT_NE(listing("-e+").find("Exist,Function\n+,ab\n-,none\n"), std::string::npos);
    EXPECT_NE(listing("-e-").find("Exist,Function\n-,none\n"), std::string::npos);
    delete std::exchange(g_pLibFuncList, before);
    mrCpuTicker::m_freqMHz = 0;
    pTestList = nullptr;
}

}  // namespace
