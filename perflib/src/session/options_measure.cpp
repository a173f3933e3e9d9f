#include <cstring>

#include "machine/mrfloat.h"
#include "machine/mrpriority.h"
#include "session/options.h"
#include "session/optionwords.h"
#include "stream/mristream.h"

namespace {

struct LevelLetter {
    char letter;
    OutputLevel bits;
};

/// Words of -L work through their letters alone: DATA brings the bits of T as well.
constexpr LevelLetter levelLetters[] = {
    {'E', MSG_ERR},
    {'W', MSG_ERR | MSG_WARN},
    {'P', MSG_ERR | MSG_WARN | MSG_PERF},
    {'I', MSG_ERR | MSG_WARN | MSG_PERF | MSG_INFO},
    {'T', MSG_ERR | MSG_WARN | MSG_PERF | MSG_TRACE},
    {'M', MSG_ERR | MSG_WARN | MSG_PERF | MSG_MEM},
    {'D', MSG_ERR | MSG_WARN | MSG_PERF | MSG_DATA},
};

struct LevelWord {
    MessageLevel level;
    const char* text;
};

constexpr LevelWord levelWords[] = {
    {MSG_ERR, "fails"},
    {MSG_WARN, ",notes"},
    {MSG_PERF, ",performance results"},
    {MSG_INFO, ",measurement process"},
    {MSG_TRACE, ",tracing info"},
    {MSG_MEM, ",memory info"},
    {MSG_DATA, ",data info"},
};

OutputLevel levelBits(const mrString& arg) {
    OutputLevel bits = 0;
    for (const LevelLetter& entry : levelLetters) {
        bits |= std::strchr(arg.c_str(), entry.letter) != nullptr ? entry.bits : 0;
    }
    return bits;
}

mrString levelText(OutputLevel bits) {
    mrString text;
    for (const LevelWord& word : levelWords) {
        text << ((bits & word.level) != 0 ? word.text : "");
    }
    return text;
}

mrString dataInfo(const mrString& arg) {
    if (arg.empty()) {
        return "ignored: empty data argument";
    }
    mrString name = arg.substr(0, arg.found("=") ? arg.find("=", 0) : 0);
    name.trim();
    return name.empty() ? mrString("ignored: incorrect data format") : mrPhrase("set MR parameter ", arg);
}

struct PriorityLetter {
    char letter;
    mrPriority priority;
    const char* text;
};

constexpr PriorityLetter priorityLetters[] = {
    {'H', MR_PRIORITY_HIGH, "set high process priority"},
    {'N', MR_PRIORITY_NORMAL, "set normal process priority"},
    {'L', MR_PRIORITY_LOW, "set low process priority"},
};

/// Null if the argument names no priority.
const PriorityLetter* findPriority(const mrString& arg) {
    for (const PriorityLetter& entry : priorityLetters) {
        if (entry.letter == arg[0]) {
            return &entry;
        }
    }
    return nullptr;
}

}  // namespace

mrString d_info(mrString arg) { return mrUnlessExit(MR_EXIT_LIST, dataInfo(arg)); }

void d_apply(mrString arg, mrSession*) { g_istrm.dataList().set(arg); }

mrString c_info(mrString arg) {
    return mrNumberInfo(arg, "set measurement loop to (", ") milliseconds", "milliseconds");
}

void c_apply(mrString arg, mrSession*) { mrTool::m_numMilliseconds = mrNumber(arg); }

// The misspelling has always been in the listings.
mrString j_info(mrString arg) {
    return mrNumberInfo(arg, "set minimun number of measurement loops to (", ")", "loops");
}

void j_apply(mrString arg, mrSession*) { mrTool::m_minNumLoops = mrNumber(arg); }

mrString J_info(mrString arg) {
    return mrNumberInfo(arg, "set the number of external measurement loops to (", ")", "external loops");
}

void J_apply(mrString arg, mrSession*) { mrTool::m_numExtLoops = mrNumber(arg); }

mrString S_info(mrString) { return mrUnlessExit(MR_EXIT_LIST, "include to measurement data set & use time"); }

void S_apply(mrString, mrSession*) { g_tool.m_setAndUse = true; }

mrString C_info(mrString) {
    return mrUnlessExit(MR_EXIT_LIST,
                        "test data size will be in cache and out of cache if that is supported by test");
}

void C_apply(mrString, mrSession*) { mrTest::m_cache = true; }

mrString Y_info(mrString arg) {
    const PriorityLetter* entry = findPriority(arg);
    return mrUnlessExit(MR_EXIT_LIST,
                        entry != nullptr ? entry->text : "ignored: incorrect process priority value");
}

void Y_apply(mrString arg, mrSession*) {
    const PriorityLetter* entry = findPriority(arg);
    if (entry != nullptr) {
        mrTool::m_priority = entry->priority;
    }
}

mrString W_info(mrString) { return "unmask floating-point exceptions"; }

void W_apply(mrString, mrSession*) {
    is_W_flagUsed = true;
    mrUnmaskFloatExceptions();
}

mrString L_info(mrString arg) {
    const OutputLevel bits = levelBits(arg);
    return mrUnlessExit(MR_EXIT_LIST, bits != 0 ? mrPhrase("write ", levelText(bits), " to console")
                                                : mrString("ignored: incorrect level of console output"));
}

void L_apply(mrString arg, mrSession* session) { session->addLevelMode(levelBits(arg)); }
