#pragma once

/// A data type of the library as bits: the low byte is the width of one component in bits, the rest says what
/// kind of number it is. A complex element is two components, the real part first.
using zyType = int;

constexpr zyType zyTypeWidth = 0xFF;
constexpr zyType zyTypeSigned = 0x100;
constexpr zyType zyTypeFloat = 0x200;
constexpr zyType zyTypeComplex = 0x400;

constexpr zyType zy8u = 0x008;
constexpr zyType zy8s = 0x108;
constexpr zyType zy8sc = 0x508;
constexpr zyType zy16u = 0x010;
constexpr zyType zy16s = 0x110;
constexpr zyType zy16uc = 0x410;
constexpr zyType zy16sc = 0x510;
constexpr zyType zy32u = 0x020;
constexpr zyType zy32s = 0x120;
constexpr zyType zy32sc = 0x520;
constexpr zyType zy32f = 0x220;
constexpr zyType zy32fc = 0x620;
constexpr zyType zy64u = 0x040;
constexpr zyType zy64s = 0x140;
constexpr zyType zy64sc = 0x540;
constexpr zyType zy64f = 0x240;
constexpr zyType zy64fc = 0x640;

/// An argument of a library function. Bits, so that a set of arguments fits an int.
enum zyArg : int { zyArgSrc = 1, zyArgSrc2 = 2, zyArgDst = 4, zyArgDst2 = 8 };

/// 0.4 times the square root of the largest number: a product of two such extremes does not overflow.
constexpr double MAXABS_32F = 7.378697409581492e18;
constexpr double MAXABS_64F = 5.3631231719770384e153;

/// What is known of one type.
struct zyTypeInfo {
    const char* m_text;
    zyType m_type;
    int m_zylType;  ///< the library's own code of the type
    double m_min;   ///< limits of test data, of one component
    double m_max;
    double m_minAbs;   ///< smallest magnitude above 0
    int m_printWidth;  ///< columns of one component in a listing
    int m_precision;   ///< significant digits there; 0 for integers
};

constexpr double zyTwoTo63 = 9223372036854775808.0;
constexpr double zyMinAbs32f = 1.1754943508222875e-38;
constexpr double zyMinAbs64f = 2.2250738585072014e-308;

/// The vocabulary. The maximum of 64u is that of 64s, on purpose: test data of the two are the same.
constexpr zyTypeInfo zyTypes[] = {
    {"8u", zy8u, 1, 0, 255, 1, 4, 0},
    {"16u", zy16u, 5, 0, 65535, 1, 6, 0},
    {"32u", zy32u, 9, 0, 4294967295.0, 1, 11, 0},
    {"64u", zy64u, 15, 0, zyTwoTo63, 1, 24, 0},
    {"8s", zy8s, 3, -128, 127, 1, 5, 0},
    {"16s", zy16s, 7, -32768, 32767, 1, 7, 0},
    {"32s", zy32s, 11, -2147483648.0, 2147483647, 1, 12, 0},
    {"64s", zy64s, 17, -zyTwoTo63, zyTwoTo63, 1, 24, 0},
    {"32f", zy32f, 13, -MAXABS_32F, MAXABS_32F, zyMinAbs32f, 14, 6},
    {"64f", zy64f, 19, -MAXABS_64F, MAXABS_64F, zyMinAbs64f, 20, 12},
    {"16uc", zy16uc, 8, 0, 65535, 1, 6, 0},
    {"8sc", zy8sc, 0, -128, 127, 1, 5, 0},
    {"16sc", zy16sc, 8, -32768, 32767, 1, 7, 0},
    {"32sc", zy32sc, 12, -2147483648.0, 2147483647, 1, 12, 0},
    {"64sc", zy64sc, 18, -zyTwoTo63, zyTwoTo63, 1, 24, 0},
    {"32fc", zy32fc, 14, -MAXABS_32F, MAXABS_32F, zyMinAbs32f, 14, 6},
    {"64fc", zy64fc, 20, -MAXABS_64F, MAXABS_64F, zyMinAbs64f, 20, 12},
    // Read only: bits have no type of their own and print as the row above that has the value.
    {"1u", zy8u, 1, 0, 255, 1, 4, 0},
};

constexpr zyTypeInfo zyUnknownType = {"undef", 0, 0, 0, 1, 0, 0, 0};

/// The row of a type; zyUnknownType for a value outside the vocabulary.
constexpr const zyTypeInfo& zyInfoOf(zyType type) {
    for (const zyTypeInfo& info : zyTypes) {
        if (info.m_type == type) {
            return info;
        }
    }
    return zyUnknownType;
}

/// Bytes of one element; 0 for a type outside the vocabulary.
constexpr int zyItemSize(zyType type) {
    const zyType known = zyInfoOf(type).m_type;
    return (known & zyTypeWidth) / 8 * ((known & zyTypeComplex) != 0 ? 2 : 1);
}
