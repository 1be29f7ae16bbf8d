#include "actions_fixture.h"

#include <filesystem>

namespace pl::test {
namespace {

namespace fs = std::filesystem;

class multidoc : public ActionsFixture {
protected:
    std::string queued(int n) const { return userSpool + "MultiDocanna" + std::to_string(n) + ".ps"; }
    void queueJob(const std::string& title, const std::string& name) {
        offerMachineJob(title, name);
        openWithActions().actions().cmdMulti_Click();
    }
};

TEST_F(multidoc, the_first_document_opens_the_queue_and_nothing_is_converted) {
    queueJob("Kapitel 1", "anna0001.ps");

    EXPECT_TRUE(fs::exists(queued(1)));
    EXPECT_NE(root.read("spool/MultiDocanna1.ps").find("%%Title: Kapitel 1"), std::string::npos);
    EXPECT_FALSE(fs::exists(machineSpool + "anna0001.ps"));
    EXPECT_EQ(dialog->control("pdfName").text, "Kapitel 1");
    EXPECT_FALSE(dialog->form().loaded);
    EXPECT_FALSE(state.DialogActive);
    EXPECT_TRUE(noCallArrives());
}

TEST_F(multidoc, fills_the_lowest_free_number_and_the_next_conversion_passes_the_whole_run) {
    writeQueued(1, "Eins");
    writeQueued(3, "Drei");
    queueJob("Zwei", "anna0001.ps");
    EXPECT_NE(root.read("spool/MultiDocanna2.ps").find("%%Title: Zwei"), std::string::npos);

    offerMachineJob("Vier", "anna0002.ps");
    openWithActions().actions().cmdDesktop_Click();
    const auto calls = waitForCalls(1);
    ASSERT_EQ(calls.size(), 1u);
    ASSERT_EQ(calls[0].args.size(), 8u);
    EXPECT_EQ(calls[0].args[4], queued(1));
    EXPECT_EQ(calls[0].args[5], queued(2));
    EXPECT_EQ(calls[0].args[6], queued(3));
    EXPECT_EQ(calls[0].args[3], desktop + "Eins.pdf"); // named after the collection's first document
}

TEST_F(multidoc, another_users_queue_is_not_counted) {
    writeJob(userSpool, "MultiDocbert1.ps", "Bert's");
    queueJob("Annas", "anna0001.ps");
    EXPECT_TRUE(fs::exists(queued(1)));
}

TEST_F(multidoc, a_spool_folder_removed_meanwhile_is_created_again) {
    fs::remove_all(userSpool);
    queueJob("Kapitel 1", "anna0001.ps");
    EXPECT_TRUE(fs::exists(queued(1)));
}

TEST_F(multidoc, the_debug_log_names_the_job_folder_for_the_queue_file) {
    state.DebugMode = "1";
    queueJob("Kapitel 1", "anna0001.ps");
    const std::string log = logText();
    EXPECT_NE(log.find("MultiDoc...\r\n"), std::string::npos);
    EXPECT_NE(log.find("Datei hinterlegen als " + machineSpool + "MultiDocanna1.ps\r\n"), std::string::npos) << log;
}

} // namespace
} // namespace pl::test
