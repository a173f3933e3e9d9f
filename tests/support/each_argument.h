#pragma once

/// Calls a library function with each of its arguments spoilt in turn.

#include <gtest/gtest.h>

#include <cstddef>
#include <tuple>
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

/// A number that goes in and comes out has to be good too. It stays as it was.
template <std::size_t Place, class... Args>
void refusesNegative(const char* name, int (*call)(Args...), std::tuple<Args...> args) {
    if constexpr (std::is_same_v<std::tuple_element_t<Place, std::tuple<Args...>>, int*>) {
        int& number = *std::get<Place>(args);
        const int good = std::exchange(number, -1);
        EXPECT_EQ(std::apply(call, args), zylStsSizeErr) << name << ", number " << Place;
        EXPECT_EQ(std::exchange(number, good), -1) << name << ", number " << Place;
    }
}

template <std::size_t Place, class... Args>
void refuses(const char* name, int (*call)(Args...), std::tuple<Args...> args) {
    const int expected = spoil(std::get<Place>(args));
    EXPECT_EQ(std::apply(call, args), expected) << name << ", argument " << Place;
}

/// `good` are arguments that the function accepts; its int pointers are outputs.
template <class... Args>
void refusesEach(const char* name, int (*call)(Args...), std::type_identity_t<Args>... good) {
    [&]<std::size_t... Place>(std::index_sequence<Place...>) { (refuses<Place>(name, call, {good...}), ...); }
    (std::index_sequence_for<Args...>{});
}

/// As above, for a function whose int pointers are inputs as well.
template <class... Args>
void refusesEachInOut(const char* name, int (*call)(Args...), std::type_identity_t<Args>... good) {
    refusesEach(name, call, good...);
    [&]<std::size_t... Place>(std::index_sequence<Place...>) {
        (refusesNegative<Place>(name, call, {good...}), ...);
    }
    (std::index_sequence_for<Args...>{});
}

}  // namespace each_argument
