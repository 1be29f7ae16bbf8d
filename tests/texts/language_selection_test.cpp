#include "texts/language_selection.h"

#include "support/test_services.h"

#include <gtest/gtest.h>

#include <fstream>

using namespace pl;

namespace {

constexpr std::string_view UserKey = "HKCU\\Software\\tobrin\\PaperlarkXP";
constexpr std::string_view MachineKey = "HKLM\\Software\\tobrin\\PaperlarkXP";
constexpr std::string_view International = "HKCU\\Control Panel\\International";

struct language_selection : ::testing::Test {
    test::TempDir suite; // the installation folder with the language files
    test::TestServices real;
    Services& services = real.services;

    language_selection() { real.set(MachineKey, "plDir", suite.folder()); }

    void locale(std::string_view value) { real.set(International, "locale", value); }
    void shipFile(const std::string& name) {
        std::ifstream in(std::string(PAPERLARK_LANG_DIR) + name, std::ios::binary);
        suite.write(name, std::string(std::istreambuf_iterator<char>(in), {}));
    }
};

} // namespace

TEST_F(language_selection, german_and_english_locales_use_the_builtin_texts) {
    for (auto [value, code] : {std::pair{"00000407", texts::German},
                               {"00000807", texts::German}, // Swiss German: only the last two digits count
                               {"00000409", texts::English},
                               {"0000040B", texts::English}, // Finnish has no file
                               {"", texts::English}}) {
        locale(value);
        EXPECT_EQ(texts::LanguageFromLocale(services), code) << value;
    }
    EXPECT_EQ(real.get(UserKey, "language"), "");
    EXPECT_EQ(real.get(UserKey, "LanFile"), "");
}

TEST_F(language_selection, locale_with_a_language_file_present_records_it) {
    suite.write("Português(Brasil).lan", "[plAssist.exe]\r\n");
    locale("00000416");

    EXPECT_EQ(texts::LanguageFromLocale(services), texts::External);
    EXPECT_EQ(real.get(UserKey, "LanFile"), "Português(Brasil).lan");
    EXPECT_EQ(real.get(UserKey, "language"), "3");
}

TEST_F(language_selection, regional_variants_choose_their_own_file) {
    for (const char* name : {"Português(Brasil).lan", "Português(Portugal).lan", "Chinese simplified.lan",
                             "Chinese traditional.lan", "Español.lan", "Italian.lan"})
        suite.write(name, "[plAssist.exe]\r\n");
    for (auto [value, file] : {std::pair{"00000816", "Português(Portugal).lan"},
                               {"00000416", "Português(Brasil).lan"},
                               {"00000804", "Chinese simplified.lan"},
                               {"00000404", "Chinese traditional.lan"},
                               {"00000C04", "Chinese traditional.lan"},
                               {"0000040A", "Español.lan"},
                               {"00000410", "Italian.lan"}}) {
        locale(value);
        EXPECT_EQ(texts::LanguageFromLocale(services), texts::External) << value;
        EXPECT_EQ(real.get(UserKey, "LanFile"), file) << value;
    }
}

TEST_F(language_selection, missing_language_file_falls_back_to_english_and_records_nothing) {
    real.set(UserKey, "LanFile", "Italian.lan");
    locale("0000040C");

    EXPECT_EQ(texts::LanguageFromLocale(services), texts::English);
    EXPECT_EQ(real.get(UserKey, "LanFile"), "Italian.lan");
    EXPECT_EQ(real.get(UserKey, "language"), "");
}

TEST_F(language_selection, locale_key_is_upper_case_hex_and_file_name_case_is_free) {
    suite.write("french.lan", "[plAssist.exe]\r\n");
    locale("0000040c");
    EXPECT_EQ(texts::LanguageFromLocale(services), texts::English);

    locale(" 0000040C ");
    EXPECT_EQ(texts::LanguageFromLocale(services), texts::External);
    EXPECT_EQ(real.get(UserKey, "LanFile"), "French.lan");
}

TEST_F(language_selection, stored_language_user_key_before_machine_key) {
    EXPECT_EQ(texts::SetSpr(services), 0);

    real.set(MachineKey, "language", "DE");
    EXPECT_EQ(texts::SetSpr(services), texts::German);

    real.set(UserKey, "language", " en ");
    EXPECT_EQ(texts::SetSpr(services), texts::English);

    real.set(UserKey, "language", "Ext");
    EXPECT_EQ(texts::SetSpr(services), texts::External);

    real.set(UserKey, "language", "klingon"); // names no language: the machine's choice applies
    EXPECT_EQ(texts::SetSpr(services), texts::German);

    real.set(MachineKey, "language", "3");
    real.set(UserKey, "language", "2");
    EXPECT_EQ(texts::SetSpr(services), texts::English);
}

TEST_F(language_selection, stored_language_file_is_loaded) {
    shipFile("French.lan");
    real.set(UserKey, "language", "ext");
    real.set(UserKey, "LanFile", "FRENCH.LAN");
    locale("00000407");
    texts::Texts texts;

    texts::SetxSpr(texts, services);

    EXPECT_EQ(texts.language(), texts::External);
    EXPECT_EQ(texts.text(3), "Veuillez choisir :");
    EXPECT_TRUE(real.view.messages.empty());
    EXPECT_TRUE(real.errors.entries.empty());
}

TEST_F(language_selection, administrator_can_choose_a_file_for_everybody) {
    shipFile("Italian.lan");
    real.set(MachineKey, "language", "3");
    real.set(MachineKey, "LanFile", "Italian.lan");
    texts::Texts texts;

    texts::SetxSpr(texts, services);

    EXPECT_EQ(texts.language(), texts::External);
    EXPECT_EQ(texts.text(19), "Modifica configurazione");
}

TEST_F(language_selection, unusable_language_file_means_english) {
    suite.write("Broken.lan", "[plConfig.exe]\r\ntext_3: x\r\n");
    real.set(UserKey, "language", "3");
    texts::Texts texts;

    for (const char* lanFile : {"Missing.lan", "", "Broken.lan"}) {
        real.set(UserKey, "LanFile", lanFile);
        texts.setLanguage(texts::German);
        texts::SetxSpr(texts, services);
        EXPECT_EQ(texts.language(), texts::English) << lanFile;
        EXPECT_EQ(texts.text(3), "Please choose:") << lanFile;
    }
    // Only the file that is there but has no section is worth telling the user about.
    ASSERT_EQ(real.view.messages.size(), 1u);
    EXPECT_NE(real.view.messages[0].prompt.find("defect: No [plAssist.exe] section found!"), std::string::npos);
}

TEST_F(language_selection, without_stored_language_the_locale_decides) {
    shipFile("Italian.lan");
    texts::Texts texts;

    locale("00000407");
    texts::SetxSpr(texts, services);
    EXPECT_EQ(texts.language(), texts::German);
    EXPECT_EQ(real.get(UserKey, "language"), ""); // German and English follow the locale

    locale("00000410");
    texts::SetxSpr(texts, services);
    EXPECT_EQ(texts.language(), texts::External);
    EXPECT_EQ(texts.text(3), "Scegliere:");
    EXPECT_EQ(real.get(UserKey, "language"), "3");

    // The recorded file now stays the choice, whatever the locale says.
    locale("00000409");
    texts::SetxSpr(texts, services);
    EXPECT_EQ(texts.language(), texts::External);
}
