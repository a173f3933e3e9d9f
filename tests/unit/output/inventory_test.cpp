#include "output/mrinventory.h"

#include <gtest/gtest.h>

#include "output/mrcstream.h"
#include "output/mrreport.h"
#include "session/mrconditions.h"
#include "support/captured_output.h"
#include "test/mrtestlist.h"

namespace {

TEST(Inventory, ListsFunctionsAndTests) {
    mrStringList* const before = std::exchange(g_pLibFuncList, nullptr);
    mrTest find{nullptr, nullptr, "zylsFind_8u", "perf/p_chfind_ia", "TimsFind//ZY_REG"};
    mrTest hash{nullptr, nullptr, "zylsHash_8u32u", "perf/p_chhash_ia", "TimchHash//ZY_REG"};
    mrTestList tests;
    tests.append(&find);
    tests.append(&hash);
    mrConditions conditions;
    const auto listing = [&](int mode) {
        CapturedOutput output(g_ostrm.msgLevel());
        g_ostrm << mrReportList(tests, conditions, mode);
        return output.text();
    };
    const std::string rows =
        "   #\tFunction\tTest\tSource\t\n   1\tzylsFind_8u\tTimsFind\tp_chfind_ia\t\n"
        "   2\tzylsHash_8u32u\tTimchHash\tp_chhash_ia\t\n";
    EXPECT_FALSE(mrRegLibFunc(""));
    // Service functions are left out.
    for (const char* name :
         {"zylInit", "zylsClose_8u", "zylAllocate", "zylsMalloc_8u", "zylFree", "zylPutVal",
          "zylRotateCenter", "zylResizeShift", "zylGetLibVersion", "zylsSetup", "zylDrawText_8u"}) {
        mrRegLibFunc(name);
    }
    EXPECT_EQ(listing(1), rows);
    for (const char* name : {"zylsFind_8u", "zylsGet_8u", "zylsSet_8u", "zylsinit_8u", "zylsHash_8u32u"}) {
        mrRegLibFunc(name);
    }
    EXPECT_EQ(listing(1),
              "Exist\tFunction\t\n+\tzylsFind_8u\t\n-\tzylsGet_8u\t\n-\tzylsSet_8u\t\n-\tzylsinit_8u\t\n"
              "+\tzylsHash_8u32u\t\n" +
                  rows);
    // Tests that the conditions leave out are not listed, nor counted, but they are there.
    static RunCondition* const hashOnly = mrMakeCondition(RunCondition::FunctionName, "Hash");
    conditions.append(hashOnly);
    MemoryFile file;
    mrCStream table;
    table.append(file.stream());
    table << mrReportList(tests, conditions, -1);
    EXPECT_EQ(file.text(),
              "Exist,Function\n-,zylsGet_8u\n-,zylsSet_8u\n-,zylsinit_8u\n"
              "   #,Function,Test,Source\n   1,zylsHash_8u32u,TimchHash,p_chhash_ia\n");
    delete std::exchange(g_pLibFuncList, before);
}

}  // namespace
