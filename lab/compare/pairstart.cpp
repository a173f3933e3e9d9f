#include "compare/pairstart.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>

#include "machine/facts.h"
#include "machine/random.h"
#include "turns/copies.h"

namespace lab {

namespace {

constexpr std::uint64_t MostPadding = 4096;

std::vector<std::string> environmentOf(const StoredSide& side, const std::string& copies, int mhz) {
    // the original folder after the copy, for objects that the library itself asks for
    return {"LD_LIBRARY_PATH=" + copies + ":" + side.folder, "METRIG_MHZ=" + std::to_string(mhz)};
}

std::chrono::milliseconds patienceOf(const RunSettings& settings) {
    return std::chrono::milliseconds(static_cast<long long>(settings.patience * 1000.0));
}

/// What the keys and the environment of a side take on its stack.
std::size_t stackOf(const ChildStart& start) {
    std::size_t size = 0;
    for (const auto* texts : {&start.arguments, &start.environment}) {
        for (const std::string& text : *texts) {
            size += text.size() + 1 + sizeof(char*);
        }
    }
    return size;
}

/// std::runtime_error if an object is not that of the copies.
void checkMapped(const StoredSide& side, const std::vector<std::string>& mapped, const std::string& copies) {
    for (std::size_t object = 0; object < libraryObjects.size(); ++object) {
        const std::string& path = mapped[object];
        if (path != copies + "/" + libraryObjects[object]) {
            throw std::runtime_error(side.instrument + " does not use " + libraryObjects[object] + " of " +
                                     side.folder + " but " + (path.empty() ? "none" : path));
        }
    }
}

std::vector<Started> startOnce(std::span<const StoredSide> sides, int mhz, std::chrono::milliseconds patience,
                               Random random) {
    std::vector<std::string> folders;
    for (const StoredSide& side : sides) {
        folders.push_back(side.folder);
    }
    const LibraryCopies copies(folders, random);
    std::vector<ChildStart> starts(sides.size());
    std::size_t longest = 0;
    for (std::size_t i = 0; i < sides.size(); ++i) {
        starts[i].program = sides[i].instrument;
        starts[i].arguments = {"-B"};
        starts[i].arguments.insert(starts[i].arguments.end(), sides[i].keys.begin(), sides[i].keys.end());
        starts[i].environment = environmentOf(sides[i], copies.folder(i), mhz);
        longest = std::max(longest, stackOf(starts[i]));
    }
    const std::size_t padding = random.below(MostPadding);
    std::vector<Started> started(sides.size());
    for (const std::size_t i : random.order(sides.size())) {
        const std::size_t own = padding + longest - stackOf(starts[i]);
        starts[i].environment.push_back("METRIG_PADDING=" + std::string(own, '.'));
        started[i].instrument = std::make_unique<Instrument>(starts[i], patience);
        started[i].mapped = mappedPaths(started[i].instrument->process(), libraryObjects);
        checkMapped(sides[i], started[i].mapped, copies.folder(i));
    }
    return started;
}

}  // namespace

std::vector<Started> startSurely(std::span<const StoredSide> sides, int mhz, const RunSettings& settings,
                                 int pair, int start) {
    for (int chance = 1;; ++chance) {
        try {
            return startOnce(sides, mhz, patienceOf(settings),
                             Random{settings.seed, static_cast<std::uint64_t>(pair),
                                    static_cast<std::uint64_t>(start + chance)});
        } catch (const std::runtime_error&) {
            if (chance == ChancesToStart) {
                throw;
            }
        }
    }
}

}  // namespace lab
