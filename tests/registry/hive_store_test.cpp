// The POSIX store itself: hive files shared by processes, files edited by hand, Windows semantics
// of names and deletes.

#include "base/text.h"
#include "platform/posix/registry/hive_store.h"
#include "platform/posix/registry/regedit_format.h"
#include "support/test_registry.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace pl::platform::posix {
namespace {

using test::ScopedEnv;
using test::TempDir;
using test::TestRegistry;

const std::string Header = "Windows Registry Editor Version 5.00\n\n";

std::vector<std::string> filesIn(const std::filesystem::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

TEST(hive_store, hive_that_does_not_parse_is_reported_and_never_overwritten) {
    TestRegistry reg;
    const std::string broken = Header + "[HKEY_CURRENT_USER\\Software\\tobrin\\PaperlarkXP]\n"
                                        "\"Style\"=\"1\"\n"
                                        "\"psdir\"=hex:zz\n";
    reg.writeHive("HKEY_CURRENT_USER", broken);

    const std::optional<std::string> problem = reg.backend().hiveProblem(HKEY_CURRENT_USER);
    ASSERT_TRUE(problem);
    EXPECT_NE(problem->find("HKEY_CURRENT_USER.reg, line 5"), std::string::npos) << *problem;
    EXPECT_FALSE(reg.backend().hiveProblem(HKEY_LOCAL_MACHINE));

    Registry& r = reg.registry();
    EXPECT_EQ(r.GetRegValue("HKCU\\Software\\tobrin\\PaperlarkXP", "Style"), "");
    EXPECT_EQ(r.SetRegValue("HKCU\\Software\\tobrin\\PaperlarkXP", "Style", "2"), "Create or Open Error");
    EXPECT_EQ(reg.backend().setValue(HKEY_CURRENT_USER, "Software", RegValue{"v", regtype::Sz, {0}}, 0),
              RegCannotWrite);
    EXPECT_EQ(reg.backend().deleteValue(HKEY_CURRENT_USER, "Software\\tobrin\\PaperlarkXP", "Style", 0),
              RegCannotWrite);
    EXPECT_EQ(reg.backend().deleteKey(HKEY_CURRENT_USER, "Software\\tobrin\\PaperlarkXP", 0), RegCannotWrite);
    EXPECT_EQ(reg.readHive("HKEY_CURRENT_USER"), broken);
    EXPECT_EQ(filesIn(reg.dir().path()),
              (std::vector<std::string>{"HKEY_CURRENT_USER.reg", "HKEY_CURRENT_USER.reg.lock"}));

    // Other hives go on working, and so does this one once the file is put right.
    EXPECT_EQ(r.SetRegValue("HKLM\\Software\\tobrin\\PaperlarkXP", "Style", "3"), "True");
    reg.writeHive("HKEY_CURRENT_USER", Header + "[HKEY_CURRENT_USER\\Software\\tobrin\\PaperlarkXP]\n"
                                                "\"Style\"=\"1\"\n");
    EXPECT_FALSE(reg.backend().hiveProblem(HKEY_CURRENT_USER));
    EXPECT_EQ(r.GetRegValue("HKCU\\Software\\tobrin\\PaperlarkXP", "Style"), "1");
    EXPECT_EQ(r.SetRegValue("HKCU\\Software\\tobrin\\PaperlarkXP", "Style", "2"), "True");
    EXPECT_EQ(r.GetRegValue("HKCU\\Software\\tobrin\\PaperlarkXP", "Style"), "2");
}

TEST(hive_store, section_of_another_root_makes_the_hive_unusable) {
    TestRegistry reg;
    const std::string mixed = Header + "[HKEY_CURRENT_USER\\Software\\A]\n\"v\"=\"1\"\n\n"
                                       "[HKEY_LOCAL_MACHINE\\Software\\B]\n\"v\"=\"2\"\n";
    reg.writeHive("HKEY_CURRENT_USER", mixed);
    const std::optional<std::string> problem = reg.backend().hiveProblem(HKEY_CURRENT_USER);
    ASSERT_TRUE(problem);
    EXPECT_NE(problem->find("line 6"), std::string::npos) << *problem;
    EXPECT_EQ(reg.registry().SetRegValue("HKCU\\Software\\A", "v", "3"), "Create or Open Error");
    EXPECT_EQ(reg.readHive("HKEY_CURRENT_USER"), mixed);
}

TEST(hive_store, names_compare_without_case_and_keep_their_first_spelling) {
    TestRegistry reg;
    Registry& r = reg.registry();
    ASSERT_EQ(r.SetRegValue("HKCU\\Software\\MyCompany\\MyKey", "MyValue", "1"), "True");
    ASSERT_EQ(r.SetRegValue("HKCU\\SOFTWARE\\mycompany\\MYKEY", "MYVALUE", "2"), "True");
    ASSERT_EQ(r.SetRegValue("HKCU\\software\\MYCOMPANY\\mykey\\Sub", "Ärger", "3"), "True");
    ASSERT_EQ(r.SetRegValue("HKCU\\software\\MYCOMPANY\\mykey\\SUB", "äRGER", "4"), "True");

    EXPECT_EQ(r.GetRegValue("HKCU\\Software\\MyCompany\\MyKey", "myvalue"), "2");
    EXPECT_EQ(r.GetRegValue("HKCU\\Software\\MyCompany\\MyKey\\sub", "ÄRGER"), "4");
    EXPECT_EQ(r.EnumRegStringValues("HKCU\\SOFTWARE\\MYCOMPANY\\MYKEY"), "MyValue\r");
    EXPECT_EQ(reg.readHive("HKEY_CURRENT_USER"), Header + "[HKEY_CURRENT_USER\\Software]\n\n"
                                                          "[HKEY_CURRENT_USER\\Software\\MyCompany]\n\n"
                                                          "[HKEY_CURRENT_USER\\Software\\MyCompany\\MyKey]\n"
                                                          "\"MyValue\"=\"2\"\n\n"
                                                          "[HKEY_CURRENT_USER\\Software\\MyCompany\\MyKey\\Sub]\n"
                                                          "\"Ärger\"=\"4\"\n\n");
}

TEST(hive_store, key_with_sub_keys_cannot_be_deleted) {
    TestRegistry reg;
    PosixRegistry& store = reg.backend();
    ASSERT_EQ(store.createKey(HKEY_LOCAL_MACHINE, "Software\\Parent\\Child", 0), RegOk);
    EXPECT_EQ(store.deleteKey(HKEY_LOCAL_MACHINE, "Software\\Parent", 0), RegKeyHasChildren);
    EXPECT_TRUE(store.keyExists(HKEY_LOCAL_MACHINE, "Software\\Parent\\Child", 0));
    EXPECT_EQ(store.deleteKey(HKEY_LOCAL_MACHINE, "", 0), RegAccessDenied);
    EXPECT_EQ(store.deleteKey(HKEY_LOCAL_MACHINE, "Software\\Nothing", 0), RegFileNotFound);
    EXPECT_EQ(store.deleteKey(HKEY_LOCAL_MACHINE, "software\\parent\\child", 0), RegOk);
    EXPECT_EQ(store.deleteKey(HKEY_LOCAL_MACHINE, "Software\\Parent", 0), RegOk);
    EXPECT_FALSE(store.keyExists(HKEY_LOCAL_MACHINE, "Software\\Parent", 0));
    EXPECT_TRUE(store.keyExists(HKEY_LOCAL_MACHINE, "Software", 0));
    EXPECT_EQ(store.deleteKey(0, "Software", 0), RegInvalidHandle);
}

TEST(hive_store, stores_on_one_folder_see_each_others_changes_and_keep_them) {
    TempDir dir;
    PosixRegistry first(dir.path());
    PosixRegistry second(dir.path());
    const RegValue one{"one", regtype::Sz, {'1', 0}};
    const RegValue two{"two", regtype::Sz, {'2', 0}};
    RegValue read;
    // The second store has read the hive before the first one changes it.
    EXPECT_EQ(second.queryValue(HKEY_CURRENT_USER, "Software\\Shared", "one", 0, read), RegFileNotFound);
    ASSERT_EQ(first.setValue(HKEY_CURRENT_USER, "Software\\Shared", one, 0), RegOk);
    EXPECT_EQ(second.queryValue(HKEY_CURRENT_USER, "Software\\Shared", "one", 0, read), RegOk);
    ASSERT_EQ(second.setValue(HKEY_CURRENT_USER, "Software\\Shared", two, 0), RegOk);
    std::vector<RegValue> values;
    ASSERT_EQ(first.enumValues(HKEY_CURRENT_USER, "Software\\Shared", 0, values), RegOk);
    ASSERT_EQ(values.size(), 2u);

    // A change by hand, the same size as before, is seen at once.
    const std::string edited = text::replaceAll(dir.read("HKEY_CURRENT_USER.reg"), "\"one\"=\"1\"", "\"one\"=\"9\"");
    ASSERT_NE(edited, dir.read("HKEY_CURRENT_USER.reg"));
    dir.write("HKEY_CURRENT_USER.reg", edited);
    ASSERT_EQ(first.queryValue(HKEY_CURRENT_USER, "Software\\Shared", "one", 0, read), RegOk);
    EXPECT_EQ(read.data, (std::vector<std::uint8_t>{'9', 0}));
}

TEST(hive_store, hives_lie_in_the_user_config_and_machine_folders_unless_one_folder_is_given) {
    TempDir home;
    ScopedEnv env;
    env.set("PAPERLARK_REGISTRY_DIR", std::nullopt);
    env.set("HOME", home.path().string());
    env.set("XDG_CONFIG_HOME", std::nullopt);
    {
        PosixRegistry store;
        EXPECT_EQ(store.hiveFile(HKEY_CURRENT_USER), home.path() / ".config/paperlark/HKEY_CURRENT_USER.reg");
        EXPECT_EQ(store.hiveFile(HKEY_LOCAL_MACHINE), "/etc/paperlark/HKEY_LOCAL_MACHINE.reg");
        EXPECT_EQ(store.hiveFile(HKEY_CLASSES_ROOT), "/etc/paperlark/HKEY_CLASSES_ROOT.reg");
        EXPECT_EQ(store.hiveFile(HKEY_USERS), "/etc/paperlark/HKEY_USERS.reg");
        // The user's first write creates the folder.
        ASSERT_EQ(store.setValue(HKEY_CURRENT_USER, "Software", RegValue{"v", regtype::Sz, {'x', 0}}, 0), RegOk);
        EXPECT_TRUE(home.exists(".config/paperlark/HKEY_CURRENT_USER.reg"));
    }
    env.set("XDG_CONFIG_HOME", (home.path() / "xdg").string());
    EXPECT_EQ(PosixRegistry().hiveFile(HKEY_CURRENT_USER), home.path() / "xdg/paperlark/HKEY_CURRENT_USER.reg");
    env.set("PAPERLARK_REGISTRY_DIR", (home.path() / "sandbox").string());
    EXPECT_EQ(PosixRegistry().hiveFile(HKEY_CURRENT_USER), home.path() / "sandbox/HKEY_CURRENT_USER.reg");
    EXPECT_EQ(PosixRegistry().hiveFile(HKEY_DYN_DATA), home.path() / "sandbox/HKEY_DYN_DATA.reg");
}

} // namespace
} // namespace pl::platform::posix
