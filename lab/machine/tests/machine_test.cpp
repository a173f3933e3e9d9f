#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "machine/elf.h"
#include "machine/facts.h"
#include "machine/noise.h"
#include "machine/sha256.h"

namespace lab {
namespace {

TEST(Sha256, KnownTexts) {
    EXPECT_EQ(sha256(""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ(sha256("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    // 56 bytes: the length goes to a block of its own
    EXPECT_EQ(sha256("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"),
              "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1");
    EXPECT_EQ(sha256(std::string(1000000, 'a')),
              "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

TEST(Elf, SharedObjectOfTheSystem) {
    const std::string path = mappedPaths(getpid(), {"libc.so.6"}).front();
    ASSERT_NE(path, "");
    const std::string file = fileContent(path);
    const auto facts = elfFacts(file);
    ASSERT_TRUE(facts);
    EXPECT_EQ(facts->bits, 64);
    EXPECT_EQ(facts->buildId.size(), 40U);
    EXPECT_EQ(facts->soname, "libc.so.6");
    EXPECT_FALSE(elfCode(file, "qsort").empty());
    EXPECT_NE(elfCode(file, "qsort"), elfCode(file, "bsearch"));
    EXPECT_TRUE(elfCode(file, "qsor").empty());
}

TEST(Elf, BrokenFilesAreNone) {
    const std::string file = fileContent(mappedPaths(getpid(), {"libc.so.6"}).front());
    EXPECT_FALSE(elfFacts("#!/bin/sh"));
    EXPECT_FALSE(elfFacts(std::string_view(file).substr(0, 100)));
    // whatever is cut or changed, nothing is read beyond the end
    for (std::size_t size = 0; size < 4000; size += 13) {
        elfCode(std::string_view(file).substr(0, size), "qsort");
    }
    for (std::size_t at = 16; at < 64; ++at) {
        std::string changed = file.substr(0, 100000);
        changed[at] = '\xFF';
        elfFacts(changed);
        elfCode(changed, "qsort");
    }
}

/// A system of files.
class MadeSystem : public testing::Test {
  protected:
    void SetUp() override { ASSERT_NE(mkdtemp(m_root.data()), nullptr); }
    void TearDown() override { std::filesystem::remove_all(m_root); }

    void put(const std::string& path, const std::string& content) {
        std::filesystem::create_directories(std::filesystem::path(m_root + path).parent_path());
        std::ofstream(m_root + path) << content;
    }

    std::string m_root = testing::TempDir() + "machine_XXXXXX";
};

TEST_F(MadeSystem, Facts) {
    put("/proc/cpuinfo",
        "processor\t: 0\nmodel name\t: Fine One\nflags\t\t: fpu hypervisor sse2\nmodel\t\t: 1\n");
    put("/sys/devices/system/cpu/cpu1/topology/thread_siblings_list", "0-1\n");
    put("/sys/devices/system/cpu/cpu1/cpufreq/scaling_governor", "powersave\n");
    Facts facts = machineFacts(1, m_root);
    std::erase_if(facts, [](const auto& fact) { return fact.first == "kernel"; });
    const Facts expected = {{"processor", "Fine One"},
                            {"hypervisor", "unknown"},
                            {"core", "1"},
                            {"siblings", "0-1"},
                            {"governor", "powersave"}};
    EXPECT_EQ(facts, expected);
}

TEST_F(MadeSystem, EachNoiseIsSaidOnce) {
    put("/proc/loadavg", "1.90 1.00 0.50 2/100 1234\n");
    put("/proc/stat", "cpu  100 0 50 800 0 0 0 0 0 0\n");
    NoiseWatch watch(readNoise(0, m_root));
    EXPECT_EQ(watch.warnings(readNoise(0, m_root), 1.0, 8).size(), 0U);
    put("/proc/stat", "cpu  150 0 50 845 0 0 0 5 0 0\n");
    put("/sys/devices/system/cpu/cpu0/cpufreq/scaling_governor", "powersave\n");
    put("/sys/class/power_supply/BAT0/type", "Battery\n");
    put("/sys/class/power_supply/BAT0/status", "Discharging\n");
    const NoiseReading noisy = readNoise(0, m_root);
    EXPECT_DOUBLE_EQ(watch.steal(noisy), 0.05);
    EXPECT_EQ(watch.warnings(noisy, 1.5, 2).size(), 5U);
    EXPECT_EQ(watch.warnings(noisy, 1.5, 2).size(), 0U);
}

TEST(Quiet, IsWaitedForInVainAtMostSoLong) {
    const auto wait = [](std::vector<double> readings) {
        std::size_t next = 0;
        double waited = 0.0;
        const bool quiet = waitForQuiet([&] { return readings[std::min(next++, readings.size() - 1)]; },
                                        [&] {
                                            waited += 1.0;
                                            return 1.0;
                                        },
                                        10.0);
        return std::pair(quiet, waited);
    };
    EXPECT_EQ(wait({1.0}), std::pair(true, 2.0));
    EXPECT_EQ(wait({1.5, 1.0, 1.0, 1.5, 1.0, 1.0, 1.0}), std::pair(true, 6.0));
    EXPECT_EQ(wait({1.5}), std::pair(false, 10.0));
}

}  // namespace
}  // namespace lab
