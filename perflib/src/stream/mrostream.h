#pragma once

#include "stream/mrfilelist.h"

/// Levels of a message, single bits, and two commands that end one.
enum MessageLevel : int {
    MSG_ERR = 1,     ///< failures
    MSG_WARN = 2,    ///< warnings and notes
    MSG_PERF = 4,    ///< performance results and title blocks
    MSG_INFO = 8,    ///< the course of a measurement
    MSG_TRACE = 16,  ///< function tracing
    MSG_MEM = 32,    ///< memory blocks
    MSG_DATA = 64,   ///< vector data before and after a call
    MSG_END = -10,
    MSG_END_FLUSH = -11,
};

/// A mask of the MessageLevel bits that pass.
using OutputLevel = int;

/// The message stream: files behind a filter by level. A message is one chained expression, a level, texts,
/// and MSG_END or MSG_END_FLUSH; levels nest on a stack.
class mrOStream : public mrFileList {
  public:
    mrOStream() = default;

    OutputLevel outLevel() const { return m_outLevel; }
    void setOutLevel(OutputLevel level) { m_outLevel = level; }
    MessageLevel msgLevel() const { return m_msgLevel; }
    void setMsgLevel(MessageLevel level);
    /// Back to the level before; MSG_ERR if none was saved.
    void restoreMsgLevel();
    /// The number of levels saved, and back to an earlier number: for what was left in the middle of a
    /// message.
    int msgDepth() const { return m_msgStack.size(); }
    void restoreMsgDepth(int depth);

    /// Asks ahead whether a message of this level is worth building: compares as numbers, so it is wider than
    /// the filter of the printing itself. Only after true is the level set, and endMessage owed.
    bool beginMessage(MessageLevel level);
    void endMessage() { restoreMsgLevel(); }
    void endMessageFlush();
    /// True if text sent now passes.
    bool passes() const { return (m_outLevel & m_msgLevel) != 0; }

    /// Sends text through the filter to every file.
    void send(const mrString& text);

  protected:
    explicit mrOStream(MessageLevel level) : m_msgLevel(level) {}

  private:
    OutputLevel m_outLevel = MSG_ERR;
    MessageLevel m_msgLevel = MSG_PERF;
    mrList<MessageLevel> m_msgStack;
};

/// The summary table's stream: a type of its own, which selects the layouts of the reports; everything
/// passes.
class mrUStream : public mrOStream {
  public:
    mrUStream() : mrOStream(MSG_ERR) {}
};

mrOStream& operator<<(mrOStream& stream, mrString text);
mrOStream& operator<<(mrOStream& stream, const char* text);
/// Sets a level, or carries out one of the two commands.
mrOStream& operator<<(mrOStream& stream, MessageLevel level);

extern mrOStream g_ostrm;
extern mrUStream g_ustrm;
