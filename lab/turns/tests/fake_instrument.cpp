/// An instrument that measures nothing: it says the lines of one, with ticks that its "library" tells. That
/// is a text behind the ELF header of the last of its objects, a word and a function a line. The objects
/// stand in the first folder of LD_LIBRARY_PATH; FAKE_OBJECTS names others than those of the library, or
/// none:
///   slow F 1.3     a call of F takes so many times its usual ticks
///   status F 5     status at each turn
///   signal F       the test ends in place of the ticks
///   exit F 3, abort F, kill F, hang F, nonsense F      in place of the ticks
///   smash F        dies after the test
///   without F      has no such test
///   version 2, dumb, deaf         at the start
/// With FAKE_DELAY_US in the environment each turn takes that long. With FAKE_MEETING, a folder, the first of
/// two that come to a point is slower there by half.

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>

namespace {

constexpr long EmptyTicks = 30;
constexpr std::size_t HeaderSize = 64;

std::map<std::string, std::string> script;  ///< "word F" -> the rest

bool asked(const std::string& word, const std::string& function = "") {
    return script.contains(word + " " + function);
}

std::string valueOf(const std::string& word, const std::string& function) {
    return script[word + " " + function];
}

/// Maps a shared object, as a loader does; its content.
std::string load(const std::string& path) {
    const int number = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (number < 0) {
        std::fprintf(stderr, "%s: no shared object\n", path.c_str());
        std::_Exit(127);
    }
    mmap(nullptr, 1, PROT_READ, MAP_PRIVATE, number, 0);
    close(number);
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// Loads the library and reads the script.
void loadLibrary() {
    const char* names = std::getenv("FAKE_OBJECTS");
    std::istringstream objects(names != nullptr ? names : "libzylcore.so.10 libzylch.so.10 libzyls.so.10");
    std::string content;
    for (std::string name; objects >> name;) {
        const std::string path = std::getenv("LD_LIBRARY_PATH");
        content = load(path.substr(0, path.find(':')) + "/" + name);
    }
    std::istringstream lines(content.substr(std::min(HeaderSize, content.size())));
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string word;
        std::string function;
        std::string value;
        words >> word >> function >> value;
        script[word + " " + function] = value;
    }
}

struct Line {
    std::FILE* from;
    std::FILE* to;

    void say(const std::string& text) const {
        std::fputs((text + "\n").c_str(), to);
        std::fflush(to);
    }
    std::string hear() const {
        char buffer[256];
        if (std::fgets(buffer, sizeof buffer, from) == nullptr) {
            std::exit(0);
        }
        const std::string text = buffer;
        return text.substr(0, text.find('\n'));
    }
};

void comeToGrief(const Line& line, const std::string& function) {
    if (asked("exit", function)) {
        std::fputs("the library has had enough\n", stderr);
        std::_Exit(std::stoi(valueOf("exit", function)));
    }
    if (asked("abort", function)) {
        std::abort();
    }
    if (asked("kill", function)) {
        std::raise(SIGKILL);
    }
    if (asked("hang", function)) {
        pause();
    }
    if (asked("nonsense", function)) {
        line.say("tick tock");
    }
}

void turn(const Line& line, const std::string& function, long ticksOfCall, const std::string& command) {
    long calls = 0;
    int blocks = 0;
    std::istringstream(command.substr(5)) >> calls >> blocks;
    comeToGrief(line, function);
    if (const char* delay = std::getenv("FAKE_DELAY_US")) {
        usleep(static_cast<useconds_t>(std::atoi(delay)));
    }
    if (asked("status", function)) {
        line.say("status " + valueOf("status", function));
    }
    const double times = asked("slow", function) ? std::stod(valueOf("slow", function)) : 1.0;
    const long ticks = static_cast<long>(times * static_cast<double>(ticksOfCall * calls)) + EmptyTicks;
    std::string text = "ticks " + std::to_string(EmptyTicks) + " " + std::to_string(calls);
    for (int i = 0; i < blocks; ++i) {
        text += " " + std::to_string(ticks + i);
    }
    line.say(text);
}

/// Whether another was at the point before.
bool isLate(const std::string& function, int length) {
    const char* const folder = std::getenv("FAKE_MEETING");
    const std::string path = folder == nullptr ? "" : folder + ("/" + function) + std::to_string(length);
    const int file = open(path.c_str(), O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    return path.empty() || file < 0 || close(file) != 0;
}

/// False when the test is to be left.
bool point(const Line& line, const std::string& function, int length) {
    const long ticks = isLate(function, length) ? 100 + length : (100 + length) * 3 / 2;
    line.say("point " + function + " e 1 Len=" + std::to_string(length) + " Text=a%20b");
    for (;;) {
        const std::string command = line.hear();
        if (command == "quit") {
            std::exit(0);
        }
        if (!command.starts_with("take ")) {
            return command == "next";
        }
        if (asked("signal", function)) {
            line.say("result " + function + " EXCPTFAIL");
            return false;
        }
        turn(line, function, ticks, command);
    }
}

}  // namespace

int main() {
    loadLibrary();
    int in = -1;
    int out = -1;
    if (asked("dumb") || std::sscanf(std::getenv("METRIG_TURNS"), "%d,%d", &in, &out) != 2) {
        std::puts("no turns here");
        return 1;
    }
    const Line line{fdopen(in, "r"), fdopen(out, "w")};
    if (asked("deaf")) {
        pause();
    }
    line.say("metrig-turns " + std::string(asked("version", "2") ? "2" : "1") + " 2600 fake library 1.0");
    for (const char* function : {"F1", "F2", "F3"}) {
        if (asked("without", function)) {
            continue;
        }
        for (int length = 8; length <= 512 && point(line, function, length); length *= 8) {
        }
        if (asked("smash", function)) {
            std::abort();
        }
        if (!asked("signal", function)) {
            line.say("result " + std::string(function) + " OK");
        }
    }
    line.say("end");
    return 0;
}
