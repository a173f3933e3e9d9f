#include "commands/guard.h"

#include <fmt/core.h>

#include <cstdio>
#include <exception>

#include "compare/comparison.h"

namespace lab {

int complain(const std::string& text, ExitStatus status) {
    fmt::print(stderr, "metrig-lab: {}\n", text);
    return status;
}

int guarded(const std::string& store, const std::function<int()>& work) {
    try {
        return work();
    } catch (const Interrupted&) {
        return complain(
            store.empty() ? "interrupted" : "interrupted; \"metrig-lab resume " + store + "\" goes on",
            exitInterrupted);
    } catch (const NotComparable& reason) {
        return complain(std::string("not comparable: ") + reason.what(), exitNotComparable);
    } catch (const std::exception& reason) {
        return complain(reason.what(), exitUse);
    }
}

}  // namespace lab
