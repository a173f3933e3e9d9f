#include <map>
#include <numeric>
#include <regex>
#include <set>

#include "tables.h"

namespace {

using Address = unsigned long long;

struct Instruction {
    Address address;
    std::string text;

    bool isCall() const { return text.starts_with("call"); }
    bool jumpsTo(Address target) const {
        return text.starts_with("j") && std::stoull(text.substr(text.find(' ')), nullptr, 16) == target;
    }
};

using Code = std::vector<Instruction>;

/// What is called in a stretch of code, by names, "*" for a function that is known at run time only; "{"
/// stands where a jump of the stretch goes, and "}" for the jump itself.
std::string shape(const Code& code) {
    std::string shape;
    for (const auto& [address, text] : code) {
        for (const Instruction& instruction : code) {
            shape += instruction.jumpsTo(address) ? "{ " : "";
        }
        if (text.starts_with("j")) {
            shape += "} ";
        } else if (text.starts_with("call")) {
            const std::size_t name = text.find('<') + 1;
            shape += holds(text, "*") ? "* " : text.substr(name, text.rfind('>') - name) + " ";
        }
    }
    return shape;
}

/// Whether `text` names memory of the stack.
bool usesStack(const std::string& text) {
    return holds(text, "(%esp") || holds(text, "(%rsp") || holds(text, "(%ebp") || holds(text, "(%rbp");
}

/// Where `text` writes to: its last operand.
std::string destination(const std::string& text) {
    const std::size_t comma = text.rfind(text.ends_with(")") ? ",0x" : ",");
    return text.substr(comma == std::string::npos ? text.rfind(' ') + 1 : comma + 1);
}

bool isStackStore(const std::string& text) {
    return text.starts_with("mov") && (usesStack(destination(text)) || text.ends_with(",(%esp)"));
}

/// A register that a call leaves alone steps by one: the counter.
bool isCounterStep(const std::string& text) {
    static const std::regex step(
        "(dec|inc|sub \\$0x1,|add \\$0x1,|add \\$0xf+,) ?%([er]?(bx|si|di|bp)|r1[2-5])[dl]?");
    return std::regex_match(text, step);
}

/// What stands in a turn, or in the stretch of one call, besides the arguments of the body, its calls and the
/// count of turns: instructions that the figure would hold and the library does not cause. Nothing is read
/// from the stack; what is written there are the arguments of the calls, in slots without a gap. Inits alone
/// store to the suite's data.
Cells strangers(const Code& code, bool hasInit, bool counted) {
    Cells found;
    std::set<unsigned long> slots;
    int steps = 0;
    int compares = 0;
    int jumps = 0;
    for (const Instruction& instruction : code) {
        const std::string text =
            instruction.text.substr(0, instruction.text.find(" #"));  // without the remark
        steps += isCounterStep(text);
        compares += text.starts_with("cmp") || text.starts_with("test");
        jumps += text.starts_with("j");
        const std::string to = destination(text);
        const bool stackStore = isStackStore(text);
        const bool dataStore = text.starts_with("mov") && !stackStore && !to.starts_with("%");
        if (stackStore) {
            slots.insert(to.starts_with("0x") ? std::stoul(to, nullptr, 16) : 0);
        }
        if (holds(text, "mm") || (usesStack(text) && !stackStore) || (dataStore && !hasInit)) {
            found.push_back(text);
        }
    }
    if (!slots.empty() && *slots.rbegin() != (slots.size() - 1) * sizeof(void*)) {
        found.push_back("a store beside the arguments");
    }
    if (steps != counted || compares > counted || jumps != counted) {
        found.push_back(std::to_string(steps) + " steps, " + std::to_string(compares) + " compares, " +
                        std::to_string(jumps) + " jumps");
    }
    return found;
}

/// What stands between two readings of the clock.
struct Stretch {
    std::string body;  ///< without "tcall_"; "zyNoInit" for the bare loop
    bool isBlock;      ///< of turns, or else of a single call
    bool hasInit;      ///< in each turn
    Code code;         ///< at first of the whole function
};

/// The name of the body in a label: that of the first template argument.
std::string bodyIn(const std::string& label) {
    static const std::regex argument(
        "zyTime[A-Za-z]+<&?(?:\\(anonymous namespace\\)::|\\()?(?:tcall_)?(\\w+)");
    std::smatch match;
    return std::regex_search(label, match, argument) ? match[1].str() : "";
}

/// The timed stretches of the built program. A function has one pair of readings: calls through a pointer,
/// either at its address or relative to the instruction, with the address in a remark.
std::vector<Stretch> timedStretches() {
    const Outcome listing =
        run({.arguments = {"-t", "-d", "-C", "--no-show-raw-insn", "-w", METRIG_BIN_DIR "/metrig"},
             .program = METRIG_OBJDUMP});
    expectCleanEnd(listing);
    const std::regex blanks(" +");
    std::map<std::string, std::string> addresses;  // of the pointers
    std::vector<Stretch> stretches;
    bool isTimed = false;
    for (const std::string& line : linesOf(listing.output)) {
        const std::size_t tab = line.find(":\t");
        if (line.ends_with(" zyl_StartCpuClocks") || line.ends_with(" zyl_StopCpuClocks")) {
            const std::size_t digits = line.find_first_not_of('0');
            addresses[line.substr(line.rfind(' ') + 1)] = line.substr(digits, line.find(' ') - digits);
        } else if (line.ends_with(">:")) {
            const bool isBlock = holds(line, "zyTimeBlock<");
            isTimed = isBlock || holds(line, "zyTimeCall<");
            if (isTimed) {
                stretches.push_back({bodyIn(line), isBlock, holds(line, "tinit_"), {}});
            }
        } else if (isTimed && tab != std::string::npos) {
            stretches.back().code.push_back(
                {std::stoull(line, nullptr, 16), std::regex_replace(line.substr(tab + 2), blanks, " ")});
        }
    }
    for (Stretch& stretch : stretches) {
        const auto reads = [&](const std::string& address) {
            return std::ranges::find_if(stretch.code, [&](const Instruction& at) {
                return at.isCall() &&
                       (at.text.ends_with("*0x" + address) || holds(at.text, "# " + address + " <"));
            });
        };
        const auto start = reads(addresses["zyl_StartCpuClocks"]);
        const auto stop = reads(addresses["zyl_StopCpuClocks"]);
        stretch.code = start < stop && stop != stretch.code.end() ? Code(start + 1, stop) : Code();
    }
    return stretches;
}

/// From the place that the jump of the stretch goes back to, to that jump.
Code turnOf(const Code& stretch) {
    for (auto jump = stretch.begin(); jump != stretch.end(); ++jump) {
        for (auto target = stretch.begin(); target <= jump; ++target) {
            if (jump->jumpsTo(target->address)) {
                return {target, jump + 1};
            }
        }
    }
    return {};
}

/// Without the store of the status after the call.
Code withoutStatus(Code code) {
    if (!code.empty() && isStackStore(code.back().text) && holds(code.back().text, "%eax,")) {
        code.pop_back();
    }
    return code;
}

TEST(TimedCode, IsTheBodyAndItsCountedLoop) {
    std::set<std::string> shapes;
    for (const auto& [body, isBlock, hasInit, code] : timedStretches()) {
        const bool isBare = body == "zyNoInit";
        const std::string kind = !isBlock ? ", one call: " : hasInit ? ", turns with an init: " : ", turns: ";
        shapes.insert(body + kind + shape(code) + "\n");
        const Code turn = isBlock ? turnOf(code) : withoutStatus(code);
        EXPECT_EQ(isBare ? Cells() : strangers(turn, isBlock && hasInit, isBlock), Cells()) << body << kind;
    }
    expectGolden("run/golden/timed_code.txt", std::accumulate(shapes.begin(), shapes.end(), std::string()));
}

}  // namespace
