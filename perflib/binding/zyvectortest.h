#pragma once

#include "parameter/mrstepiterator.h"
#include "zytest.h"
#include "zyvector.h"

/// A vector of a suite, and the argument of the function under test that it takes its type and layout from;
/// with `m_name` it is an argument of that function instead.
struct zyArgument {
    zyVector& m_vector;
    zyArg m_arg;
    const char* m_name = nullptr;
};

/// Base of the suites that report clocks per element of the length walked first, which is the parameter
/// `Length`. `Vectors`, an array of zyArgument, get their types before the walk and give their data back,
/// first to last, after each combination.
template <const auto& Vectors, mrStepIterator<int>& Length>
class zyVectorTest : public zyTest {
  public:
    using zyTest::zyTest;

    /// A suite with more parameters calls this first and appends them.
    bool canStart() override {
        m_parms.append(&Length);
        for (const auto& [vector, arg, name] : Vectors) {
            vector.init(name != nullptr ? zyFunc(name) : func, arg);
        }
        return true;
    }
    void flushData() override {
        for (const zyArgument& argument : Vectors) {
            argument.m_vector.deleteVector();
        }
    }
    double getDivisor() override { return Length.value(); }
    mrString getUnit() override { return "e"; }
};
