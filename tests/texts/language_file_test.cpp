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

    // Writes `content` as a language file and reads it into the slot of `language`.
    bool load(const std::string& content, int language = texts::English, const std::string& name = "Test.lan") {
        texts.setLanguage(language);
        return texts.DateiLaden(dir.write(name, content), view, errors);
    }
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

TEST_F(language_file, section_header_and_keys_are_found_in_any_case_and_texts_keep_theirs) {
    ASSERT_TRUE(load("; Beispiel\r\n[PLASSIST.EXE]\r\nTEXT_5: Nom du Fichier PDF\r\nText_19:Configurer\r\n"));

    EXPECT_EQ(texts.text(5), "Nom du Fichier PDF");
    EXPECT_EQ(texts.text(19), "Configurer");
    EXPECT_EQ(texts.text(4), "PDF Profile"); // not in the file
    EXPECT_TRUE(view.messages.empty());
}

TEST_F(language_file, blank_text_keeps_the_builtin_one) {
    ASSERT_TRUE(load("[plAssist.exe]\r\ntext_3:     \r\ntext_4:\r\ntext_6:  Voir le PDF  \r\n"));

    EXPECT_EQ(texts.text(3), "Please choose:");
    EXPECT_EQ(texts.text(4), "PDF Profile");
    EXPECT_EQ(texts.text(6), "Voir le PDF");
}

TEST_F(language_file, text_between_bot_and_eot_keeps_its_line_break) {
    ASSERT_TRUE(load("[plAssist.exe]\r\n"
                     "text_21:BOT\r\n"
                     "Le chemin contient des lettres Unicode.\r\n"
                     "Veuillez en choisir un autre.\r\n"
                     "EOT\r\n"
                     "text_22:BOT Chemin\r\n  invalide EOT\r\n"
                     "text_11: Supprimer ?\r\n"));

    EXPECT_EQ(texts.text(21), "Le chemin contient des lettres Unicode.\r\nVeuillez en choisir un autre.");
    EXPECT_EQ(texts.text(22), "Chemin\r\n  invalide");
    EXPECT_EQ(texts.text(11), "Supprimer ?");
}

TEST_F(language_file, only_bot_right_behind_the_colon_opens_a_text_of_several_lines) {
    ASSERT_TRUE(load("[plAssist.exe]\r\ntext_3: BOTH ways\r\ntext_4: Profil\r\ntext_21:BOT\r\nZeile 1\r\nEOT\r\n"));
    EXPECT_EQ(texts.text(3), "BOTH ways");
    EXPECT_EQ(texts.text(4), "Profil");
    EXPECT_EQ(texts.text(21), "Zeile 1");
}

TEST(language_file_text, bot_without_eot_is_an_error_rather_than_the_rest_of_the_section) {
    const std::string section = "[plAssist.exe]\r\ntext_21:BOT\r\nZeile 1\r\ntext_22: Chemin\r\n";
    EXPECT_THROW(texts::findText(section, 21), RuntimeError);
    EXPECT_EQ(texts::findText(section, 22), "Chemin");
}

TEST_F(language_file, only_the_assistant_section_counts) {
    ASSERT_TRUE(load("[plConfig.exe]\r\ntext_7: wrong program\r\nEOF\r\n"
                     "[plAssist.exe]\r\ntext_8: Enregistrer &sous...\r\ntext_9: Sur le bureau de Geoffrey\r\nEOF\r\n"
                     "[plSetup.exe]\r\ntext_10: wrong program\r\ntext_12: wrong program\r\nEOF\r\n"));

    EXPECT_EQ(texts.text(7), "&Send by Mail");
    EXPECT_EQ(texts.text(8), "Enregistrer &sous...");
    EXPECT_EQ(texts.text(9), "Sur le bureau de Geoffrey"); // "eof" inside a word ends nothing
    EXPECT_EQ(texts.text(10), "Add to &next PDF");
    EXPECT_EQ(texts.text(12), "Paperlark.exe not found");
}

TEST_F(language_file, next_section_ends_ours_even_without_end_mark) {
    ASSERT_TRUE(load("[plAssist.exe]\r\ntext_8: Archivia\r\n  [plConfig.exe]  \r\ntext_9: wrong program\r\n"));

    EXPECT_EQ(texts.text(8), "Archivia");
    EXPECT_EQ(texts.text(9), "Send to &Desktop");
}

TEST_F(language_file, line_ends_of_the_file_do_not_matter) {
    const std::string lines[] = {
        "[plAssist.exe]", "text_3: Scegli:", "text_21:BOT", "riga uno", "riga due", "EOT", "EOF"};
    for (const std::string ending : {"\r\n", "\n", "\r"}) {
        std::string content;
        for (const auto& line : lines)
            content += line + ending;
        texts.TexteLaden();
        ASSERT_TRUE(load(content)) << "line end " << ending.size();
        EXPECT_EQ(texts.text(3), "Scegli:");
        EXPECT_EQ(texts.text(21), "riga uno\r\nriga due");
    }
}

TEST_F(language_file, eight_bit_files_are_read_as_latin1_and_utf8_files_as_utf8) {
    ASSERT_TRUE(load("[plAssist.exe]\ntext_3: Veuillez s\xE9lectionner :\n", texts::External, "Latin1.lan"));
    EXPECT_EQ(texts.text(3), "Veuillez sélectionner :");

    texts.TexteLaden();
    ASSERT_TRUE(load("\xEF\xBB\xBF[plAssist.exe]\ntext_3: Veuillez sélectionner :\n", texts::External, "Utf8.lan"));
    EXPECT_EQ(texts.text(3), "Veuillez sélectionner :");
}

TEST_F(language_file, a_file_fills_only_the_current_slot) {
    ASSERT_TRUE(load("[plAssist.exe]\ntext_4: Profil PDF\n", texts::External));

    EXPECT_EQ(texts.text(4), "Profil PDF");
    EXPECT_EQ(texts.text(1), "Paperlark 4.12");
    EXPECT_EQ(texts.text(5), ""); // the file slot starts with the title only
    EXPECT_EQ(texts.GetText(texts::English, 5), "PDF File Name");
    EXPECT_EQ(texts.GetText(texts::English, 4), "Profil PDF"); // a loaded file answers for every slot
}

TEST_F(language_file, reloading_the_builtin_texts_forgets_the_file) {
    ASSERT_TRUE(load("[plAssist.exe]\ntext_4: Profil PDF\n"));
    texts.TexteLaden();
    EXPECT_EQ(texts.text(4), "PDF Profile");
}

TEST_F(language_file, unreadable_file_is_reported_and_changes_nothing) {
    texts.setLanguage(texts::German);
    EXPECT_FALSE(texts.DateiLaden(dir.folder() + "Missing.lan", view, errors));

    ASSERT_EQ(errors.entries.size(), 1u);
    EXPECT_EQ(errors.entries[0].tag, "plaTexte.DateiLaden");
    EXPECT_EQ(errors.entries[0].number, err::FileNotFound);
    EXPECT_EQ(texts.text(8), "&Ablegen");
    EXPECT_TRUE(view.messages.empty());
}
