#include "compare/objects.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <set>
#include <utility>

#include "compare/sides.h"
#include "machine/elf.h"
#include "machine/facts.h"
#include "machine/sha256.h"
#include "turns/instrument.h"

namespace lab {

namespace {

namespace fs = std::filesystem;

constexpr std::chrono::seconds PatienceToStart(10);

/// Where the system's own objects lie, which both sides share.
constexpr const char* systemFolders[] = {"/lib", "/usr/lib"};

bool isSystems(const std::string& path) {
    return std::any_of(std::begin(systemFolders), std::end(systemFolders),
                       [&](const char* folder) { return path.starts_with(folder); });
}

/// What the instrument of the side has mapped when it is ready for its first turn.
std::vector<std::string> mappedAtStart(const StoredSide& side) {
    ChildStart start;
    start.program = side.instrument;
    start.arguments = {"-B"};
    start.arguments.insert(start.arguments.end(), side.keys.begin(), side.keys.end());
    start.environment = {"METRIG_MHZ=1000"};  // no figure of this run is used
    if (!side.folder.empty()) {
        start.environment.push_back("LD_LIBRARY_PATH=" + side.folder);
    }
    Instrument instrument(start, PatienceToStart);
    std::vector<std::string> files = mappedFiles(instrument.process());
    instrument.quit();
    return files;
}

/// The name that others ask for the object by; `name` is that of its file.
std::string askedName(const std::string& path, const std::string& name) {
    const auto facts = elfFacts(fileContent(path));
    return facts && !facts->soname.empty() ? fs::path(facts->soname).filename().string() : name;
}

void sortByName(std::vector<StoredObject>& objects) {
    std::sort(objects.begin(), objects.end(),
              [](const StoredObject& a, const StoredObject& b) { return a.name < b.name; });
}

const StoredObject* objectNamed(const std::vector<StoredObject>& objects, const std::string& name) {
    const auto found = std::find_if(objects.begin(), objects.end(),
                                    [&](const StoredObject& object) { return object.name == name; });
    return found == objects.end() ? nullptr : &*found;
}

/// The names in the folder, short ones first: links stand before what they lead to.
std::vector<fs::path> entriesOf(const std::string& folder) {
    std::vector<fs::path> entries(fs::directory_iterator(folder), {});
    std::sort(entries.begin(), entries.end(), [](const fs::path& a, const fs::path& b) {
        const auto key = [](const fs::path& path) { return std::pair(path.native().size(), path); };
        return key(a) < key(b);
    });
    return entries;
}

/// Of `mapped`, what is in the folder or what its links lead to.
std::vector<StoredObject> mappedOf(const std::string& folder, const std::vector<std::string>& mapped) {
    std::vector<StoredObject> objects;
    std::set<std::string> taken;
    std::error_code failed;
    for (const fs::path& entry : entriesOf(folder)) {
        const std::string path = fs::canonical(entry, failed);
        if (!failed && std::find(mapped.begin(), mapped.end(), path) != mapped.end() &&
            taken.insert(path).second) {
            objects.push_back(objectAt(path, askedName(path, entry.filename())));
        }
    }
    sortByName(objects);
    return objects;
}

/// A folder with objects of the other width alone is refused before the loader is puzzled.
void checkWidth(const StoredSide& side) {
    const auto instrument = elfFacts(fileContent(side.instrument));
    std::string other;
    for (const auto& entry : fs::directory_iterator(side.folder)) {
        const bool isObject =
            entry.is_regular_file() && entry.path().filename().string().find(".so") != std::string::npos;
        const auto facts = isObject ? elfFacts(fileContent(entry.path())) : std::nullopt;
        if (facts && instrument && facts->bits == instrument->bits) {
            return;
        }
        if (facts) {
            other = entry.path().string() + " is of " + std::to_string(facts->bits) + " bits";
        }
    }
    if (instrument && !other.empty()) {
        throw NotComparable(other + ", " + side.instrument + " of " + std::to_string(instrument->bits));
    }
}

/// An object of `other` that this side lacks must not come from a third place.
void checkPlaces(const StoredSide& side, const std::vector<std::string>& mapped, const StoredSide& other) {
    for (const StoredObject& object : other.objects) {
        if (objectNamed(side.objects, object.name) != nullptr) {
            continue;
        }
        for (const std::string& path : mapped) {
            if (askedName(path, fs::path(path).filename()) == object.name) {
                throw std::runtime_error(side.folder + " has no " + object.name + ", and " + side.instrument +
                                         " would use " + path);
            }
        }
    }
}

}  // namespace

StoredObject objectAt(const std::string& path, const std::string& name) {
    if (!fs::is_regular_file(path)) {
        throw std::runtime_error(path + ": no such file");
    }
    const std::string content = fileContent(path);
    const auto facts = elfFacts(content);
    if (!facts) {
        throw std::runtime_error(path + ": no shared object or program");
    }
    return {name, path, "", sha256(content), facts->buildId, facts->bits};
}

std::vector<StoredObject> objectsIn(const std::string& folder, const std::vector<std::string>& names) {
    std::vector<StoredObject> objects;
    for (const std::string& name : names) {
        const std::string path = fs::path(folder) / name;
        if (!fs::exists(path)) {
            throw std::runtime_error(path + ": no such file (other shared objects need --instrument)");
        }
        objects.push_back(objectAt(path, name));
        if (objects.back().bits != objects.front().bits) {
            throw std::runtime_error(folder + ": shared objects of 32 and of 64 bits");
        }
    }
    return objects;
}

void findObjectsInFolders(std::array<StoredSide, 2>& sides) {
    std::array<std::vector<std::string>, 2> mapped;
    for (std::size_t i = 0; i < 2; ++i) {
        StoredSide& side = sides[i];
        checkWidth(side);
        mapped[i] = mappedAtStart(side);
        side.objects = mappedOf(side.folder, mapped[i]);
        if (side.objects.empty()) {
            throw std::runtime_error(side.instrument + " uses no shared object of " + side.folder);
        }
    }
    checkPlaces(sides[0], mapped[0], sides[1]);
    checkPlaces(sides[1], mapped[1], sides[0]);
}

void findObjectsOfProgram(StoredSide& side) {
    side.objects.clear();
    for (const std::string& path : mappedAtStart(side)) {
        if (path != side.instrument && !isSystems(path) && elfFacts(fileContent(path))) {
            side.objects.push_back(objectAt(path, askedName(path, fs::path(path).filename())));
        }
    }
    sortByName(side.objects);
    side.objects.insert(side.objects.begin(), objectAt(side.instrument, programObject));
}

}  // namespace lab
