#include "session/options.h"
#include "session/optionwords.h"

namespace {

struct AskItem {
    const char* letter;
    mrSession::Ask bit;
    const char* text;
};

/// What -A chooses by capital letters. The last one comes only with all others.
constexpr AskItem askItems[] = {
    {"T", mrSession::AskTiming, ", timing method"},
    {"P", mrSession::AskCommon, ", common parameters"},
    {"M", mrSession::AskAlignment, ", data misalignment"},
    {"", mrSession::AskEachTest, ", each test parameters"},
};

int askBits(const mrString& arg) {
    int bits = 0;
    for (const AskItem& item : askItems) {
        bits |= item.letter[0] != '\0' && arg.found(item.letter) ? item.bit : 0;
    }
    return bits != 0 ? bits : mrSession::AskAll;
}

/// s_hintArg for a help key with this argument.
char hintArg(const mrString& arg) { return arg.empty() ? MR_HINT_QUICK : arg[0]; }

/// The words of -h and of -?; `full` is the letter that asks for the extended help.
mrString helpInfo(const mrString& arg, char full, const char* which) {
    if (arg.empty()) {
        return mrString("type short help") + which + " and exit";
    }
    if (arg[0] == full) {
        return mrString("type extended help") + which + " and exit";
    }
    mrString text = "type extended help for -";
    return text << arg[0] << " key and exit";
}

}  // namespace

mrString B_info(mrString) { return mrUnlessExit(MR_EXIT_LIST, "batch mode"); }

void B_apply(mrString, mrSession* session) { session->setBatMode(true); }

/// The blank after "ask" goes with the first comma.
mrString A_info(mrString arg) {
    const int bits = askBits(arg);
    mrString items;
    for (const AskItem& item : askItems) {
        items << ((bits & item.bit) != 0 ? item.text : "");
    }
    return mrUnlessExit(MR_EXIT_LIST, mrPhrase("ask", items.substr(2), " from console"));
}

void A_apply(mrString arg, mrSession* session) { session->addAskMode(askBits(arg)); }

mrString v_info(mrString) { return "type the version number of the Metrig and exit"; }

void v_apply(mrString, mrSession*) { s_version = true; }

mrString h_info(mrString arg) { return helpInfo(arg, 'h', ""); }

void h_apply(mrString arg, mrSession*) {
    s_hintHide = true;
    s_hintArg = hintArg(arg);
}

mrString hq_info(mrString arg) { return helpInfo(arg, '?', " with hidden keys"); }

void hq_apply(mrString arg, mrSession*) {
    s_hintHide = false;
    s_hintArg = hintArg(arg);
}
