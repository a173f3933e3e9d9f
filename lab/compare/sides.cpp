#include "compare/sides.h"

#include <algorithm>
#include <filesystem>

#include "machine/elf.h"
#include "machine/facts.h"
#include "machine/instruments.h"
#include "machine/sha256.h"
#include "turns/copies.h"

namespace lab {

namespace {

namespace fs = std::filesystem;

std::vector<StoredObject> objectsIn(const std::string& folder) {
    std::vector<StoredObject> objects;
    for (const std::string& name : libraryObjects) {
        const std::string path = fs::path(folder) / name;
        if (!fs::is_regular_file(path)) {
            throw std::runtime_error(path + ": no such file");
        }
        const std::string content = fileContent(path);
        const auto facts = elfFacts(content);
        if (!facts) {
            throw std::runtime_error(path + ": no shared object");
        }
        objects.push_back({name, path, "", sha256(content), facts->buildId, facts->bits});
        if (facts->bits != objects.front().bits) {
            throw std::runtime_error(folder + ": shared objects of 32 and of 64 bits");
        }
    }
    return objects;
}

}  // namespace

StoredSide findFiles(const std::string& folder, const std::vector<std::string>& keys) {
    if (!fs::is_directory(folder)) {
        throw std::runtime_error(folder + ": no such folder");
    }
    StoredSide side;
    side.name = folder;
    side.folder = fs::canonical(folder);
    side.objects = objectsIn(side.folder);
    side.keys = keys;
    return side;
}

std::string changedObject(std::span<const StoredSide> sides) {
    for (const StoredSide& side : sides) {
        for (const StoredObject& object : side.objects) {
            if (sha256(fileContent(object.path)) != object.sha256) {
                return object.path;
            }
        }
    }
    return "";
}

std::array<StoredSide, 2> findSides(const Settings& settings) {
    std::array<StoredSide, 2> sides;
    for (std::size_t i = 0; i < 2; ++i) {
        std::vector<std::string> keys = settings.keys;
        keys.insert(keys.end(), settings.sideKeys[i].begin(), settings.sideKeys[i].end());
        sides[i] = findFiles(settings.folders[i], keys);
    }
    const int bits = sides[0].objects.front().bits;
    if (sides[1].objects.front().bits != bits) {
        throw NotComparable("the old library is of " + std::to_string(bits) + " bits, the new one of " +
                            std::to_string(sides[1].objects.front().bits));
    }
    const std::string instrument = settings.instrument.empty() ? instrumentOf(bits) : settings.instrument;
    sides[0].instrument = instrument;
    sides[1].instrument = instrument;
    return sides;
}

bool areSameObjects(const std::array<StoredSide, 2>& sides) {
    const auto same = [](const StoredObject& a, const StoredObject& b) { return a.sha256 == b.sha256; };
    return std::equal(sides[0].objects.begin(), sides[0].objects.end(), sides[1].objects.begin(),
                      sides[1].objects.end(), same);
}

bool isSelfComparison(const std::array<StoredSide, 2>& sides) {
    return areSameObjects(sides) && sides[0].keys == sides[1].keys;
}

std::vector<std::string> functionsOfEqualCode(const std::array<StoredSide, 2>& sides,
                                              const std::vector<std::string>& functions) {
    std::vector<std::string> equal;
    for (std::size_t object = 0; object < sides[0].objects.size(); ++object) {
        const std::string older = fileContent(sides[0].objects[object].path);
        const std::string newer = fileContent(sides[1].objects[object].path);
        for (const std::string& function : functions) {
            const std::string_view code = elfCode(older, function);
            if (!code.empty() && code == elfCode(newer, function)) {
                equal.push_back(function);
            }
        }
    }
    return equal;
}

}  // namespace lab
