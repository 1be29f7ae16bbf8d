#include "naming/output_suffix.h"

#include "platform/platform.h"
#include "recording_sink.h"
#include "support/scoped_env.h"
#include "support/scripted_view.h"
#include "support/temp_dir.h"
#include "support/test_registry.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>

using namespace pl;
using naming::LoadSuffix;
using naming::NamingState;

namespace {

constexpr const char* suiteKey = "HKLM\\Software\\tobrin\\PaperlarkXP";

// A suite folder named by the machine's registry, a user profile folder, and the program's services.
class ProfileSetup {
public:
    ProfileSetup() : userProfileEnv("userprofile", home.path().string()) {
        reg.registry().SetRegValue(suiteKey, "pldir", suite.folder());
    }

    void suiteProfile(const std::string& name, const std::string& content) { suite.write(name + ".plp", content); }
    void userProfile(const std::string& name, const std::string& content) {
        home.write("Paperlark/" + name + ".plp", content);
    }

    // OutputSuffix and PageNumberPattern after loading `profile`, starting from a PNG state so that
    // every value is visibly set.
    std::pair<std::string, std::string> load(std::string_view profile) {
        NamingState state;
        state.OutputSuffix = ".png";
        state.PageNumberPattern = " - %02d";
        LoadSuffix(profile, state, services);
        EXPECT_TRUE(sink.reports.empty());
        return {state.OutputSuffix, state.PageNumberPattern};
    }

    test::TempDir suite;
    test::TempDir home;
    test::ScopedEnv userProfileEnv;
    test::TestRegistry reg;
    std::unique_ptr<platform::Platform> os = platform::makeNativePlatform();
    test::RecordingSink sink;
    test::ScriptedView view;
    Services services{*os, reg.registry(), sink, view};
};

using Format = std::pair<std::string, std::string>;
const Format pdf{".pdf", ""};

} // namespace

TEST(output_suffix, the_device_on_the_profiles_first_line_selects_the_format) {
    ProfileSetup setup;
    const std::pair<const char*, Format> devices[] = {
        {"-sDEVICE=pdfwrite -dCompatibilityLevel=1.4", pdf},
        {"-dNOPAUSE -sDEVICE=png16m -r300", {".png", " - %02d"}},
        {"-sdevice=JPEG -dJPEGQ=90", {".jpg", " - %02d"}},
        {"-sDEVICE=tiffg4", {".tif", ""}},
        {"-sDEVICE=pswrite", {".ps", ""}},
        {"-sDEVICE=eps2write", {".eps", ""}},
        {"-sDEVICE=ps2write", pdf}, // no row for it
        {"-sDEVICE=pxlcolor", {".pxl", ""}},
        {"-sDEVICE=pgmraw", {".pgm", " - %02d"}},
        {"-sDEVICE=pgnmraw", {".pgnm", " - %02d"}},
        {"-sDEVICE=pksmraw", {".pksm", " - %02d"}},
        {"-sDEVICE=bmp16m", {".bmp", " - %02d"}},
        {"-sDEVICE=psdcmyk", {".psd", " - %02d"}},
        {"-sDEVICE=faxg3", {".fg3", ""}},
        {"-sDEVICE=faxg32d\r\n", {".fg3", ""}},
        {"-sDEVICE=FAXG4", {".fg4", ""}},
        {"-sDEVICE=fax", pdf},
        {"-sDEVICE=", pdf},
        {"-r300 -dNOPAUSE", pdf},
    };
    for (const auto& [line, format] : devices) {
        setup.suiteProfile("Test", line);
        EXPECT_EQ(setup.load("Test"), format) << line;
    }
}

TEST(output_suffix, only_the_first_line_of_the_profile_counts) {
    ProfileSetup setup;
    setup.suiteProfile("Second", "-dNOPAUSE -r300\r\n-sDEVICE=png16m\r\n");
    EXPECT_EQ(setup.load("Second"), pdf);
    setup.suiteProfile("Mac", "-dNOPAUSE\r-sDEVICE=png16m\r");
    EXPECT_EQ(setup.load("Mac"), pdf);
}

TEST(output_suffix, the_users_own_profile_wins_over_the_suites) {
    ProfileSetup setup;
    setup.suiteProfile("Images", "-sDEVICE=png16m");
    EXPECT_EQ(setup.load("Images"), Format(".png", " - %02d"));
    setup.userProfile("Images", "-sDEVICE=jpeg");
    EXPECT_EQ(setup.load("Images"), Format(".jpg", " - %02d"));
    EXPECT_EQ(naming::profileFilePath("Images", setup.services), setup.home.folder() + "Paperlark/Images.plp");
}

TEST(output_suffix, a_missing_profile_means_pdf) {
    ProfileSetup setup;
    EXPECT_EQ(setup.load("Nowhere"), pdf);
    // Without a configured suite folder the installation's own is used; it has no such profile either.
    setup.reg.registry().DeleteRegEntry(suiteKey, "pldir");
    EXPECT_EQ(setup.load("Nowhere"), pdf);
}

TEST(output_suffix, finds_profiles_whose_names_differ_in_case_and_expands_the_suite_folder) {
    ProfileSetup setup;
    setup.suiteProfile("Fax Office", "-sDEVICE=faxg4");
    EXPECT_EQ(setup.load("FAX office"), Format(".fg4", ""));

    test::ScopedEnv root("PLTESTSUITE", setup.suite.path().string());
    setup.reg.registry().SetRegValue(suiteKey, "pldir", "%PLTESTSUITE%/");
    EXPECT_EQ(setup.load("Fax Office"), Format(".fg4", ""));
}

TEST(output_suffix, a_failure_is_reported_and_leaves_both_values) {
    ProfileSetup setup;
    setup.suiteProfile("Images", "-sDEVICE=png16m");
    // A folder value that the registry module cannot turn into text.
    setup.reg.writeHive("HKEY_LOCAL_MACHINE", "Windows Registry Editor Version 5.00\n\n"
                                              "[HKEY_LOCAL_MACHINE\\Software\\tobrin\\PaperlarkXP]\n"
                                              "\"pldir\"=dword:80000000\n");
    NamingState state;
    state.OutputSuffix = ".tif";
    state.PageNumberPattern = "kept";
    LoadSuffix("Images", state, setup.services);
    ASSERT_EQ(setup.sink.reports.size(), 1u);
    EXPECT_EQ(setup.sink.reports[0].tag, "plAssist1.LoadSuffix");
    EXPECT_EQ(setup.sink.reports[0].number, err::Overflow);
    EXPECT_EQ(state.OutputSuffix, ".tif");
    EXPECT_EQ(state.PageNumberPattern, "kept");
}
