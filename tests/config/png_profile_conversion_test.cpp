// A profile made in the configuration form, converted by the built converter through the real
// Ghostscript: the form's switches are what the converter runs, with nothing left out.

#include "config/config_form.h"
#include "converter_harness.h"
#include "naming/output_suffix.h"
#include "platform/platform.h"
#include "support/recording_errors.h"

#include <gtest/gtest.h>

namespace pl::test {
namespace {

// Names the new profile and answers every question with its first button.
class NamingView : public config::ConfigView {
public:
    int msgBox(std::string_view prompt, int, std::string_view) override {
        ADD_FAILURE() << "unexpected message: " << prompt;
        return mb::Ok;
    }
    std::optional<std::string> askText(std::string_view, std::string_view, std::string_view) override {
        return "Scans";
    }
    void refresh() override {}
    void closeWindow() override { closed = true; }
    bool closed = false;
};

// Width and height from a PNG file's header.
std::pair<int, int> pngSize(const std::string& bytes) {
    const auto number = [&](std::size_t at) {
        int n = 0;
        for (std::size_t i = at; i < at + 4; ++i)
            n = n * 256 + static_cast<unsigned char>(bytes.at(i));
        return n;
    };
    return {number(16), number(20)};
}

TEST(config_conversion, a_png_profile_at_300_dpi_makes_one_numbered_300_dpi_picture_per_page) {
    ConverterHarness sandbox;
    auto os = platform::makeNativePlatform();
    platform::Registry registry(os->registry());
    RecordingErrors errors;
    NamingView view;
    Services services{*os, registry, errors, view};

    config::ConfigForm form(services, view);
    form.Form_Load();
    form.cmdNew_Click();
    auto& settings = form.profiles.entries().at(form.profiles.selected).settings;
    settings.device = "png16m";
    settings.resolution = 300;
    form.cmdOk_Click();
    ASSERT_TRUE(view.closed);

    // The name the assistant gives the output: the page pattern and the suffix of the profile.
    naming::NamingState naming;
    naming::LoadSuffix("Scans", naming, services);
    const std::string output = sandbox.out() + "Letter" + naming.PageNumberPattern + naming.OutputSuffix;
    const std::string job =
        sandbox.writeRawJob("anna0001.ps", "%!PS\n<< /PageSize [612 792] >> setpagedevice\nshowpage\nshowpage\n");
    const auto result = sandbox.run({"/3", "delps,save", "Scans", output, job});
    ASSERT_EQ(result.exitCode, 0) << result.output;
    EXPECT_EQ(ConverterHarness::namesIn(sandbox.out()), (Names{"Letter - 01.png", "Letter - 02.png"}));
    // 8.5 by 11 inches at 300 dots per inch.
    EXPECT_EQ(pngSize(readFile(sandbox.out() + "Letter - 01.png")), (std::pair{2550, 3300}));
    EXPECT_TRUE(errors.entries.empty());
}

} // namespace
} // namespace pl::test
