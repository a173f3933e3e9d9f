#include "machine/instruments.h"

#include <filesystem>
#include <optional>
#include <stdexcept>

#include "machine/elf.h"
#include "machine/facts.h"

namespace lab {

namespace fs = std::filesystem;

std::string instrumentOf(int bits) {
    std::error_code failed;
    const fs::path here = fs::read_symlink("/proc/self/exe", failed).parent_path();
    const fs::path builds = here.parent_path().parent_path();
    const fs::path candidates[] = {here / "metrig", here / "metrig-x86", here / "metrig-x86-64",
                                   builds / "x86/bin/metrig", builds / "x86-64/bin/metrig"};
    for (const fs::path& path : candidates) {
        const auto facts = fs::is_regular_file(path, failed) ? elfFacts(fileContent(path)) : std::nullopt;
        if (facts && facts->bits == bits) {
            return path;
        }
    }
    throw std::runtime_error("no instrument of " + std::to_string(bits) + " bits beside " + here.string() +
                             " or in " + builds.string() + ": build it with script/build " +
                             (bits == 32 ? "x86" : "x86-64"));
}

}  // namespace lab
