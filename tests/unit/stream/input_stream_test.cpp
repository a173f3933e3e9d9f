#include "stream/mristream.h"

#include <gtest/gtest.h>

#include "support/captured_output.h"
#include "support/temp_folder.h"

namespace {

TEST(InputStream, TakesTheFirstSourceThatHasAValue) {
    constexpr const char* none = nullptr;
    // The -d key, the file's line, what is typed; the value, its source, and whether it is asked for.
    using Row = std::tuple<const char*, const char*, const char*, const char*, int, bool>;
    static constexpr Row rows[] = {
        {none, "", none, "default", mrIStream::FromDefault, false},
        {none, "", "\n", "default", mrIStream::FromDefault, true},
        {none, "", "", "default", mrIStream::FromDefault, true},
        {none, "Key=file", "typed\n", "file", mrIStream::FromIniFile, false},
        {none, "Key=", "typed\n", "typed", mrIStream::FromConsole, true},
        {"Key=", "Key=file", "typed\n", "", mrIStream::FromDataList, false},
        {" Key = a=b", "", none, "a", mrIStream::FromDataList, false},
        {"key=data", "", none, "default", mrIStream::FromDefault, false},
    };
    const TempFolder folder;
    for (const auto& [data, line, typed, value, source, asks] : rows) {
        mrIStream stream;
        ASSERT_TRUE(stream.setIniFile(folder.file("a.ini", std::string("[Metrig]\n") + line), false));
        stream.setIStream(typed != none ? new i_stream(folder.file("typed", typed), IO_READ | IO_NOPATH, true)
                                        : nullptr);
        stream.dataList().set(data);
        testing::internal::CaptureStdout();
        EXPECT_EQ(str(stream.getItemValue("Key", "default", "The key", "comment")), value);
        EXPECT_EQ(testing::internal::GetCapturedStdout(), asks ? "\n The key [default] = " : "");
        EXPECT_EQ(stream.lastSource(), source) << value;
    }
}

}  // namespace
