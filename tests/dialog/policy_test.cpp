#include "dialog_fixture.h"

#include "dialog/dialog_layout.h"
#include "dialog/policy.h"

#include <algorithm>
#include <array>

namespace pl::test {
namespace {

using namespace dialog::layout;

const std::array<std::string, 4> ClosableButtons{"cmdEmail", "cmdSave", "cmdDesktop", "cmdMulti"};
const std::array<std::string, 4> ButtonCodes{"disableemail", "disablesaveas", "disabledesktop", "disablemultidoc"};

class policy : public DialogFixture {
protected:
    policy() {
        writeJob(machineSpool, "anna0001.ps", "Report");
        offerJob(machineSpool, "anna0001.ps");
    }
    dialog::JobDialog& openWith(const std::string& machine, const std::string& user) {
        setMachine("APol", machine);
        setUser("APol", user);
        return openDialog();
    }
    bool visible(const std::string& name) { return dialog->control(name).visible; }
};

TEST_F(policy, a_bar_in_the_machine_value_locks_out_the_users_value) {
    EXPECT_FALSE(openWith("disableemail|", "enableemail").control("cmdEmail").visible);
    EXPECT_EQ(dialog::policyText(*registry), "disableemail|");
}

TEST_F(policy, a_bar_in_the_users_value_ends_the_policy_there) {
    EXPECT_FALSE(openWith("", "disableemail|enableemail").control("cmdEmail").visible);
    EXPECT_EQ(dialog::policyText(*registry), "disableemail|");
}

TEST_F(policy, enabling_beats_disabling_whichever_comes_first) {
    auto& d = openWith("disableemail,disableconfig", "enableemail");
    EXPECT_TRUE(d.control("cmdEmail").visible);
    EXPECT_FALSE(d.control("lbConfig").visible);
    // Nothing was closed up: the dialog keeps its width for four buttons.
    EXPECT_EQ(d.form().width, FourButtonWidth);
    EXPECT_EQ(d.control("lbConfig").left, ConfigLeft);

    EXPECT_TRUE(openWith("enablemultidoc", "DISABLEMULTIDOC").control("cmdMulti").visible);
}

TEST_F(policy, codes_are_found_in_any_letter_case_and_anywhere_in_the_text) {
    auto& d = openWith("", "xxDisableConfig;DISABLEQUALITYyy");
    EXPECT_FALSE(d.control("lbConfig").visible);
    EXPECT_FALSE(d.control("plProfile").visible);
    EXPECT_FALSE(d.control("lbPdfProfile").visible);
    EXPECT_TRUE(d.control("pdfName").visible);
}

TEST_F(policy, an_unreadable_machine_value_counts_as_empty) {
    platform::RegValue number{"APol", platform::regtype::Dword, {0xFF, 0xFF, 0xFF, 0xFF}};
    ASSERT_EQ(hives.backend().setValue(platform::HKEY_LOCAL_MACHINE, "Software\\tobrin\\PaperlarkXP", number, 0),
              platform::RegOk);
    setUser("APol", "disablesaveas");
    EXPECT_EQ(dialog::policyText(*registry), "disablesaveas");
    EXPECT_FALSE(openDialog().control("cmdSave").visible);
}

TEST_F(policy, an_empty_policy_changes_only_the_profile_box_width) {
    auto& d = openWith("", "");
    EXPECT_EQ(d.form().width, FourButtonWidth);
    EXPECT_EQ(d.form().height, DesignHeight);
    EXPECT_EQ(d.control("plProfile").width, FourButtonWidth - 2 * Margin);
    EXPECT_EQ(d.control("pdfName").width, FourButtonWidth - 2 * Margin);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(d.control(ClosableButtons[static_cast<std::size_t>(i)]).left, buttonLeft(i));
}

TEST_F(policy, hidden_buttons_leave_no_gap_in_the_row) {
    for (int mask = 0; mask < 16; ++mask) {
        std::string codes;
        for (std::size_t b = 0; b < 4; ++b)
            if (mask & (1 << b))
                codes += ButtonCodes[b] + ",";
        SCOPED_TRACE(codes);
        auto& d = openWith(codes, "");

        int position = 0;
        for (std::size_t b = 0; b < 4; ++b) {
            const auto& button = d.control(ClosableButtons[b]);
            EXPECT_EQ(button.visible, !(mask & (1 << b)));
            if (button.visible) {
                EXPECT_EQ(button.left, buttonLeft(position++)) << ClosableButtons[b];
            }
        }
        const bool closed = mask != 0;
        EXPECT_EQ(d.form().width, closed ? dialog::policy::NarrowestWidth : FourButtonWidth);
        EXPECT_LE(buttonLeft(position) - ButtonGap + Margin + FrameWidth, d.form().width);
        EXPECT_EQ(d.control("lbConfig").left, closed ? dialog::policy::NarrowConfigLeft : ConfigLeft);
        EXPECT_EQ(d.control("ckEncodePDF").left, closed ? EncodeCheckLeft - 1300 : EncodeCheckLeft);
        EXPECT_EQ(d.control("lbEncodePDF").left, closed ? EncodeLabelLeft - 1300 : EncodeLabelLeft);
        EXPECT_EQ(d.control("plProfile").width, d.form().width - 2 * Margin);
        // The Sort button never takes part in closing up.
        EXPECT_EQ(d.control("cmdSort").left, buttonLeft(4));
    }
}

TEST_F(policy, hiding_every_button_leaves_a_dialog_6825_wide) {
    auto& d = openWith("disableemail disablesaveas disabledesktop disablemultidoc", "");
    EXPECT_EQ(d.form().width, 6825);
}

TEST_F(policy, removed_rows_close_up_and_the_dialog_shrinks_upwards) {
    struct Case {
        std::string codes;
        int nameRow; // how far each row moves up
        int options;
        int buttons;
    };
    const Case cases[] = {
        {"disableopenpdf", 0, 0, 250},
        {"disablequality", 720, 720, 720},
        {"disablefilename", 0, 720, 720},
        {"disablequality disablefilename", 720, 1440, 1440},
        {"disablequality disablefilename disableopenpdf", 720, 1440, 1690},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.codes);
        auto& d = openWith(c.codes, "");
        EXPECT_EQ(d.control("pdfName").top, NameBoxTop - c.nameRow);
        EXPECT_EQ(d.control("lbPdfName").top, NameLabelTop - c.nameRow);
        EXPECT_EQ(d.control("chkOpenPDF").top, OptionsTop - c.options);
        for (auto name : {"lbOpenPDF", "ckEncodePDF", "lbEncodePDF"})
            EXPECT_EQ(d.control(name).top, OptionsTop - c.options) << name;
        for (const auto& name : ClosableButtons)
            EXPECT_EQ(d.control(name).top, ButtonsTop - c.buttons) << name;
        EXPECT_EQ(d.form().height, DesignHeight - c.buttons);
        EXPECT_EQ(d.form().top, DesignTop - c.buttons);
        // These two never move up.
        EXPECT_EQ(d.control("cmdSort").top, ButtonsTop);
        EXPECT_EQ(d.control("lbConfig").top, ConfigTop);
        // The buttons keep their margin to the bottom edge.
        EXPECT_EQ(d.form().height - (d.control("cmdSave").top + ButtonHeight), Margin + FrameHeight);
    }
}

TEST_F(policy, visible_rows_never_overlap_whatever_is_removed) {
    const std::array<std::string, 3> rowCodes{"disablequality", "disablefilename", "disableopenpdf"};
    for (int mask = 0; mask < 8; ++mask) {
        std::string codes = "enableencryptpdf ";
        for (std::size_t r = 0; r < 3; ++r)
            if (mask & (1 << r))
                codes += rowCodes[r] + " ";
        SCOPED_TRACE(codes);
        auto& d = openWith(codes, "");
        int bottom = InfoTop + InfoHeight;
        for (auto name : {"lbPdfProfile", "plProfile", "lbPdfName", "pdfName", "ckEncodePDF", "cmdSave"}) {
            const auto& c = d.control(name);
            if (!c.visible)
                continue;
            EXPECT_GE(c.top, bottom) << name;
            bottom = c.top + c.height;
        }
    }
}

TEST_F(policy, enabling_encryption_shows_it_even_where_it_is_not_available) {
    EXPECT_FALSE(openWith("", "").control("ckEncodePDF").visible);
    auto& d = openWith("", "enableencryptpdf");
    EXPECT_TRUE(d.control("ckEncodePDF").visible);
    EXPECT_TRUE(d.control("lbEncodePDF").visible);
}

} // namespace
} // namespace pl::test
