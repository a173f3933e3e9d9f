#pragma once

/// The three forms of one kernel, and the call of the one that the code path in force asks for.

#include "../core/dispatch.h"

namespace zylch {

template <class Result, class... Args>
struct Forms {
    using Form = Result (*)(Args...);

    Form form[zylPathCount];

    constexpr Forms(Form plain, Form sse2, Form avx2) : form{plain, sse2, avx2} {}

    Result operator()(Args... args) const { return form[zylCodePath](args...); }
    Result callPlain(Args... args) const { return form[zylPathPlain](args...); }
};

template <class Result, class... Args>
Forms(Result (*)(Args...), Result (*)(Args...), Result (*)(Args...)) -> Forms<Result, Args...>;

}  // namespace zylch
