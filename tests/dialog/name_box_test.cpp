#include "dialog_fixture.h"

#include <utility>

namespace pl::test {
namespace {

class name_box : public DialogFixture {
protected:
    name_box() { offerMachineJob(); }
    int press(dialog::JobDialog& d, int key) {
        d.pdfName_KeyPress(key);
        return key;
    }
};

TEST_F(name_box, typing_refuses_what_no_file_name_may_hold_but_pasting_only_drops_the_application_name) {
    auto& d = openDialog();
    for (char c : std::string(":*|<>!?\"/\\"))
        EXPECT_EQ(press(d, c), 0) << c;
    for (char c : std::string("%aZ9 -_.()[]&'~"))
        EXPECT_EQ(press(d, c), c) << c;
    EXPECT_EQ(press(d, 0xE4), 0xE4); // ä

    const std::pair<const char*, const char*> pastes[] = {
        {"Microsoft Word - Letter.doc", "Letter.doc"},
        {"microsoft excel - Q1: 50%", "Q1: 50%"}, // not held to the typing rules
    };
    for (const auto& [copied, pasted] : pastes) {
        view.clipboard = copied;
        EXPECT_EQ(press(d, dialog::KeyPaste), dialog::KeyPaste); // the box then pastes
        EXPECT_EQ(view.clipboard, pasted);
    }
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
