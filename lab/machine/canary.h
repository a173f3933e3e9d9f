#pragma once

#include <vector>

namespace lab {

/// MHz of the tick counter, against the system's clock over a tenth of a second.
int tickMHz();

/// A fixed piece of work of some 10 us, whose time tells how busy the core is that this process runs on: work
/// on a sibling slows it down.
class Canary {
  public:
    /// Median time of some pieces over the least that this object ever saw: 1 when all is quiet.
    double busyness();

  private:
    unsigned long long m_least = ~0ULL;
};

/// The one of `cores` on which a canary is the quietest just now; the process stays bound to it.
/// -1 if it can be bound to none.
int quietestCore(const std::vector<int>& cores);

}  // namespace lab
