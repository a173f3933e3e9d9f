#include "zyfunc.h"

#include <initializer_list>

namespace {

/// Length of the type token at the start of a text such as "8u16u"; 0 if there is none.
int lenOfType(const mrString& text) {
    int digits = 0;
    while (text[digits] >= '0' && text[digits] <= '9') {
        ++digits;
    }
    const char kind = text[digits];
    if (digits == 0 || (kind != 'u' && kind != 's' && kind != 'f')) {
        return 0;
    }
    return text[digits + 1] == 'c' ? digits + 2 : digits + 1;
}

mrString cutType(mrString& types) {
    const int length = lenOfType(types);
    mrString token = types.substr(0, length);
    types = types.substr(length);
    return token;
}

/// True for a character that can only stand in the base of a name, as long as all before it do.
bool isInBase(char c) { return c != '_' && c != '\0'; }

bool isOneOf(const mrString& name, std::initializer_list<const char*> names) {
    for (const char* candidate : names) {
        if (name == candidate) {
            return true;
        }
    }
    return false;
}

int compareTypeTokens(const mrString& a, const mrString& b) {
    if (a.empty() || b.empty()) {
        return (a.empty() ? 0 : 1) - (b.empty() ? 0 : 1);
    }
    const zyType typeA = zyFunc::stringToType(a);
    const zyType typeB = zyFunc::stringToType(b);
    const int difference = (typeA & ~zyTypeComplex) - (typeB & ~zyTypeComplex);
    return difference != 0 ? difference : (typeA & zyTypeComplex) - (typeB & zyTypeComplex);
}

}  // namespace

mrString zyFunc::prefix() const {
    return beginsWith("zyls") || beginsWith("zyli") ? substr(0, 4) : mrString();
}

void zyFunc::parseFunction(mrString& base, mrString& types, mrString& descr) const {
    base = "";
    types = "";
    descr = "";
    const int start = prefix().length();
    int end = find("_", 0);
    while (end != npos && lenOfType(substr(end + 1)) == 0) {
        end = find("_", end + 1);
    }
    if (end == npos) {
        base = substr(start);
        return;
    }
    base = substr(start, end - start);
    const int typesEnd = find("_", end + 1);
    if (typesEnd == npos) {
        types = substr(end + 1);
        return;
    }
    types = substr(end + 1, typesEnd - end - 1);
    descr = substr(typesEnd + 1);
}

void zyFunc::parseFunction(mrString& base, mrString& type1, mrString& type2, mrString& type3,
                           mrString& descr) const {
    mrString types;
    parseFunction(base, types, descr);
    type1 = cutType(types);
    type2 = types.empty() ? type1 : cutType(types);
    type3 = types.empty() ? type2 : cutType(types);
}

mrString zyFunc::baseName() const {
    mrString base, types, descr;
    parseFunction(base, types, descr);
    return base;
}

mrString zyFunc::typeName() const {
    mrString base, types, descr;
    parseFunction(base, types, descr);
    return types;
}

mrString zyFunc::descrName() const {
    mrString base, types, descr;
    parseFunction(base, types, descr);
    return descr;
}

int zyFunc::compare(const zyFunc& other) const {
    // Most names differ before the first underscore, so inside the base: no need to take them apart.
    int at = 0;
    while (isInBase((*this)[at]) && (*this)[at] == other[at]) {
        ++at;
    }
    if (isInBase((*this)[at]) && isInBase(other[at])) {
        return static_cast<signed char>((*this)[at]) < static_cast<signed char>(other[at]) ? -1 : 1;
    }
    mrString base, types, descr;
    parseFunction(base, types, descr);
    mrString otherBase, otherTypes, otherDescr;
    other.parseFunction(otherBase, otherTypes, otherDescr);
    const int names = (prefix() + base).compare(other.prefix() + otherBase);
    if (names != 0) {
        return names;
    }
    const int byTypes = compareTypes(types, otherTypes);
    return byTypes != 0 ? byTypes : compareDescr(descr, otherDescr);
}

int zyFunc::compareTypes(mrString a, mrString b) {
    int result = 0;
    for (int pass = 0; pass < 3 && result == 0; ++pass) {
        const mrString tokenA = cutType(a);
        const mrString tokenB = cutType(b);
        result = compareTypeTokens(tokenA, tokenB);
    }
    return result;
}

int zyFunc::compareDescr(mrString a, mrString b) {
    const bool inplaceA = a.found("I");
    const bool inplaceB = b.found("I");
    if (inplaceA != inplaceB) {
        return inplaceA ? 1 : -1;
    }
    if (a.beginsWith("AC4") && b.beginsWith("C")) {
        return 1;
    }
    if (a.beginsWith("C") && b.beginsWith("AC4")) {
        return -1;
    }
    return a.compare(b);
}

zyType zyFunc::stringToType(mrString text) {
    for (const zyTypeInfo& info : zyTypes) {
        if (text == info.m_text) {
            return info.m_type;
        }
    }
    return 0;
}

mrString zyFunc::typeToString(zyType type) { return zyInfoOf(type).m_text; }

int zyFunc::zylType(zyType type) { return zyInfoOf(type).m_zylType; }

zyType zyFunc::type(int index) const {
    if (index == 0) {
        const zyType fromBase = typeFromBase();
        return fromBase != 0 ? fromBase : type(1);
    }
    mrString base, type1, type2, type3, descr;
    parseFunction(base, type1, type2, type3, descr);
    switch (index) {
        case 1:
            return stringToType(type1);
        case 2:
            return stringToType(type2);
        case 3:
            return stringToType(type3);
        default:
            return 0;
    }
}

zyType zyFunc::typeFromBase() const {
    // Longer texts first, since some contain shorter ones. "64u" is not looked for: no family needs it, and
    // the answers for the others are relied on as they are.
    static constexpr const char* texts[] = {"64fc", "64sc", "64s",  "64f", "32fc", "32sc", "32u", "32s",
                                            "32f",  "16sc", "16uc", "16u", "16s",  "8sc",  "8u",  "8s"};
    const mrString base = baseName();
    for (const char* text : texts) {
        if (base.found(text)) {
            return stringToType(text);
        }
    }
    return 0;
}

void zyFunc::getTypes(zyType& src, zyType& src2, zyType& dst, zyType& dst2) const {
    mrString base, type1, type2, type3, descr;
    parseFunction(base, type1, type2, type3, descr);
    src = stringToType(type1);
    src2 = stringToType(type2 == type3 ? type1 : type2);
    dst = stringToType(type3);
    dst2 = dst;
    updateTypes(src, src2, dst, dst2);
}

zyType zyFunc::type(zyArg arg) const {
    zyType src = 0;
    zyType src2 = 0;
    zyType dst = 0;
    zyType dst2 = 0;
    getTypes(src, src2, dst, dst2);
    switch (arg) {
        case zyArgSrc:
            return src;
        case zyArgSrc2:
            return src2;
        case zyArgDst:
            return dst;
        case zyArgDst2:
            return dst2;
        default:
            return 0;
    }
}

void zyFunc::updateTypes(zyType& src, zyType& src2, zyType& dst, zyType& dst2) const {
    const mrString library = prefix();
    if (library == "zyls") {
        updateStringTypes(src, src2, dst, dst2);
    } else if (library == "zyli") {
        updateImageTypes(src2, dst, dst2);
    }
}

void zyFunc::updateStringTypes(zyType& src, zyType& src2, zyType& dst, zyType& dst2) const {
    const mrString base = baseName();
    if (isOneOf(base, {"Real", "Imag", "Magnitude", "Phase", "CplxToReal", "CartToPolar", "PowerSpectr"})) {
        dst = dst2 = dst & ~zyTypeComplex;
    }
    if (base == "PolarToCart") {
        src = src2 = src & ~zyTypeComplex;
    }
    if (base == "RealToCplx") {
        dst = dst2 = dst | zyTypeComplex;
    }
    const bool realToComplex = (src & zyTypeComplex) == 0 && (dst & zyTypeComplex) != 0;
    if ((base == "DotProd" && src == src2 && realToComplex) || found("Mul_16u16s")) {
        src2 = dst;
    }
    if (found("Goertz")) {
        dst = dst2 = dst | zyTypeComplex;
    }
}

void zyFunc::updateImageTypes(zyType& src2, zyType& dst, zyType& dst2) const {
    const mrString base = baseName();
    if (isOneOf(base, {"Sum", "Mean"})) {
        dst = dst2 = zy64f;
    }
    if (isOneOf(base, {"Copy", "Set"})) {
        src2 = zy8u;
    }
    if (base.found("Compare")) {
        dst = dst2 = zy8u;
    }
}
