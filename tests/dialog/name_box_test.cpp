#include "dialog_fixture.h"

#include "dialog/name_box.h"

namespace pl::test {
namespace {

class name_box : public DialogFixture {
protected:
    name_box() {
        writeJob(machineSpool, "anna0001.ps", "Report");
        offerJob(machineSpool, "anna0001.ps");
    }
    int press(dialog::JobDialog& d, int key) {
        d.pdfName_KeyPress(key);
        return key;
    }
};

TEST_F(name_box, typing_refuses_the_characters_no_file_name_may_hold_but_accepts_per_cent) {
    auto& d = openDialog();
    for (char c : std::string(":*|<>!?\"/\\"))
        EXPECT_EQ(press(d, c), 0) << c;
    for (char c : std::string("%aZ9 -_.()[]&'~"))
        EXPECT_EQ(press(d, c), c) << c;
    EXPECT_EQ(press(d, 0xE4), 0xE4); // ä
}

TEST(valid_file_name, removes_the_load_time_set_without_putting_anything_in_its_place) {
    EXPECT_EQ(dialog::ValidFileName("Report 50% <final>"), "Report 50 final");
    EXPECT_EQ(dialog::ValidFileName("a:b"), "ab");
    EXPECT_EQ(dialog::ValidFileName("%:*|<>!?\"/\\"), "");
    EXPECT_EQ(dialog::ValidFileName("Grüße (2).v1"), "Grüße (2).v1");
}

TEST_F(name_box, enter_saves_to_the_desktop) {
    auto& d = openDialogRecording();
    actionLog.calls.clear();

    EXPECT_EQ(press(d, dialog::KeyEnter), dialog::KeyEnter);

    EXPECT_EQ(actionLog.calls, std::vector<std::string>{"cmdDesktop_Click"});
}

TEST_F(name_box, other_keys_start_no_action) {
    auto& d = openDialogRecording();
    actionLog.calls.clear();
    press(d, 'a');
    press(d, dialog::KeyPaste);
    EXPECT_TRUE(actionLog.calls.empty());
}

TEST_F(name_box, pasting_cleans_application_names_from_the_clipboard_first) {
    auto& d = openDialog();
    view.clipboard = "Microsoft Word - Letter.doc";

    EXPECT_EQ(press(d, dialog::KeyPaste), dialog::KeyPaste); // the box then pastes

    // Only the application's name goes; the clipboard keeps the cleaned text.
    EXPECT_EQ(view.clipboard, "Letter.doc");
}

TEST_F(name_box, pasted_text_is_not_held_to_the_typing_rules) {
    auto& d = openDialog();
    view.clipboard = "microsoft excel - Q1: 50%";
    press(d, dialog::KeyPaste);
    EXPECT_EQ(view.clipboard, "Q1: 50%");
}

TEST_F(name_box, getting_the_focus_selects_the_whole_name) {
    auto& d = openDialog();
    auto& box = d.control("pdfName");
    box.text = "Grüße an Jürgen";
    box.selStart = 4;
    box.selLength = 0;

    d.pdfName_GotFocus();

    EXPECT_EQ(box.selStart, 0);
    EXPECT_EQ(box.selLength, 15); // characters, not bytes
}

} // namespace
} // namespace pl::test
