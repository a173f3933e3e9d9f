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

/// The timing entries of the built program: of each the shapes of its timed stretches.
class TimedCode : public testing::Test {
  protected:
    TimedCode() {
        const Outcome listing =
            run({.arguments = {"-t", "-d", "-C", "--no-show-raw-insn", "-w", METRIG_BIN_DIR "/metrig"},
                 .program = METRIG_OBJDUMP});
        expectCleanEnd(listing);
        std::map<std::string, Code> functions;  // by name, without arguments
        Code* code = nullptr;
        for (const std::string& line : linesOf(listing.output)) {
            const std::size_t tab = line.find(":\t");
            if (line.ends_with(" zyl_StartCpuClocks") || line.ends_with(" zyl_StopCpuClocks")) {
                const std::size_t digits = line.find_first_not_of('0');
                (line.ends_with("StartCpuClocks") ? m_start : m_stop) =
                    line.substr(digits, line.find(' ') - digits);
            } else if (line.ends_with(">:")) {
                const std::size_t at = std::min(line.find("tim_"), line.find("zyLoopOverhead"));
                const bool entry = at != std::string::npos && !holds(line, "[clone");
                code = entry ? &functions[line.substr(at, line.find('(', at) - at)] : nullptr;
            } else if (code != nullptr && tab != std::string::npos) {
                code->push_back({std::stoull(line, nullptr, 16), line.substr(tab + 2)});
            }
        }
        for (const auto& [name, instructions] : functions) {
            timed[name] = stretches(instructions);
        }
    }

    std::map<std::string, Cells> timed;

  private:
    /// From each reading of the clock that starts a stretch to the one that ends it. A start whose reading is
    /// dropped has another start behind it and no stretch.
    Cells stretches(const Code& code) const {
        Cells found;
        Code stretch;
        bool started = false;
        for (const Instruction& instruction : code) {
            if (calls(instruction, m_start)) {
                stretch.clear();
                started = true;
            } else if (started && calls(instruction, m_stop)) {
                found.push_back(shape(stretch));
                started = false;
            } else {
                stretch.push_back(instruction);
            }
        }
        return found;
    }

    /// Whether it calls through the pointer at `address`: at its address, or relative to the instruction with
    /// the address in a remark.
    static bool calls(const Instruction& instruction, const std::string& address) {
        return instruction.isCall() && (instruction.text.ends_with("*0x" + address) ||
                                        holds(instruction.text, "# " + address + " <"));
    }

    std::string m_start;
    std::string m_stop;
};

TEST_F(TimedCode, IsTheBodyAndItsCountedLoop) {
    for (const MeasuredFunction& function : measuredFunctions) {
        const std::string entry = "tim_" + std::string(function.name);
        Cells& loop = timed[entry + "_loop"];
        std::erase(loop, "} ");  // the stretch without a turn is left by a jump
        EXPECT_EQ(loop, Cells{allowedShape(function)}) << entry;
        Cells& stat = timed[entry + "_stat"];
        ASSERT_FALSE(stat.empty()) << entry;
        EXPECT_EQ(stat.back(), "{ " + allowedShape(function) + "} ") << entry;
        stat.pop_back();
        timed.erase(entry + "_loop");
    }
    Cells bare;  // before the block of calls, if it stands in the entry
    for (const auto& [name, shapes] : timed) {
        bare.insert(bare.end(), shapes.begin(), shapes.end());
    }
    EXPECT_FALSE(bare.empty());
    EXPECT_EQ(bare, Cells(bare.size(), "{ } "));
}

}  // namespace
