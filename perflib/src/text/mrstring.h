#pragma once

#include <memory>

#include "text/mrlist.h"

class mrStringList;

/// The text type of the system: a growable byte string with a NUL end. All conversion of numbers to text and
/// back goes through the operators below, so their formats are what a user reads in listings and types in
/// options.
class mrString {
  public:
    /// The result of a search that found nothing.
    static constexpr int npos = -1;

    mrString();
    /// A null pointer counts as the empty text.
    mrString(const char* text);
    mrString(const mrString& other);
    mrString(mrString&& other) noexcept;
    virtual ~mrString();
    mrString& operator=(const mrString& other);
    mrString& operator=(mrString&& other) noexcept;

    void assign(const char* text);
    void assign(const mrString& text);
    /// Always a text of length 1, for the NUL character too.
    void assign(char c);

    const char* c_str() const { return m_data ? m_data.get() : ""; }
    int length() const { return m_length; }
    /// Bytes in the buffer: a multiple of 16 above the length.
    int capacity() const { return m_capacity; }
    bool empty() const { return m_length == 0; }
    /// The byte at `index`, which must lie in 0 to length (the NUL).
    char operator[](int index) const { return c_str()[index]; }

    /// Set by the reading operators on the text that they could not convert. It belongs to this object: a
    /// copy has none, and a new text leaves it as it is.
    bool failed() const { return m_failed; }
    void setFailed(bool failed) { m_failed = failed; }

    /// Starts over with `n` zero bytes; the old text is lost.
    void allocate(int n);
    void free();
    /// Adds `n` zero bytes after the text. Grows to the exact need, there is no doubling.
    void growBy(int n);
    /// Cuts, or extends with `c`. An empty text extended gets zero bytes instead of `c`: who pads a text that
    /// may be empty uses padRight.
    void resize(int n, char c);
    /// Blanks after, or before, the text up to `width`; a longer text stays whole.
    mrString padRight(int width) const;
    mrString padLeft(int width) const;

    mrString& operator+=(const mrString& text);
    mrString operator+(const mrString& text) const;
    /// Compares up to the first NUL of each.
    bool operator==(const mrString& text) const;
    /// Negative, 0 or positive by the bytes as signed characters, then by the lengths.
    int compare(mrString text) const;

    /// Index of the first `text` at or after `pos`, or npos; `pos` for an empty text.
    int find(mrString text, int pos) const;
    int rfind(mrString text) const;
    bool found(mrString text) const;
    /// The text stands at the very beginning.
    bool beginsWith(const mrString& text) const;
    mrString substr(int pos) const;
    /// At most `n` bytes from `pos`, which must not exceed the length.
    mrString substr(int pos, int n) const;
    /// Removes blanks, tabs and carriage returns at the front, but only blanks and tabs at the end: a
    /// carriage return at the end of a line stays, and files written on other systems keep reading as they
    /// always did.
    void trim();
    mrString toLower() const;

    /// Words between `separators`, see mrParse; the number of all words is returned.
    int parse(mrString& a, mrString& b, mrString separators) const;
    int parse(mrString& a, mrString& b, mrString& c, mrString separators) const;
    int parse(mrStringList& list, mrString separators) const;

    /// Both "/" and "\\" separate directories. The directory keeps its separator; the title is the name
    /// without its last "." and what follows.
    mrString getFileDir() const;
    mrString getFileName() const;
    mrString getFileTitle() const;

    /// The length modifier of 64-bit integers in a format.
    static mrString prefixI64();

    // Flags and enumerations as text, for suites with mode arguments; the program has none.

    /// Names of the flags set in `value` joined by "|", or its decimal text if there are none.
    static mrString flagString(int value, const int* flags, const mrString* names, int count);
    /// The flags of the words of `text`. A word may be any beginning of a name, in any case, with or without
    /// the name's first `skip` bytes; unknown words add nothing.
    static int flagValue(mrString text, const int* flags, const mrString* names, int count, int skip);
    static mrString enumString(int value, const int* values, const mrString* names, int count);
    /// The value of the first name that `text` begins, by the rule of flagValue; 0 if there is none.
    static int enumValue(mrString text, const int* values, const mrString* names, int count, int skip);

  private:
    void store(const char* text, int n);
    int lastSeparator() const;

    std::unique_ptr<char[]> m_data;
    int m_length = 0;
    int m_capacity = 0;
    bool m_failed = false;
};

/// A list of texts.
class mrStringList : public mrList<mrString> {};

/// Writing: appends the value's text to the left operand.
mrString& operator<<(mrString& text, mrString value);
mrString& operator<<(mrString& text, const char* value);
mrString& operator<<(mrString& text, char value);
mrString& operator<<(mrString& text, int value);
mrString& operator<<(mrString& text, long long value);
/// Printed as signed: values of 2 to the power 63 and above come out negative.
mrString& operator<<(mrString& text, unsigned long long value);
/// Three significant digits.
mrString& operator<<(mrString& text, double value);
/// This and the next for parameters of such types in suites; the program has none.
mrString& operator<<(mrString& text, float value);
mrString& operator<<(mrString& text, bool value);
/// Hexadecimal without "0x", sign extended to 64 bits; "NULL" for null.
mrString& operator<<(mrString& text, void* value);

/// Reading: fills the left operand from the text. Integers in "0x" form are hexadecimal. What can't be
/// converted sets the text's failed mark; a blank text does not, and leaves the left operand as it was. The
/// program reads int alone; the others are for parameters of suites.
int& operator<<(int& value, mrString& text);
long long& operator<<(long long& value, mrString& text);
unsigned long long& operator<<(unsigned long long& value, mrString& text);
double& operator<<(double& value, mrString& text);
float& operator<<(float& value, mrString& text);
bool& operator<<(bool& value, mrString& text);
/// The pointer read, or the left operand if there was nothing to read.
void* operator<<(void* value, mrString& text);

/// The text of one value.
template <class T>
mrString mrText(T value) {
    mrString text;
    text << value;
    return text;
}

/// The texts that `textOf` gives of the items, empty ones too, with `separator` between them.
template <class List, class TextOf>
mrString mrJoined(const List& items, const char* separator, TextOf textOf) {
    mrString joined;
    const char* before = "";
    for (const auto& item : items) {
        joined << before << textOf(item);
        before = separator;
    }
    return joined;
}

/// A text by a printf format.
[[gnu::format(printf, 1, 2)]] mrString mrFormat(const char* format, ...);

/// The whole texts of the library's mode arguments, for enumString and enumValue in suites that have any.
extern const mrString RndStr[4];
extern const mrString HintStr[3];
extern const mrString CmpStr[5];
extern const mrString FlagStr[4];
