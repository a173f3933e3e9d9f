#pragma once

/// Calls a library function with each of its arguments spoilt in turn.

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>

#include "zyltypes.h"

namespace each_argument {

/// Makes a bad argument of a good one and gives the status that answers it. Lengths, indexes and capacities
/// are the plain ints; any value of a byte is good.
inline int spoil(int& number) {
    number = -1;
    return zylStsSizeErr;
}
template <class T>
int spoil(T*& pointer) {
    pointer = nullptr;
    return zylStsNullPtrErr;
}
inline int spoil(Zyl8u&) { return zylStsNoErr; }

constexpr bool kInOut = true;

/// `args` are good ones. With `kInOut` the int pointers are inputs as well as outputs: what they point to is
/// spoilt too, and has to stay as it was.
template <bool inOut = false, class... Args>
void refusesEach(const char* name, int (*call)(Args...), std::type_identity_t<Args>... args) {
    int place = 0;
    const auto refuses = [&](auto& arg) {
        const auto good = arg;
        const int expected = spoil(arg);
        EXPECT_EQ(call(args...), expected) << name << ", argument " << place;
        arg = good;
        if constexpr (inOut && std::is_same_v<decltype(arg), int*&>) {
            const int number = std::exchange(*arg, -1);
            EXPECT_EQ(call(args...), zylStsSizeErr) << name << ", number " << place;
            EXPECT_EQ(std::exchange(*arg, number), -1) << name << ", number " << place;
        }
        ++place;
    };
    (refuses(args), ...);
}

}  // namespace each_argument
