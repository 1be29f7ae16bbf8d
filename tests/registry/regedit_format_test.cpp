// The registry file format: exports from Windows as they come, old REGEDIT4 files, what the store
// writes itself, and files that do not parse.

#include "base/errors.h"
#include "base/text.h"
#include "platform/posix/registry/posix_registry.h"
#include "support/test_registry.h"

#include <gtest/gtest.h>

namespace pl::platform::posix {
namespace {

using test::TestRegistry;

// The bytes a Windows export has: a byte-order mark, then UTF-16LE.
std::string utf16leWithBom(std::string_view utf8) {
    std::string out = "\xFF\xFE";
    for (char32_t c : text::decode(utf8)) {
        if (c >= 0x10000) {
            const char32_t high = 0xD800 + ((c - 0x10000) >> 10);
            const char32_t low = 0xDC00 + ((c - 0x10000) & 0x3FF);
            out += {static_cast<char>(high & 0xFF), static_cast<char>(high >> 8)};
            out += {static_cast<char>(low & 0xFF), static_cast<char>(low >> 8)};
        } else {
            out += {static_cast<char>(c & 0xFF), static_cast<char>(c >> 8)};
        }
    }
    return out;
}

TEST(regedit_format, windows_export_in_utf16_with_crlf_and_continued_hex_lines_reads) {
    TestRegistry reg;
    // "%SystemRoot%\Paperlark_XP\Grüße" as REG_EXPAND_SZ, as regedit writes it: UTF-16LE bytes,
    // broken into lines ending in "\".
    const std::string exported = "Windows Registry Editor Version 5.00\r\n"
                                 "\r\n"
                                 "[HKEY_LOCAL_MACHINE\\SOFTWARE\\tobrin\\PaperlarkXP]\r\n"
                                 "\"pldir\"=\"C:\\\\Program Files\\\\Paperlark\\\\\"\r\n"
                                 "\"psdir\"=hex(2):25,00,53,00,79,00,73,00,74,00,65,00,6d,00,52,00,6f,00,6f,00,\\\r\n"
                                 "  74,00,25,00,5c,00,50,00,61,00,70,00,65,00,72,00,6c,00,61,00,72,00,6b,00,5f,\\\r\n"
                                 "  00,58,00,50,00,5c,00,47,00,72,00,fc,00,df,00,65,00,00,00\r\n"
                                 "\"DebugMode\"=dword:0000000a\r\n"
                                 "\"Ping\"=\"\xF0\x9F\x93\x84 \xE2\x82\xAC\"\r\n"
                                 "@=\"Standard\"\r\n"
                                 "\r\n"
                                 "[HKEY_LOCAL_MACHINE\\SOFTWARE\\tobrin\\PaperlarkXP\\Profiles]\r\n"
                                 "\r\n";
    reg.writeHive("HKEY_LOCAL_MACHINE", utf16leWithBom(exported));
    Registry& r = reg.registry();
    EXPECT_EQ(r.GetRegValue("HKLM\\Software\\tobrin\\PaperlarkXP", "pldir"), "C:\\Program Files\\Paperlark\\");
    EXPECT_EQ(r.GetRegValue("HKLM\\Software\\tobrin\\PaperlarkXP", "psdir"), "%SystemRoot%\\Paperlark_XP\\Grüße");
    EXPECT_EQ(r.GetRegValue("HKLM\\Software\\tobrin\\PaperlarkXP", "DebugMode"), "10");
    EXPECT_EQ(r.GetRegValue("HKLM\\Software\\tobrin\\PaperlarkXP", "Ping"), "\xF0\x9F\x93\x84 \xE2\x82\xAC");
    EXPECT_EQ(r.GetRegValue("HKLM\\Software\\tobrin\\PaperlarkXP", ""), "Standard");
    EXPECT_TRUE(reg.backend().keyExists(HKEY_LOCAL_MACHINE, "software\\tobrin\\paperlarkxp\\profiles", 0));

    // The first change rewrites the export in the store's own form, with nothing lost.
    EXPECT_EQ(r.SetRegValue("HKLM\\Software\\tobrin\\PaperlarkXP", "Style", "1"), "True");
    const std::string rewritten = reg.readHive("HKEY_LOCAL_MACHINE");
    EXPECT_TRUE(rewritten.starts_with("Windows Registry Editor Version 5.00\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE"));
    EXPECT_EQ(rewritten.find('\r'), std::string::npos);
    EXPECT_EQ(r.GetRegValue("HKLM\\Software\\tobrin\\PaperlarkXP", "psdir"), "%SystemRoot%\\Paperlark_XP\\Grüße");
}

TEST(regedit_format, regedit4_file_reads_with_8_bit_text) {
    TestRegistry reg;
    // Old exports are in the ANSI code page: \xE4 is "ä", hex(2) data is one byte per character.
    reg.writeHive("HKEY_CURRENT_USER", "REGEDIT4\r\n"
                                       "\r\n"
                                       "[HKEY_CURRENT_USER\\Software\\tobrin\\PaperlarkXP]\r\n"
                                       "\"DesktopCaption\"=\"Schreibtisch f\xFCr J\xE4ger\"\r\n"
                                       "\"temp\"=hex(2):25,54,45,4d,50,25,5c,e4,00\r\n"
                                       "\"APol\"=dword:00000003\r\n");
    Registry& r = reg.registry();
    EXPECT_EQ(r.GetRegValue("HKCU\\Software\\tobrin\\PaperlarkXP", "DesktopCaption"), "Schreibtisch für Jäger");
    EXPECT_EQ(r.GetRegValue("HKCU\\Software\\tobrin\\PaperlarkXP", "temp"), "%TEMP%\\ä");
    EXPECT_EQ(r.GetRegValue("HKCU\\Software\\tobrin\\PaperlarkXP", "APol"), "3");
}

TEST(regedit_format, every_type_survives_a_write_and_a_fresh_read_and_reads_as_text) {
    TestRegistry reg;
    std::vector<std::uint8_t> longBinary;
    for (int i = 0; i < 300; ++i)
        longBinary.push_back(static_cast<std::uint8_t>(i * 7));
    const std::vector<RegValue> values = {
        {"sz", regtype::Sz, {'a', '"', '\\', 'b', 0}},
        {"Quote\"and\\Backslash", regtype::Sz, {'x', 0}},
        {"", regtype::Sz, {'d', 'e', 'f', 0}},
        {"empty sz", regtype::Sz, {0}},
        {"sz without nul", regtype::Sz, {'a', 'b'}},
        {"sz with inner nul", regtype::Sz, {'a', 0, 'b', 0}},
        {"umlauts", regtype::Sz, {0xC3, 0xA4, 0xE2, 0x82, 0xAC, 0xF0, 0x9F, 0x93, 0x84, 0}},
        {"expand", regtype::ExpandSz, {'%', 'T', 'E', 'M', 'P', '%', 0xC3, 0xBC, 0}},
        {"multi", regtype::MultiSz, {'a', 0, 'b', 'c', 0, 0}},
        {"binary", regtype::Binary, {0x00, 0xFF}},
        {"long binary", regtype::Binary, longBinary},
        {"dword", regtype::Dword, {0x78, 0x56, 0x34, 0x12}},
        {"d256", regtype::Dword, {0x00, 0x01, 0x00, 0x00}},
        {"big", regtype::Dword, {0x00, 0x00, 0x00, 0x80}},
        {"big endian", regtype::DwordBigEndian, {0, 0, 1, 0}},
        {"qword", regtype::Qword, {1, 2, 3, 4, 5, 6, 7, 8}},
        {"odd type", 0x12345u, {1, 2}},
    };
    for (const RegValue& v : values)
        ASSERT_EQ(reg.backend().setValue(HKEY_CURRENT_USER, "Software\\Types", v, 0), RegOk) << v.name;
    ASSERT_EQ(reg.backend().createKey(HKEY_CURRENT_USER, "Software\\Types\\Empty\\Deeper", 0), RegOk);

    // A second store on the same folder knows nothing but the file.
    PosixRegistry fresh(reg.dir().path());
    std::vector<RegValue> read;
    ASSERT_EQ(fresh.enumValues(HKEY_CURRENT_USER, "Software\\Types", 0, read), RegOk);
    ASSERT_EQ(read.size(), values.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        EXPECT_EQ(read[i].name, values[i].name);
        EXPECT_EQ(read[i].type, values[i].type) << values[i].name;
        EXPECT_EQ(read[i].data, values[i].data) << values[i].name;
    }
    EXPECT_TRUE(fresh.keyExists(HKEY_CURRENT_USER, "Software\\Types\\Empty\\Deeper", 0));

    const std::string file = reg.readHive("HKEY_CURRENT_USER");
    EXPECT_NE(file.find("\"Quote\\\"and\\\\Backslash\"=\"x\"\n"), std::string::npos);
    EXPECT_NE(file.find("\"dword\"=dword:12345678\n"), std::string::npos);
    EXPECT_NE(file.find("\"binary\"=hex:00,ff\n"), std::string::npos);
    EXPECT_NE(file.find("\"expand\"=hex(2):25,00,54,00,45,00,4d,00,50,00,25,00,fc,00,00,00\n"), std::string::npos);
    for (std::size_t start = 0, end; (end = file.find('\n', start)) != std::string::npos; start = end + 1)
        EXPECT_LE(end - start, 80u) << file.substr(start, end - start);

    // What the registry module makes of each type.
    Registry module(fresh);
    const std::pair<const char*, std::string> texts[] = {
        {"sz", "a\"\\b"},
        {"binary", "00:FF:"},
        {"d256", "256"},
        {"dword", "305419896"},
        // No expansion of environment references.
        {"expand", "%TEMP%ü"},
        // The last character is cut, even when it is no NUL.
        {"sz without nul", "a"},
        {"multi", std::string("a\0bc\0", 5)},
    };
    for (const auto& [name, text] : texts)
        EXPECT_EQ(module.GetRegValue("HKCU\\Software\\Types", name), text) << name;
    // A DWORD of 0x80000000 and above raises the overflow to the caller.
    try {
        module.GetRegValue("HKCU\\Software\\Types", "big");
        ADD_FAILURE() << "no overflow";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), err::Overflow);
    }
}

} // namespace
} // namespace pl::platform::posix
