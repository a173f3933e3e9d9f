#include <map>
#include <regex>
#include <set>

#include "functions.h"
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

/// What the mark of the function allows between two readings of the clock.
std::string allowedShape(const MeasuredFunction& function) {
    const std::string name(function.name);
    const std::string call = name + "@plt ";
    if (function.mark == "ZY_REG_X") {
        return call + (holds(name, "Upper") ? "zylsLower" : "zylsUpper") + call.substr(9);
    }
    return function.suite == "TimchHash" ? "* " + call : call;  // the length is asked of its parameter
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

/// The timed stretches of the built program by the function of their body, "zyNoInit" for the bare loop.
class TimedCode : public testing::Test {
  protected:
    TimedCode() {
        const Outcome listing =
            run({.arguments = {"-t", "-d", "-C", "--no-show-raw-insn", "-w", METRIG_BIN_DIR "/metrig"},
                 .program = METRIG_OBJDUMP});
        expectCleanEnd(listing);
        const std::regex blanks(" +");
        Code* code = nullptr;
        for (const std::string& line : linesOf(listing.output)) {
            const std::size_t tab = line.find(":\t");
            if (line.ends_with(" zyl_StartCpuClocks") || line.ends_with(" zyl_StopCpuClocks")) {
                const std::size_t digits = line.find_first_not_of('0');
                (line.ends_with("StartCpuClocks") ? m_start : m_stop) =
                    line.substr(digits, line.find(' ') - digits);
            } else if (line.ends_with(">:")) {
                const bool isCall = holds(line, "zyTimeCall<");
                code = isCall || holds(line, "zyTimeBlock<")
                           ? &(isCall ? calls : blocks)[body(line)].emplace_back()
                           : nullptr;
            } else if (code != nullptr && tab != std::string::npos) {
                code->push_back(
                    {std::stoull(line, nullptr, 16), std::regex_replace(line.substr(tab + 2), blanks, " ")});
            }
        }
        for (auto* group : {&calls, &blocks}) {
            for (auto& [name, functions] : *group) {
                std::for_each(functions.begin(), functions.end(),
                              [&](Code& whole) { whole = stretch(whole); });
            }
        }
    }

    std::map<std::string, std::vector<Code>> calls;   // stretches of a single call
    std::map<std::string, std::vector<Code>> blocks;  // stretches of a block of turns

  private:
    /// The name of the body in a label: that of the first template argument, without "tcall_".
    static std::string body(const std::string& label) {
        static const std::regex argument(
            "zyTime[A-Za-z]+<&?(?:\\(anonymous namespace\\)::|\\()?(?:tcall_)?(\\w+)");
        std::smatch match;
        return std::regex_search(label, match, argument) ? match[1].str() : "";
    }

    /// What stands between the two readings of the clock, of which a function has one pair.
    Code stretch(const Code& function) const {
        const auto reads = [&](const std::string& clock) {
            return std::find_if(function.begin(), function.end(), [&](const Instruction& instruction) {
                return readsClock(instruction, clock);
            });
        };
        const auto start = reads(m_start);
        const auto stop = reads(m_stop);
        return start < stop && stop != function.end() ? Code(start + 1, stop) : Code();
    }

    /// Whether it calls through the pointer at `address`: at its address, or relative to the instruction with
    /// the address in a remark.
    static bool readsClock(const Instruction& instruction, const std::string& address) {
        return instruction.isCall() && (instruction.text.ends_with("*0x" + address) ||
                                        holds(instruction.text, "# " + address + " <"));
    }

    std::string m_start;
    std::string m_stop;
};

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

TEST_F(TimedCode, IsTheBodyAndItsCountedLoop) {
    for (const MeasuredFunction& function : measuredFunctions) {
        const std::string name(function.name);
        const bool hasInit = function.mark == "ZY_REG_I";
        ASSERT_EQ(calls[name].size(), 1u) << name;
        ASSERT_EQ(blocks[name].size(), 1u) << name;
        const Code call = withoutStatus(calls[name].front());
        EXPECT_EQ(shape(call), allowedShape(function)) << name;
        EXPECT_EQ(strangers(call, false, false), Cells()) << name << ", one call";
        const Code& block = blocks[name].front();
        EXPECT_EQ(shape(block), "{ " + allowedShape(function) + "} ") << name;
        EXPECT_EQ(strangers(turnOf(block), hasInit, true), Cells()) << name << ", a turn of the block";
    }
    ASSERT_FALSE(blocks["zyNoInit"].empty());
    for (const Code& bare : blocks["zyNoInit"]) {
        EXPECT_EQ(shape(bare), "{ } ");
    }
}

}  // namespace
