#pragma once

#include "text/mrstring.h"

/// Reports the entry to and the exit from named steps at level MSG_TRACE and keeps the path of the open ones,
/// newest first: the message of an exception quotes the innermost name.
class mrTrace : public mrList<mrString> {
  public:
    void traceIn(mrString name);
    /// Closes the newest open step of that name and whatever was left open inside it.
    void traceOut(mrString name);
    /// Closes all but the outer `depth` steps without a line, after a jump out of them.
    void leaveTo(int depth);
    /// The innermost open step, or the empty text.
    mrString getCurName() const;

    /// The lines since the last clearing. A test keeps the text of its walk small by putting a noted one
    /// back.
    const mrString& text() const { return m_text; }
    void setText(const mrString& text) { m_text = text; }
    /// Empties the saved lines and the indent, not the path.
    void clearTexts();

  private:
    void line(const char* verb, const mrString& name);

    mrString m_text;
    mrString m_indent;
};

extern mrTrace g_trace;

/// Runs one step between its traceIn and its traceOut. A step that leaves by an exception stays open, on
/// purpose, so that the exception can be told where it came from.
template <class Step>
auto mrTraced(const char* name, Step step) {
    g_trace.traceIn(name);
    if constexpr (std::is_void_v<decltype(step())>) {
        step();
        g_trace.traceOut(name);
    } else {
        auto result = step();
        g_trace.traceOut(name);
        return result;
    }
}
