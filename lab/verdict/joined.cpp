#include "verdict/joined.h"

#include <algorithm>

namespace lab {

Joined joined(std::span<const Decision> sessions) {
    const auto spokenBy = [&](std::span<const Decision>::iterator speaker) {
        return Joined{*speaker, static_cast<std::size_t>(speaker - sessions.begin())};
    };
    for (const Reason reason : {Reason::crash, Reason::status}) {
        const auto found = std::find_if(sessions.begin(), sessions.end(),
                                        [&](const Decision& one) { return one.reason == reason; });
        if (found != sessions.end()) {
            return spokenBy(found);
        }
    }
    const auto first = std::find_if(sessions.begin(), sessions.end(),
                                    [](const Decision& one) { return one.verdict != Verdict::unsure; });
    if (first == sessions.end()) {
        return spokenBy(sessions.begin());
    }
    Joined result = spokenBy(first);
    if (std::any_of(first, sessions.end(), [&](const Decision& one) {
            return one.verdict != Verdict::unsure && one.verdict != first->verdict;
        })) {
        result.decision.verdict = Verdict::unsure;
        result.decision.reason = Reason::repeated;
    }
    return result;
}

}  // namespace lab
