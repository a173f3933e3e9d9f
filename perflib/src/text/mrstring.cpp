#include "text/mrstring.h"

#include <cctype>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <new>

#include "text/mrparse.h"

namespace {

constexpr int BufferStep = 16;

std::size_t bytes(int n) { return static_cast<std::size_t>(n); }

bool isOneOf(char c, const char* set) { return c != '\0' && std::strchr(set, c) != nullptr; }

}  // namespace

const mrString RndStr[4] = {"zero", "near", "finan", "accur"};
const mrString HintStr[3] = {"none", "fast", "accurate"};
const mrString CmpStr[5] = {"LT", "LE", "EQ", "GE", "GT"};
const mrString FlagStr[4] = {"divFwdByN", "divInvByN", "divBySqrtN", "nodivByAny"};

mrString::mrString() { allocate(0); }

mrString::mrString(const char* text) { assign(text); }

mrString::mrString(const mrString& other) { assign(other); }

mrString::mrString(mrString&& other) noexcept { *this = std::move(other); }

mrString::~mrString() { free(); }

mrString& mrString::operator=(const mrString& other) {
    assign(other);
    return *this;
}

mrString& mrString::operator=(mrString&& other) noexcept {
    m_data.swap(other.m_data);
    std::swap(m_length, other.m_length);
    std::swap(m_capacity, other.m_capacity);
    return *this;
}

void mrString::assign(const char* text) {
    const char* source = text != nullptr ? text : "";
    store(source, static_cast<int>(std::strlen(source)));
}

void mrString::assign(const mrString& text) {
    if (this != &text) {
        store(text.c_str(), text.m_length);
    }
}

void mrString::assign(char c) { store(&c, 1); }

void mrString::store(const char* text, int n) {
    // The source may lie in the buffer that allocate is going to drop, so that one is kept until the copy is
    // done.
    std::unique_ptr<char[]> old;
    if (m_data && text >= m_data.get() && text < m_data.get() + m_capacity) {
        old.swap(m_data);
        m_capacity = 0;
    }
    allocate(n);
    if (m_data && n > 0) {
        std::memcpy(m_data.get(), text, bytes(n));
    }
}

void mrString::allocate(int n) {
    const int length = n > 0 ? n : 0;
    const int need = (length / BufferStep + 1) * BufferStep;
    if (need == m_capacity && m_data) {
        std::memset(m_data.get(), 0, bytes(need));
    } else {
        m_data.reset(new (std::nothrow) char[bytes(need)]());
    }
    m_capacity = need;
    m_length = length;
}

void mrString::free() {
    m_data.reset();
    m_length = 0;
    m_capacity = 0;
}

void mrString::growBy(int n) {
    const int length = m_length + n;
    if (length < m_capacity) {
        m_length = length;
        return;
    }
    const std::unique_ptr<char[]> old = std::move(m_data);
    const int kept = m_length;
    m_capacity = 0;
    allocate(length);
    if (m_data && old) {
        std::memcpy(m_data.get(), old.get(), bytes(kept));
    }
}

void mrString::resize(int n, char c) {
    if (n == m_length) {
        return;
    }
    if (n < m_length) {
        *this = substr(0, n);
        return;
    }
    const int kept = m_length;
    growBy(n - kept);
    if (kept > 0 && m_data) {
        std::memset(m_data.get() + kept, c, bytes(n - kept));
    }
}

mrString mrString::padRight(int width) const {
    mrString padded = *this;
    while (padded.length() < width) {
        padded << ' ';
    }
    return padded;
}

mrString mrString::padLeft(int width) const { return mrString().padRight(width - m_length) + *this; }

mrString& mrString::operator+=(const mrString& text) {
    const int added = text.m_length;
    const int end = m_length;
    growBy(added);
    // With the text appended to itself the first `added` bytes are the source still.
    if (m_data && added > 0) {
        std::memcpy(m_data.get() + end, text.c_str(), bytes(added));
    }
    return *this;
}

mrString mrString::operator+(const mrString& text) const {
    mrString sum;
    sum.allocate(m_length + text.m_length);
    if (sum.m_data) {
        std::memcpy(sum.m_data.get(), c_str(), bytes(m_length));
        std::memcpy(sum.m_data.get() + m_length, text.c_str(), bytes(text.m_length));
    }
    return sum;
}

bool mrString::operator==(const mrString& text) const { return std::strcmp(c_str(), text.c_str()) == 0; }

int mrString::compare(mrString text) const {
    const int common = m_length < text.m_length ? m_length : text.m_length;
    for (int i = 0; i < common; ++i) {
        const auto a = static_cast<signed char>((*this)[i]);
        const auto b = static_cast<signed char>(text[i]);
        if (a != b) {
            return a < b ? -1 : 1;
        }
    }
    return m_length - text.m_length;
}

int mrString::find(mrString text, int pos) const {
    if (text.empty()) {
        return pos;
    }
    for (int i = pos; i <= m_length - text.m_length; ++i) {
        if (std::memcmp(c_str() + i, text.c_str(), bytes(text.m_length)) == 0) {
            return i;
        }
    }
    return npos;
}

int mrString::rfind(mrString text) const {
    for (int i = m_length - text.m_length; i >= 0; --i) {
        if (std::memcmp(c_str() + i, text.c_str(), bytes(text.m_length)) == 0) {
            return i;
        }
    }
    return npos;
}

bool mrString::found(mrString text) const { return find(text, 0) != npos; }

bool mrString::beginsWith(const mrString& text) const {
    return text.m_length <= m_length && std::memcmp(c_str(), text.c_str(), bytes(text.m_length)) == 0;
}

mrString mrString::substr(int pos) const { return pos > m_length ? mrString() : substr(pos, m_length - pos); }

mrString mrString::substr(int pos, int n) const {
    mrString piece;
    const int rest = m_length - pos;
    const int count = n < rest ? n : rest;
    if (count > 0) {
        piece.store(c_str() + pos, count);
    }
    return piece;
}

void mrString::trim() {
    int first = 0;
    while (first < m_length && isOneOf((*this)[first], " \t\r")) {
        ++first;
    }
    int last = m_length;
    while (last > first && isOneOf((*this)[last - 1], " \t")) {
        --last;
    }
    *this = substr(first, last - first);
}

mrString mrString::toLower() const {
    mrString lower = *this;
    for (int i = 0; i < lower.m_length; ++i) {
        lower.m_data[bytes(i)] = static_cast<char>(std::tolower(static_cast<unsigned char>(lower[i])));
    }
    return lower;
}

int mrString::parse(mrString& a, mrString& b, mrString separators) const {
    return mrParse(*this).parse(a, b, separators);
}

int mrString::parse(mrString& a, mrString& b, mrString& c, mrString separators) const {
    return mrParse(*this).parse(a, b, c, separators);
}

int mrString::parse(mrStringList& list, mrString separators) const {
    return mrParse(*this).parse(list, separators);
}

int mrString::lastSeparator() const {
    const int slash = rfind("/");
    const int backslash = rfind("\\");
    return slash > backslash ? slash : backslash;
}

mrString mrString::getFileDir() const { return substr(0, lastSeparator() + 1); }

mrString mrString::getFileName() const { return substr(lastSeparator() + 1); }

mrString mrString::getFileTitle() const {
    const mrString name = getFileName();
    const int point = name.rfind(".");
    return point == npos ? name : name.substr(0, point);
}

mrString mrString::prefixI64() { return "L"; }

mrString mrFormat(const char* format, ...) {
    va_list args;
    va_start(args, format);
    va_list counting;
    va_copy(counting, args);
    const int length = std::vsnprintf(nullptr, 0, format, counting);
    va_end(counting);
    const std::unique_ptr<char[]> buffer(new char[bytes(length) + 1]);
    std::vsnprintf(buffer.get(), bytes(length) + 1, format, args);
    va_end(args);
    return mrString(buffer.get());
}
