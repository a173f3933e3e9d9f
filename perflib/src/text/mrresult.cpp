#include "text/mrresult.h"

namespace {

struct ResultTexts {
    const char* text;
    const char* word;
};

constexpr ResultTexts Texts[MR_RESULT_COUNT] = {
    {"was not run", "UNDEFINED"},
    {"successfully", "OK"},
    {"wrong measure accuracy", "ACCURWRN"},
    {"modified control status", "BADSTSWRN"},
    {"test data note", "DATAWRN"},
    {"lib function note", "FUNCWRN"},
    {"note", "WRN"},
    {"accuracy fail", "ACCURFAIL"},
    {"test data fail", "DATAFAIL"},
    {"lib function fail", "FUNCFAIL"},
    {"exception", "EXCPTFAIL"},
    {"fail", "FAIL"},
};

bool isKnown(int result) { return result >= 0 && result < MR_RESULT_COUNT; }

}  // namespace

mrString mrResultString(int result) { return isKnown(result) ? Texts[result].text : "unknown result"; }

mrString mrResultWord(int result) { return isKnown(result) ? Texts[result].word : "UNKNOWN"; }
