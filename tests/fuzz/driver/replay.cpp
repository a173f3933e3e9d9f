/// Gives a target, in place of libFuzzer, the files of the folders named on the command line.

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "fuzz/fuzz.h"

int main(int argc, char** argv) {
    int count = 0;
    for (int i = 1; i < argc; ++i) {
        for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
            std::ifstream file(entry.path(), std::ios::binary);
            const std::string input(std::istreambuf_iterator<char>(file), {});
            std::printf("%s\n", entry.path().c_str());
            std::fflush(stdout);  // the last line names the input that is not survived
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
            ++count;
        }
    }
    return count > 0 ? 0 : 1;
}
