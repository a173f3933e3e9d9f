#include "session/mrcommandlist.h"

#include "session_fixture.h"

namespace {

/// The records as "key[argument]", joined by blanks.
std::string listed(const mrCommandList& keys) {
    std::string text;
    for (const mrCommandKey& key : keys) {
        text += (text.empty() ? "" : " ") + std::string(1, key.m_key) + "[" + str(key.m_arg) + "]";
    }
    return text;
}

TEST(CommandList, SplitsALineIntoKeys) {
    const std::pair<const char*, const char*> rows[] = {
        {"-fabc", "f[abc]"},
        {"-f abc xyz -B", "f[abc] B[]"},
        {"-f+ abc", "f[+abc]"},
        {"-f+=x abc", "f[+=x]"},
        {"-f= -h", "f[=] h[]"},
        {"/h", "h[]"},
        {"- x -B", "B[]"},
        {"-r /tmp/t", "r[] t[mp/t]"},
        {"-c -5", "c[] 5[]"},
        {"-B;-h\t-s-\r\n-e+", "B[] h[] s[-] e[+]"},
        {"-d\"VectorLength=32; 64\" -B", "d[VectorLength=32; 64] B[]"},
        {"-o \"a b\" -h", "o[a b] h[]"},
    };
    for (const auto& [line, expected] : rows) {
        mrCommandList keys;
        keys.setArgs(line);
        EXPECT_EQ(listed(keys), expected) << line;
    }
}

using CommandFile = SessionTest;

TEST_F(CommandFile, StandsInPlaceOfItsKey) {
    const std::string longest = "-fabc\n" + std::string((1 << 20) - 6, '\n');
    const struct {
        std::string text;
        const char* keys;
        const char* message;
    } rows[] = {
        {"-fabc\n\n-s- -o \"a\nb\"\n-d x=1", "B[] f[abc] s[-] o[a b] d[x=1] e[]", ""},
        {longest, "B[] f[abc] e[]", ""},
        {longest + "\n", "B[] e[]", "-- Can't read file <dir>/keys: it is larger than 1 MiB\n"},
    };
    for (const auto& row : rows) {
        writeFile("keys", row.text);
        mrCommandList keys;
        keys.setArgs("-B -e");
        bool read = false;
        EXPECT_EQ(printed([&] { read = keys.insertFromFile(path("keys").c_str(), ++keys.begin()); }),
                  row.message);
        EXPECT_EQ(read, row.message[0] == '\0');
        EXPECT_EQ(listed(keys), row.keys);
    }
}

}  // namespace
