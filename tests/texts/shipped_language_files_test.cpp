// The language files that the installation puts into the suite folder must give the assistant a
// complete, usable set of texts, as the built-in German and English ones do.
#include "texts/texts.h"

#include "support/recording_errors.h"
#include "support/scripted_view.h"

#include <gtest/gtest.h>

using namespace pl;

TEST(shipped_language_files, translate_every_text) {
    const texts::Texts builtin;
    for (int number = 3; number < texts::Numbers; ++number) {
        EXPECT_FALSE(builtin.GetText(texts::German, number).empty()) << number;
        EXPECT_NE(builtin.GetText(texts::German, number), builtin.GetText(texts::English, number)) << number;
    }
    for (const std::string fileName : {"French.lan", "Italian.lan"}) {
        SCOPED_TRACE(fileName);
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
    }
}
