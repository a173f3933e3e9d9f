// The channel layout in the descriptor of a function name.

#include "zyfunc.h"

namespace {

/// Layouts in the order of the library's codes, from 1.
constexpr const char* layouts[] = {"C1", "C2", "C3", "C4", "P2", "P3", "P4", "AC1", "AC4", "A0C4", "AP4"};

bool isChannelDigit(char c) { return c >= '1' && c <= '4'; }

int firstChannelLetter(const mrString& descr) {
    const int c = descr.find("C", 0);
    const int p = descr.find("P", 0);
    return c == mrString::npos || (p != mrString::npos && p < c) ? p : c;
}

/// Cuts the first channel word out of a descriptor; empty if there is none. "A" or "A0" before the letter
/// belongs to it.
mrString cutChannelWord(mrString& descr) {
    const int letter = firstChannelLetter(descr);
    if (letter == mrString::npos || !isChannelDigit(descr[letter + 1])) {
        return "";
    }
    int start = letter;
    if (start >= 1 && descr[start - 1] == 'A') {
        start -= 1;
    } else if (start >= 2 && descr[start - 2] == 'A' && descr[start - 1] == '0') {
        start -= 2;
    }
    const int end = letter + 2;
    mrString word = descr.substr(start, end - start);
    descr = descr.substr(0, start) + descr.substr(end);
    return word;
}

/// Every word ends in its letter and its digit.
int countOf(const mrString& word) { return word.empty() ? 0 : word[word.length() - 1] - '0'; }

bool isPlane(const mrString& word) { return !word.empty() && word[word.length() - 2] == 'P'; }

bool isAlpha(const mrString& word) { return word.beginsWith("A"); }

template <class T>
T chosen(int index, T src, T dst, T other) {
    switch (index) {
        case 1:
            return src;
        case 2:
            return dst;
        default:
            return other;
    }
}

}  // namespace

int zyFunc::indexOf(zyArg arg) {
    switch (arg) {
        case zyArgSrc:
        case zyArgSrc2:
            return 1;
        case zyArgDst:
        case zyArgDst2:
            return 2;
        default:
            return 0;
    }
}

void zyFunc::getChannelsName(mrString& src, mrString& dst) const {
    mrString descr = descrName();
    src = cutChannelWord(descr);
    dst = cutChannelWord(descr);
    if (dst.empty()) {
        dst = src;
    }
}

mrString zyFunc::channelsName(int index) const {
    mrString src, dst;
    getChannelsName(src, dst);
    return chosen(index, src, dst, mrString());
}

void zyFunc::getChannels(int& src, int& dst) const {
    mrString srcName, dstName;
    getChannelsName(srcName, dstName);
    src = countOf(srcName);
    dst = countOf(dstName);
    updateChannels(src, dst);
}

int zyFunc::channels(int index) const {
    int src = 0;
    int dst = 0;
    getChannels(src, dst);
    return chosen(index, src, dst, 1);
}

void zyFunc::getPlanes(bool& src, bool& dst) const {
    mrString srcName, dstName;
    getChannelsName(srcName, dstName);
    src = isPlane(srcName);
    dst = isPlane(dstName);
    updatePlanes(src, dst);
}

bool zyFunc::plane(int index) const {
    bool src = false;
    bool dst = false;
    getPlanes(src, dst);
    return chosen(index, src, dst, false);
}

void zyFunc::getAlpha(bool& src, bool& dst) const {
    mrString srcName, dstName;
    getChannelsName(srcName, dstName);
    src = isAlpha(srcName);
    dst = isAlpha(dstName);
}

bool zyFunc::alpha(int index) const {
    bool src = false;
    bool dst = false;
    getAlpha(src, dst);
    return chosen(index, src, dst, false);
}

int zyFunc::zylChannels(int index) const {
    const mrString name = channelsName(index);
    int code = 0;
    for (const char* layout : layouts) {
        ++code;
        if (name == layout) {
            return code;
        }
    }
    return 0;
}

bool zyFunc::coi() const {
    const mrString descr = descrName();
    for (int i = 0; i + 1 < descr.length(); ++i) {
        if (descr[i] == 'C' && !isChannelDigit(descr[i + 1])) {
            return true;
        }
    }
    return false;
}

void zyFunc::updateChannels(int&, int& dst) const {
    if (prefix() == "zyli" && baseName().found("Compare")) {
        dst = 1;
    }
}

void zyFunc::updatePlanes(bool&, bool&) const {}
