#include "output/mrinventory.h"

#include <gtest/gtest.h>

#include "output/mrcstream.h"
#include "output/mrreport.h"
#include "session/mrconditions.h"
#include "support/captured_output.h"
#include "test/mrtestlist.h"

namespace {

/// Both lists as before the first registration.
class Inventory : public testing::Test {
  protected:
    Inventory() {
        std::swap(infoBefore, g_pLibInfoList);
        std::swap(funcBefore, g_pLibFuncList);
    }
    ~Inventory() override {
        std::swap(infoBefore, g_pLibInfoList);
        std::swap(funcBefore, g_pLibFuncList);
        delete infoBefore;
        delete funcBefore;
    }

    std::string listing(int mode) {
        CapturedOutput output(g_ostrm.msgLevel());
        g_ostrm << mrReportList(tests, conditions, mode);
        return output.text();
    }

    mrTest find{nullptr, nullptr, "zylsFind_8u", "perf/p_chfind_ia", "TimsFind//ZY_REG"};
    mrTest hash{nullptr, nullptr, "zylsHash_8u32u", "perf/p_chhash_ia", "TimchHash//ZY_REG"};
    mrTestList tests;
    mrConditions conditions;
    mrStringList* infoBefore = nullptr;
    mrStringList* funcBefore = nullptr;
};

const std::string Tests = "   #\tFunction\tTest\tSource\t\n";

TEST_F(Inventory, Registers) {
    EXPECT_FALSE(mrRegLibFunc(""));
    EXPECT_EQ(g_pLibFuncList, nullptr);
    EXPECT_TRUE(mrRegLibFunc("f") && mrRegLibFunc("f"));
    EXPECT_EQ(g_pLibFuncList->size(), 2);
    EXPECT_TRUE(mrRegLibInfo("a") && mrRegLibInfo("b"));
    EXPECT_FALSE(mrRegLibInfo("a"));
    EXPECT_EQ(g_pLibInfoList->size(), 2);
}

TEST_F(Inventory, LeavesOutServiceFunctions) {
    for (const char* name :
         {"zylInit", "zylsClose_8u", "zylAllocate", "zylsMalloc_8u", "zylFree", "zylPutVal",
          "zylRotateCenter", "zylResizeShift", "zylGetLibVersion", "zylsSetup", "zylDrawText_8u"}) {
        mrRegLibFunc(name);
    }
    EXPECT_EQ(listing(1), Tests);
    for (const char* name : {"zylsFind_8u", "zylsGet_8u", "zylsSet_8u", "zylsinit_8u"}) {
        mrRegLibFunc(name);
    }
    EXPECT_EQ(
        listing(1),
        "Exist\tFunction\t\n-\tzylsFind_8u\t\n-\tzylsGet_8u\t\n-\tzylsSet_8u\t\n-\tzylsinit_8u\t\n" + Tests);
}

TEST_F(Inventory, ListsFunctionsAndTests) {
    EXPECT_EQ(listing(0), Tests);
    tests.append(&find);
    tests.append(&hash);
    for (const char* name : {"zylsFind_8u", "zylsFind", "zylsHash_8u32u"}) {
        mrRegLibFunc(name);
    }
    const std::string rows =
        Tests +
        "   1\tzylsFind_8u\tTimsFind\tp_chfind_ia\t\n   2\tzylsHash_8u32u\tTimchHash\tp_chhash_ia\t\n";
    EXPECT_EQ(listing(0), rows);
    EXPECT_EQ(listing(1), "Exist\tFunction\t\n+\tzylsFind_8u\t\n-\tzylsFind\t\n+\tzylsHash_8u32u\t\n" + rows);
    // Tests that the conditions leave out are not listed, nor counted, but they are there.
    conditions.append(mrMakeCondition(RunCondition::FunctionName, "Hash"));
    MemoryFile file;
    mrCStream table;
    table.append(file.stream());
    table << mrReportList(tests, conditions, -1);
    EXPECT_EQ(file.text(),
              "Exist,Function\n-,zylsFind\n"
              "   #,Function,Test,Source\n   1,zylsHash_8u32u,TimchHash,p_chhash_ia\n");
}

}  // namespace
