#include "functions.h"
#include "tables.h"

namespace {

using Address = unsigned long long;

struct Instruction {
    Address address;
    std::string text;

    bool isCall() const { return text.starts_with("call"); }
    bool isJump() const { return text.starts_with("j"); }
    /// Where a jump goes.
    Address target() const { return std::stoull(text.substr(text.find(' ')), nullptr, 16); }
};

using Code = std::vector<Instruction>;

/// What is called in a stretch of code: names, "*" for a function that is known at run time only.
Cells callsIn(const Code& code) {
    Cells calls;
    for (const Instruction& instruction : code) {
        if (instruction.isCall()) {
            const std::size_t name = instruction.text.find('<');
            const bool indirect = holds(instruction.text, "*");
            calls.push_back(
                indirect ? "*" : instruction.text.substr(name + 1, instruction.text.rfind('>') - name - 1));
        }
    }
    return calls;
}

Code jumpsIn(Code code) {
    std::erase_if(code, [](const Instruction& instruction) { return !instruction.isJump(); });
    return code;
}

/// The timing entries of the built program, disassembled.
class TimedCode : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        const std::string program = METRIG_BIN_DIR "/metrig";
        const Outcome symbols = run({.arguments = {"-t", program}, .program = METRIG_OBJDUMP});
        expectCleanEnd(symbols);
        s_start = addressOf(symbols.output, "zyl_StartCpuClocks");
        s_stop = addressOf(symbols.output, "zyl_StopCpuClocks");
        const Outcome listing =
            run({.arguments = {"-d", "-C", "--no-show-raw-insn", "-w", program}, .program = METRIG_OBJDUMP});
        expectCleanEnd(listing);
        readFunctions(listing.output);
    }
    static void TearDownTestSuite() { s_functions.clear(); }

    /// From each reading of the clock that starts a stretch to the one that ends it. A start whose reading is
    /// dropped has another start behind it and no stretch.
    static std::vector<Code> stretches(const Code& code) {
        std::vector<Code> found;
        Code stretch;
        bool started = false;
        for (const Instruction& instruction : code) {
            if (calls(instruction, s_start)) {
                stretch.clear();
                started = true;
            } else if (started && calls(instruction, s_stop)) {
                found.push_back(stretch);
                started = false;
            } else {
                stretch.push_back(instruction);
            }
        }
        return found;
    }

    /// What the mark of the function allows between two readings of the clock.
    static Cells allowedCalls(const MeasuredFunction& function) {
        std::string name(function.name);
        if (function.mark == "ZY_REG_X") {
            const bool upper = holds(name, "Upper");
            const std::string inverse = upper ? "zylsLowercaseLatin_8u_I@plt" : "zylsUppercaseLatin_8u_I@plt";
            return {name + "@plt", inverse};
        }
        if (function.suite == "TimchHash") {
            return {"*", name + "@plt"};  // the length is asked of its parameter
        }
        return {name + "@plt"};
    }

    /// A counted loop: all of the stretch but what sets the counter is repeated, by one jump at its end.
    static void expectOneLoop(const Code& stretch, std::string_view function) {
        const Code jumps = jumpsIn(stretch);
        ASSERT_EQ(jumps.size(), 1U) << function;
        const Address target = jumps[0].target();
        EXPECT_GE(target, stretch.front().address) << function;
        EXPECT_LT(target, jumps[0].address) << function;
        for (const Instruction& instruction : stretch) {
            EXPECT_TRUE(!instruction.isCall() ||
                        (instruction.address >= target && instruction.address < jumps[0].address))
                << function << ": " << instruction.text;
        }
    }

    static inline std::map<std::string, Code> s_functions;  ///< by name, without arguments

  private:
    static Address addressOf(const std::string& symbols, const std::string& name) {
        for (const std::string& line : linesOf(symbols)) {
            if (line.ends_with(" " + name)) {
                return std::stoull(line, nullptr, 16);
            }
        }
        ADD_FAILURE() << "no symbol " << name;
        return 0;
    }

    /// Whether it calls through the pointer at `pointer`: at its address, or relative to the instruction with
    /// the address in a remark.
    static bool calls(const Instruction& instruction, Address pointer) {
        std::ostringstream hex;
        hex << std::hex << pointer;
        return instruction.isCall() && (instruction.text.ends_with("*0x" + hex.str()) ||
                                        holds(instruction.text, "# " + hex.str() + " <"));
    }

    static void readFunctions(const std::string& listing) {
        Code* code = nullptr;
        for (const std::string& line : linesOf(listing)) {
            const std::size_t tab = line.find(":\t");
            if (line.ends_with(">:")) {
                const std::size_t at = std::min(line.find("tim_"), line.find("zyLoopOverhead"));
                const bool entry = at != std::string::npos && !holds(line, "[clone");
                code = entry ? &s_functions[line.substr(at, line.find('(', at) - at)] : nullptr;
            } else if (code != nullptr && tab != std::string::npos) {
                code->push_back({std::stoull(line, nullptr, 16), line.substr(tab + 2)});
            }
        }
    }

    static inline Address s_start = 0;
    static inline Address s_stop = 0;
};

TEST_F(TimedCode, LoopEntryHoldsTheBodyAlone) {
    for (const MeasuredFunction& function : measuredFunctions) {
        std::vector<Code> timed = stretches(s_functions["tim_" + std::string(function.name) + "_loop"]);
        // the stretch without a turn is left by a jump
        std::erase_if(timed, [](const Code& stretch) { return callsIn(stretch).empty(); });
        ASSERT_EQ(timed.size(), 1U) << function.name;
        EXPECT_EQ(callsIn(timed[0]), allowedCalls(function)) << function.name;
        for (const Instruction& jump : jumpsIn(timed[0])) {
            ADD_FAILURE() << function.name << ": " << jump.text;
        }
    }
}

TEST_F(TimedCode, StatisticEntryHoldsTheCountedLoopAlone) {
    for (const MeasuredFunction& function : measuredFunctions) {
        std::vector<Code> timed = stretches(s_functions["tim_" + std::string(function.name) + "_stat"]);
        ASSERT_FALSE(timed.empty()) << function.name;
        EXPECT_EQ(callsIn(timed.back()), allowedCalls(function)) << function.name;
        expectOneLoop(timed.back(), function.name);
    }
}

TEST_F(TimedCode, BareLoopIsKept) {
    int loops = 0;
    for (const auto& [name, code] : s_functions) {
        std::vector<Code> timed = stretches(code);
        if (name.ends_with("_stat")) {
            ASSERT_FALSE(timed.empty()) << name;
            timed.pop_back();  // the block of calls; before it a bare loop, if it stands in the entry
        } else if (name.ends_with("_loop")) {
            continue;
        }
        for (const Code& stretch : timed) {
            EXPECT_EQ(callsIn(stretch), Cells{}) << name;
            expectOneLoop(stretch, name);
            ++loops;
        }
    }
    EXPECT_GT(loops, 0);
}

}  // namespace
