#include "dialog_fixture.h"

#include "base/text.h"
#include "dialog/dialog_layout.h"

#include <filesystem>

namespace pl::test {
namespace {

using namespace dialog::layout;

// The dialog's width once the policy took back cmdSort's room.
constexpr int WidthWithoutSort = FourButtonWidth;
constexpr int WidthWithSort = FourButtonWidth + SortWidth + 160;

class info_label : public DialogFixture {
protected:
    info_label() {
        // The job itself waits in the machine's folder, so it is not among the user's waiting jobs.
        writeJob(machineSpool, "anna0001.ps", "Report");
        offerJob(machineSpool, "anna0001.ps");
    }
    std::string count(int text, int n) { return text::replaceAll(texts.text(text), "$1$", std::to_string(n)); }
};

TEST_F(info_label, nothing_queued_nothing_waiting_leaves_the_label_empty_and_sort_hidden) {
    auto& d = openDialog();
    EXPECT_EQ(d.control("lbInfo").caption, "");
    EXPECT_FALSE(d.control("cmdSort").visible);
    EXPECT_EQ(d.form().width, WidthWithoutSort);
    EXPECT_EQ(d.GetMultiDocFiles(), "");
}

TEST_F(info_label, one_queued_document_and_one_waiting_job) {
    writeQueued(1);
    writeJob(userSpool, "anna0002.ps", "Next");

    auto& d = openDialog();

    EXPECT_EQ(d.control("lbInfo").caption, texts.text(14) + "\r\n" + texts.text(16) + "\r\n");
    EXPECT_TRUE(d.control("cmdSort").visible);
    EXPECT_EQ(d.form().width, WidthWithSort);
}

TEST_F(info_label, several_queued_and_waiting_are_counted_up_to_the_first_gap_in_the_queue) {
    writeQueued(1);
    writeQueued(2);
    writeQueued(4); // behind the gap at 3: waits until the gap is filled
    writeJob(userSpool, "anna0002.ps", "Next");
    writeJob(userSpool, "Anna0003.ps", "Next"); // names match without regard to case
    writeJob(userSpool, "bert0001.ps", "Somebody else's");

    auto& d = openDialog();

    EXPECT_EQ(d.control("lbInfo").caption, count(15, 2) + "\r\n" + count(17, 2) + "\r\n");
    EXPECT_EQ(d.GetMultiDocFiles(), "\"" + userSpool + "MultiDocanna1.ps\" \"" + userSpool + "MultiDocanna2.ps\" ");
}

TEST_F(info_label, jobs_waiting_on_the_terminal_server_count_too) {
    const std::string ts = root.folder() + "ts";
    std::filesystem::create_directories(ts);
    writeJob(ts + "/", "anna-ts0001.ps", "On the server");
    writeJob(ts + "/", "anna-ts0002.ps", "On the server");
    writeJob(userSpool, "anna0002.ps", "Next");
    state.TsPath = ts;
    state.TsName = "anna-ts";

    EXPECT_EQ(openDialog().control("lbInfo").caption, count(17, 3) + "\r\n");
}

TEST_F(info_label, the_timer_keeps_label_and_sort_button_current) {
    writeQueued(1);
    auto& d = openDialog();
    ASSERT_TRUE(d.control("cmdSort").visible);
    ASSERT_EQ(d.form().width, WidthWithSort);

    writeQueued(2);
    d.Timer1_Timer();
    EXPECT_EQ(d.control("lbInfo").caption, count(15, 2) + "\r\n");
    EXPECT_EQ(d.form().width, WidthWithSort); // shown already: not widened twice

    std::filesystem::remove(userSpool + "MultiDocanna1.ps");
    d.Timer1_Timer();
    EXPECT_EQ(d.control("lbInfo").caption, "");
    EXPECT_FALSE(d.control("cmdSort").visible);
    EXPECT_EQ(d.form().width, WidthWithoutSort);
}

TEST_F(info_label, the_sort_button_fits_the_dialog_that_shows_it) {
    writeQueued(1);
    const auto& d = openDialog();
    const auto& sort = d.control("cmdSort");
    EXPECT_EQ(sort.left, buttonLeft(4));
    EXPECT_LE(sort.left + sort.width + Margin + FrameWidth, d.form().width);
}

} // namespace
} // namespace pl::test
