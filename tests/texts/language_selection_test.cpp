#include "texts/language_selection.h"

#include "support/test_services.h"

#include <gtest/gtest.h>

#include <fstream>
#include <tuple>

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

TEST_F(language_selection, the_locale_chooses_builtin_texts_or_a_present_language_file) {
    for (const char* name :
         {"Português(Brasil).lan", "Português(Portugal).lan", "Chinese simplified.lan", "Chinese traditional.lan"})
        suite.write(name, "[plAssist.exe]\r\n");
    const std::tuple<const char*, int, const char*> cases[] = {
        // locale, language, recorded file
        {"00000407", texts::German, ""},
        {"00000807", texts::German, ""}, // Swiss German: only the last two digits count
        {"00000409", texts::English, ""},
        {"0000040C", texts::English, ""}, // there is no French.lan
        {"00000416", texts::External, "Português(Brasil).lan"},
        {"00000816", texts::External, "Português(Portugal).lan"},
        {"00000804", texts::External, "Chinese simplified.lan"},
        {"00000404", texts::External, "Chinese traditional.lan"},
    };
    for (const auto& [value, language, lanFile] : cases) {
        locale(value);
        EXPECT_EQ(texts::LanguageFromLocale(services), language) << value;
        EXPECT_EQ(real.get(UserKey, "LanFile"), lanFile) << value;
        EXPECT_EQ(real.get(UserKey, "language"), language == texts::External ? "3" : "") << value;
    }
}

TEST_F(language_selection, stored_language_user_key_before_machine_key) {
    const std::tuple<const char*, const char*, int> cases[] = {
        // machine's value, user's value, language
        {"", "", 0},
        {"DE", "", texts::German},
        {"DE", " en ", texts::English},
        {"DE", "Ext", texts::External},
        {"DE", "klingon", texts::German}, // names no language: the machine's choice applies
        {"3", "2", texts::English},
    };
    for (const auto& [machine, user, language] : cases) {
        real.set(MachineKey, "language", machine);
        real.set(UserKey, "language", user);
        EXPECT_EQ(texts::SetSpr(services), language) << machine << " / " << user;
    }
}

TEST_F(language_selection, stored_language_file_is_loaded_the_users_before_the_administrators) {
    shipFile("Italian.lan");
    shipFile("French.lan");
    locale("00000407");
    real.set(MachineKey, "language", "3");
    real.set(MachineKey, "LanFile", "Italian.lan");
    texts::Texts texts;
    texts::SetxSpr(texts, services);
    EXPECT_EQ(texts.language(), texts::External);
    EXPECT_EQ(texts.text(19), "Modifica configurazione");

    real.set(UserKey, "language", "ext");
    real.set(UserKey, "LanFile", "FRENCH.LAN");
    texts::SetxSpr(texts, services);
    EXPECT_EQ(texts.language(), texts::External);
    EXPECT_EQ(texts.text(3), "Veuillez choisir :");
    EXPECT_TRUE(real.view.messages.empty());
    EXPECT_TRUE(real.errors.entries.empty());
}
