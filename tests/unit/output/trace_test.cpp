#include "output/mrtrace.h"

#include <gtest/gtest.h>

#include "support/captured_output.h"

namespace {

TEST(Trace, IndentsByTheDepth) {
    CapturedOutput output(MSG_TRACE);
    const MessageLevel before = g_ostrm.msgLevel();
    mrTrace trace;
    EXPECT_EQ(str(trace.getCurName()), "");
    trace.traceIn("a");
    trace.traceIn("b");
    EXPECT_EQ(str(trace.getCurName()), "b");
    trace.traceOut("b");
    EXPECT_EQ(str(trace.getCurName()), "a");
    trace.traceOut("a");
    const std::string lines =
        "****** trace into   a\n"
        "******* trace into   b\n"
        "******* trace out of b\n"
        "****** trace out of a\n";
    EXPECT_EQ(output.text(), lines);
    EXPECT_EQ(str(trace.text()), lines);
    EXPECT_TRUE(trace.empty());
    EXPECT_EQ(g_ostrm.msgLevel(), before);
}

TEST(Trace, RecoversTheDepth) {
    CapturedOutput output(MSG_ERR);  // the lines are kept all the same
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
    trace.traceOut("a");  // the indent is empty before the last step
    EXPECT_TRUE(trace.empty());
    EXPECT_EQ(output.text(), "");
    EXPECT_EQ(str(trace.text()),
              "***** trace out of x\n"
              "****** trace into   a\n"
              "******* trace into   b\n"
              "******* trace out of a\n"
              "****** trace into   a\n"
              "******* trace into   b\n"
              "******* trace out of x\n"
              "****** trace into   c\n"
              "****** trace out of a\n");
}

TEST(Trace, StepLeftByAnExceptionStaysOpen) {
    CapturedOutput output(MSG_ERR);
    const int open = g_trace.size();
    EXPECT_EQ(mrTraced("good", [] { return 3; }), 3);
    EXPECT_EQ(g_trace.size(), open);
    EXPECT_THROW(mrTraced("bad", [] { throw 1; }), int);
    EXPECT_EQ(str(g_trace.getCurName()), "bad");
    g_trace.traceOut("bad");
    g_trace.clearTexts();
}

}  // namespace
