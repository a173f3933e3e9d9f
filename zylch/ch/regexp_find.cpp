/// Search with a regular expression.

#include <algorithm>

#include "regexp_match.h"
#include "regexp_state.h"
#include "zylch.h"

namespace {

using namespace zylch::regexp;

int statusOf(Outcome outcome) { return outcome == Outcome::limit ? zylStsRegExpLimitErr : zylStsNoErr; }

// The first match and its groups.
int findOne(Matcher& matcher, ZylRegExpFind found[], int* count) {
    const int capacity = *count;
    *count = 0;
    const Outcome outcome = matcher.search(0);
    if (outcome != Outcome::match) {
        return statusOf(outcome);
    }
    *count = std::min(capacity, static_cast<int>(matcher.groups()));
    for (int i = 0; i < *count; ++i) {
        found[i] = matcher.record(static_cast<std::uint32_t>(i));
    }
    return zylStsNoErr;
}

int findAll(Matcher& matcher, ZylRegExpFind found[], int* count) {
    const int capacity = *count;
    std::uint32_t from = 0;
    for (*count = 0; *count < capacity; ++*count) {
        const Outcome outcome = matcher.search(from);
        if (outcome != Outcome::match) {
            return statusOf(outcome);
        }
        found[*count] = matcher.record(0);
        from = matcher.next();
    }
    return zylStsNoErr;
}

}  // namespace

int zylsRegExpFind_8u(const Zyl8u* src, int len, void* state, ZylRegExpFind found[], int* count) {
    if (src == nullptr || state == nullptr || found == nullptr || count == nullptr) {
        return zylStsNullPtrErr;
    }
    if (len < 0 || *count < 0) {
        return zylStsSizeErr;
    }
    const int status = checkState(state);
    if (status != zylStsNoErr) {
        return status;
    }
    Matcher matcher(State(state), src, len);
    return matcher.global() ? findAll(matcher, found, count) : findOne(matcher, found, count);
}
