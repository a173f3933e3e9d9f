// What does it cost to look through a text for a byte that is not there, and to count one? By memchr of the C
// library, and by a function of this file.

#include <cstring>

#include "p_common.h"
#include "zyany.h"

// A function of your own. It may as well stand in a library of its own; here "noinline" keeps the call a
// call. By its plain name the comparison finds its machine code.
extern "C" [[gnu::noinline]] int countByte(const char* text, int len, char wanted) {
    int count = 0;
    for (int i = 0; i < len; ++i) {
        count += text[i] == wanted ? 1 : 0;
    }
    return count;
}

namespace {

constexpr const char* SourceFile = "own";

zyVector text;
constexpr zyArgument vectors[] = {{text, zyArgSrc, "_8u"}};
int len;

ZY_ENTRY int tcall_memchr() {
    zyKeep(std::memchr(text.data<char>(), 'x', static_cast<std::size_t>(len)));
    return 0;
}

ZY_ENTRY int tcall_countByte() {
    zyKeep(countByte(text.data<char>(), len, 'x'));
    return 0;
}

class TimsOwn : public zyVectorTest<vectors, g_vectorLength> {
  public:
    using zyVectorTest::zyVectorTest;

    bool initData() override {
        len = g_vectorLength.value();
        return text.createVector(len, SetValue, 'a', 0.0);
    }
};

ZY_REG(TimsOwn, memchr)
ZY_REG(TimsOwn, countByte)

}  // namespace
