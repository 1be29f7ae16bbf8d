#include "dialog_fixture.h"

#include "dialog/proposed_name.h"

namespace pl::test {
namespace {

class load_sequence : public DialogFixture {
protected:
    std::string proposedFor(const std::string& title) {
        writeJob(machineSpool, "anna0001.ps", title);
        offerJob(machineSpool, "anna0001.ps");
        return openDialog().control("pdfName").text;
    }
};

TEST_F(load_sequence, proposes_the_cleaned_title_of_real_world_applications) {
    struct Case {
        const char* title;
        const char* proposed;
    };
    const Case cases[] = {
        {"Microsoft Word - Brief.docx", "Brief"},
        {"Microsoft Excel - Umsatz 2004.xlsx", "Umsatz 2004"},
        {"C:\\Docs\\Letter.doc", "C -Docs-Letter"},
        {"(Invoice 7)", "Invoice 7"}, // a PostScript string's parentheses
        {"()", "Paperlark PDF"},      // nothing inside them
        {"100% sure!", "100 sure"},   // what a file name may not hold goes at load time
        {"!!!", "Paperlark PDF"},     // nothing left
        {"(   )", "Paperlark PDF"},   // only blanks left
        {"Angebot \"final\"", "Angebot final"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.title);
        EXPECT_EQ(proposedFor(c.title), c.proposed);
    }
}

TEST_F(load_sequence, proposes_the_first_queued_document_while_a_multidoc_collection_is_open) {
    writeQueued(1, "Microsoft Word - Kapitel 1.doc");
    writeQueued(2, "Kapitel 2");
    EXPECT_EQ(proposedFor("Kapitel 3"), "Kapitel 1");
}

TEST_F(load_sequence, a_job_without_title_is_proposed_under_the_fallback_name) {
    root.write("machine/anna0002.ps", "%!PS-Adobe-3.0\r\nshowpage\r\n");
    offerJob(machineSpool, "anna0002.ps");
    EXPECT_EQ(openDialog().control("pdfName").text, "Paperlark File");
}

TEST_F(load_sequence, a_job_naming_its_profile_selects_it_ignoring_case_and_runs_its_automatic_action) {
    writeProfile(suite, "fax.plp");
    writeProfile(suite, "High Quality.plp");
    writeProfile(suite, "screen.plp");
    setUser("DefaultProfile", "screen");
    writeJob(machineSpool, "anna~profile~HIGH quality.PS", "Report");
    offerJob(machineSpool, "anna~profile~HIGH quality.PS");
    actionLog.autoPar = "plassist=email\r\n";

    auto& d = openDialogRecording();

    EXPECT_EQ(d.control("plProfile").text, "High Quality");
    EXPECT_TRUE(actionLog.called("LoadDefaultAction HIGH quality"));
    EXPECT_TRUE(actionLog.called("RunProfileDefault plassist=email\r\n"));
    EXPECT_FALSE(actionLog.called("RunDefault")); // the profile's action wins
    EXPECT_FALSE(d.form().loaded);                // unloaded at once ...
    EXPECT_FALSE(view.saw("front"));              // ... and never brought to the front
    EXPECT_FALSE(state.DialogActive);
}

TEST_F(load_sequence, a_named_profile_without_automatic_action_waits_for_the_user_on_that_profile) {
    writeProfile(suite, "fax.plp");
    writeProfile(suite, "High Quality.plp");
    writeJob(machineSpool, "anna~profile~fax.ps", "Report");
    offerJob(machineSpool, "anna~profile~fax.ps");

    auto& d = openDialogRecording();

    EXPECT_EQ(d.control("plProfile").text, "fax");
    EXPECT_TRUE(actionLog.called("RunDefault"));
    EXPECT_FALSE(actionLog.called("RunProfileDefault "));
    EXPECT_TRUE(d.form().loaded);
    EXPECT_TRUE(view.saw("front plDialog1"));
}

TEST_F(load_sequence, a_job_naming_an_unknown_profile_keeps_the_default_selected) {
    writeProfile(suite, "fax.plp");
    writeProfile(suite, "screen.plp");
    setUser("DefaultProfile", "screen");
    writeJob(machineSpool, "anna~profile~nosuch.ps", "Report");
    offerJob(machineSpool, "anna~profile~nosuch.ps");

    auto& d = openDialogRecording();

    EXPECT_EQ(d.control("plProfile").text, "screen");
    EXPECT_FALSE(actionLog.called("LoadDefaultAction nosuch"));
}

TEST_F(load_sequence, an_administrator_default_action_ends_the_load_without_bringing_the_dialog_forward) {
    writeJob(machineSpool, "anna0003.ps", "Report");
    offerJob(machineSpool, "anna0003.ps");
    actionLog.defaultAction = true;

    auto& d = openDialogRecording();

    EXPECT_TRUE(actionLog.called("RunDefault"));
    EXPECT_FALSE(view.saw("front"));
    EXPECT_NE(d.form().focused, "pdfName");
}

TEST_F(load_sequence, the_dialog_waits_for_the_user_in_front_with_the_cursor_in_the_name_box) {
    writeJob(machineSpool, "anna0004.ps", "Report");
    offerJob(machineSpool, "anna0004.ps");
    view.addTrayIcon("queued documents");

    auto& d = openDialog();

    EXPECT_TRUE(state.DialogActive);
    EXPECT_FALSE(view.trayIconShown); // the watcher puts it back after the dialog
    EXPECT_TRUE(d.form().loaded);
    EXPECT_TRUE(d.form().visible);
    EXPECT_EQ(d.form().windowState, forms::Normal);
    EXPECT_TRUE(view.saw("front plDialog1"));
    EXPECT_EQ(d.form().focused, "pdfName");
    EXPECT_TRUE(errors.entries.empty());
}

TEST_F(load_sequence, started_with_v_the_dialog_is_not_pulled_to_the_front) {
    writeJob(machineSpool, "anna0005.ps", "Report");
    offerJob(machineSpool, "anna0005.ps");
    state.CommandLine = "/v";

    auto& d = openDialog();

    EXPECT_FALSE(view.saw("front"));
    EXPECT_EQ(d.form().focused, "pdfName");
}

TEST_F(load_sequence, open_pdf_other_than_one_or_zero_is_treated_as_unset_and_written_back) {
    writeJob(machineSpool, "anna0006.ps", "Report");
    offerJob(machineSpool, "anna0006.ps");

    setUser("OpenPdf", "0");
    EXPECT_EQ(openDialog().control("chkOpenPDF").value, forms::Unchecked);
    EXPECT_EQ(user("OpenPdf"), "0");

    setUser("OpenPdf", "yes");
    EXPECT_EQ(openDialog().control("chkOpenPDF").value, forms::Checked);
    EXPECT_EQ(user("OpenPdf"), "1");
}

TEST_F(load_sequence, desktop_caption_comes_from_the_user_then_the_machine_then_the_language) {
    writeJob(machineSpool, "anna0007.ps", "Report");
    offerJob(machineSpool, "anna0007.ps");

    EXPECT_EQ(openDialog().control("cmdDesktop").caption, texts.text(9));

    setMachine("DesktopCaption", "Auf den Schreibtisch");
    EXPECT_EQ(openDialog().control("cmdDesktop").caption, "Auf den Schreibtisch");

    setUser("DesktopCaption", "To my &desk");
    EXPECT_EQ(openDialog().control("cmdDesktop").caption, "To my &desk");
}

TEST_F(load_sequence, logs_its_steps_while_debugging) {
    writeJob(machineSpool, "anna0008.ps", "Microsoft Word - Brief.docx");
    offerJob(machineSpool, "anna0008.ps");
    state.DebugMode = "1";

    openDialog();

    const std::string log = root.read("desktop/plAssist.log");
    for (auto line : {"Hintergrund erzeugen\r\n", "Policy auswerten\r\n", "Infolabel laden\r\n",
                      "Dateiname anzeigen...\r\n", "Dateiname anzeigen: Brief\r\n", "Fenster anzeigen\r\n"})
        EXPECT_NE(log.find(line), std::string::npos) << line;
    EXPECT_LT(log.find("Policy auswerten"), log.find("Fenster anzeigen"));
}

TEST_F(load_sequence, writes_no_log_while_debugging_is_off_or_paused) {
    writeJob(machineSpool, "anna0009.ps", "Report");
    offerJob(machineSpool, "anna0009.ps");
    for (auto mode : {"", "2", "0"}) {
        state.DebugMode = mode;
        openDialog();
    }
    EXPECT_FALSE(root.exists("desktop/plAssist.log"));
}

TEST_F(load_sequence, a_failing_step_is_reported_with_the_loads_tag_and_the_steps_name) {
    writeJob(machineSpool, "anna0010.ps", "Report");
    offerJob(machineSpool, "anna0010.ps");
    // A number too large for the registry module's conversion: reading it overflows.
    platform::RegValue style{"Style", platform::regtype::Dword, {0x00, 0x00, 0x00, 0x80}};
    ASSERT_EQ(hives.backend().setValue(platform::HKEY_LOCAL_MACHINE, "Software\\tobrin\\PaperlarkXP", style, 0),
              platform::RegOk);

    auto& d = openDialog();

    ASSERT_EQ(errors.entries.size(), 1u);
    EXPECT_EQ(errors.entries[0].tag, "plDialog1.load");
    EXPECT_EQ(errors.entries[0].step, "Hintergrundfarbe setzen:");
    EXPECT_EQ(errors.entries[0].number, err::Overflow);
    EXPECT_FALSE(d.form().visible); // the load stopped there
    errors.entries.clear();
}

TEST(proposed_name, profile_named_by_job_takes_the_text_after_the_marker_without_ps) {
    EXPECT_EQ(dialog::profileNamedByJob("Report~Profile~Fax.ps"), "Fax");
    EXPECT_EQ(dialog::profileNamedByJob("a~profile~b~profile~c"), "b~profile~c");
    EXPECT_EQ(dialog::profileNamedByJob("a~profile~.ps"), "");
    EXPECT_FALSE(dialog::profileNamedByJob("anna0001.ps").has_value());
}

TEST(proposed_name, parentheses_go_only_when_they_enclose_the_whole_name) {
    EXPECT_EQ(dialog::cleanProposedName("(Invoice 7)"), "Invoice 7");
    EXPECT_EQ(dialog::cleanProposedName("(()"), "(");
    EXPECT_EQ(dialog::cleanProposedName("(())"), "Paperlark PDF");
    EXPECT_EQ(dialog::cleanProposedName("(a) and (b)"), "a) and (b");
    EXPECT_EQ(dialog::cleanProposedName("Plan (draft)"), "Plan (draft)");
    EXPECT_EQ(dialog::RemoveSpaces(" a b\tc "), "ab\tc");
}

} // namespace
} // namespace pl::test
