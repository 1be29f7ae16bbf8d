#include "actions_fixture.h"

#include "dialog/actions/open_file_check.h"

#include <filesystem>
#include <optional>

namespace pl::test {
namespace {

namespace fs = std::filesystem;

class saving : public ActionsFixture {
protected:
    saving() { offerMachineJob(); }
};

TEST_F(saving, cancelled_or_with_a_question_mark_gives_the_job_back_and_converts_nothing) {
    for (const std::optional<std::string>& answer :
         {std::optional<std::string>(), std::optional<std::string>(out + "Re?ort.pdf")}) {
        SCOPED_TRACE(answer.value_or("(cancelled)"));
        view.saveAnswers.push_back(answer);
        offerJob(machineSpool, "anna0001.ps"); // as the watcher offers it again
        auto& d = openWithActions();
        d.actions().cmdSave_Click();

        EXPECT_FALSE(d.form().loaded);
        EXPECT_FALSE(state.DialogActive);
        // Under its old name the watcher offers it again.
        EXPECT_TRUE(fs::exists(machineSpool + "anna0001.ps"));
        EXPECT_EQ(std::distance(fs::directory_iterator(machineSpool), fs::directory_iterator()), 1);
    }
    EXPECT_TRUE(view.messages.empty()); // given back silently
    EXPECT_TRUE(noCallArrives());
    EXPECT_EQ(user("LastDir"), "");
}

TEST_F(saving, a_file_held_open_elsewhere_gets_a_numbered_name_and_the_suffix_is_repaired_after_that_test) {
    root.write("out/Report.pdf", "last month's report");
    struct Case {
        std::optional<FileHolder::Lock> lock; // of another process on "Report.pdf"
        std::string answer, output;
    };
    const Case cases[] = {
        {FileHolder::Lock::Flock, out + "Report.pdf", out + "Report (1).pdf"},
        {FileHolder::Lock::RecordLock, out + "Report.pdf", out + "Report (1).pdf"},
        {std::nullopt, out + "Report.pdf", out + "Report.pdf"}, // nobody holds it: the converter overwrites it
        {FileHolder::Lock::Flock, out + "Report", out + "Report.pdf"},
    };
    std::size_t job = 0;
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.answer << " " << (c.lock ? static_cast<int>(*c.lock) : -1));
        std::optional<FileHolder> viewer;
        if (c.lock) {
            viewer.emplace(out + "Report.pdf", *c.lock);
            ASSERT_TRUE(viewer->holding());
        }
        offerMachineJob("Report", "anna" + std::to_string(++job) + ".ps");
        view.saveAnswers.push_back(c.answer);
        openWithActions().actions().cmdSave_Click();

        const auto calls = waitForCalls(job);
        ASSERT_EQ(calls.size(), job);
        EXPECT_EQ(calls.back().args[3], c.output);
        ASSERT_EQ(view.saveRequests.size(), job);
        EXPECT_EQ(view.saveRequests.back().fileName, "Report");
        EXPECT_EQ(view.saveRequests.back().filter, std::string("Paperlark File     (.pdf)\0*.pdf", 31));
        EXPECT_EQ(view.saveRequests.back().initDir, job == 1 ? "" : out.substr(0, out.size() - 1)); // "LastDir"
    }
    EXPECT_EQ(root.read("out/Report.pdf"), "last month's report");
    EXPECT_FALSE(fs::exists(out + "~Report.pdf"));
}

// Desktop (by button or by Enter in the name box) and E-mail name their file after the name box.
TEST_F(saving, desktop_and_email_number_a_taken_name_and_fill_an_empty_name_box) {
    root.write("desktop/Report.pdf", "yesterday's");
    root.write("desktop/Report (1).pdf", "the day before");
    root.write("spool/Invoice.pdf", "sent last week");
    FileHolder mailer(userSpool + "Invoice.pdf", FileHolder::Lock::Flock);
    ASSERT_TRUE(mailer.holding());
    enum Action { Desktop, Enter, Email };
    struct Case {
        Action action;
        std::string nameBox, output;
    };
    const Case cases[] = {
        {Desktop, "Report", desktop + "Report (2).pdf"},
        {Enter, "Report", desktop + "Report (2).pdf"},
        {Desktop, "", desktop + "Paperlark_XP PDF.pdf"},
        {Desktop, "ab", desktop + "ab.pdf"}, // a short name gets its suffix once
        {Email, "", userSpool + "Paperlark_XP PDF.pdf"},
        {Email, "Invoice.pdf", userSpool + "Invoice (1).pdf"},
        // The open-file test sees the name before its suffix is repaired: "Invoice" is not held.
        {Email, "Invoice", userSpool + "Invoice.pdf"},
    };
    std::size_t job = 0;
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.action << " \"" << c.nameBox << "\"");
        offerMachineJob("Report", "anna" + std::to_string(++job) + ".ps");
        auto& d = openWithActions();
        d.control("pdfName").text = c.nameBox;
        int key = dialog::KeyEnter;
        if (c.action == Enter)
            d.pdfName_KeyPress(key);
        else if (c.action == Desktop)
            d.actions().cmdDesktop_Click();
        else
            d.actions().cmdEmail_Click();

        const auto calls = waitForCalls(job);
        ASSERT_EQ(calls.size(), job);
        EXPECT_EQ(calls.back().args[3], c.output);
        // The name box shows what was written.
        EXPECT_EQ(d.control("pdfName").text, c.action == Email ? c.output : fs::path(c.output).filename().string());
    }
    EXPECT_EQ(root.read("desktop/Report.pdf"), "yesterday's");
    EXPECT_EQ(root.read("spool/Invoice.pdf"), "sent last week");
}

} // namespace
} // namespace pl::test

namespace pl::test {
namespace {

// The open-file test renames the file aside and back; when it cannot come back (a stale "~" file of
// the same name took its place), the user's file must not vanish unnoticed.
TEST_F(saving, a_file_that_cannot_be_put_back_after_the_open_file_test_is_reported) {
    root.write("out/Report.pdf", "current");
    root.write("out/~Report.pdf", "stale");
    EXPECT_EQ(dialog::CheckOpenFile(out + "Report.pdf", os->files(), naming, errors), out + "Report.pdf");
    ASSERT_EQ(errors.entries.size(), 1u);
    EXPECT_EQ(errors.entries[0].tag, "CheckOpenFile");
    EXPECT_EQ(root.read("out/Report.pdf"), "current");
    errors.entries.clear(); // expected: the fixture fails a test on any other report
}

} // namespace
} // namespace pl::test
