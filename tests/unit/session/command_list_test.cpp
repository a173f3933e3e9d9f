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

struct LineRow {
    const char* line;
    const char* keys;
};

TEST(CommandList, SplitsALineIntoKeys) {
    const LineRow rows[] = {
        {"-fabc", "f[abc]"},
        {"-f abc", "f[abc]"},
        {"-f+abc", "f[+abc]"},
        {"-f+ abc", "f[+abc]"},
        {"-f-", "f[-]"},
        {"-f= -h", "f[=] h[]"},
        {"/h", "h[]"},
        {"-f+=x", "f[+=x]"},
        {"-f", "f[]"},
        {"", ""},
        {"xyz", ""},
        {"xyz abc -B", "B[]"},
        {"- x -B", "B[]"},
        {"-f -", "f[-]"},
        {"-i -r", "i[] r[]"},
        {"-fabc xyz -B", "f[abc] B[]"},
        {"-d name=value next", "d[name=value]"},
        {"-r /tmp/t", "r[] t[mp/t]"},
        {"-c -5", "c[] 5[]"},
        {"-B;-h\t-s-\r\n-e+", "B[] h[] s[-] e[+]"},
        {"-d\"VectorLength=32; 64\" -B", "d[VectorLength=32; 64] B[]"},
        {"-o \"a b\" -h", "o[a b] h[]"},
    };
    for (const LineRow& row : rows) {
        mrCommandList keys;
        keys.setArgs(row.line);
        EXPECT_EQ(listed(keys), row.keys) << row.line;
    }
}

TEST(CommandList, TakesArgumentsWhole) {
    char option[] = "-d";
    char value[] = "VectorLength=32; 64";
    char* values[] = {option, value};
    mrCommandList keys;
    keys.setArgs(2, values);
    EXPECT_EQ(listed(keys), "d[VectorLength=32; 64]");
}

TEST(CommandList, AnswersByTheLastRecord) {
    mrCommandList keys;
    keys.setArgs("-ra -B -rb");
    keys.setArg('c', "7");
    mrString arg = "as before";
    EXPECT_TRUE(keys.getArg('r', arg));
    EXPECT_EQ(str(arg), "b");
    EXPECT_TRUE(keys.getArg('c', arg));
    EXPECT_EQ(str(arg), "7");
    EXPECT_TRUE(keys.isKey('B'));
    EXPECT_FALSE(keys.isKey('x'));
    EXPECT_FALSE(keys.getArg('x', arg));
    EXPECT_EQ(str(arg), "7");
}

TEST(CommandList, FollowingTokenCompletesAKey) {
    mrCommandKey key;
    EXPECT_TRUE(key.setArg("-f-", "abc"));
    EXPECT_EQ(str(key.m_arg), "-abc");
    EXPECT_FALSE(key.setArg("-", "abc"));
    EXPECT_FALSE(key.setArg("", "abc"));
}

class CommandFile : public SessionTest {
  protected:
    /// The keys that `file` adds before -e of "-B -e".
    std::string inserted(const std::string& file) {
        mrCommandList keys;
        keys.setArgs("-B -e");
        message = printed([&] { read = keys.insertFromFile(file.c_str(), ++keys.begin()); });
        return listed(keys);
    }

    bool read = false;
    std::string message;
};

TEST_F(CommandFile, StandsInPlaceOfItsKey) {
    writeFile("keys", "-fabc\n\n-s- -o \"a\nb\"\n-d x=1");
    EXPECT_EQ(inserted(path("keys")), "B[] f[abc] s[-] o[a b] d[x=1] e[]");
    EXPECT_TRUE(read);
    EXPECT_EQ(message, "");
    writeFile("empty", "");
    EXPECT_EQ(inserted(path("empty")), "B[] e[]");
    EXPECT_TRUE(read);
    EXPECT_EQ(inserted("/dev/null"), "B[] e[]");
    EXPECT_TRUE(read);
}

TEST_F(CommandFile, MayBeAsLongAsTheBound) {
    std::string text = "-fabc\n";
    text.resize(std::size_t{1} << 20, '\n');
    writeFile("long", text);
    EXPECT_EQ(inserted(path("long")), "B[] f[abc] e[]");
    writeFile("longer", text + "\n");
    EXPECT_EQ(inserted(path("longer")), "B[] e[]");
    EXPECT_FALSE(read);
    EXPECT_EQ(message, "-- Can't read file <dir>/longer: it is larger than 1 MiB\n");
}

TEST_F(CommandFile, RefusesWhatIsNoText) {
    writeFile("nul", std::string("-B\0-e\n", 6));
    const LineRow rows[] = {
        {"<dir>/none", "-- Can't open file <dir>/none to read: \n"},
        {"", "-- Can't open file. Wrong filename (NULL)  to read: \n"},
        {"<dir>", "-- Can't read file <dir>: it is a directory\n"},
        {"/dev/zero", "-- Can't read file /dev/zero: it is a device\n"},
        {"<dir>/nul", "-- Can't read file <dir>/nul: it is no text\n"},
    };
    for (const LineRow& row : rows) {
        std::string name = row.line;
        if (name.starts_with("<dir>")) {
            name.replace(0, 5, path(""));
            name = std::filesystem::path(name).lexically_normal().string();
            name.erase(name.find_last_not_of('/') + 1);
        }
        EXPECT_EQ(inserted(name), "B[] e[]") << name;
        EXPECT_FALSE(read) << name;
        EXPECT_EQ(message, row.keys);
    }
}

}  // namespace
