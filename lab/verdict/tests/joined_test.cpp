#include "verdict/joined.h"

#include <gtest/gtest.h>

#include <vector>

namespace lab {
namespace {

Decision word(char letter) {
    Decision decision;
    decision.next = Next::nothing;
    decision.verdict = letter == '+'   ? Verdict::slower
                       : letter == '-' ? Verdict::faster
                       : letter == '=' ? Verdict::same
                                       : Verdict::unsure;
    decision.reason = letter == 'x'   ? Reason::crash
                      : letter == 's' ? Reason::status
                      : letter == '?' ? Reason::noise
                                      : Reason::none;
    return decision;
}

TEST(Joined, OneWordOfSeveralSessions) {
    const struct {
        const char* sessions;
        Verdict verdict;
        Reason reason;
        std::size_t speaker;
    } rows[] = {
        {"+", Verdict::slower, Reason::none, 0},       {"?+", Verdict::slower, Reason::none, 1},
        {"++", Verdict::slower, Reason::none, 0},      {"?=?", Verdict::same, Reason::none, 1},
        {"??", Verdict::unsure, Reason::noise, 0},     {"+=", Verdict::unsure, Reason::repeated, 0},
        {"?-+", Verdict::unsure, Reason::repeated, 1}, {"=-", Verdict::unsure, Reason::repeated, 0},
        {"+x", Verdict::unsure, Reason::crash, 1},     {"s=x", Verdict::unsure, Reason::crash, 2},
        {"=s", Verdict::unsure, Reason::status, 1},
    };
    for (const auto& row : rows) {
        std::vector<Decision> sessions;
        for (const char* letter = row.sessions; *letter != '\0'; ++letter) {
            sessions.push_back(word(*letter));
        }
        const Joined result = joined(sessions);
        EXPECT_EQ(result.decision.verdict, row.verdict) << row.sessions;
        EXPECT_EQ(result.decision.reason, row.reason) << row.sessions;
        EXPECT_EQ(result.speaker, row.speaker) << row.sessions;
    }
}

}  // namespace
}  // namespace lab
