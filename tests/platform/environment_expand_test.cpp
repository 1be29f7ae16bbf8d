#include "platform/environment_expand.h"
#include "platform/posix/posix_services.h"
#include "support/scoped_env.h"

#include <gtest/gtest.h>

using pl::platform::ReplaceEnviron;
using pl::test::ScopedEnv;

namespace {

std::string expand(std::string text) {
    pl::platform::posix::PosixEnvironment env;
    return ReplaceEnviron(text, env);
}

} // namespace

TEST(replace_environ, references_are_replaced_and_the_rest_kept) {
    ScopedEnv env("TEMP", "/var/tmp/job files");
    EXPECT_EQ(expand("%TEMP%\\plAssist.log"), "/var/tmp/job files\\plAssist.log");
    EXPECT_EQ(expand("a%TEMP%b%TEMP%c"), "a/var/tmp/job filesb/var/tmp/job filesc");
    EXPECT_EQ(expand("no reference"), "no reference");
    EXPECT_EQ(expand(""), "");
}

TEST(replace_environ, names_ignore_case_and_undefined_ones_vanish) {
    ScopedEnv env;
    env.set("PAPERLARK_TEST_SPOOL", "/spool/");
    env.set("PAPERLARK_TEST_UNSET", std::nullopt);
    EXPECT_EQ(expand("%paperlark_test_spool%jobs"), "/spool/jobs");
    EXPECT_EQ(expand("[%PAPERLARK_TEST_UNSET%]"), "[]");
}

TEST(replace_environ, the_windows_temp_name_falls_back_to_the_local_one) {
    ScopedEnv env;
    for (const char* name : {"TEMP", "temp", "Temp"})
        env.set(name, std::nullopt);
    env.set("TMPDIR", "/scratch");
    EXPECT_EQ(expand("%temp%/x.ps"), "/scratch/x.ps");
}

TEST(replace_environ, lone_percent_signs_survive_and_stars_become_percent_signs) {
    EXPECT_EQ(expand("100%"), "100%");
    EXPECT_EQ(expand("%start"), "%start");
    EXPECT_EQ(expand("a*b"), "a%b");
    EXPECT_EQ(expand("**"), "%%");
}

TEST(replace_environ, a_double_percent_sign_vanishes) {
    EXPECT_EQ(expand("12%%"), "12");
    EXPECT_EQ(expand("%%x%%y"), "xy");
}

TEST(replace_environ, a_value_holding_a_reference_is_expanded_again) {
    ScopedEnv env;
    env.set("PAPERLARK_TEST_INNER", "inner");
    env.set("PAPERLARK_TEST_OUTER", "<%PAPERLARK_TEST_INNER%>");
    EXPECT_EQ(expand("%PAPERLARK_TEST_OUTER%"), "<inner>");
    // A value's "*" and lone "%" go through the same round trip as the text's own.
    env.set("PAPERLARK_TEST_OUTER", "50% *off*");
    EXPECT_EQ(expand("%PAPERLARK_TEST_OUTER%!"), "50% %off%!");
}

TEST(replace_environ, rewrites_the_callers_text) {
    ScopedEnv env("PAPERLARK_TEST_DIR", "/d");
    pl::platform::posix::PosixEnvironment environment;
    std::string path = "%PAPERLARK_TEST_DIR%/f";
    std::string& result = ReplaceEnviron(path, environment);
    EXPECT_EQ(&result, &path);
    EXPECT_EQ(path, "/d/f");
}

TEST(replace_environ, a_variable_referring_to_itself_ends) {
    ScopedEnv env("PAPERLARK_TEST_LOOP", "x%PAPERLARK_TEST_LOOP%%PAPERLARK_TEST_LOOP%");
    const std::string result = expand("%PAPERLARK_TEST_LOOP%");
    EXPECT_NE(result.find("PAPERLARK_TEST_LOOP"), std::string::npos);
}
