#include "session/mrconditions.h"

#include "session_fixture.h"

namespace {

struct VerdictRow {
    const char* line;
    const char* names;  ///< of the tests that run
};

class Conditions : public SessionTest {
  protected:
    /// The function names of the tests that the keys of `line` let run, joined by blanks.
    std::string running(const char* line) {
        mrCommandList keys;
        keys.setArgs(line);
        mrConditions conditions;
        const std::string fields = "ftm";
        for (const mrCommandKey& key : keys) {
            if (key.m_key == 'k') {
                conditions.m_logic = key.m_arg == "or" ? 1 : 0;
                continue;
            }
            const auto field = static_cast<RunCondition::Field>(fields.find(key.m_key));
            RunCondition* condition = mrMakeCondition(field, key.m_arg);
            if (condition != nullptr) {
                conditions.append(condition);
                kept.append(condition);
            }
        }
        std::string names;
        for (const mrTest* test : {&ab, &ax, &b}) {
            names += conditions.tobeRun(test) ? str(test->m_name) + " " : "";
        }
        return names;
    }

    static mrList<RunCondition*>& kept;  // conditions are never freed

    mrTest ab{nullptr, nullptr, "ab", "/src/p_one", "TimsZoo/group/mark"};
    mrTest ax{nullptr, nullptr, "ax", "/src/p_two", "TimsZoo"};
    mrTest b{nullptr, nullptr, "b", "/src/p_two", "TimsPond/x"};
};

mrList<RunCondition*>& Conditions::kept = *new mrList<RunCondition*>;

TEST_F(Conditions, SelectTests) {
    const VerdictRow rows[] = {
        {"", "ab ax b "},
        {"-fa", "ab ax "},
        {"-fA", ""},
        {"-fx -fab", "ab ax "},
        {"-f=ab", "ab "},
        {"-f=a", ""},
        {"-f=ab -f-ab", "ab ax b "},  // equal beats not, and not lets the others pass
        {"-f=ab -f-x", "ab b "},
        {"-f=b -fa -f-x", "ab b "},
        {"-f+a -f+b", "ab "},
        {"-f-a", "b "},
        {"-fa -f-b -tZoo -kand", "ax "},
        {"-f=b -tZoo", ""},
        {"-f=b -tZoo -kor", "ab ax b "},
        {"-fab -kor", "ab "},
        {"-fzz -tzz -kor", ""},
        {"-t=TimsPond", "b "},
        {"-tgroup", ""},
        {"-m=p_two", "ax b "},
        {"-msrc", ""},
        {"-m-two", "ab "},
        {"-m+p_ -m+one", "ab "},
        {"-t+Tims -t-Zoo -mtwo", "b "},
        {"-f- -t= -m", "ab ax b "},
    };
    for (const VerdictRow& row : rows) {
        EXPECT_EQ(running(row.line), row.names) << row.line;
    }
}

}  // namespace
