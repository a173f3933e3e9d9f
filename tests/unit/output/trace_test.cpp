#include "output/mrtrace.h"

#include <gtest/gtest.h>

#include "support/captured_output.h"

namespace {

TEST(Trace, IndentsByTheDepthAndRecoversIt) {
    CapturedOutput output(MSG_TRACE);
    mrTrace trace;
    trace.traceOut("x");
    trace.traceIn("a");
    trace.traceIn("b");
    trace.traceOut("a");  // closes what was left open inside
    EXPECT_TRUE(trace.empty());
    trace.traceIn("a");
    trace.traceIn("b");
    trace.traceOut("x");  // unknown: shortens the indent alone
    EXPECT_EQ(trace.size(), 2);
    trace.traceIn("c");
    trace.traceOut("c");
    const std::string lines =
        "***** trace out of x\n"
        "****** trace into   a\n"
        "******* trace into   b\n"
        "******* trace out of a\n"
        "****** trace into   a\n"
        "******* trace into   b\n"
        "******* trace out of x\n"
        "****** trace into   c\n"
        "****** trace out of c\n";
    EXPECT_EQ(output.text(), lines);
    EXPECT_EQ(str(trace.text()), lines);
}

TEST(Trace, StepLeftByAnExceptionStaysOpen) {
    CapturedOutput output(MSG_ERR);
    EXPECT_EQ(mrTraced("good", [] { return 3; }), 3);
    EXPECT_THROW(mrTraced("bad", [] { throw 1; }), int);
    EXPECT_EQ(str(g_trace.getCurName()), "bad");
    g_trace.traceOut("bad");
    g_trace.clearTexts();
}

}  // namespace
