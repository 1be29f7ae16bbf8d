#include "base/text.h"
#include "platform/posix/posix_services.h"
#include "support/scoped_env.h"

#include <gtest/gtest.h>

#include <cstring>

extern char** environ;

using pl::test::ScopedEnv;

namespace {

// Unsets every variable whose name equals `name` but for case, so that only the fallbacks remain.
void unsetAnyCase(ScopedEnv& env, const std::string& name) {
    std::vector<std::string> found;
    for (char** entry = environ; *entry; ++entry) {
        const char* equals = std::strchr(*entry, '=');
        if (equals && pl::text::iequals(std::string_view(*entry, equals - *entry), name))
            found.emplace_back(*entry, equals - *entry);
    }
    for (const auto& variable : found)
        env.set(variable, std::nullopt);
}

std::string get(std::string_view name) {
    return pl::platform::posix::PosixEnvironment().get(name);
}

} // namespace

TEST(environment, the_exact_name_wins_over_other_spellings_and_fallbacks) {
    ScopedEnv env;
    unsetAnyCase(env, "username");
    env.set("username", "exact");
    env.set("USERNAME", "upper");
    env.set("USER", "posix");
    EXPECT_EQ(get("username"), "exact");
    EXPECT_EQ(get("USERNAME"), "upper");
}

TEST(environment, another_spelling_of_the_name_is_found) {
    ScopedEnv env;
    unsetAnyCase(env, "userprofile");
    env.set("UserProfile", "/home/mixed");
    env.set("HOME", "/home/posix");
    EXPECT_EQ(get("userprofile"), "/home/mixed");
    EXPECT_EQ(get("USERPROFILE"), "/home/mixed");
}

TEST(environment, an_empty_value_counts_as_unset) {
    ScopedEnv env;
    unsetAnyCase(env, "temp");
    env.set("TEMP", "");
    env.set("TMPDIR", "/scratch");
    EXPECT_EQ(get("TEMP"), "/scratch");
}

TEST(environment, the_user_name_falls_back_to_user_then_logname) {
    ScopedEnv env;
    unsetAnyCase(env, "username");
    env.set("USER", "alice");
    env.set("LOGNAME", "bob");
    EXPECT_EQ(get("username"), "alice");
    env.set("USER", std::nullopt);
    EXPECT_EQ(get("username"), "bob");
    env.set("LOGNAME", std::nullopt);
    EXPECT_EQ(get("username"), "");
}

TEST(environment, the_profile_folder_falls_back_to_home) {
    ScopedEnv env;
    unsetAnyCase(env, "userprofile");
    env.set("HOME", "/home/alice");
    EXPECT_EQ(get("userprofile"), "/home/alice");
    env.set("HOME", std::nullopt);
    EXPECT_EQ(get("userprofile"), "");
}

TEST(environment, temp_falls_back_to_tmpdir_then_the_system_folder) {
    ScopedEnv env;
    unsetAnyCase(env, "temp");
    unsetAnyCase(env, "tmp");
    env.set("TMPDIR", "/scratch");
    EXPECT_EQ(get("temp"), "/scratch");
    EXPECT_EQ(get("TMP"), "/scratch");
    env.set("TMPDIR", std::nullopt);
    EXPECT_EQ(get("temp"), "/tmp");
}

TEST(environment, local_app_data_falls_back_to_the_data_home) {
    ScopedEnv env;
    unsetAnyCase(env, "localappdata");
    env.set("XDG_DATA_HOME", "/data");
    env.set("HOME", "/home/alice");
    EXPECT_EQ(get("LOCALAPPDATA"), "/data");
    env.set("XDG_DATA_HOME", std::nullopt);
    EXPECT_EQ(get("LOCALAPPDATA"), "/home/alice/.local/share");
    env.set("HOME", std::nullopt);
    EXPECT_EQ(get("LOCALAPPDATA"), "");
}

TEST(environment, windir_and_unknown_names_are_empty) {
    ScopedEnv env;
    unsetAnyCase(env, "windir");
    unsetAnyCase(env, "PAPERLARK_TEST_NOTHING");
    EXPECT_EQ(get("windir"), "");
    EXPECT_EQ(get("PAPERLARK_TEST_NOTHING"), "");
    EXPECT_EQ(get(""), "");
}
