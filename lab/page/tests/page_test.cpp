#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "machine/wholefile.h"
#include "page/document.h"
#include "page/parts.h"

namespace lab {
namespace {

bool holds(const std::string& text, std::string_view part) { return text.find(part) != std::string::npos; }

TEST(Document, LetsRunWhatItHoldsAndNothingElse) {
    Page page;
    page.styles = {""};
    page.scripts = {"alert(1)", ""};
    const std::string text = document(page);
    // the hashes are those of "openssl dgst -sha256 -binary | base64"
    EXPECT_TRUE(holds(text,
                      "default-src 'none'; "
                      "script-src 'sha256-bhHHL3z2vDgxUt0W3dWQOrprscmda2Y5pLsLg4GF+pI=' "
                      "'sha256-47DEQpj8HBSa+/TImW+5JCeuQeRkm5NMpJWZG3hSuFU='; "
                      "style-src 'sha256-47DEQpj8HBSa+/TImW+5JCeuQeRkm5NMpJWZG3hSuFU='; "))
        << text;
    EXPECT_TRUE(holds(document(Page()), "script-src 'none'; style-src 'none'"));
}

TEST(Document, KeepsTextsText) {
    Page page;
    page.title = "a & <b> \"c\"";
    page.data = {{"run", "[\"</script><!-- & \u2028\u2029 \u00e9\"]"}};
    const std::string text = document(page);
    EXPECT_TRUE(holds(text, "<title>a &amp; &lt;b&gt; &quot;c&quot;</title>"));
    EXPECT_TRUE(holds(
        text, "id=\"run\">[\"\\u003c/script\\u003e\\u003c!-- \\u0026 \\u2028\\u2029 \u00e9\"]</script>"));
}

TEST(Document, PartsCannotEndTheirElement) {
    EXPECT_THROW(part("nothing.js"), std::logic_error);
    for (const auto& [name, text] : parts) {
        EXPECT_FALSE(text.empty()) << name;
        EXPECT_EQ(text.find("</script"), std::string_view::npos) << name;
        EXPECT_EQ(text.find("</style"), std::string_view::npos) << name;
        // a browser reads it as "\n", and the hash would be of other bytes
        EXPECT_EQ(text.find('\r'), std::string_view::npos) << name;
    }
}

class WholeFile : public testing::Test {
  protected:
    void SetUp() override { ASSERT_NE(mkdtemp(m_folder.data()), nullptr); }
    void TearDown() override { std::filesystem::remove_all(m_folder); }

    std::string content(const std::string& name) const {
        std::ostringstream text;
        text << std::ifstream(m_folder + "/" + name).rdbuf();
        return text.str();
    }

    std::string m_folder = testing::TempDir() + "whole_XXXXXX";
};

TEST_F(WholeFile, ReplacesAndStaysALink) {
    writeWhole(m_folder + "/a", "one");
    std::filesystem::create_symlink("a", m_folder + "/link");
    writeWhole(m_folder + "/link", "two");
    EXPECT_EQ(content("a"), "two");
    EXPECT_TRUE(std::filesystem::is_symlink(m_folder + "/link"));
}

TEST_F(WholeFile, RefusesAndLeavesNothingBehind) {
    std::filesystem::create_directory(m_folder + "/folder");
    for (const char* name : {"/folder", "/nowhere/a"}) {
        EXPECT_THROW(writeWhole(m_folder + name, "one"), std::runtime_error) << name;
    }
    EXPECT_THROW(writeWhole("/dev/null", "one"), std::runtime_error);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(m_folder), {}), 1);
}

}  // namespace
}  // namespace lab
