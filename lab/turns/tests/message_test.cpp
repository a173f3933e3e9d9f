#include "turns/message.h"

#include <gtest/gtest.h>

namespace lab {
namespace {

TEST(Message, LinesOfAnInstrument) {
    const auto hello = std::get<HelloMessage>(parseMessage("metrig-turns 1 2600 zyls, 10.0, SSE2").value());
    EXPECT_EQ(hello.version, 1);
    EXPECT_EQ(hello.mhz, 2600);
    EXPECT_EQ(hello.library, "zyls, 10.0, SSE2");
    const auto point =
        std::get<PointMessage>(parseMessage("point f_8u e 4096.5 Len=8 Text=a%20%3d%0A Empty=").value());
    EXPECT_EQ(point.function, "f_8u");
    EXPECT_EQ(point.unit, "e");
    EXPECT_EQ(point.divisor, 4096.5);
    const decltype(point.parameters) parameters = {{"Len", "8"}, {"Text", "a =\n"}, {"Empty", ""}};
    EXPECT_EQ(point.parameters, parameters);
    const auto ticks = std::get<TicksMessage>(parseMessage("ticks 30 -2 5 7").value());
    EXPECT_EQ(ticks.empty, 30);
    EXPECT_EQ(ticks.loop, -2);
    EXPECT_EQ(ticks.blocks, (std::vector<long long>{5, 7}));
    EXPECT_EQ(std::get<StatusMessage>(parseMessage("status -5").value()).status, -5);
    EXPECT_EQ(std::get<ResultMessage>(parseMessage("result f_8u OK").value()).word, "OK");
    EXPECT_TRUE(std::holds_alternative<EndMessage>(parseMessage("end").value()));
    EXPECT_EQ(std::get<HelloMessage>(parseMessage("metrig-turns 2 whatever").value()).version, 2);
}

TEST(Message, OtherLinesAreNone) {
    for (const char* line : {"",
                             "end ",
                             "ends",
                             "point",
                             "point f",
                             "point f e",
                             "point f e x",
                             "point f e 1 Len",
                             "point f e 1  ",
                             "point f e 1 Len=%2",
                             "point f e 1 Len=%zz",
                             "point  e 1",
                             "ticks",
                             "ticks 1",
                             "ticks 1 2 ",
                             "ticks 1 2 x",
                             "ticks 1 2 -3",
                             "ticks 1 2 3 ",
                             "ticks 99999999999999999999 1 1",
                             "status",
                             "status x",
                             "status 1 2",
                             "metrig-turns",
                             "metrig-turns x",
                             "tick 1 2 3"}) {
        EXPECT_FALSE(parseMessage(line)) << line;
    }
}

}  // namespace
}  // namespace lab
