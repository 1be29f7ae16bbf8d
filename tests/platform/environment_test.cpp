#include "base/text.h"
#include "platform/environment_expand.h"
#include "platform/posix/posix_services.h"
#include "platform/posix/xdg_dirs.h"
#include "support/scoped_env.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <cstring>

extern char** environ;

using pl::platform::ReplaceEnviron;
using pl::test::ScopedEnv;
using namespace pl::platform::posix;

namespace {

// Unsets every variable that is one of `names` but for case, so that only the fallbacks remain.
void unsetAnyCase(ScopedEnv& env, std::initializer_list<std::string_view> names) {
    std::vector<std::string> found;
    for (char** entry = environ; *entry; ++entry) {
        const char* equals = std::strchr(*entry, '=');
        for (const auto name : names)
            if (equals && pl::text::iequals(std::string_view(*entry, equals - *entry), name))
                found.emplace_back(*entry, equals - *entry);
    }
    for (const auto& variable : found)
        env.set(variable, std::nullopt);
}

} // namespace

TEST(environment, windows_names_fall_back_to_their_posix_counterparts) {
    struct Case {
        std::vector<std::pair<std::string, std::optional<std::string>>> set;
        std::string name;
        std::string expected;
    };
    const Case cases[] = {
        // The exact name wins over other spellings and the fallbacks; another spelling is found.
        {{{"username", "exact"}, {"USERNAME", "upper"}, {"USER", "posix"}}, "username", "exact"},
        {{{"UserProfile", "/home/mixed"}, {"HOME", "/home/posix"}}, "USERPROFILE", "/home/mixed"},
        // An empty value counts as unset.
        {{{"TEMP", ""}, {"TMPDIR", "/scratch"}}, "TEMP", "/scratch"},
        {{{"USER", "alice"}, {"LOGNAME", "bob"}}, "username", "alice"},
        {{{"LOGNAME", "bob"}}, "username", "bob"},
        {{}, "username", ""},
        {{{"HOME", "/home/alice"}}, "userprofile", "/home/alice"},
        {{{"TMPDIR", "/scratch"}}, "TMP", "/scratch"},
        {{}, "temp", "/tmp"},
        {{{"XDG_DATA_HOME", "/data"}, {"HOME", "/home/alice"}}, "LOCALAPPDATA", "/data"},
        {{{"HOME", "/home/alice"}}, "LOCALAPPDATA", "/home/alice/.local/share"},
        {{}, "LOCALAPPDATA", ""},
    };
    for (const Case& c : cases) {
        ScopedEnv env;
        unsetAnyCase(env, {"username", "user", "logname", "userprofile", "home", "temp", "tmp", "tmpdir",
                           "localappdata", "xdg_data_home"});
        for (const auto& [name, value] : c.set)
            env.set(name, value);
        EXPECT_EQ(PosixEnvironment().get(c.name), c.expected) << c.name;
    }
}

TEST(replace_environ, replaces_references_in_the_callers_text) {
    ScopedEnv env;
    env.set("TEMP", "/var/tmp/job files");
    env.set("PAPERLARK_TEST_SPOOL", "/spool/");
    env.set("PAPERLARK_TEST_UNSET", std::nullopt);
    env.set("PAPERLARK_TEST_INNER", "inner");
    env.set("PAPERLARK_TEST_OUTER", "<%PAPERLARK_TEST_INNER%>");
    // A value's "*" and lone "%" go through the same round trip as the text's own.
    env.set("PAPERLARK_TEST_SALE", "50% *off*");
    const std::pair<std::string, std::string> cases[] = {
        {"%TEMP%\\plAssist.log", "/var/tmp/job files\\plAssist.log"},
        {"a%TEMP%b%TEMP%c", "a/var/tmp/job filesb/var/tmp/job filesc"},
        {"", ""},
        // Names ignore case and undefined ones vanish.
        {"%paperlark_test_spool%jobs", "/spool/jobs"},
        {"[%PAPERLARK_TEST_UNSET%]", "[]"},
        // Lone percent signs survive, stars become percent signs, a double percent sign vanishes.
        {"100%", "100%"},
        {"%start", "%start"},
        {"a*b**", "a%b%%"},
        {"12%%x%%y", "12xy"},
        // A value holding a reference is expanded again.
        {"%PAPERLARK_TEST_OUTER%", "<inner>"},
        {"%PAPERLARK_TEST_SALE%!", "50% %off%!"},
    };
    PosixEnvironment environment;
    for (const auto& [given, expected] : cases) {
        std::string text = given;
        EXPECT_EQ(&ReplaceEnviron(text, environment), &text);
        EXPECT_EQ(text, expected) << given;
    }
    // A variable referring to itself ends.
    env.set("PAPERLARK_TEST_LOOP", "x%PAPERLARK_TEST_LOOP%%PAPERLARK_TEST_LOOP%");
    std::string loop = "%PAPERLARK_TEST_LOOP%";
    EXPECT_NE(ReplaceEnviron(loop, environment).find("PAPERLARK_TEST_LOOP"), std::string::npos);
    // The Windows temp name falls back to the local one.
    for (const char* name : {"TEMP", "temp", "Temp"})
        env.set(name, std::nullopt);
    env.set("TMPDIR", "/scratch");
    std::string temp = "%temp%/x.ps";
    EXPECT_EQ(ReplaceEnviron(temp, environment), "/scratch/x.ps");
}

TEST(xdg_dirs, desktop_comes_from_the_environment_then_user_dirs_then_home) {
    pl::test::TempDir config;
    ScopedEnv env;
    env.set("HOME", "/home/tester");
    env.set("XDG_CONFIG_HOME", config.path().string());
    env.set("XDG_DESKTOP_DIR", std::nullopt);
    env.set("XDG_DOCUMENTS_DIR", std::nullopt);
    EXPECT_EQ(xdgDesktopDir(), "/home/tester/Desktop");
    config.write("user-dirs.dirs", "# written by the desktop\n"
                                   "XDG_DOCUMENTS_DIR=\"docs\"\n"
                                   "  XDG_DESKTOP_DIR=\"$HOME/Schreib \\\"tisch\\\"\"\n");
    EXPECT_EQ(xdgDesktopDir(), "/home/tester/Schreib \"tisch\"");
    // A relative entry is ignored.
    EXPECT_EQ(xdgDocumentsDir(), "/home/tester/Documents");
    env.set("XDG_DESKTOP_DIR", "/srv/desk/");
    EXPECT_EQ(xdgDesktopDir(), "/srv/desk");
}
