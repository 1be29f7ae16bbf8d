#include "converter/settings.h"

#include "platform/platform.h"
#include "support/test_registry.h"

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

using namespace std::chrono_literals;
using pl::converter::readSettings;

TEST(converter_settings, the_user_key_wins_over_the_machine_key_and_nothing_set_gives_the_defaults) {
    pl::test::TestRegistry reg;
    auto os = pl::platform::makeNativePlatform();
    const auto read = [&](const pl::platform::Registry* registry) {
        return readSettings(registry, os->environment(), os->files(), "gs");
    };
    for (const pl::platform::Registry* registry : {&reg.registry(), static_cast<pl::platform::Registry*>(nullptr)}) {
        EXPECT_EQ(read(registry).ghostscript, "gs");
        EXPECT_EQ(read(registry).timeLimit, 600s);
    }

    reg.registry().SetRegValue("HKLM\\Software\\tobrin\\PaperlarkXP", "GsTimeout", "30");
    reg.registry().SetRegValue("HKLM\\Software\\tobrin\\PaperlarkXP", "gswin32c", "/machine/gs");
    EXPECT_EQ(read(&reg.registry()).timeLimit, 30s);
    EXPECT_EQ(read(&reg.registry()).ghostscript, "/machine/gs");

    reg.registry().SetRegValue("HKCU\\Software\\tobrin\\PaperlarkXP", "GsTimeout", "4");
    reg.registry().SetRegValue("HKCU\\Software\\tobrin\\PaperlarkXP", "gswin32c", "/user/gs");
    EXPECT_EQ(read(&reg.registry()).timeLimit, 4s);
    EXPECT_EQ(read(&reg.registry()).ghostscript, "/user/gs");

    // A user value that is no time limit is no setting: the default, not the machine's value, and
    // a number too large is cut to a week; either is said.
    const std::vector<std::tuple<std::string, std::chrono::seconds, std::string>> cases = {
        {"soon", 600s, "GsTimeout \"soon\" is not a whole number of seconds from 1 to 604800"},
        {"0", 600s, "the default of 600 seconds"},
        {"-5", 600s, "the default of 600 seconds"},
        {"1.5", 600s, "the default of 600 seconds"},
        {"604800", 604800s, ""},
        {"9999999999", 604800s, "GsTimeout \"9999999999\" is more than 604800 seconds (a week)"},
        {"99999999999999999999999", 604800s, "604800 seconds are used"},
    };
    for (const auto& [value, seconds, problem] : cases) {
        reg.registry().SetRegValue("HKCU\\Software\\tobrin\\PaperlarkXP", "GsTimeout", value);
        const auto settings = read(&reg.registry());
        EXPECT_EQ(settings.timeLimit, seconds) << value;
        if (problem.empty())
            EXPECT_TRUE(settings.problems.empty()) << value;
        else
            EXPECT_TRUE(settings.problems.size() == 1 && settings.problems[0].find(problem) != std::string::npos)
                << value << ": " << (settings.problems.empty() ? "no problem said" : settings.problems[0]);
    }
}
