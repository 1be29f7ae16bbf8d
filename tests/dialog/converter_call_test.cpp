#include "actions_fixture.h"

#include "dialog/actions/converter_call.h"

#include <algorithm>
#include <filesystem>

namespace pl::test {
namespace {

class converter_call : public ActionsFixture {
protected:
    struct BoxStates {
        int open;
        int encode;
        const char* fileActions; // Save, automatic save, Desktop
        const char* mailActions; // E-mail
    };
    static constexpr BoxStates boxStates[] = {
        {0, 0, "delps,save,nocode", "delps,email,nocode"},
        {0, 1, "delps,save,encode", "delps,email,encode"},
        {0, 2, "delps,save", "delps,email"},
        {1, 0, "delps,save,open,nocode", "delps,email,nocode"},
        {1, 1, "delps,save,open,encode", "delps,email,encode"},
        {1, 2, "delps,save,open", "delps,email"},
    };

    // Opens a dialog for a fresh job with the boxes set as given.
    dialog::JobDialog& openJob(int n, const BoxStates& boxes) {
        offerMachineJob("Report", "anna" + std::to_string(n) + ".ps");
        auto& d = openWithActions();
        d.control("chkOpenPDF").value = boxes.open;
        d.control("ckEncodePDF").value = boxes.encode;
        return d;
    }
};

TEST_F(converter_call, every_action_passes_its_action_list_for_each_state_of_the_open_and_encrypt_boxes) {
    std::size_t expectedCalls = 0;
    int job = 0;
    for (const auto& boxes : boxStates) {
        SCOPED_TRACE("open " + std::to_string(boxes.open) + ", encrypt " + std::to_string(boxes.encode));

        const std::string chosen = out + "Saved " + std::to_string(job) + ".pdf";
        view.saveAnswers.push_back(chosen);
        auto& saving = openJob(++job, boxes);
        saving.actions().cmdSave_Click();
        const std::string savedJob = state.PsFile;
        auto calls = waitForCalls(++expectedCalls);
        ASSERT_EQ(calls.size(), expectedCalls);
        EXPECT_EQ(calls.back().args,
                  (std::vector<std::string>{"/3", boxes.fileActions, "High Quality", chosen, savedJob}));

        openJob(++job, boxes);
        buttons().AutoActionSave(out + "Auto.pdf");
        calls = waitForCalls(++expectedCalls);
        ASSERT_EQ(calls.size(), expectedCalls);
        EXPECT_EQ(calls.back().args[1], boxes.fileActions);
        EXPECT_EQ(calls.back().args[3], out + "Auto.pdf");

        openJob(++job, boxes);
        buttons().cmdDesktop_Click();
        calls = waitForCalls(++expectedCalls);
        ASSERT_EQ(calls.size(), expectedCalls);
        EXPECT_EQ(calls.back().args[1], boxes.fileActions);

        openJob(++job, boxes);
        buttons().cmdEmail_Click();
        calls = waitForCalls(++expectedCalls);
        ASSERT_EQ(calls.size(), expectedCalls);
        EXPECT_EQ(calls.back().args[1], boxes.mailActions);
    }
}

TEST_F(converter_call, queued_documents_stand_in_number_order_between_the_output_and_the_job) {
    const std::string first = writeQueued(1, "Kapitel 1");
    const std::string second = writeQueued(2, "Kapitel 2");
    writeQueued(4, "behind a gap"); // not passed until the gap is filled
    offerMachineJob("Kapitel 3");
    auto& d = openWithActions();
    d.control("chkOpenPDF").value = 0;

    d.actions().cmdDesktop_Click();

    const auto calls = waitForCalls(1);
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].args, (std::vector<std::string>{"/3", "delps,save,nocode", "High Quality",
                                                       desktop + "Kapitel 1.pdf", first, second, state.PsFile}));
    EXPECT_TRUE(state.PsFile.starts_with(machineSpool + "~anna")) << state.PsFile;
    EXPECT_EQ(state.MultiDocArgs, "\"" + first + "\" \"" + second + "\" ");
}

TEST_F(converter_call, with_an_empty_profile_list_the_profile_argument_is_empty) {
    std::filesystem::remove(suite + "High Quality.plp");
    offerMachineJob("Report");
    auto& d = openWithActions();
    ASSERT_TRUE(d.control("plProfile").items.empty());

    d.actions().cmdDesktop_Click();

    const auto calls = waitForCalls(1);
    ASSERT_EQ(calls.size(), 1u);
    ASSERT_EQ(calls[0].args.size(), 5u);
    EXPECT_EQ(calls[0].args[2], "");
    EXPECT_EQ(calls[0].args[3], desktop + "Report.pdf");
}

TEST_F(converter_call, a_missing_converter_is_announced_and_the_job_keeps_its_private_name) {
    std::filesystem::remove(suite + "paperlark");
    offerMachineJob("Report");
    auto& d = openWithActions();

    d.actions().cmdEmail_Click();

    expectOneWarning("Paperlark.exe not found");
    EXPECT_FALSE(d.form().loaded);
    EXPECT_FALSE(state.DialogActive);
    EXPECT_TRUE(std::filesystem::exists(state.PsFile));
    EXPECT_FALSE(std::filesystem::exists(machineSpool + "anna0001.ps"));
    EXPECT_TRUE(noCallArrives());
}

TEST_F(converter_call, a_converter_folder_without_its_trailing_separator_finds_no_converter) {
    setMachine("plDir", suite.substr(0, suite.size() - 1));
    offerMachineJob("Report");
    view.saveAnswers.push_back(out + "Report.pdf");

    openWithActions().actions().cmdSave_Click();

    ASSERT_EQ(view.messages.size(), 1u);
    EXPECT_EQ(view.messages[0].prompt, "Paperlark.exe not found");
    EXPECT_TRUE(noCallArrives());
}

TEST_F(converter_call, the_converter_folder_may_name_environment_variables) {
    env.set("PAPERLARK_SUITE", suite.substr(0, suite.size() - 1));
    setMachine("plDir", "%PAPERLARK_SUITE%/");
    offerMachineJob("Report");

    openWithActions().actions().cmdDesktop_Click();

    EXPECT_EQ(waitForCalls(1).size(), 1u);
}

TEST_F(converter_call, save_starts_the_converter_through_the_shell_in_the_temporary_folder) {
    offerMachineJob("Report");
    view.saveAnswers.push_back(out + "Report.pdf");
    auto& d = openWithActions();
    const int eventsBefore = view.doEventsCalls;

    d.actions().cmdSave_Click();

    const auto calls = waitForCalls(1);
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(std::filesystem::canonical(calls[0].folder), std::filesystem::canonical(tempFolder));
    EXPECT_EQ(view.doEventsCalls - eventsBefore, 2); // ShellExecute lets pending events run twice
    EXPECT_TRUE(errors.entries.empty());
}

TEST_F(converter_call, the_direct_route_gives_the_converter_no_working_folder_of_its_own) {
    offerMachineJob("Report");
    openWithActions().actions().cmdEmail_Click();

    const auto calls = waitForCalls(1);
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(std::filesystem::canonical(calls[0].folder), std::filesystem::current_path());
}

TEST_F(converter_call, the_debug_log_shows_each_call_and_desktop_its_fixed_action_text) {
    state.DebugMode = "1";
    writeQueued(1, "Erster");
    offerMachineJob("Report");
    view.saveAnswers.push_back(out + "Report.pdf");
    auto& saving = openWithActions();
    saving.control("chkOpenPDF").value = 1;
    saving.actions().cmdSave_Click();
    const std::string savedJob = state.PsFile;
    const std::string queued = "\"" + userSpool + "MultiDocanna1.ps\" ";

    offerMachineJob("Report", "anna0002.ps");
    auto& onDesktop = openWithActions();
    onDesktop.control("chkOpenPDF").value = 1;
    onDesktop.control("ckEncodePDF").value = 1;
    onDesktop.actions().cmdDesktop_Click();
    const std::string desktopJob = state.PsFile;

    const std::string log = logText();
    EXPECT_NE(log.find("Aufruf: Paperlark.exe /3 delps,save,open,nocode \"High Quality\" \"" + out + "Report.pdf\" " +
                       queued + "\"" + savedJob + "\"\r\n"),
              std::string::npos)
        << log;
    // Desktop names "delps,save" in its log line, whatever it really passes.
    EXPECT_NE(log.find("Aufruf: Paperlark.exe /3 delps,save \"High Quality\" \"" + desktop + "Erster.pdf\" " + queued +
                       "\"" + desktopJob + "\"\r\n"),
              std::string::npos)
        << log;
    const auto calls = waitForCalls(2);
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_TRUE(calls[0].args[1] == "delps,save,open,encode" || calls[1].args[1] == "delps,save,open,encode");
}

TEST_F(converter_call, names_with_blanks_umlauts_shell_quotes_and_substitutions_arrive_as_plain_arguments) {
    // Each would run "touch" if a shell ever saw it.
    const std::string profile = "Prüfung $(touch pwned1) 'a' `touch pwned2`; touch pwned3 & x";
    root.write("suite/" + profile + ".plp", "-sDEVICE=pdfwrite\r\n");
    std::filesystem::remove(suite + "High Quality.plp");
    const std::string title = "Bericht über $(touch pwned4) `touch pwned5` 'zitat'; touch pwned6";
    offerMachineJob(title, "anna $(touch pwned7) 'x'.ps");
    const std::string target = out + "Lösung $(touch pwned8) 'q' `touch pwned9` & y.pdf";
    view.saveAnswers.push_back(target);

    auto& saving = openWithActions();
    ASSERT_EQ(saving.control("plProfile").text, profile);
    saving.actions().cmdSave_Click();
    offerMachineJob(title, "anna0002.ps");
    auto& onDesktop = openWithActions();
    const std::string proposed = onDesktop.control("pdfName").text;
    EXPECT_NE(proposed.find("$(touch pwned4) `touch pwned5` 'zitat'; touch pwned6"), std::string::npos) << proposed;
    onDesktop.actions().cmdDesktop_Click();

    const auto calls = waitForCalls(2);
    ASSERT_EQ(calls.size(), 2u);
    std::vector<std::string> outputs;
    for (const auto& call : calls) {
        ASSERT_EQ(call.args.size(), 5u);
        EXPECT_EQ(call.args[2], profile);
        outputs.push_back(call.args[3]);
    }
    EXPECT_EQ(std::ranges::count(outputs, target), 1);
    EXPECT_EQ(std::ranges::count(outputs, desktop + proposed + ".pdf"), 1);
    // Wherever a shell would have run "touch": the converter's working folders and ours.
    for (const std::string& folder : {root.folder(), tempFolder + "/", std::filesystem::current_path().string() + "/",
                                      suite, machineSpool, desktop})
        for (int n = 1; n <= 9; ++n)
            EXPECT_FALSE(std::filesystem::exists(folder + "pwned" + std::to_string(n))) << folder << n;
}

} // namespace
} // namespace pl::test
