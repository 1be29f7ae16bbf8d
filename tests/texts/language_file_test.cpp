#include "texts/language_file.h"
#include "texts/texts.h"

#include "support/recording_errors.h"
#include "support/scripted_view.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

using namespace pl;

namespace {

struct language_file : ::testing::Test {
    test::TempDir dir;
    test::ScriptedView view;
    test::RecordingErrors errors;
    texts::Texts texts;
};

} // namespace

TEST_F(language_file, file_without_assistant_section_is_announced_and_keeps_builtin_texts) {
    const std::string path = dir.write("Broken.lan", "[plConfig.exe]\r\ntext_3: Choisissez\r\nEOF\r\n");
    texts.setLanguage(texts::English);

    EXPECT_FALSE(texts.DateiLaden(path, view, errors));

    ASSERT_EQ(view.messages.size(), 1u);
    EXPECT_EQ(view.messages[0].prompt, "Language File   " + path + "   defect: No [plAssist.exe] section found!");
    EXPECT_EQ(texts.text(3), "Please choose:");
    EXPECT_EQ(texts.GetText(texts::German, 3), "Bitte wählen Sie:");
    EXPECT_TRUE(errors.entries.empty());
}

TEST_F(language_file, reads_only_the_assistants_texts_whatever_the_files_line_ends) {
    const std::string file =
        "; Beispiel\n[plConfig.exe]\ntext_7: wrong program\nEOF\n"
        // Header and key in any case; the text keeps its own.
        "[PLASSIST.EXE]\nTEXT_5: Nom du Fichier PDF\n"
        // Blank texts keep the built-in ones; an 8-bit file is Latin-1.
        "text_3:     \ntext_4:\ntext_6:  Voir la s\xE9lection  \n"
        // The line break between BOT and EOT stays; only "BOT" right behind the colon spans lines.
        "text_21:BOT\nriga uno\nriga due\nEOT\ntext_22:BOT Chemin\n  invalide EOT\ntext_13: BOTH ways\n"
        // "eof" inside a word ends nothing; the next header ends the section without "EOF".
        "text_9: Sur le bureau de Geoffrey\n  [plSetup.exe]  \n"
        "text_10: wrong program\ntext_12: wrong program\nEOF\n";
    for (const std::string ending : {"\r\n", "\n", "\r"}) {
        std::string content;
        for (char c : file)
            content += c == '\n' ? ending : std::string(1, c);
        texts.TexteLaden();
        texts.setLanguage(texts::English);
        ASSERT_TRUE(texts.DateiLaden(dir.write("Test.lan", content), view, errors)) << "line end " << ending.size();

        EXPECT_EQ(texts.text(3), "Please choose:");
        EXPECT_EQ(texts.text(4), "PDF Profile");
        EXPECT_EQ(texts.text(5), "Nom du Fichier PDF");
        EXPECT_EQ(texts.text(6), "Voir la sélection");
        EXPECT_EQ(texts.text(7), "&Send by Mail");
        EXPECT_EQ(texts.text(9), "Sur le bureau de Geoffrey");
        EXPECT_EQ(texts.text(10), "Add to &next PDF");
        EXPECT_EQ(texts.text(12), "Paperlark.exe not found");
        EXPECT_EQ(texts.text(13), "BOTH ways");
        EXPECT_EQ(texts.text(21), "riga uno\r\nriga due");
        EXPECT_EQ(texts.text(22), "Chemin\r\n  invalide");
    }
    EXPECT_TRUE(view.messages.empty());
    EXPECT_TRUE(errors.entries.empty());
}

TEST(language_file_text, bot_without_eot_is_an_error_rather_than_the_rest_of_the_section) {
    const std::string section = "[plAssist.exe]\r\ntext_21:BOT\r\nZeile 1\r\ntext_22: Chemin\r\n";
    EXPECT_THROW(texts::findText(section, 21), RuntimeError);
    EXPECT_EQ(texts::findText(section, 22), "Chemin");
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

    // The trapped lookup reports the error and answers the empty text.
    test::RecordingErrors errors;
    EXPECT_EQ(texts.GetText(1, 23, errors), "");
    EXPECT_EQ(texts.GetText(1, 22, errors), "Unzulässiger Pfad");
    ASSERT_EQ(errors.entries.size(), 1u);
    EXPECT_EQ(errors.entries[0].tag, "plaTexte.GetText");
    EXPECT_EQ(errors.entries[0].number, err::SubscriptOutOfRange);
}
