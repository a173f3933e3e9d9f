#include "output/mristream.h"

#include <gtest/gtest.h>

#include "support/captured_output.h"
#include "support/temp_folder.h"

namespace {

/// A console on which `text` was typed.
i_stream* typed(const char* text) {
    FILE* file = std::tmpfile();
    std::fputs(text, file);
    std::rewind(file);
    return new i_stream(file);
}

TEST(InputStream, TakesTheFirstSourceThatHasAValue) {
    constexpr const char* none = nullptr;
    // The -d key, the file's line, what is typed; the value, its source, and whether it is asked for.
    using Row = std::tuple<const char*, const char*, const char*, const char*, int, bool>;
    static constexpr Row rows[] = {
        {none, "", none, "default", mrIStream::FromDefault, false},
        {none, "", "typed\n", "typed", mrIStream::FromConsole, true},
        {none, "", "\n", "default", mrIStream::FromDefault, true},
        {none, "", "", "default", mrIStream::FromDefault, true},
        {none, "Key=file", "typed\n", "file", mrIStream::FromIniFile, false},
        {none, "Key=", "typed\n", "typed", mrIStream::FromConsole, true},
        {"Key=data", "Key=file", "typed\n", "data", mrIStream::FromDataList, false},
        {"Key=", "Key=file", "typed\n", "", mrIStream::FromDataList, false},
        {" Key = a=b", "", none, "a", mrIStream::FromDataList, false},
        {"key=data", "", none, "default", mrIStream::FromDefault, false},
    };
    const TempFolder folder;
    for (const auto& [data, line, console, value, source, asks] : rows) {
        mrIStream stream;
        ASSERT_TRUE(stream.setIniFile(folder.file("a.ini", std::string("[Metrig]\n") + line), false));
        stream.setIStream(console != none ? typed(console) : nullptr);
        stream.dataList().set(data);
        testing::internal::CaptureStdout();
        EXPECT_EQ(str(stream.getItemValue("Key", "default", "The key", "comment")), value);
        EXPECT_EQ(testing::internal::GetCapturedStdout(), asks ? "\n The key [default] = " : "");
        EXPECT_EQ(stream.lastSource(), source) << value;
    }
}

TEST(InputStream, WritesBackWhatWasAskedFor) {
    const TempFolder folder;
    const mrString name = folder.file("a.ini", "[Metrig]\nKept=1 // old\nGiven=1\n");
    mrIStream stream;
    EXPECT_TRUE(stream.setIniFile(name, true));
    stream.dataList().set("Given=1");
    stream.dataList().set("Given = 2 ");
    stream.getItemValue("Kept", "9", "", "new");
    stream.getItemValue("Given", "9", "", "new");
    stream.getItemValue("New", "9", "", "any");
    EXPECT_EQ(str(stream.setIniSection("suite")), "Metrig");
    EXPECT_EQ(str(stream.getItemValue("Kept", "8", "", "")), "8");
    stream.deleteIniFile();
    const std::string written = "\n[Metrig]\nKept=1\nGiven=2\nNew=9\t// any\n\n[suite]\nKept=8\n";
    EXPECT_EQ(folder.content("a.ini"), written);
    // A file that is only read keeps what it has.
    EXPECT_TRUE(stream.setIniFile(name, false));
    stream.getItemValue("Other", "7", "", "");
    stream.deleteIniFile();
    EXPECT_EQ(folder.content("a.ini"), written);
}

}  // namespace
