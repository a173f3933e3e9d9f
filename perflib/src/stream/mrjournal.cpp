#include "stream/mrjournal.h"

#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "stream/mrostream.h"

namespace {

std::string contentOf(int file) {
    std::string content;
    char buffer[4096];
    for (ssize_t count = 0;
         (count = pread(file, buffer, sizeof buffer, static_cast<off_t>(content.size()))) > 0;) {
        content.append(buffer, static_cast<std::size_t>(count));
    }
    return content;
}

/// The descriptor that the environment names; -1 if there is none, told if it is no open file.
int givenFile() {
    const char* text = std::getenv("METRIG_JOURNAL");
    if (text == nullptr) {
        return -1;
    }
    char* end = nullptr;
    const long number = std::strtol(text, &end, 10);
    struct stat status = {};
    if (end == text || *end != '\0' || number < 0 || number > INT_MAX ||
        fstat(static_cast<int>(number), &status) != 0 || !S_ISREG(status.st_mode)) {
        g_ostrm << MSG_ERR << "-- METRIG_JOURNAL names no open file: " << text << "\n" << MSG_END;
        return -1;
    }
    return static_cast<int>(number);
}

/// What stands behind the word, if the line begins with it.
bool isWord(const mrString& line, const char* word, mrString& rest) {
    const auto length = static_cast<int>(std::strlen(word));
    if (!line.beginsWith(word) || (line.length() > length && line[length] != ' ')) {
        return false;
    }
    rest = line.length() > length ? line.substr(length + 1) : mrString();
    return true;
}

/// The numbers at the start of "<start> <size>,<size>,... <name>".
mrJournal::Test parseTest(const mrString& text) {
    mrJournal::Test test;
    char* next = nullptr;
    test.start = static_cast<std::time_t>(std::strtoll(text.c_str(), &next, 10));
    while (*next == ' ' || *next == ',') {
        char* end = nullptr;
        const long long size = std::strtoll(next + 1, &end, 10);
        if (end == next + 1) {
            break;
        }
        test.sizes.push_back(size);
        next = end;
    }
    return test;
}

}  // namespace

void mrJournal::open() {
    m_file = givenFile();
    if (!kept()) {
        return;
    }
    // a process that is killed must not take lines with it that the run has written
    std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
    // nor answers that the next one is to read
    std::setvbuf(stdin, nullptr, _IONBF, 0);
    watch(STDOUT_FILENO);
    watch(m_file);
    read();
    m_silent = m_isProbe || m_resumes;
}

void mrJournal::watch(int descriptor) {
    struct stat status = {};
    if (kept() && fstat(descriptor, &status) == 0) {
        m_descriptors.push_back({descriptor, status.st_dev, status.st_ino});
    }
}

void mrJournal::read() {
    const std::string content = contentOf(m_file);
    for (std::size_t start = 0, end = 0; (end = content.find('\n', start)) != std::string::npos;
         start = end + 1) {
        readLine(content.substr(start, end - start).c_str());
    }
}

void mrJournal::readLine(const mrString& line) {
    mrString rest;
    if (isWord(line, "probe", rest)) {
        m_isProbe = true;
    } else if (isWord(line, "begin", rest)) {
        m_resumes = true;
        long long start = 0;
        std::sscanf(rest.c_str(), "%*d %lld", &start);
        m_start = static_cast<std::time_t>(start);
        m_commonAnswers = m_answers.size();
    } else if (isWord(line, "test", rest)) {
        m_tests.push_back(parseTest(rest));
        m_takenBack.clear();
        m_before = m_position;
    } else if (isWord(line, "at", rest)) {
        std::sscanf(rest.c_str(), "%d %d", &m_position.tableLines, &m_position.vectorShift);
    } else if (isWord(line, "answer", rest) || isWord(line, "left", rest)) {
        m_answers.push_back({line.beginsWith("left"), rest});
    } else if (isWord(line, "stop", rest)) {
        m_stops = true;
    } else if (!m_tests.empty()) {
        readOutcome(line);
    }
}

/// What became of the last test.
void mrJournal::readOutcome(const mrString& line) {
    mrString rest;
    Test& test = m_tests.back();
    if (isWord(line, "result", rest)) {
        test.result = std::atoi(rest.c_str());
    } else if (isWord(line, "lost", rest)) {
        test.lostBy = rest;
    } else if (isWord(line, "again", rest) && test.result == NoResult) {
        // its answers stay: it will ask the same
        m_takenBack = test.sizes;
        m_position = m_before;
        m_tests.pop_back();
        return;
    } else {
        return;
    }
    m_answers.resize(m_commonAnswers);
}

std::time_t mrJournal::begin(int mhz, std::time_t start, const Position& position) {
    m_begun = true;
    if (!m_resumes) {
        add(mrString("begin ") + mrText(mhz) + " " + mrText(static_cast<long long>(start)));
        at(position);
        return start;
    }
    if (m_tests.empty()) {
        endSilence();
    }
    return m_start;
}

const mrJournal::Test* mrJournal::nextEarlier() {
    if (m_nextTest == m_tests.size()) {
        return nullptr;
    }
    const Test& test = m_tests[m_nextTest++];
    if (m_nextTest == m_tests.size()) {
        endSilence();
    }
    return &test;
}

void mrJournal::endSilence() {
    m_silent = false;
    if (m_stops) {
        std::raise(SIGTERM);
    }
}

void mrJournal::beginTest(const mrString& name, std::time_t start, const std::vector<long long>& sizes) {
    if (!m_begun) {
        return;
    }
    mrString line = "test ";
    line << static_cast<long long>(start);
    const char* separator = " ";
    for (const long long size : sizes) {
        line << separator << size;
        separator = ",";
    }
    add(line << " " << name);
}

void mrJournal::at(const Position& position) {
    if (m_begun) {
        add(mrString("at ") + mrText(position.tableLines) + " " + mrText(position.vectorShift));
    }
}

void mrJournal::endTest(int result, const mrString& word) {
    if (m_begun) {
        add(mrString("result ") + mrText(result) + " " + word);
    }
}

void mrJournal::leaveProcess() {
    if (m_begun) {
        add("leave");
        _exit(0);
    }
}

void mrJournal::end() {
    if (m_begun) {
        add("end");
    }
}

const mrJournal::Answer* mrJournal::nextAnswer() {
    return m_nextAnswer < m_answers.size() ? &m_answers[m_nextAnswer++] : nullptr;
}

void mrJournal::ask() {
    if (kept()) {
        add("ask");
    }
}

void mrJournal::answer(const Answer& given) {
    if (kept()) {
        add(given.left ? mrString("left") : mrString("answer ") + given.text);
    }
}

void mrJournal::complain(const mrString& text) {
    if (m_isProbe) {
        add(mrString("complaint ") + text);
    }
}

/// A line is one write, so that whoever reads the file meets whole lines.
void mrJournal::add(const mrString& line) {
    const mrString text = line + "\n";
    const auto size = static_cast<std::size_t>(text.length());
    if (!isWhole() || write(m_file, text.c_str(), size) != static_cast<ssize_t>(size)) {
        _exit(DescriptorsGone);
    }
}

bool mrJournal::isWhole() const {
    for (const Identity& descriptor : m_descriptors) {
        struct stat now = {};
        if (fstat(descriptor.number, &now) != 0 || now.st_dev != descriptor.device ||
            now.st_ino != descriptor.file) {
            return false;
        }
    }
    return true;
}
