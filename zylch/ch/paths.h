#pragma once

/// The three forms of one kernel, and the choice of the one that the code path in force asks for.

#include "../core/dispatch.h"

namespace zylch {

/// The least bytes that the form of a path works on: its block.
inline constexpr int LeastLength[zylPathCount] = {0, 16, 32};

template <class Result, class... Args>
struct Forms {
    using Form = Result (*)(Args...);

    Form form[zylPathCount];

    constexpr Forms(Form plain, Form sse2, Form avx2) : form{plain, sse2, avx2} {}

    Result operator()(Args... args) const { return form[zylCodePath](args...); }
    Form ofPlainPath() const { return form[zylPathPlain]; }

    /// For a walk over `len` bytes: the form of the path in force, or the next narrower one that they fill.
    Form forLength(int len) const {
        int path = zylCodePath;
        while (len < LeastLength[path]) {
            --path;
        }
        return form[path];
    }
};

template <class Result, class... Args>
Forms(Result (*)(Args...), Result (*)(Args...), Result (*)(Args...)) -> Forms<Result, Args...>;

}  // namespace zylch
