#include "dialog_fixture.h"

#include <utility>

namespace pl::test {
namespace {

class load_sequence : public DialogFixture {};

TEST_F(load_sequence, proposes_the_cleaned_title_of_real_world_applications) {
    const std::pair<const char*, const char*> cases[] = {
        {"Microsoft Word - Brief.docx", "Brief"},
        {"Microsoft Excel - Umsatz 2004.xlsx", "Umsatz 2004"},
        {"C:\\Docs\\Letter.doc", "C -Docs-Letter"},
        {"(Invoice 7)", "Invoice 7"}, // a PostScript string's parentheses
        {"(a) and (b)", "a) and (b"}, // ... go only when they enclose the whole name
        {"Plan (draft)", "Plan (draft)"},
        {"()", "Paperlark PDF"},    // nothing inside them
        {"100% sure!", "100 sure"}, // what a file name may not hold goes at load time
        {"!!!", "Paperlark PDF"},   // nothing left
        {"(   )", "Paperlark PDF"}, // only blanks left
        {"Angebot \"final\"", "Angebot final"},
    };
    for (const auto& [title, proposed] : cases) {
        SCOPED_TRACE(title);
        offerMachineJob(title);
        EXPECT_EQ(openDialog().control("pdfName").text, proposed);
    }
    root.write("machine/untitled.ps", "%!PS-Adobe-3.0\r\nshowpage\r\n");
    offerJob(machineSpool, "untitled.ps");
    EXPECT_EQ(openDialog().control("pdfName").text, "Paperlark File");
}

TEST_F(load_sequence, a_job_naming_its_profile_selects_it_in_any_letter_case_and_waits_in_front_with_its_title) {
    for (auto name : {"fax.plp", "High Quality.plp", "screen.plp"})
        writeProfile(suite, name);
    setUser("DefaultProfile", "screen");
    const std::pair<const char*, const char*> cases[] = {
        {"anna~profile~HIGH quality.PS", "High Quality"},
        {"anna~profile~fax.ps", "fax"},
        {"anna~profile~nosuch.ps", "screen"}, // unknown: the default stays selected
        {"anna0001.ps", "screen"},
    };
    for (const auto& [job, profile] : cases) {
        SCOPED_TRACE(job);
        offerMachineJob("Microsoft Word - Angebot.docx", job);
        view.events.clear();
        auto& d = openDialog();
        EXPECT_EQ(d.control("plProfile").text, profile);
        EXPECT_EQ(d.control("pdfName").text, "Angebot");
        EXPECT_TRUE(state.DialogActive);
        EXPECT_TRUE(d.form().visible);
        EXPECT_TRUE(view.saw("front plDialog1"));
        EXPECT_EQ(d.form().focused, "pdfName");
    }
}

} // namespace
} // namespace pl::test
