#include "platform/platform.h"
#include "platform/registry.h"
#include "support/test_registry.h"

#include <gtest/gtest.h>

#include <algorithm>

TEST(native_platform, its_registry_is_the_file_store_the_environment_names) {
    pl::test::TestRegistry reg;
    auto os = pl::platform::makeNativePlatform();
    pl::platform::Registry registry(os->registry());
    ASSERT_EQ(registry.SetRegValue("HKCU\\Software\\tobrin\\PaperlarkXP", "psdir", "/spool/"), "True");
    EXPECT_NE(reg.readHive("HKEY_CURRENT_USER").find("\"psdir\"=\"/spool/\""), std::string::npos);
    EXPECT_EQ(reg.registry().GetRegValue("HKCU\\Software\\tobrin\\PaperlarkXP", "psdir"), "/spool/");
}

TEST(native_platform, random_numbers_stay_below_one_and_vary) {
    auto os = pl::platform::makeNativePlatform();
    double lowest = 1.0;
    double highest = 0.0;
    for (int i = 0; i < 10000; ++i) {
        const double r = os->random().next();
        ASSERT_GE(r, 0.0);
        ASSERT_LT(r, 1.0);
        lowest = std::min(lowest, r);
        highest = std::max(highest, r);
    }
    EXPECT_LT(lowest, 0.01);
    EXPECT_GT(highest, 0.99);
    // Two platforms are seeded independently.
    EXPECT_NE(pl::platform::makeNativePlatform()->random().next(), pl::platform::makeNativePlatform()->random().next());
}
