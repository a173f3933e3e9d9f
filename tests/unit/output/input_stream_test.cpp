#include <gtest/gtest.h>
#include <stdio_ext.h>

#include "output/mristream.h"
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
    static constexpr struct {
        const char* data;     ///< the -d key
        const char* ini;      ///< the file's value
        const char* console;  ///< what is typed
        const char* value;
        int source;
        bool asks;
    } rows[] = {
        {none, none, none, "default", mrIStream::FromDefault, false},
        {none, none, "typed\n", "typed", mrIStream::FromConsole, true},
        {none, none, "no line end", "no line end", mrIStream::FromConsole, true},
        {none, none, "\n", "default", mrIStream::FromDefault, true},
        {none, none, "", "default", mrIStream::FromDefault, true},
        {none, "file", "typed\n", "file", mrIStream::FromIniFile, false},
        {none, "", "typed\n", "typed", mrIStream::FromConsole, true},
        {none, "", none, "default", mrIStream::FromDefault, false},
        {"Key=data", "file", "typed\n", "data", mrIStream::FromDataList, false},
        {"Key=", "file", "typed\n", "", mrIStream::FromDataList, false},
        {" Key = a=b", none, none, "a", mrIStream::FromDataList, false},
        {"key=data", none, none, "default", mrIStream::FromDefault, false},
    };
    const TempFolder folder;
    for (const auto& row : rows) {
        const std::string inFile = row.ini != none ? std::string("Key=") + row.ini + "\n" : "";
        mrIStream stream;
        EXPECT_EQ(stream.lastSource(), mrIStream::FromNowhere);
        ASSERT_TRUE(stream.setIniFile(folder.file("a.ini", "[Metrig]\n" + inFile), false));
        stream.setIStream(row.console != none ? typed(row.console) : nullptr);
        stream.dataList().set(row.data);
        testing::internal::CaptureStdout();
        const mrString value = stream.getItemValue("Key", "default", "The key", "comment");
        const std::size_t unflushed = __fpending(stdout);
        EXPECT_EQ(testing::internal::GetCapturedStdout(), row.asks ? "\n The key [default] = " : "");
        EXPECT_EQ(unflushed, 0u);
        EXPECT_EQ(str(value), row.value);
        EXPECT_EQ(stream.lastSource(), row.source) << row.value;
    }
}

TEST(InputStream, EndOfInputTakesTheDefaults) {
    mrIStream stream;
    stream.setIStream(typed("1\n"));
    testing::internal::CaptureStdout();
    EXPECT_EQ(str(stream.getItemValue("Key", "5", "", "")), "1");
    EXPECT_EQ(str(stream.getItemValue("Key", "6", "", "")), "6");
    EXPECT_EQ(str(stream.getItemValue("Key", "7", "", "")), "7");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "\n Key [5] = \n Key [6] = \n Key [7] = ");
}

TEST(InputStream, WritesBackWhatWasAskedFor) {
    const TempFolder folder;
    const mrString name = folder.file("a.ini", "[Metrig]\nKept=1 // old\nGiven=1\n");
    {
        mrIStream stream;
        EXPECT_TRUE(stream.setIniFile(name, true));
        EXPECT_TRUE(stream.iniWrite());
        stream.dataList().set("Given=1");
        stream.dataList().set("Given = 2 ");
        stream.getItemValue("Kept", "9", "", "new");
        stream.getItemValue("Given", "9", "", "new");
        stream.getItemValue("New", "9", "", "any");
        EXPECT_EQ(str(stream.setIniSection("suite")), "Metrig");
        EXPECT_EQ(str(stream.getItemValue("Kept", "8", "", "")), "8");
        EXPECT_EQ(str(stream.setIniSection("Metrig")), "suite");
    }
    const std::string written = "\n[Metrig]\nKept=1\nGiven=2\nNew=9\t// any\n\n[suite]\nKept=8\n";
    EXPECT_EQ(folder.content("a.ini"), written);
    mrIStream reader;
    EXPECT_TRUE(reader.setIniFile(name, false));
    EXPECT_EQ(str(reader.getItemValue("Other", "7", "", "")), "7");
    EXPECT_EQ(str(reader.getItemValue("Other", "8", "", "")), "8");
    reader.deleteIniFile();
    EXPECT_EQ(folder.content("a.ini"), written);
}

}  // namespace
