#include "actions_fixture.h"

#include <algorithm>
#include <filesystem>

namespace pl::test {
namespace {

class options : public ActionsFixture {
protected:
    options() {
        root.write("suite/Geheim.plp", "-sDEVICE=pdfwrite\r\nuserpassword=streng geheim\r\n");
        offerMachineJob("Report");
    }
    // A mouse click on the encrypt box: the box takes it as a standard check box does, then the
    // dialog hears of it.
    void clickEncryptBox(dialog::JobDialog& d) {
        auto& box = d.control("ckEncodePDF");
        box.value = box.value == forms::Checked ? forms::Unchecked : forms::Checked;
        d.actions().ckEncodePDF_MouseUp(1, 0, 10, 10);
    }
    // The action list a Save produces from a dialog whose encrypt box has had `clicks` mouse clicks
    // after being unticked with its label.
    std::string saveAfterClicks(int clicks, int job) {
        offerMachineJob("Report", "anna10" + std::to_string(job) + ".ps");
        auto& d = openWithActions();
        d.control("chkOpenPDF").value = 0;
        while (d.control("ckEncodePDF").value != forms::Unchecked)
            d.actions().lbEncodePDF_Click();
        for (int i = 0; i < clicks; ++i)
            clickEncryptBox(d);
        view.saveAnswers.push_back(out + "Report " + std::to_string(job) + ".pdf");
        d.actions().cmdSave_Click();
        const auto calls = waitForCalls(static_cast<std::size_t>(job));
        return calls.size() == static_cast<std::size_t>(job) ? calls.back().args[1] : "(no call)";
    }
};

TEST_F(options, the_open_box_is_remembered_when_it_loses_the_focus) {
    auto& d = openWithActions();
    ASSERT_EQ(d.control("chkOpenPDF").value, 1);
    d.actions().lbOpenPDF_Click();
    EXPECT_EQ(d.control("chkOpenPDF").value, 0);
    d.actions().chkOpenPDF_LostFocus();
    EXPECT_EQ(user("OpenPdf"), "0");
    d.actions().lbOpenPDF_Click();
    d.actions().chkOpenPDF_LostFocus();
    EXPECT_EQ(user("OpenPdf"), "1");
}

TEST_F(options, a_profile_with_its_own_password_is_left_to_decide_by_default) {
    setUser("DefaultProfile", "Geheim");
    auto& d = openWithActions();
    EXPECT_TRUE(buttons().EncodeTriState);
    EXPECT_EQ(d.control("ckEncodePDF").value, forms::Grayed);

    // Another profile without one: nothing to leave to it.
    const auto& items = d.control("plProfile").items;
    d.selectProfile(static_cast<int>(std::find(items.begin(), items.end(), "High Quality") - items.begin()));
    ASSERT_EQ(d.control("plProfile").text, "High Quality");
    EXPECT_FALSE(buttons().EncodeTriState);
    EXPECT_EQ(d.control("ckEncodePDF").value, forms::Unchecked);
}

TEST_F(options, with_three_states_the_mouse_goes_from_unticked_to_ticked_to_greyed) {
    setUser("DefaultProfile", "Geheim");
    EXPECT_EQ(saveAfterClicks(0, 1), "delps,save,nocode");
    EXPECT_EQ(saveAfterClicks(1, 2), "delps,save,encode");
    EXPECT_EQ(saveAfterClicks(2, 3), "delps,save");
}

TEST_F(options, with_three_states_the_label_cycles_through_all_three) {
    setUser("DefaultProfile", "Geheim");
    auto& d = openWithActions();
    std::vector<int> seen;
    for (int i = 0; i < 4; ++i) {
        d.actions().lbEncodePDF_Click();
        seen.push_back(d.control("ckEncodePDF").value);
    }
    EXPECT_EQ(seen, (std::vector<int>{0, 1, 2, 0}));
}

TEST_F(options, without_three_states_box_and_label_only_toggle) {
    auto& d = openWithActions();
    ASSERT_FALSE(buttons().EncodeTriState);
    std::vector<int> seen;
    for (int i = 0; i < 3; ++i) {
        clickEncryptBox(d);
        seen.push_back(d.control("ckEncodePDF").value);
    }
    for (int i = 0; i < 3; ++i) {
        d.actions().lbEncodePDF_Click();
        seen.push_back(d.control("ckEncodePDF").value);
    }
    EXPECT_EQ(seen, (std::vector<int>{1, 0, 1, 0, 1, 0}));
}

class configuration : public ActionsFixture {
protected:
    configuration() {
        offerMachineJob("Report");
        installRecorder(suite, "plucnfg");
    }
    dialog::JobDialog& open() {
        dialog = std::make_unique<dialog::JobDialog>(
            *context, dialog::jobActionsWith({[this](bool on) { residentTimer.push_back(on); }}));
        dialog->Load();
        return *dialog;
    }
    std::vector<bool> residentTimer;
};

TEST_F(configuration, looks_for_plconfig_and_starts_plucnfg_with_the_timers_off_meanwhile) {
    root.write("suite/plconfig", "");
    state.DebugMode = "1";
    auto& d = open();

    d.actions().lbConfig_Click();

    const auto calls = waitForCalls(1);
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].program, suite + "plucnfg.exe");
    EXPECT_TRUE(calls[0].args.empty());
    EXPECT_EQ(residentTimer, (std::vector<bool>{false, true}));
    EXPECT_TRUE(d.control("Timer1").enabled);
    EXPECT_NE(logText().find("Aufruf: Paperlark.exe /config\r\n"), std::string::npos);
}

TEST_F(configuration, without_plconfig_the_message_names_plucnfg_and_nothing_starts) {
    auto& d = open();
    d.actions().lbConfig_Click();
    expectOneWarning("plucnfg.exe not found");
    EXPECT_TRUE(residentTimer.empty());
    EXPECT_TRUE(noCallArrives());
}

TEST_F(configuration, a_language_changed_meanwhile_shows_at_once) {
    root.write("suite/plconfig", "");
    auto& d = open();
    ASSERT_EQ(d.control("cmdSave").caption, "Save &As...");
    setUser("language", "1");
    d.actions().lbConfig_Click();
    EXPECT_EQ(d.control("cmdSave").caption, "&Ablegen");
    waitForCalls(1);
}

} // namespace
} // namespace pl::test
