#include "dialog_fixture.h"

#include "dialog/appearance.h"

namespace pl::test {
namespace {

using dialog::gradientColor;
using dialog::gradientLines;

class appearance : public DialogFixture {
protected:
    appearance() {
        writeJob(machineSpool, "anna0001.ps", "Report");
        offerJob(machineSpool, "anna0001.ps");
    }
};

TEST_F(appearance, the_standard_look_fades_from_light_blue_to_blue) {
    setMachine("Style", "something else");
    const auto& bg = openDialog().background();
    EXPECT_TRUE(bg.keepsDrawing);
    EXPECT_TRUE(bg.gradient);
    EXPECT_EQ(bg.gradientStart, forms::rgb(0x85, 0xA9, 0xED));
    EXPECT_EQ(bg.gradientEnd, forms::rgb(0x21, 0x5D, 0xC6));
}

TEST_F(appearance, the_vista_look_in_any_letter_case_fades_from_black_to_grey) {
    setMachine("Style", "VISTA");
    const auto& bg = openDialog().background();
    EXPECT_TRUE(bg.gradient);
    EXPECT_EQ(bg.gradientStart, forms::rgb(0, 0, 0));
    EXPECT_EQ(bg.gradientEnd, forms::rgb(0x78, 0x78, 0x78));
}

TEST_F(appearance, the_grey_look_paints_no_gradient_and_uses_dark_text_on_the_button_face) {
    setMachine("Style", "Grey");
    auto& d = openDialog();
    EXPECT_FALSE(d.background().gradient);
    EXPECT_EQ(d.form().backColor, 0x8000000Fu);
    for (auto name : {"lbPleaseChoose", "lbPdfProfile", "lbPdfName", "lbOpenPDF", "lbEncodePDF"})
        EXPECT_EQ(d.control(name).foreColor, forms::rgb(0, 0, 0)) << name;
    EXPECT_EQ(d.control("lbConfig").foreColor, forms::rgb(0, 0, 0xFF)); // blue, as a link
    for (auto name : {"plProfile", "pdfName"}) {
        EXPECT_EQ(d.control(name).foreColor, forms::rgb(0, 0, 0)) << name;
        EXPECT_EQ(d.control(name).backColor, forms::rgb(0xFF, 0xFF, 0xFF)) << name;
    }
}

TEST_F(appearance, the_other_looks_keep_light_labels_on_the_gradient) {
    auto& d = openDialog();
    EXPECT_NE(d.form().backColor, 0x8000000Fu);
    EXPECT_EQ(d.control("lbPdfName").foreColor, forms::rgb(0xFF, 0xFF, 0xFF));
    EXPECT_TRUE(d.control("lbPdfName").backStyleTransparent);
}

TEST(gradient, runs_per_colour_component_from_the_start_at_the_top_to_the_end_at_the_bottom) {
    const forms::Rgb start = forms::rgb(0x85, 0xA9, 0xED);
    const forms::Rgb end = forms::rgb(0x21, 0x5D, 0xC6);
    EXPECT_EQ(gradientColor(start, end, 0, 3000), start);
    EXPECT_EQ(gradientColor(start, end, 3000, 3000), end);
    // Half way each component is half way: red 0x85 -> 0x21, green 0xA9 -> 0x5D, blue 0xED -> 0xC6.
    EXPECT_EQ(gradientColor(start, end, 1500, 3000), forms::rgb(0x53, 0x83, 0xDA));
    EXPECT_EQ(gradientColor(0x000000, 0x787878, 750, 3000), forms::rgb(0x1E, 0x1E, 0x1E));
}

TEST(gradient, draws_one_line_per_pixel_over_the_whole_height) {
    const auto lines = gradientLines(0x000000, 0x787878, 3000, 15);
    ASSERT_EQ(lines.size(), 201u);
    EXPECT_EQ(lines.front().y, 0);
    EXPECT_EQ(lines.back().y, 3000);
    EXPECT_EQ(lines.back().color, 0x787878u);
    for (std::size_t i = 1; i < lines.size(); ++i) {
        EXPECT_EQ(lines[i].y - lines[i - 1].y, 15);
        // Grey stays grey and only ever gets lighter.
        const auto c = lines[i].color;
        EXPECT_EQ(c % 256, c / 256 % 256);
        EXPECT_EQ(c % 256, c / 65536 % 256);
        EXPECT_GE(c % 256, lines[i - 1].color % 256);
    }
    EXPECT_TRUE(gradientLines(0, 0xFFFFFF, 3000, 0).empty());
}

TEST_F(appearance, the_controls_show_the_texts_of_the_current_language) {
    setUser("language", "1"); // German
    setMachine("Support", "Hilfe: Tel. 0815");
    auto& d = openDialog();
    EXPECT_EQ(d.form().caption, texts.text(1));
    EXPECT_EQ(d.control("lbPleaseChoose").caption, "Bitte wählen Sie:");
    EXPECT_EQ(d.control("lbPdfProfile").caption, "PDF-Profil");
    EXPECT_EQ(d.control("lbOpenPDF").caption, "PDF öffnen");
    EXPECT_EQ(d.control("cmdEmail").caption, "Per &E-Mail senden");
    EXPECT_EQ(d.control("cmdMulti").caption, "&MultiDoc");
    EXPECT_EQ(d.control("cmdSort").caption, "&Sortieren");
    EXPECT_EQ(d.control("lbConfig").caption, "Konfigurieren");
    EXPECT_EQ(d.control("lbEncodePDF").caption, "PDF Verschlüsseln");
    EXPECT_EQ(d.control("lbSupport").caption, "Hilfe: Tel. 0815");

    setUser("language", "2");
    EXPECT_EQ(openDialog().control("cmdSave").caption, "Save &As...");
}

} // namespace
} // namespace pl::test
