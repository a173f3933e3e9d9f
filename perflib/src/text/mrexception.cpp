#include "text/mrexception.h"

#include <algorithm>

namespace {

/// Copies what fits, with its NUL.
template <std::size_t N>
void store(char (&target)[N], const mrString& text) {
    const int length = std::min(text.length(), static_cast<int>(N) - 1);
    std::copy_n(text.c_str(), length, target);
    target[length] = '\0';
}

}  // namespace

mrException::mrException(const char* signalText) { setTexts("--ZYL. Signal: ", signalText); }

mrException::mrException(const mrString& text) { setTexts("--ZYL. Exception: ", text); }

mrException mrException::lostProcess(const mrString& text) {
    mrException exception;
    exception.setTexts("--ZYL. Process: ", text);
    return exception;
}

void mrException::setTexts(const char* kind, const mrString& text) {
    store(m_info, text);
    store(m_msg, mrString(kind) + text);
}
