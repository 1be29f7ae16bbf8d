#include "naming/output_suffix.h"
#include "platform/paths.h"

#include "support/scoped_env.h"
#include "support/temp_dir.h"
#include "support/test_services.h"

#include <gtest/gtest.h>

#include <utility>

using namespace pl;
using naming::LoadSuffix;
using naming::NamingState;
using Format = std::pair<std::string, std::string>;

namespace {

constexpr const char* suiteKey = "HKLM\\Software\\tobrin\\PaperlarkXP";
const Format pdf{".pdf", ""};
const Format png{".png", " - %02d"};

// A suite folder named by the machine's registry, a user profile folder, and the program's services.
struct output_suffix : ::testing::Test {
    test::TempDir suite;
    test::TempDir home;
    test::ScopedEnv userProfileEnv{"userprofile", home.path().string()};
    test::TestServices real;

    output_suffix() { real.set(suiteKey, "pldir", suite.folder()); }

    void suiteProfile(const std::string& name, const std::string& content) { suite.write(name + ".plp", content); }

    // OutputSuffix and PageNumberPattern after loading `profile`, starting from values it must overwrite.
    Format load(std::string_view profile, std::size_t errorsExpected = 0) {
        NamingState state;
        state.OutputSuffix = ".old";
        state.PageNumberPattern = "old";
        LoadSuffix(profile, state, real.services);
        EXPECT_EQ(real.errors.entries.size(), errorsExpected);
        return {state.OutputSuffix, state.PageNumberPattern};
    }
};

} // namespace

TEST_F(output_suffix, the_device_on_the_profiles_first_line_selects_the_format) {
    const std::pair<const char*, Format> profiles[] = {
        {"-sDEVICE=pdfwrite -dCompatibilityLevel=1.4", pdf},
        {"-dNOPAUSE -sDEVICE=png16m -r300", png},
        {"-sdevice=JPEG -dJPEGQ=90", {".jpg", " - %02d"}},
        {"-sDEVICE=tiffg4", {".tif", ""}},
        {"-sDEVICE=ps2write", pdf}, // no row for it, though "pswrite" has one
        {"-sDEVICE=pgnmraw", {".pgnm", " - %02d"}},
        {"-sDEVICE=faxg32d\r\n", {".fg3", ""}},
        {"-sDEVICE=fax", pdf},
        {"-r300 -dNOPAUSE", pdf},
        {"-dNOPAUSE -r300\r\n-sDEVICE=png16m\r\n", pdf}, // only the first line counts
        {"-dNOPAUSE\r-sDEVICE=png16m\r", pdf},
    };
    for (const auto& [content, format] : profiles) {
        suiteProfile("Test", content);
        EXPECT_EQ(load("Test"), format) << content;
    }
}

TEST_F(output_suffix, the_users_own_profile_wins_over_the_suites_found_in_any_case) {
    suiteProfile("Images", "-sDEVICE=png16m");
    EXPECT_EQ(load("IMAGES"), png);
    home.write("Paperlark/Images.plp", "-sDEVICE=jpeg");
    EXPECT_EQ(load("Images"), Format(".jpg", " - %02d"));
    EXPECT_EQ(naming::profileFilePath("Images", real.services),
              home.folder() + "Paperlark" + platform::PathSep + "Images.plp");

    EXPECT_EQ(load("Nowhere"), pdf);
    // The suite folder may name environment variables.
    test::ScopedEnv root("PLTESTSUITE", suite.path().string());
    real.set(suiteKey, "pldir", "%PLTESTSUITE%/");
    suiteProfile("Fax Office", "-sDEVICE=faxg4");
    EXPECT_EQ(load("Fax Office"), Format(".fg4", ""));
}

TEST_F(output_suffix, a_failure_is_reported_and_leaves_both_values) {
    suiteProfile("Images", "-sDEVICE=png16m");
    // A folder value that the registry module cannot turn into text.
    real.reg.writeHive("HKEY_LOCAL_MACHINE", "Windows Registry Editor Version 5.00\n\n"
                                             "[HKEY_LOCAL_MACHINE\\Software\\tobrin\\PaperlarkXP]\n"
                                             "\"pldir\"=dword:80000000\n");
    EXPECT_EQ(load("Images", 1), Format(".old", "old"));
    ASSERT_EQ(real.errors.entries.size(), 1u);
    EXPECT_EQ(real.errors.entries[0].tag, "plAssist1.LoadSuffix");
    EXPECT_EQ(real.errors.entries[0].number, err::Overflow);
}
