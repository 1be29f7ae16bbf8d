#include "converter/settings.h"

#include "platform/platform.h"
#include "support/test_registry.h"

#include <gtest/gtest.h>

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

    // A user value that is no time limit is no setting: the default, not the machine's value.
    for (const char* bad : {"soon", "0", "-5", "1.5", "99999999999999999999999"}) {
        reg.registry().SetRegValue("HKCU\\Software\\tobrin\\PaperlarkXP", "GsTimeout", bad);
        EXPECT_EQ(read(&reg.registry()).timeLimit, 600s) << bad;
    }
}
