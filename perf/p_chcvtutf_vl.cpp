// UTF conversion of random code points over the whole range: mostly four bytes of UTF-8 and two units of
// UTF-16, with the lone surrogates that chance brings.

#include <cstring>

#include "p_common.h"
#include "zy.h"

namespace {

constexpr const char* SourceFile = "perf/p_chcvtutf_vl";

constexpr double LastCodePoint = 1114111.0;
constexpr int LongestUTF8 = 6;
constexpr int LongestUTF16 = 2;

// By the number of following bytes: the last code point that needs no more, and the bits of the first byte.
constexpr Zyl32u UTF8_table1[] = {127, 2047, 65535, 2097151, 67108863, 2147483647};
constexpr Zyl32u UTF8_table2[] = {0, 192, 224, 240, 248, 252};

zyVector srcUni;
zyVector srcU8;
zyVector dstU16;
zyVector dstU8;
constexpr zyArgument vectors[] = {{srcUni, zyArgSrc, "_32u"},
                                  {srcU8, zyArgSrc, "_8u"},
                                  {dstU16, zyArgSrc, "_16u"},
                                  {dstU8, zyArgSrc, "_8u"}};
int srcLen;
int dstLen;
int srcU8Len;
int dstU16Len;
void* pSrc;
void* pDst;

// The lengths are in and out and nothing puts them back: from the second call on they are exactly what the
// library returned.

ZY_ENTRY int tcall_zylsConvertUTF_8u16u() {
    return zylsConvertUTF_8u16u(static_cast<Zyl8u*>(pSrc), &srcLen, static_cast<Zyl16u*>(pDst), &dstLen, 0);
}

ZY_ENTRY int tcall_zylsConvertUTF_16u8u() {
    return zylsConvertUTF_16u8u(static_cast<Zyl16u*>(pSrc), &srcLen, static_cast<Zyl8u*>(pDst), &dstLen, 0);
}

// The code points may be misaligned, so they are moved as bytes.

Zyl32u pointAt(int index) {
    Zyl32u point = 0;
    std::memcpy(&point, srcUni.getPointerAt(index), sizeof point);
    return point;
}

/// Lifts the second of a surrogate pair above the range, so that no two neighbours form a pair; lone ones
/// stay.
void cleanSurrogates(int count) {
    for (int i = 0; i + 1 < count; ++i) {
        const Zyl32u next = pointAt(i + 1);
        const bool high = pointAt(i) >= 0xD800 && pointAt(i) <= 0xDBFF;
        const bool low = next >= 0xDC00 && next <= 0xDFFF;
        if (high && low) {
            srcUni.setIndex(i + 1, SetValue, next + 0xDC00, 0.0);
        }
    }
}

/// Writes one code point; returns the number of bytes.
int encodeUTF8(Zyl32u point, Zyl8u* bytes) {
    int following = 0;
    while (UTF8_table1[following] < point) {
        ++following;
    }
    Zyl32u rest = point;
    for (int i = following; i > 0; --i) {
        bytes[i] = static_cast<Zyl8u>(0x80u | (rest & 0x3Fu));
        rest >>= 6;
    }
    bytes[0] = static_cast<Zyl8u>(UTF8_table2[following] | rest);
    return following + 1;
}

class TimsCvtUTF : public zyVectorTest<vectors, g_vectorLength> {
  public:
    using zyVectorTest::zyVectorTest;

    bool canStart() override {
        m_from8 = func.found("zylsConvertUTF_8u16u");
        return zyVectorTest::canStart();
    }

    bool initData() override {
        const int count = g_vectorLength.value();
        srcLen = count;
        if (!srcUni.createVector(count, SetRandomRange, 0.0, LastCodePoint) ||
            !srcU8.createVector(1LL * LongestUTF8 * count, SetZero, 0.0, 0.0) ||
            !dstU16.createVector(1LL * LongestUTF16 * count, SetZero, 0.0, 0.0) ||
            !dstU8.createVector(1LL * LongestUTF8 * count, SetZero, 0.0, 0.0)) {
            return false;
        }
        cleanSurrogates(count);
        srcU8Len = 0;
        for (int i = 0; i < count; ++i) {
            srcU8Len += encodeUTF8(pointAt(i), srcU8.data<Zyl8u>() + srcU8Len);
        }
        if (m_from8) {
            dstLen = LongestUTF16 * count;
            srcLen = srcU8Len;
            pSrc = srcU8.data<Zyl8u>();
            pDst = dstU16.data<Zyl16u>();
        } else {
            dstU16Len = LongestUTF16 * count;
            zylsConvertUTF_8u16u(srcU8.data<Zyl8u>(), &srcU8Len, dstU16.data<Zyl16u>(), &dstU16Len, 0);
            dstLen = LongestUTF8 * count;
            srcLen = dstU16Len;
            pSrc = dstU16.data<Zyl16u>();
            pDst = dstU8.data<Zyl8u>();
        }
        return true;
    }

    /// The bytes of UTF-8 in both directions, as the library reported them.
    double getDivisor() override { return static_cast<unsigned>(m_from8 ? srcLen : dstLen); }

  private:
    bool m_from8 = false;
};

ZY_REG(TimsCvtUTF, zylsConvertUTF_8u16u)
ZY_REG(TimsCvtUTF, zylsConvertUTF_16u8u)

}  // namespace
