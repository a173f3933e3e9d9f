#include "session/optionwords.h"

mrString mrPhrase(const char* before, mrString text, const char* after) {
    return mrString(before) + text + after;
}

mrString mrUnlessExit(int level, mrString text) {
    return mrSession::isExit(level) ? mrSession::getExitInfo() : text;
}

int mrNumber(mrString arg) {
    int value = 0;
    value << arg;
    return value;
}

mrString mrNumberInfo(mrString arg, const char* before, const char* after, const char* what) {
    return mrNumber(arg) < 1 ? mrString("ignored: incorrect number of ") + what
                             : mrPhrase(before, arg, after);
}
