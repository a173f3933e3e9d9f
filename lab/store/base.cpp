#include "store/base.h"

#include <filesystem>
#include <stdexcept>

namespace lab {

namespace {

std::int64_t idOf(Database& base) { return base.number("PRAGMA application_id"); }

}  // namespace

std::unique_ptr<Database> openBase(const std::string& path, int flags, BaseId id) {
    auto base = std::make_unique<Database>(path, flags);
    const std::int64_t found = idOf(*base);
    if (id == BaseId::one && found == static_cast<std::int64_t>(BaseId::merged)) {
        throw std::runtime_error(path + ": holds merged sessions; each goes on in its own store");
    }
    if (found != static_cast<std::int64_t>(id)) {
        throw std::runtime_error(
            path + (id == BaseId::merged ? ": no merged store of metrig-lab" : ": no store of metrig-lab"));
    }
    const std::int64_t version = base->number("PRAGMA user_version");
    if (version != StoreVersion) {
        throw std::runtime_error(path + ": a store of version " + std::to_string(version) +
                                 ", this program reads " + std::to_string(StoreVersion));
    }
    return base;
}

bool isBase(const std::string& path, BaseId id) {
    try {
        if (!std::filesystem::is_regular_file(path)) {
            return false;
        }
        Database base(path, SQLITE_OPEN_READONLY);
        return idOf(base) == static_cast<std::int64_t>(id);
    } catch (const std::runtime_error&) {
        return false;  // who opens it for good tells why
    }
}

void setBaseId(Database& base, BaseId id) {
    base.run(("PRAGMA application_id = " + std::to_string(static_cast<std::int64_t>(id))).c_str());
    base.run(("PRAGMA user_version = " + std::to_string(StoreVersion)).c_str());
}

}  // namespace lab
