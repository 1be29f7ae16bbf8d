#include "actions_fixture.h"

#include <algorithm>
#include <filesystem>

namespace pl::test {
namespace {

namespace fs = std::filesystem;

class converter_call : public ActionsFixture {};

TEST_F(converter_call, each_action_passes_its_exact_arguments_for_each_state_of_the_open_and_encrypt_boxes) {
    struct BoxStates {
        int open;
        int encode;
        const char* fileActions; // Save, automatic save, Desktop
        const char* mailActions; // E-mail
    };
    const BoxStates boxStates[] = {
        {0, 0, "delps,save,nocode", "delps,email,nocode"},
        {0, 1, "delps,save,encode", "delps,email,encode"},
        {0, 2, "delps,save", "delps,email"},
        {1, 0, "delps,save,open,nocode", "delps,email,nocode"},
        {1, 1, "delps,save,open,encode", "delps,email,encode"},
        {1, 2, "delps,save,open", "delps,email"},
    };
    enum Action { Save, AutoSave, Desktop, Email };
    std::size_t job = 0;
    for (bool queueing : {false, true})
        for (const auto& boxes : boxStates)
            for (Action action : {Save, AutoSave, Desktop, Email}) {
                SCOPED_TRACE(testing::Message() << "queue " << queueing << ", open " << boxes.open << ", encrypt "
                                                << boxes.encode << ", action " << action);
                std::vector<std::string> queued;
                if (queueing) { // in number order; 4 waits behind the gap
                    queued = {writeQueued(1, "Microsoft Word - Kapitel 1.doc"), writeQueued(2, "Kapitel 2")};
                    writeQueued(4, "behind a gap");
                }
                const std::string name = queueing ? "Kapitel 1" : "Report"; // the collection's first names it
                offerMachineJob("Report", "anna" + std::to_string(++job) + ".ps");
                auto& d = openWithActions();
                d.control("chkOpenPDF").value = boxes.open;
                d.control("ckEncodePDF").value = boxes.encode;

                std::string output;
                if (action == Save) {
                    output = out + "Saved " + std::to_string(job) + ".pdf";
                    view.saveAnswers.push_back(output);
                    d.actions().cmdSave_Click();
                } else if (action == AutoSave) {
                    output = out + "Auto.pdf";
                    buttons().AutoActionSave(output);
                } else if (action == Desktop) {
                    output = desktop + name + ".pdf";
                    d.actions().cmdDesktop_Click();
                } else {
                    output = userSpool + name + ".pdf";
                    d.actions().cmdEmail_Click();
                }

                std::vector<std::string> expected{"/3", action == Email ? boxes.mailActions : boxes.fileActions,
                                                  "High Quality", output};
                expected.insert(expected.end(), queued.begin(), queued.end());
                expected.push_back(state.PsFile);
                EXPECT_TRUE(state.PsFile.starts_with(machineSpool + "~anna")) << state.PsFile;
                const auto calls = waitForCalls(job);
                ASSERT_EQ(calls.size(), job);
                EXPECT_EQ(calls.back().args, expected);
                // Save goes through the shell, which starts the converter in the temporary folder.
                EXPECT_EQ(fs::canonical(calls.back().folder),
                          fs::canonical(action == Save ? fs::path(tempFolder) : fs::current_path()));
            }
}

TEST_F(converter_call, with_an_empty_profile_list_the_profile_argument_is_empty) {
    fs::remove(suite + "High Quality.plp");
    // The converter's folder may name environment variables.
    env.set("PAPERLARK_SUITE", suite.substr(0, suite.size() - 1));
    setMachine("plDir", "%PAPERLARK_SUITE%/");
    offerMachineJob();
    auto& d = openWithActions();
    ASSERT_TRUE(d.control("plProfile").items.empty());

    d.actions().cmdDesktop_Click();

    const auto calls = waitForCalls(1);
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].args,
              (std::vector<std::string>{"/3", "delps,save,open,nocode", "", desktop + "Report.pdf", state.PsFile}));
}

TEST_F(converter_call, a_missing_converter_is_announced_and_the_job_keeps_its_private_name) {
    fs::remove(suite + CONVERTER_FILE);
    offerMachineJob("Report", "anna0002.ps");
    auto& d = openWithActions();
    d.actions().cmdEmail_Click();
    expectOneWarning(CONVERTER_FILE " not found"); // named as the program is called here
    EXPECT_FALSE(d.form().loaded);
    EXPECT_FALSE(state.DialogActive);
    EXPECT_TRUE(fs::exists(state.PsFile));
    EXPECT_FALSE(fs::exists(machineSpool + "anna0002.ps"));
    EXPECT_TRUE(noCallArrives());
}

TEST_F(converter_call, names_with_blanks_umlauts_shell_quotes_and_substitutions_arrive_as_plain_arguments) {
    // Each would run "touch" if a shell ever saw it.
    const std::string profile = "Prüfung $(touch pwned1) 'a' `touch pwned2`; touch pwned3 & x";
    root.write("suite/" + profile + ".plp", "-sDEVICE=pdfwrite\r\n");
    fs::remove(suite + "High Quality.plp");
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
    for (const std::string& folder :
         {root.folder(), tempFolder + "/", fs::current_path().string() + "/", suite, machineSpool, desktop})
        for (int n = 1; n <= 9; ++n)
            EXPECT_FALSE(fs::exists(folder + "pwned" + std::to_string(n))) << folder << n;
}

} // namespace
} // namespace pl::test
