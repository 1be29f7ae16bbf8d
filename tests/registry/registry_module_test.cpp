// The registry module as every caller uses it: path texts in, value texts out, over the real POSIX
// store in a temporary folder.

#include "base/errors.h"
#include "support/test_registry.h"

#include <gtest/gtest.h>

namespace pl::platform {
namespace {

using test::TestRegistry;

const std::string Header = "Windows Registry Editor Version 5.00\n\n";

struct RootCase {
    std::string path;
    RootKey root;
    std::string rest;
};

TEST(registry_paths, root_names_select_roots_with_their_quirks) {
    const RootCase cases[] = {
        {"HKCR\\CLSID\\x", HKEY_CLASSES_ROOT, "CLSID\\x"},
        // The full classes-root name is never recognised; the path is left as it was.
        {"HKEY_CLASSES_ROOT\\CLSID", 0, "HKEY_CLASSES_ROOT\\CLSID"},
        {"hkcu\\software\\X", HKEY_CURRENT_USER, "software\\X"},
        {"HKEY_CURRENT_USER\\Software", HKEY_CURRENT_USER, "Software"},
        {"Hkey_Local_Machine\\Software\\tobrin", HKEY_LOCAL_MACHINE, "Software\\tobrin"},
        {"HKEY_USERS\\.DEFAULT", HKEY_USERS, ".DEFAULT"},
        {"HKPD\\x", HKEY_PERFORMANCE_DATA, "x"},
        {"HKEY_CURRENT_CONFIG\\System", HKEY_CURRENT_CONFIG, "System"},
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
        {"", 0, ""},
    };
    for (const RootCase& c : cases) {
        std::string path = c.path;
        EXPECT_EQ(Registry::GetRootKey(path), c.root) << c.path;
        EXPECT_EQ(path, c.rest) << c.path;
    }
}

TEST(registry_paths, hex_byte_is_two_upper_case_digits_below_256) {
    EXPECT_EQ(Registry::HexByte(0), "00");
    EXPECT_EQ(Registry::HexByte(10), "0A");
    EXPECT_EQ(Registry::HexByte(16), "10");
    EXPECT_EQ(Registry::HexByte(171), "AB");
    EXPECT_EQ(Registry::HexByte(255), "FF");
    // Only the bits 0xF0 decide about the leading zero.
    EXPECT_EQ(Registry::HexByte(256), "0100");
}

TEST(registry_paths, full_classes_root_name_reads_and_writes_nothing) {
    TestRegistry reg;
    EXPECT_EQ(reg.registry().SetRegValue("HKCR\\.plp", "Content", "profile"), "True");
    EXPECT_EQ(reg.registry().GetRegValue("HKCR\\.plp", "Content"), "profile");
    EXPECT_EQ(reg.registry().GetRegValue("HKEY_CLASSES_ROOT\\.plp", "Content"), "");
    EXPECT_EQ(reg.registry().SetRegValue("HKEY_CLASSES_ROOT\\.plp", "Content", "x"), "Create or Open Error");
    EXPECT_EQ(reg.registry().DeleteRegEntry("HKEY_CLASSES_ROOT\\.plp", "Content"), "False");
    EXPECT_EQ(reg.registry().EnumRegStringValues("HKEY_CLASSES_ROOT\\.plp"), std::string());
    EXPECT_NE(reg.readHive("HKEY_CLASSES_ROOT").find("[HKEY_CLASSES_ROOT\\.plp]"), std::string::npos);
}

TEST(registry_paths, sub_key_keeps_its_case_and_matches_any_case) {
    TestRegistry reg;
    EXPECT_EQ(reg.registry().SetRegValue("hkcu\\software\\Tobrin\\PaperlarkXP", "Style", "2"), "True");
    EXPECT_EQ(reg.registry().GetRegValue("HKCU\\SOFTWARE\\TOBRIN\\paperlarkxp", "style"), "2");
    EXPECT_NE(reg.readHive("HKEY_CURRENT_USER").find("[HKEY_CURRENT_USER\\software\\Tobrin\\PaperlarkXP]"),
              std::string::npos);
}

TEST(registry_paths, marker_64_on_the_first_component_opens_the_same_hive) {
    TestRegistry reg;
    EXPECT_EQ(reg.registry().SetRegValue("HKLM64\\Software\\Key", "v", "64"), "True");
    EXPECT_EQ(reg.registry().GetRegValue("HKLM\\Software\\Key", "v"), "64");
    EXPECT_EQ(reg.registry().GetRegValue("HKEY_LOCAL_MACHINE64\\Software\\Key", "v"), "64");
    // Whatever stands before the "64" does not matter, and only the first component is looked at.
    EXPECT_EQ(reg.registry().SetRegValue("HKCUsers64\\Software\\x", "v", "a"), "True");
    EXPECT_EQ(reg.registry().GetRegValue("HKCU\\Software\\x", "v"), "a");
    EXPECT_EQ(reg.registry().SetRegValue("HKCU\\Software64\\x", "v", "b"), "True");
    EXPECT_EQ(reg.registry().GetRegValue("HKCU\\Software64\\x", "v"), "b");
    EXPECT_EQ(reg.registry().GetRegValue("HKCU\\Software\\x", "v"), "a");
    EXPECT_EQ(reg.registry().EnumRegStringValues("HKLM64\\Software\\Key"), "v\r");
    EXPECT_EQ(reg.registry().DeleteRegEntry("HKLM64\\Software\\Key", "v"), "True");
    EXPECT_EQ(reg.registry().GetRegValue("HKLM\\Software\\Key", "v"), "");
}

TEST(registry_paths, paths_shorter_than_six_characters_are_refused_except_by_enumeration) {
    TestRegistry reg;
    ASSERT_EQ(reg.backend().setValue(HKEY_USERS, "a", RegValue{"v", regtype::Sz, {'x', 0}}, 0), RegOk);
    const std::string before = reg.readHive("HKEY_USERS");

    for (const char* shortPath : {"HKU\\a", "HKU64\\a", "HKCU", "HKCU\\"}) {
        EXPECT_EQ(reg.registry().GetRegValue(shortPath, "v"), "") << shortPath;
        EXPECT_EQ(reg.registry().SetRegValue(shortPath, "v", "y"), "") << shortPath;
        EXPECT_EQ(reg.registry().DeleteRegEntry(shortPath, "v"), "") << shortPath;
        EXPECT_EQ(reg.registry().DeleteRegEntry(shortPath, ""), "") << shortPath;
    }
    EXPECT_EQ(reg.readHive("HKEY_USERS"), before);
    EXPECT_FALSE(reg.dir().exists("HKEY_CURRENT_USER.reg"));
    EXPECT_EQ(reg.registry().EnumRegStringValues("HKU\\a"), "v\r");
    EXPECT_EQ(reg.registry().EnumRegStringValues("HKU64\\a"), "v\r");
    // Six characters are enough.
    EXPECT_EQ(reg.registry().GetRegValue("HKU\\a\\", "v"), "x");
}

TEST(registry_values, reading_converts_each_type_as_text) {
    TestRegistry reg;
    reg.writeHive("HKEY_CURRENT_USER", Header + "[HKEY_CURRENT_USER\\Software\\T]\n"
                                                "\"bin\"=hex:00,ff\n"
                                                "\"bin2\"=hex:01,ab,0a\n"
                                                "\"nobytes\"=hex:\n"
                                                "\"zero\"=dword:00000000\n"
                                                "\"one\"=dword:00000001\n"
                                                "\"d256\"=dword:00000100\n"
                                                "\"dmax\"=dword:7fffffff\n"
                                                "\"empty\"=\"\"\n"
                                                "\"text\"=\"Grüße \\\"x\\\"\"\n"
                                                "\"expand\"=hex(2):25,00,54,00,45,00,4d,00,50,00,25,00,00,00\n"
                                                "\"multi\"=hex(7):61,00,00,00,62,00,00,00,00,00\n"
                                                "\"noNul\"=hex(1):61,00,62,00\n"
                                                "\"qword\"=hex(b):41,42,43,44,00,00,00,00\n");
    Registry& r = reg.registry();
    const std::string key = "HKCU\\Software\\T";
    EXPECT_EQ(r.GetRegValue(key, "bin"), "00:FF:");
    EXPECT_EQ(r.GetRegValue(key, "bin2"), "01:AB:0A:");
    EXPECT_EQ(r.GetRegValue(key, "nobytes"), "");
    EXPECT_EQ(r.GetRegValue(key, "zero"), "0");
    EXPECT_EQ(r.GetRegValue(key, "one"), "1");
    EXPECT_EQ(r.GetRegValue(key, "d256"), "256");
    EXPECT_EQ(r.GetRegValue(key, "dmax"), "2147483647");
    EXPECT_EQ(r.GetRegValue(key, "empty"), "");
    EXPECT_EQ(r.GetRegValue(key, "text"), "Grüße \"x\"");
    // No expansion of environment references.
    EXPECT_EQ(r.GetRegValue(key, "expand"), "%TEMP%");
    EXPECT_EQ(r.GetRegValue(key, "multi"), std::string("a\0b\0", 4));
    // Without its NUL the last character is what gets cut.
    EXPECT_EQ(r.GetRegValue(key, "noNul"), "a");
    EXPECT_EQ(r.GetRegValue(key, "qword"), std::string("ABCD\0\0\0", 7));
    EXPECT_EQ(r.GetRegValue(key, "missing"), "");
    EXPECT_EQ(r.GetRegValue("HKCU\\Software\\Missing", "text"), "");
}

TEST(registry_values, dword_of_0x80000000_and_above_raises_overflow_to_the_caller) {
    TestRegistry reg;
    reg.writeHive("HKEY_LOCAL_MACHINE", Header + "[HKEY_LOCAL_MACHINE\\Software\\T]\n"
                                                 "\"big\"=dword:80000000\n"
                                                 "\"all\"=dword:ffffffff\n");
    for (const char* name : {"big", "all"}) {
        try {
            reg.registry().GetRegValue("HKLM\\Software\\T", name);
            ADD_FAILURE() << name << " did not overflow";
        } catch (const RuntimeError& e) {
            EXPECT_EQ(e.number(), err::Overflow) << name;
        }
    }
}

TEST(registry_values, writing_stores_text_with_its_nul_and_reads_back) {
    TestRegistry reg;
    Registry& r = reg.registry();
    EXPECT_EQ(r.SetRegValue("HKCU\\Software\\tobrin\\PaperlarkXP", "LastDir", "abc"), "True");
    RegValue stored;
    ASSERT_EQ(reg.backend().queryValue(HKEY_CURRENT_USER, "Software\\tobrin\\PaperlarkXP", "LastDir", 0, stored),
              RegOk);
    EXPECT_EQ(stored.type, regtype::Sz);
    EXPECT_EQ(stored.data, (std::vector<std::uint8_t>{'a', 'b', 'c', 0}));
    EXPECT_EQ(r.GetRegValue("HKCU\\Software\\tobrin\\PaperlarkXP", "LastDir"), "abc");

    // A second write replaces the value, whatever type it had.
    reg.backend().setValue(HKEY_CURRENT_USER, "Software\\tobrin\\PaperlarkXP",
                           RegValue{"n", regtype::Dword, {1, 0, 0, 0}}, 0);
    EXPECT_EQ(r.SetRegValue("HKCU\\Software\\tobrin\\PaperlarkXP", "N", "Ärger\\\"quoted\"\\"), "True");
    EXPECT_EQ(r.GetRegValue("HKCU\\Software\\tobrin\\PaperlarkXP", "n"), "Ärger\\\"quoted\"\\");
    EXPECT_EQ(r.SetRegValue("HKCU\\Software\\tobrin\\PaperlarkXP", "", "default"), "True");
    EXPECT_EQ(r.GetRegValue("HKCU\\Software\\tobrin\\PaperlarkXP", ""), "default");
    EXPECT_NE(reg.readHive("HKEY_CURRENT_USER").find("@=\"default\""), std::string::npos);
}

TEST(registry_values, writing_reports_create_failure_and_set_failure) {
    TestRegistry reg;
    Registry& r = reg.registry();
    // A key name with a line break cannot be created, a value name with one cannot be set.
    EXPECT_EQ(r.SetRegValue("HKCU\\Software\\a\nb", "v", "x"), "Create or Open Error");
    EXPECT_EQ(r.SetRegValue("HKCU\\Software\\ok", "a\nb", "x"), "False");
    EXPECT_EQ(r.SetRegValue("HKCU\\\\Software", "v", "x"), "Create or Open Error");
    EXPECT_EQ(r.SetRegValue("Software\\tobrin", "v", "x"), "Create or Open Error");
}

TEST(registry_delete, value_then_key_and_never_a_key_with_sub_keys) {
    TestRegistry reg;
    Registry& r = reg.registry();
    ASSERT_EQ(r.SetRegValue("HKCU\\Software\\Classes\\VirtualStore\\MACHINE\\x", "a", "1"), "True");
    ASSERT_EQ(r.SetRegValue("HKCU\\Software\\Classes\\VirtualStore\\MACHINE\\x", "b", "2"), "True");

    EXPECT_EQ(r.DeleteRegEntry("HKCU\\Software\\Classes\\VirtualStore\\MACHINE\\x", "A"), "True");
    EXPECT_EQ(r.DeleteRegEntry("HKCU\\Software\\Classes\\VirtualStore\\MACHINE\\x", "a"), "False");
    EXPECT_EQ(r.DeleteRegEntry("HKCU\\Software\\Missing\\x", "b"), "False");
    EXPECT_EQ(r.GetRegValue("HKCU\\Software\\Classes\\VirtualStore\\MACHINE\\x", "b"), "2");

    // An empty value name deletes the key the path names; a key with sub-keys stays.
    EXPECT_EQ(r.DeleteRegEntry("HKCU\\Software\\Classes\\VirtualStore\\MACHINE", ""), "False");
    EXPECT_EQ(r.GetRegValue("HKCU\\Software\\Classes\\VirtualStore\\MACHINE\\x", "b"), "2");
    EXPECT_EQ(r.DeleteRegEntry("HKCU64\\Software\\Classes\\VirtualStore\\MACHINE\\x", ""), "True");
    EXPECT_EQ(r.EnumRegStringValues("HKCU\\Software\\Classes\\VirtualStore\\MACHINE\\x"), std::string());
    EXPECT_EQ(r.DeleteRegEntry("HKCU\\Software\\Classes\\VirtualStore\\MACHINE\\x", ""), "False");
    EXPECT_EQ(r.DeleteRegEntry("HKCU\\Software\\Classes\\VirtualStore\\MACHINE", ""), "True");
    EXPECT_EQ(reg.readHive("HKEY_CURRENT_USER").find("MACHINE"), std::string::npos);
}

TEST(registry_enumerate, lists_string_value_names_only) {
    TestRegistry reg;
    reg.writeHive("HKEY_CURRENT_USER", Header + "[HKEY_CURRENT_USER\\Software\\Mixed]\n"
                                                "\"first\"=\"1\"\n"
                                                "\"count\"=dword:00000003\n"
                                                "\"Second Name\"=\"\"\n"
                                                "\"path\"=hex(2):41,00,00,00\n"
                                                "\"bytes\"=hex:01\n"
                                                "@=\"default\"\n"
                                                "[HKEY_CURRENT_USER\\Software\\Numbers]\n"
                                                "\"count\"=dword:00000003\n"
                                                "[HKEY_CURRENT_USER\\Software\\Empty]\n");
    Registry& r = reg.registry();
    EXPECT_EQ(r.EnumRegStringValues("HKCU\\Software\\Mixed"), "first\rSecond Name\r\r");
    // A key without any string value gives nothing, a key that cannot be opened the empty text.
    EXPECT_EQ(r.EnumRegStringValues("HKCU\\Software\\Numbers"), std::nullopt);
    EXPECT_EQ(r.EnumRegStringValues("HKCU\\Software\\Empty"), std::nullopt);
    EXPECT_EQ(r.EnumRegStringValues("HKCU\\Software\\Missing"), std::string());
    EXPECT_EQ(r.EnumRegStringValues("Nowhere\\Software"), std::string());
}

} // namespace
} // namespace pl::platform
