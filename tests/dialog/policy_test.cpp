#include "dialog_fixture.h"

#include "dialog/dialog_layout.h"
#include "dialog/policy.h"

#include <array>

namespace pl::test {
namespace {

using namespace dialog::layout;
namespace narrow = dialog::policy;

const std::array<std::string, 4> ClosableButtons{"cmdEmail", "cmdSave", "cmdDesktop", "cmdMulti"};
const std::array<std::string, 4> ButtonCodes{"disableemail", "disablesaveas", "disabledesktop", "disablemultidoc"};
const std::array<std::string, 9> Features{"cmdEmail",  "cmdSave",      "cmdDesktop", "cmdMulti",  "lbConfig",
                                          "plProfile", "lbPdfProfile", "pdfName",    "chkOpenPDF"};

class policy : public DialogFixture {
protected:
    policy() { offerMachineJob(); }

    struct Case {
        std::string machine, user;
        std::string hidden;   // of Features, blank-separated
        bool encrypt = false; // the encryption option is shown
        int nameUp = 0;       // how far each row moves up
        int optionsUp = 0;
        int buttonsUp = 0;
    };

    // The dialog shows what the policy leaves and closes up what it took, whatever that is.
    void expectLayout(const Case& c) {
        SCOPED_TRACE("machine \"" + c.machine + "\", user \"" + c.user + "\"");
        setMachine("APol", c.machine);
        setUser("APol", c.user);
        auto& d = openDialog();

        for (const auto& name : Features)
            EXPECT_EQ(d.control(name).visible, (" " + c.hidden + " ").find(" " + name + " ") == std::string::npos)
                << name;
        EXPECT_EQ(d.control("ckEncodePDF").visible, c.encrypt);
        EXPECT_EQ(d.control("lbEncodePDF").visible, c.encrypt);

        // Visible buttons stand without a gap; the dialog narrows when one went.
        int position = 0;
        for (const auto& name : ClosableButtons) {
            if (d.control(name).visible) {
                EXPECT_EQ(d.control(name).left, buttonLeft(position++)) << name;
            }
        }
        const bool closed = position < 4;
        const int width = closed ? narrow::NarrowestWidth : FourButtonWidth;
        EXPECT_EQ(d.form().width, width);
        EXPECT_LE(buttonLeft(position) - ButtonGap + Margin + FrameWidth, width);
        EXPECT_EQ(d.control("lbConfig").left, closed ? narrow::NarrowConfigLeft : ConfigLeft);
        EXPECT_EQ(d.control("ckEncodePDF").left, EncodeCheckLeft - (closed ? narrow::EncodeShift : 0));
        EXPECT_EQ(d.control("lbEncodePDF").left, EncodeLabelLeft - (closed ? narrow::EncodeShift : 0));
        EXPECT_EQ(d.control("plProfile").width, width - 2 * Margin);
        EXPECT_EQ(d.control("pdfName").width, width - 2 * Margin);

        // Removed rows close up and the dialog shrinks upwards.
        EXPECT_EQ(d.control("pdfName").top, NameBoxTop - c.nameUp);
        EXPECT_EQ(d.control("lbPdfName").top, NameLabelTop - c.nameUp);
        for (auto name : {"chkOpenPDF", "lbOpenPDF", "ckEncodePDF", "lbEncodePDF"})
            EXPECT_EQ(d.control(name).top, OptionsTop - c.optionsUp) << name;
        for (const auto& name : ClosableButtons)
            EXPECT_EQ(d.control(name).top, ButtonsTop - c.buttonsUp) << name;
        EXPECT_EQ(d.form().height, DesignHeight - c.buttonsUp);
        EXPECT_EQ(d.form().top, DesignTop - c.buttonsUp);
        EXPECT_EQ(d.form().height - (ButtonsTop - c.buttonsUp + ButtonHeight), Margin + FrameHeight);
        // Sort and Configure never take part.
        EXPECT_EQ(d.control("cmdSort").left, buttonLeft(4));
        EXPECT_EQ(d.control("cmdSort").top, ButtonsTop);
        EXPECT_EQ(d.control("lbConfig").top, ConfigTop);
    }
};

TEST_F(policy, a_bar_ends_the_text_and_enabling_beats_disabling_and_the_dialog_closes_up_what_went) {
    const Case cases[] = {
        {"", "", ""},
        {"disableemail|", "enableemail", "cmdEmail"}, // the machine's bar locks out the user's value
        {"", "disableemail|enableemail", "cmdEmail"}, // the user's bar ends the policy there
        {"disableemail,disableconfig", "enableemail", "lbConfig"},
        {"enablemultidoc", "DISABLEMULTIDOC", ""},
        {"", "xxDisableConfig;DISABLEQUALITYyy", "lbConfig plProfile lbPdfProfile", false, 720, 720, 720},
        {"disableopenpdf enableencryptpdf", "", "chkOpenPDF", true, 0, 0, 250},
        {"disablefilename", "", "pdfName", false, 0, 720, 720},
        {"disablequality disablefilename", "", "plProfile lbPdfProfile pdfName", false, 720, 1440, 1440},
        {"disablequality disablefilename disableopenpdf disablesaveas", "",
         "plProfile lbPdfProfile pdfName chkOpenPDF cmdSave", false, 720, 1440, 1690},
    };
    for (const auto& c : cases)
        expectLayout(c);
    setMachine("APol", "Disableemail|");
    setUser("APol", "enableemail");
    EXPECT_EQ(dialog::policyText(registry), "disableemail|");
}

TEST_F(policy, hidden_buttons_leave_no_gap_in_the_row_whichever_go) {
    for (int mask = 1; mask < 16; ++mask) {
        Case c;
        for (std::size_t b = 0; b < 4; ++b)
            if (mask & (1 << b)) {
                c.machine += ButtonCodes[b] + ",";
                c.hidden += ClosableButtons[b] + " ";
            }
        expectLayout(c);
    }
}

} // namespace
} // namespace pl::test
