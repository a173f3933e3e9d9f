#include "compare/sides.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "compare/objects.h"
#include "machine/elf.h"
#include "machine/facts.h"
#include "machine/instruments.h"
#include "machine/sha256.h"
#include "turns/copies.h"

namespace lab {

namespace {

namespace fs = std::filesystem;

std::string folderOf(const StoredSide& side) {
    if (!fs::is_directory(side.name)) {
        throw std::runtime_error(side.name + ": no such folder");
    }
    return fs::canonical(side.name);
}

void findFolders(std::array<StoredSide, 2>& sides, const std::string& asked) {
    for (StoredSide& side : sides) {
        if (asked.empty()) {
            findFiles(side);
        } else {
            side.folder = folderOf(side);
            side.instrument = fs::canonical(asked);
        }
    }
    if (!asked.empty()) {
        findObjectsInFolders(sides);
    }
}

void findPrograms(std::array<StoredSide, 2>& sides, const std::string& asked) {
    if (!asked.empty()) {
        throw std::runtime_error("--instrument is for folders; " + sides[0].name +
                                 " is an instrument itself");
    }
    for (StoredSide& side : sides) {
        if (access(side.name.c_str(), X_OK) != 0) {
            throw std::runtime_error(side.name + ": no program that can be run; is its folder meant?");
        }
        side.instrument = fs::canonical(side.name);
        findObjectsOfProgram(side);
    }
}

}  // namespace

void findFiles(StoredSide& side) {
    side.folder = folderOf(side);
    side.objects = objectsIn(side.folder, libraryObjects);
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
    int programs = 0;
    for (std::size_t i = 0; i < 2; ++i) {
        StoredSide& side = sides[i];
        side.name = settings.folders[i];
        side.keys = settings.keys;
        side.keys.insert(side.keys.end(), settings.sideKeys[i].begin(), settings.sideKeys[i].end());
        if (!fs::exists(side.name)) {
            throw std::runtime_error(side.name + ": no such folder or program");
        }
        programs += fs::is_regular_file(side.name) ? 1 : 0;
    }
    if (programs == 1) {
        throw std::runtime_error(sides[0].name + " and " + sides[1].name + ": a folder and a program");
    }
    if (programs == 0) {
        findFolders(sides, settings.instrument);
    } else {
        findPrograms(sides, settings.instrument);
    }
    const int bits = sides[0].objects.front().bits;
    if (sides[1].objects.front().bits != bits) {
        throw NotComparable("the old build is of " + std::to_string(bits) + " bits, the new one of " +
                            std::to_string(sides[1].objects.front().bits));
    }
    for (StoredSide& side : sides) {
        if (side.instrument.empty()) {
            side.instrument = instrumentOf(bits);
        }
    }
    return sides;
}

bool isProgram(const StoredSide& side) { return side.folder.empty(); }

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
    for (const StoredObject& object : sides[0].objects) {
        const auto same = std::find_if(sides[1].objects.begin(), sides[1].objects.end(),
                                       [&](const StoredObject& other) { return other.name == object.name; });
        if (same == sides[1].objects.end()) {
            continue;
        }
        const std::string older = fileContent(object.path);
        const std::string newer = fileContent(same->path);
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
