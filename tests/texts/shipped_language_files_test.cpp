// The language files that the installation puts into the suite folder must give the assistant a
// complete, usable set of texts.
#include "texts/texts.h"

#include "support/recording_errors.h"
#include "support/scripted_view.h"

#include <gtest/gtest.h>

#include <set>

using namespace pl;

namespace {

// The letter after "&" (the access key), or 0 when the caption has none.
char accessKey(const std::string& caption) {
    const auto at = caption.find('&');
    return at == std::string::npos || at + 1 >= caption.size() ? 0 : static_cast<char>(std::tolower(caption[at + 1]));
}

void expectCompleteTranslation(const std::string& fileName) {
    SCOPED_TRACE(fileName);
    const texts::Texts builtin;
    texts::Texts texts;
    test::ScriptedView view;
    test::RecordingErrors errors;
    texts.setLanguage(texts::External);
    ASSERT_TRUE(texts.DateiLaden(std::string(PAPERLARK_LANG_DIR) + fileName, view, errors));
    EXPECT_TRUE(view.messages.empty());
    EXPECT_TRUE(errors.entries.empty());

    EXPECT_EQ(texts.text(1), "Paperlark 4.12");
    for (int number = 3; number < texts::Numbers; ++number) {
        EXPECT_FALSE(texts.text(number).empty()) << number;
        EXPECT_NE(texts.text(number), builtin.GetText(texts::English, number)) << number;
    }
    // Counts are put in by the dialog; the converter's name is swapped for another program's.
    for (int number : {15, 17})
        EXPECT_NE(texts.text(number).find("$1$"), std::string::npos) << number;
    EXPECT_NE(texts.text(12).find("Paperlark.exe"), std::string::npos);

    // The dialog's buttons need distinct access keys.
    std::set<char> keys;
    for (int number : {7, 8, 9, 10, 20}) {
        const char key = accessKey(texts.text(number));
        EXPECT_NE(key, 0) << number;
        EXPECT_TRUE(keys.insert(key).second) << number << " repeats the access key " << key;
    }
}

} // namespace

TEST(shipped_language_files, french_translates_every_text) {
    expectCompleteTranslation("French.lan");
}

TEST(shipped_language_files, italian_translates_every_text) {
    expectCompleteTranslation("Italian.lan");
}
