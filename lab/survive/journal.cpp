#include "survive/journal.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <system_error>

namespace lab {

namespace {

[[noreturn]] void fail() {
    throw std::runtime_error("the journal of the run: " + std::generic_category().message(errno));
}

/// "<start> <size>,<size>,... <name>", without the sizes where there is no output file.
JournalContent::Test parseTest(const std::string& rest) {
    JournalContent::Test test;
    const std::size_t last = rest.rfind(' ');
    const std::size_t first = rest.find(' ');
    test.function = rest.substr(last == std::string::npos ? 0 : last + 1);
    test.canBeTakenBack = first == last || rest.find('-', first) >= last;
    return test;
}

void parseLine(const std::string& word, const std::string& rest, JournalContent& content) {
    std::vector<JournalContent::Test>& tests = content.tests;
    if (word == "begin") {
        content.begun = true;
        content.mhz = std::atoi(rest.c_str());
    } else if (word == "test") {
        if (content.inProgress() != nullptr) {
            tests.pop_back();  // it was taken back
        }
        tests.push_back(parseTest(rest));
        ++content.beginnings;
    } else if (word == "result" && !tests.empty()) {
        tests.back().word = rest.substr(rest.find(' ') + 1);
        tests.back().leftOut = rest.starts_with("-");
    } else if (word == "lost" && !tests.empty()) {
        tests.back().lost = true;
    } else if (word == "end") {
        content.ended = true;
    } else if (word == "complaint" && std::find(content.complaints.begin(), content.complaints.end(), rest) ==
                                          content.complaints.end()) {
        content.complaints.push_back(rest);
    }
    content.left = word == "leave";
}

}  // namespace

const JournalContent::Test* JournalContent::inProgress() const {
    return tests.empty() || tests.back().lost || !tests.back().word.empty() ? nullptr : &tests.back();
}

JournalContent parseJournal(const std::string& text) {
    JournalContent content;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t blank = line.find(' ');
        parseLine(line.substr(0, blank), blank == std::string::npos ? "" : line.substr(blank + 1), content);
    }
    return content;
}

Journal::Journal() : m_file(memfd_create("metrig-journal", 0)) {
    if (m_file < 0 || fcntl(m_file, F_SETFL, O_APPEND) < 0) {
        fail();
    }
    add("metrig-journal 1");
}

Journal::~Journal() { close(m_file); }

std::size_t Journal::size() const {
    struct stat status {};
    return fstat(m_file, &status) == 0 ? static_cast<std::size_t>(status.st_size) : 0;
}

bool Journal::asks() const {
    constexpr std::string_view question = "\nask\n";
    char last[question.size()];
    const std::size_t whole = size();
    return whole >= sizeof last &&
           pread(m_file, last, sizeof last, static_cast<off_t>(whole - sizeof last)) == sizeof last &&
           std::string_view(last, sizeof last) == question;
}

std::string Journal::text() const {
    std::string text(size(), '\0');
    const ssize_t count = pread(m_file, text.data(), text.size(), 0);
    text.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    return text;
}

JournalContent Journal::read() {
    std::string lines = text();
    const std::size_t whole = lines.rfind('\n') + 1;  // 0 where there is none
    if (whole < lines.size()) {
        lines.resize(whole);
        if (ftruncate(m_file, static_cast<off_t>(whole)) != 0) {
            fail();
        }
    }
    return parseJournal(lines);
}

void Journal::add(const std::string& line) {
    const std::string text = line + "\n";
    if (write(m_file, text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
        fail();
    }
}

}  // namespace lab
