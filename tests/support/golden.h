#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include "support/program.h"

/// Compares with a golden file, named from the folder of the tests on; writes it anew when METRIG_APPROVE is
/// set.
inline void expectGolden(const std::string& name, const std::string& text) {
    const std::string path = METRIG_SOURCE_DIR "/tests/" + name;
    if (std::getenv("METRIG_APPROVE") != nullptr) {
        std::ofstream(path, std::ios::binary) << text;
    }
    EXPECT_EQ(text, readFile(path)) << name;
}
