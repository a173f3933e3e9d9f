// The elements as text.

#include <cstdio>
#include <string>

#include "zycomponent.h"
#include "zyvector.h"

namespace {

template <class T>
void append(std::string& text, const zyTypeInfo& info, const void* at) {
    const T value = zyLoad<T>(at);
    char number[64];
    if constexpr (std::is_floating_point_v<T>) {
        std::snprintf(number, sizeof number, "%*.*g", info.m_printWidth, info.m_precision,
                      static_cast<double>(value));
    } else if constexpr (std::is_signed_v<T>) {
        std::snprintf(number, sizeof number, "%*lld", info.m_printWidth, static_cast<long long>(value));
    } else {
        std::snprintf(number, sizeof number, "%*llu", info.m_printWidth,
                      static_cast<unsigned long long>(value));
    }
    text += number;
}

template <class T>
void appendComplex(std::string& text, const zyTypeInfo& info, const char* at) {
    text += " (";
    append<T>(text, info, at);
    text += ",";
    append<T>(text, info, at + sizeof(T));
    text += ")";
}

}  // namespace

mrString zyVector::getDataString(zyType type, const void* data, int count) {
    std::string text;
    if (data != nullptr) {
        const zyTypeInfo& info = zyInfoOf(type);
        const bool isComplex = (type & zyTypeComplex) != 0;
        zyWithComponent(type, [&]<class T>(T) {
            const auto* at = static_cast<const char*>(data);
            for (int i = 0; i < count; ++i, at += zyItemSize(type)) {
                isComplex ? appendComplex<T>(text, info, at) : append<T>(text, info, at);
            }
        });
    }
    return text.c_str();
}

mrString zyVector::getByteString(const void* data, int count) {
    std::string text;
    if (data != nullptr) {
        const auto* bytes = static_cast<const unsigned char*>(data);
        for (int i = 0; i < count; ++i) {
            char number[8];
            std::snprintf(number, sizeof number, " %02X", bytes[i]);
            text += number;
        }
    }
    return text.c_str();
}
