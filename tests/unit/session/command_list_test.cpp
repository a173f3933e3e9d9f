#include "session/mrcommandlist.h"

#include <gtest/gtest.h>

#include "support/captured_output.h"

namespace {

TEST(CommandList, SplitsALineIntoKeys) {
    const std::pair<const char*, const char*> rows[] = {
        {"-fabc", "f[abc] "},
        {"-f abc xyz -B", "f[abc] B[] "},
        {"-f+ abc", "f[+abc] "},
        {"-f+=x abc", "f[+=x] "},
        {"-f= -h", "f[=] h[] "},
        {"/h", "h[] "},
        {"- x -B", "B[] "},
        {"-r /tmp/t", "r[] t[mp/t] "},
        {"-c -5", "c[] 5[] "},
        {"-B;-h\t-s-\r\n-e+", "B[] h[] s[-] e[+] "},
        {"-d\"VectorLength=32; 64\" -B", "d[VectorLength=32; 64] B[] "},
    };
    for (const auto& [line, expected] : rows) {
        mrCommandList keys;
        keys.setArgs(line);
        std::string text;
        for (const mrCommandKey& key : keys) {
            text += std::string(1, key.m_key) + "[" + str(key.m_arg) + "] ";
        }
        EXPECT_EQ(text, expected) << line;
    }
}

}  // namespace
