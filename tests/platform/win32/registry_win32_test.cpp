// The registry module on the Windows registry itself: values written by the system's own functions
// read back as the classic module read them, and what the module writes is what the system holds.

#include "base/errors.h"
#include "support/test_registry.h"

#include <windows.h>

#include <gtest/gtest.h>

namespace pl::platform {
namespace {

using test::TestRegistry;

// A value set with the system's own function, below HKCU (the test's own root).
void setRaw(const char* subKey, const char* name, DWORD type, std::vector<BYTE> data) {
    HKEY key = nullptr;
    ASSERT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, subKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr),
              ERROR_SUCCESS);
    ASSERT_EQ(RegSetValueExA(key, name, 0, type, data.data(), static_cast<DWORD>(data.size())), ERROR_SUCCESS);
    RegCloseKey(key);
}

TEST(registry_win32, values_of_each_type_read_as_text) {
    TestRegistry reg;
    setRaw("Software\\T", "dword256", REG_DWORD, {0x00, 0x01, 0x00, 0x00});
    setRaw("Software\\T", "dwordMax", REG_DWORD, {0xFF, 0xFF, 0xFF, 0x7F});
    setRaw("Software\\T", "binary", REG_BINARY, {0x00, 0xFF});
    setRaw("Software\\T", "expand", REG_EXPAND_SZ, {'%', 'T', '%', 0});
    setRaw("Software\\T", "multi", REG_MULTI_SZ, {'a', 0, 'b', 0, 0});
    setRaw("Software\\T", "empty", REG_SZ, {});
    const Registry& r = reg.registry();
    EXPECT_EQ(r.GetRegValue("HKCU\\Software\\T", "dword256"), "256");
    EXPECT_EQ(r.GetRegValue("HKCU\\Software\\T", "DWORDMAX"), "2147483647");
    EXPECT_EQ(r.GetRegValue("HKCU\\Software\\T", "binary"), "00:FF:");
    EXPECT_EQ(r.GetRegValue("HKCU\\Software\\T", "expand"), "%T%");
    EXPECT_EQ(r.GetRegValue("HKCU\\Software\\T", "multi"), std::string("a\0b\0", 4));
    EXPECT_EQ(r.GetRegValue("HKCU\\Software\\T", "empty"), "");
    EXPECT_EQ(r.GetRegValue("HKCU\\Software\\T", "missing"), "");
}

TEST(registry_win32, a_dword_from_0x80000000_up_overflows_to_the_caller) {
    TestRegistry reg;
    setRaw("Software\\T", "big", REG_DWORD, {0x00, 0x00, 0x00, 0x80});
    try {
        reg.registry().GetRegValue("HKCU\\Software\\T", "big");
        FAIL() << "no overflow";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), 6);
    }
}

TEST(registry_win32, text_is_written_as_reg_sz_with_its_nul_and_umlauts_survive) {
    TestRegistry reg;
    Registry& r = reg.registry();
    ASSERT_EQ(r.SetRegValue("HKCU\\Software\\tobrin\\PaperlarkXP", "psdir", "abc"), "True");
    HKEY key = nullptr;
    ASSERT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "Software\\tobrin\\PaperlarkXP", 0, KEY_READ, &key), ERROR_SUCCESS);
    DWORD type = 0, size = 0;
    EXPECT_EQ(RegQueryValueExA(key, "psdir", nullptr, &type, nullptr, &size), ERROR_SUCCESS);
    EXPECT_EQ(type, static_cast<DWORD>(REG_SZ));
    EXPECT_EQ(size, 4u);
    RegCloseKey(key);
    EXPECT_EQ(r.GetRegValue("HKCU\\Software\\tobrin\\PaperlarkXP", "psdir"), "abc");

    // The system holds real characters, not the bytes of their UTF-8 form: the wide functions
    // read them back as the same letters.
    ASSERT_EQ(r.SetRegValue("HKCU\\Software\\Grüße", "Größe", "Übermaß"), "True");
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, L"Software\\Gr\u00fc\u00dfe", 0, KEY_READ, &key), ERROR_SUCCESS);
    wchar_t wide[32] = {};
    DWORD wideSize = sizeof wide;
    EXPECT_EQ(RegQueryValueExW(key, L"Gr\u00f6\u00dfe", nullptr, &type, reinterpret_cast<BYTE*>(wide), &wideSize),
              ERROR_SUCCESS);
    EXPECT_EQ(std::wstring(wide), L"\u00dcberma\u00df");
    RegCloseKey(key);
    // Names compare without regard to case, umlauts included.
    EXPECT_EQ(r.GetRegValue("hkcu\\software\\GRÜßE", "GRÖßE"), "Übermaß");
    EXPECT_EQ(r.GetRegValue("HKCU\\Software\\Grüße", "Größe"), "Übermaß");
    EXPECT_EQ(r.EnumRegStringValues("HKCU\\Software\\Grüße"), std::string("Größe\r"));
}

TEST(registry_win32, deleting_a_key_with_sub_keys_fails_and_the_marker_is_ignored_there) {
    TestRegistry reg;
    Registry& r = reg.registry();
    ASSERT_EQ(r.SetRegValue("HKLM64\\Software\\Outer\\Inner", "v", "1"), "True");
    EXPECT_EQ(r.GetRegValue("HKLM\\Software\\Outer\\Inner", "v"), "1");
    EXPECT_EQ(r.DeleteRegEntry("HKLM\\Software\\Outer", ""), "False");
    EXPECT_EQ(r.GetRegValue("HKLM\\Software\\Outer\\Inner", "v"), "1");
    EXPECT_EQ(r.DeleteRegEntry("HKLM64\\Software\\Outer\\Inner", ""), "True");
    EXPECT_EQ(r.DeleteRegEntry("HKLM\\Software\\Outer", ""), "True");
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, "Software\\Outer", 0, KEY_READ, &key), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(r.DeleteRegEntry("HKCU", ""), "") << "shorter than six characters";
}

TEST(registry_win32, enumeration_tells_a_missing_key_from_one_without_text_values) {
    TestRegistry reg;
    setRaw("Software\\Numbers", "n", REG_DWORD, {1, 0, 0, 0});
    setRaw("Software\\Mixed", "zeta", REG_SZ, {'z', 0});
    setRaw("Software\\Mixed", "n", REG_DWORD, {1, 0, 0, 0});
    setRaw("Software\\Mixed", "alpha", REG_SZ, {'a', 0});
    const Registry& r = reg.registry();
    EXPECT_EQ(r.EnumRegStringValues("HKCU\\Software\\Missing"), std::string());
    EXPECT_EQ(r.EnumRegStringValues("HKCU\\Software\\Numbers"), std::nullopt);
    const auto names = r.EnumRegStringValues("HKCU\\Software\\Mixed");
    ASSERT_TRUE(names.has_value());
    // Both names, each with its carriage return; the system decides their order.
    EXPECT_TRUE(*names == "zeta\ralpha\r" || *names == "alpha\rzeta\r") << *names;
}

} // namespace
} // namespace pl::platform
