#include "compare/pairstart.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>

#include "compare/objects.h"
#include "compare/sides.h"
#include "machine/facts.h"
#include "machine/random.h"
#include "turns/copies.h"

namespace lab {

namespace {

constexpr std::uint64_t MostPadding = 4096;

std::vector<Original> originalsOf(const StoredSide& side) {
    std::vector<Original> originals;
    for (const StoredObject& object : side.objects) {
        originals.push_back({object.name, object.path});
    }
    return originals;
}

ChildStart startOf(const StoredSide& side, const std::string& copies, int mhz) {
    ChildStart start;
    start.program = side.instrument;
    start.arguments = {"-B"};
    start.arguments.insert(start.arguments.end(), side.keys.begin(), side.keys.end());
    std::string path = "LD_LIBRARY_PATH=" + copies;
    if (isProgram(side)) {
        start.copy = copies + "/" + programObject;
    } else {
        path += ":" + side.folder;  // after the copy, for objects that the library itself asks for
    }
    start.environment = {path, "METRIG_MHZ=" + std::to_string(mhz)};
    return start;
}

std::chrono::milliseconds patienceOf(const RunSettings& settings) {
    return std::chrono::milliseconds(static_cast<long long>(settings.patience * 1000.0));
}

/// What the name, the keys and the environment of a side take on its stack.
std::size_t stackOf(const ChildStart& start) {
    std::size_t size = start.program.size();
    for (const auto* texts : {&start.arguments, &start.environment}) {
        for (const std::string& text : *texts) {
            size += text.size() + 1 + sizeof(char*);
        }
    }
    return size;
}

/// Where the instrument has mapped the objects of its side, which has to be their copies.
std::vector<std::string> mappedCopies(const StoredSide& side, const std::string& copies,
                                      const Instrument& instrument) {
    std::vector<std::string> names;
    for (const StoredObject& object : side.objects) {
        names.push_back(object.name);
    }
    std::vector<std::string> paths = mappedPaths(instrument.process(), names);
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (paths[i] != copies + "/" + names[i]) {
            throw std::runtime_error(side.instrument + " does not use a copy of " + side.objects[i].path +
                                     " but " + (paths[i].empty() ? "none" : paths[i]));
        }
    }
    return paths;
}

std::vector<Started> startOnce(std::span<const StoredSide> sides, int mhz, std::chrono::milliseconds patience,
                               Random random) {
    std::vector<std::vector<Original>> originals;
    for (const StoredSide& side : sides) {
        originals.push_back(originalsOf(side));
    }
    const LibraryCopies copies(originals, random);
    std::vector<ChildStart> starts(sides.size());
    std::size_t longest = 0;
    for (std::size_t i = 0; i < sides.size(); ++i) {
        starts[i] = startOf(sides[i], copies.folder(i), mhz);
        longest = std::max(longest, stackOf(starts[i]));
    }
    const std::size_t padding = random.below(MostPadding);
    std::vector<Started> started(sides.size());
    for (const std::size_t i : random.order(sides.size())) {
        const std::size_t own = padding + longest - stackOf(starts[i]);
        starts[i].environment.push_back("METRIG_PADDING=" + std::string(own, '.'));
        started[i].instrument = std::make_unique<Instrument>(starts[i], patience);
        started[i].mapped = mappedCopies(sides[i], copies.folder(i), *started[i].instrument);
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
