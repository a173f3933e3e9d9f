#include <bit>
#include <cstdint>
#include <cstdio>

#include "text/mrstring.h"

// Formats of 64-bit integers are joined at run time from "%", prefixI64 and a letter, so the compiler can't
// check them.
#pragma GCC diagnostic ignored "-Wformat-nonliteral"

namespace {

mrString formatI64(char letter) {
    mrString format = "%";
    format << mrString::prefixI64() << letter;
    return format;
}

mrString& appendI64(mrString& text, char letter, long long value) {
    char number[32];
    std::snprintf(number, sizeof number, formatI64(letter).c_str(), value);
    return text << number;
}

/// 'x' or 'X' if the text starts with "0x" or "0X", otherwise 'd'.
char integerLetter(const mrString& text) {
    const bool hexadecimal = text.length() >= 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    return hexadecimal ? text[1] : 'd';
}

/// Reads one value; a scanner that met the end of the text before anything to convert counts as no failure.
template <class T>
bool scan(T& value, mrString& text, const mrString& format) {
    const int converted = std::sscanf(text.c_str(), format.c_str(), &value);
    text.setFailed(converted == 0);
    return converted == 1;
}

bool isYes(const mrString& word) { return word[0] == 't' || word[0] == 'y' || word == "1"; }

bool isNo(const mrString& word) { return word[0] == 'f' || word[0] == 'n' || word == "0"; }

/// The rule of flagValue and enumValue: the word begins the name, with or without the name's first `skip`
/// bytes.
bool matches(const mrString& word, const mrString& name, int skip) {
    const mrString lower = name.toLower();
    return lower.substr(skip).beginsWith(word) || lower.beginsWith(word);
}

}  // namespace

mrString& operator<<(mrString& text, mrString value) { return text += value; }

mrString& operator<<(mrString& text, const char* value) { return text += mrString(value); }

mrString& operator<<(mrString& text, char value) {
    mrString one;
    one.assign(value);
    return text += one;
}

mrString& operator<<(mrString& text, int value) {
    char number[32];
    std::snprintf(number, sizeof number, "%d", value);
    return text << number;
}

mrString& operator<<(mrString& text, long long value) { return appendI64(text, 'd', value); }

mrString& operator<<(mrString& text, unsigned long long value) {
    return appendI64(text, 'd', static_cast<long long>(value));
}

mrString& operator<<(mrString& text, double value) {
    char number[32];
    std::snprintf(number, sizeof number, "%.3g", value);
    return text << number;
}

mrString& operator<<(mrString& text, float value) { return text << static_cast<double>(value); }

mrString& operator<<(mrString& text, bool value) { return text << (value ? "yes" : "no"); }

mrString& operator<<(mrString& text, void* value) {
    if (value == nullptr) {
        return text << "NULL";
    }
    return appendI64(text, 'X', static_cast<long long>(std::bit_cast<std::intptr_t>(value)));
}

int& operator<<(int& value, mrString& text) {
    mrString format = "%";
    format << integerLetter(text);
    scan(value, text, format);
    return value;
}

long long& operator<<(long long& value, mrString& text) {
    scan(value, text, formatI64(integerLetter(text)));
    return value;
}

unsigned long long& operator<<(unsigned long long& value, mrString& text) {
    scan(value, text, formatI64(integerLetter(text)));
    return value;
}

double& operator<<(double& value, mrString& text) {
    scan(value, text, "%lf");
    return value;
}

float& operator<<(float& value, mrString& text) {
    double wide = static_cast<double>(value);
    wide << text;
    value = static_cast<float>(wide);
    return value;
}

void* operator<<(void* value, mrString& text) {
    long long number = 0;
    return scan(number, text, formatI64(integerLetter(text)))
               ? std::bit_cast<void*>(static_cast<std::intptr_t>(number))
               : value;
}

bool& operator<<(bool& value, mrString& text) {
    mrString word = text.toLower();
    word.trim();
    value = isYes(word);
    text.setFailed(!value && !isNo(word));
    return value;
}

mrString mrString::flagString(int value, const int* flags, const mrString* names, int count) {
    mrString joined;
    for (int i = 0; i < count; ++i) {
        if ((flags[i] & value) != 0) {
            joined << (joined.empty() ? "" : "|") << names[i];
        }
    }
    return joined.empty() ? mrText(value) : joined;
}

int mrString::flagValue(mrString text, const int* flags, const mrString* names, int count, int skip) {
    int value = 0;
    mrStringList words;
    text.parse(words, "|,; ");
    for (const mrString& word : words) {
        value |= enumValue(word, flags, names, count, skip);
    }
    return value;
}

mrString mrString::enumString(int value, const int* values, const mrString* names, int count) {
    for (int i = 0; i < count; ++i) {
        if (values[i] == value) {
            return names[i];
        }
    }
    return mrText(value);
}

int mrString::enumValue(mrString text, const int* values, const mrString* names, int count, int skip) {
    const mrString word = text.toLower();
    for (int i = 0; i < count; ++i) {
        if (matches(word, names[i], skip)) {
            return values[i];
        }
    }
    return 0;
}
