#include "texts/texts.h"

#include "support/recording_errors.h"

#include <gtest/gtest.h>

using namespace pl;

TEST(texts, title_is_the_same_in_every_language_slot) {
    const texts::Texts texts;
    for (int slot : {texts::German, texts::English, texts::External})
        EXPECT_EQ(texts.GetText(slot, 1), "Paperlark 4.12");
    EXPECT_EQ(texts.GetText(0, 1), "");
}

TEST(texts, german_and_english_have_every_text_but_the_empty_second) {
    const texts::Texts texts;
    EXPECT_EQ(texts.GetText(texts::German, 2), "");
    EXPECT_EQ(texts.GetText(texts::English, 2), "");
    for (int number = 3; number < texts::Numbers; ++number) {
        const std::string german = texts.GetText(texts::German, number);
        const std::string english = texts.GetText(texts::English, number);
        EXPECT_FALSE(german.empty()) << number;
        EXPECT_FALSE(english.empty()) << number;
        EXPECT_NE(german, english) << number;
        EXPECT_EQ(texts.GetText(texts::External, number), "") << number;
    }
    EXPECT_EQ(texts.GetText(texts::German, 21).find("$1$"), std::string::npos);
    EXPECT_NE(texts.GetText(texts::German, 15).find("$1$"), std::string::npos);
    EXPECT_NE(texts.GetText(texts::English, 17).find("$1$"), std::string::npos);
}

TEST(texts, index_outside_the_table_is_subscript_out_of_range) {
    const texts::Texts texts;
    for (auto [slot, number] : {std::pair{4, 1}, {-1, 1}, {1, 23}, {2, -1}}) {
        try {
            (void)texts.GetText(slot, number);
            ADD_FAILURE() << slot << "," << number << " was answered";
        } catch (const RuntimeError& e) {
            EXPECT_EQ(e.number(), err::SubscriptOutOfRange);
        }
    }
    EXPECT_EQ(texts.GetText(0, 0), "");
    EXPECT_EQ(texts.GetText(3, 22), "");
}

TEST(texts, trapped_lookup_reports_the_bounds_error) {
    const texts::Texts texts;
    test::RecordingErrors errors;

    EXPECT_EQ(texts.GetText(1, 23, errors), "");
    EXPECT_EQ(texts.GetText(1, 22, errors), "Unzulässiger Pfad");

    ASSERT_EQ(errors.entries.size(), 1u);
    EXPECT_EQ(errors.entries[0].tag, "plaTexte.GetText");
    EXPECT_EQ(errors.entries[0].number, err::SubscriptOutOfRange);
}

TEST(texts, current_language_selects_the_slot) {
    texts::Texts texts;
    texts.setLanguage(texts::German);
    EXPECT_EQ(texts.text(13), "Paperlark Dialog anzeigen");
    texts.setLanguage(texts::English);
    EXPECT_EQ(texts.text(13), "Show Paperlark dialog");
}
