// The registry module as every caller uses it: path texts in, value texts out, over the real POSIX
// store in a temporary folder.

#include "support/test_registry.h"

#include <gtest/gtest.h>

namespace pl::platform {
namespace {

using test::TestRegistry;

const std::string Header = "Windows Registry Editor Version 5.00\n\n";

TEST(registry_paths, root_names_select_roots_with_their_quirks) {
    const std::tuple<std::string, RootKey, std::string> cases[] = {
        {"HKCR\\CLSID\\x", HKEY_CLASSES_ROOT, "CLSID\\x"},
        // The full classes-root name is never recognised; the path is left as it was.
        {"HKEY_CLASSES_ROOT\\CLSID", 0, "HKEY_CLASSES_ROOT\\CLSID"},
        {"hkcu\\software\\X", HKEY_CURRENT_USER, "software\\X"},
        {"Hkey_Local_Machine\\Software\\tobrin", HKEY_LOCAL_MACHINE, "Software\\tobrin"},
        {"HKEY_USERS\\.DEFAULT", HKEY_USERS, ".DEFAULT"},
        {"HKPD\\x", HKEY_PERFORMANCE_DATA, "x"},
        {"HKDD\\x", HKEY_DYN_DATA, "x"},
        // Later rows test what earlier rows left: the sub-key starts with "HKU".
        {"HKCU\\HKUsers", HKEY_USERS, "HKUsers"},
        {"HKCU\\HKLM\\Software\\x", HKEY_LOCAL_MACHINE, "Software\\x"},
        // ... but earlier rows do not look again: HKCU is tested before HKLM has been cut off.
        {"HKLM\\HKCU\\Software", HKEY_LOCAL_MACHINE, "HKCU\\Software"},
        // Prefix tests only: whatever follows the root name is not looked at.
        {"HKCUX\\Software", HKEY_CURRENT_USER, "Software"},
        // Without a "\" the path stays whole.
        {"HKLM", HKEY_LOCAL_MACHINE, "HKLM"},
        {"Software\\tobrin", 0, "Software\\tobrin"},
    };
    for (const auto& [given, root, rest] : cases) {
        std::string path = given;
        EXPECT_EQ(Registry::GetRootKey(path), root) << given;
        EXPECT_EQ(path, rest) << given;
    }
}

TEST(registry_paths, full_classes_root_name_finds_nothing_and_marker_64_opens_the_same_hive) {
    TestRegistry reg;
    Registry& r = reg.registry();
    EXPECT_EQ(r.SetRegValue("HKCR\\.plp", "Content", "profile"), "True");
    EXPECT_EQ(r.GetRegValue("HKCR\\.plp", "Content"), "profile");
    EXPECT_EQ(r.GetRegValue("HKEY_CLASSES_ROOT\\.plp", "Content"), "");
    EXPECT_EQ(r.SetRegValue("HKEY_CLASSES_ROOT\\.plp", "Content", "x"), "Create or Open Error");
    EXPECT_EQ(r.DeleteRegEntry("HKEY_CLASSES_ROOT\\.plp", "Content"), "False");
    EXPECT_EQ(r.EnumRegStringValues("HKEY_CLASSES_ROOT\\.plp"), std::string());
    EXPECT_EQ(r.GetRegValue("HKCR\\.plp", "Content"), "profile");

    EXPECT_EQ(r.SetRegValue("HKLM64\\Software\\Key", "v", "64"), "True");
    EXPECT_EQ(r.GetRegValue("HKLM\\Software\\Key", "v"), "64");
    // Whatever stands before the "64" does not matter, and only the first component is looked at.
    EXPECT_EQ(r.SetRegValue("HKCUsers64\\Software\\x", "v", "a"), "True");
    EXPECT_EQ(r.GetRegValue("HKCU\\Software\\x", "v"), "a");
    EXPECT_EQ(r.SetRegValue("HKCU\\Software64\\x", "v", "b"), "True");
    EXPECT_EQ(r.GetRegValue("HKCU\\Software64\\x", "v"), "b");
    EXPECT_EQ(r.GetRegValue("HKCU\\Software\\x", "v"), "a");
}

TEST(registry_paths, paths_shorter_than_six_characters_are_refused_except_by_enumeration) {
    TestRegistry reg;
    ASSERT_EQ(reg.backend().setValue(HKEY_USERS, "a", RegValue{"v", regtype::Sz, {'x', 0}}, 0), RegOk);
    const std::string before = reg.readHive("HKEY_USERS");
    for (const char* shortPath : {"HKU\\a", "HKU64\\a", "HKCU\\"}) {
        EXPECT_EQ(reg.registry().GetRegValue(shortPath, "v"), "") << shortPath;
        EXPECT_EQ(reg.registry().SetRegValue(shortPath, "v", "y"), "") << shortPath;
        EXPECT_EQ(reg.registry().DeleteRegEntry(shortPath, "v"), "") << shortPath;
        EXPECT_EQ(reg.registry().DeleteRegEntry(shortPath, ""), "") << shortPath;
    }
    EXPECT_EQ(reg.readHive("HKEY_USERS"), before);
    EXPECT_FALSE(reg.dir().exists("HKEY_CURRENT_USER.reg"));
    EXPECT_EQ(reg.registry().EnumRegStringValues("HKU\\a"), "v\r");
    // Six characters are enough.
    EXPECT_EQ(reg.registry().GetRegValue("HKU\\a\\", "v"), "x");
}

TEST(registry_values, text_is_stored_with_its_nul_and_deleted_value_then_key) {
    TestRegistry reg;
    Registry& r = reg.registry();
    const std::string settings = "HKCU\\Software\\tobrin\\PaperlarkXP";
    EXPECT_EQ(r.SetRegValue(settings, "LastDir", "abc"), "True");
    RegValue stored;
    ASSERT_EQ(reg.backend().queryValue(HKEY_CURRENT_USER, "Software\\tobrin\\PaperlarkXP", "LastDir", 0, stored),
              RegOk);
    EXPECT_EQ(stored.type, regtype::Sz);
    EXPECT_EQ(stored.data, (std::vector<std::uint8_t>{'a', 'b', 'c', 0}));
    // A second write replaces the value, whatever type it had.
    reg.backend().setValue(HKEY_CURRENT_USER, "Software\\tobrin\\PaperlarkXP",
                           RegValue{"n", regtype::Dword, {1, 0, 0, 0}}, 0);
    EXPECT_EQ(r.SetRegValue(settings, "N", "Ärger\\\"quoted\"\\"), "True");
    EXPECT_EQ(r.GetRegValue(settings, "n"), "Ärger\\\"quoted\"\\");

    const std::string key = "HKCU\\Software\\Classes\\VirtualStore\\MACHINE";
    ASSERT_EQ(r.SetRegValue(key + "\\x", "a", "1"), "True");
    ASSERT_EQ(r.SetRegValue(key + "\\x", "b", "2"), "True");

    EXPECT_EQ(r.DeleteRegEntry(key + "\\x", "A"), "True");
    EXPECT_EQ(r.DeleteRegEntry(key + "\\x", "a"), "False");
    EXPECT_EQ(r.GetRegValue(key + "\\x", "b"), "2");

    // An empty value name deletes the key the path names; a key with sub-keys stays.
    EXPECT_EQ(r.DeleteRegEntry(key, ""), "False");
    EXPECT_EQ(r.GetRegValue(key + "\\x", "b"), "2");
    EXPECT_EQ(r.DeleteRegEntry(key + "\\x", ""), "True");
    EXPECT_EQ(r.DeleteRegEntry(key + "\\x", ""), "False");
    EXPECT_EQ(r.DeleteRegEntry(key, ""), "True");
    EXPECT_EQ(reg.readHive("HKEY_CURRENT_USER").find("MACHINE"), std::string::npos);
}

TEST(registry_enumerate, lists_string_value_names_only) {
    TestRegistry reg;
    reg.writeHive("HKEY_CURRENT_USER", Header + "[HKEY_CURRENT_USER\\Software\\Mixed]\n"
                                                "\"first\"=\"1\"\n"
                                                "\"count\"=dword:00000003\n"
                                                "\"Second Name\"=\"\"\n"
                                                "\"path\"=hex(2):41,00,00,00\n"
                                                "@=\"default\"\n"
                                                "[HKEY_CURRENT_USER\\Software\\Numbers]\n"
                                                "\"count\"=dword:00000003\n");
    Registry& r = reg.registry();
    EXPECT_EQ(r.EnumRegStringValues("HKCU\\Software\\Mixed"), "first\rSecond Name\r\r");
    // A key without any string value gives nothing, a key that cannot be opened the empty text.
    EXPECT_EQ(r.EnumRegStringValues("HKCU\\Software\\Numbers"), std::nullopt);
    EXPECT_EQ(r.EnumRegStringValues("HKCU\\Software\\Missing"), std::string());
}

} // namespace
} // namespace pl::platform
