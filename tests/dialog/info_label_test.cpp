#include "dialog_fixture.h"

#include "base/text.h"
#include "dialog/dialog_layout.h"

#include <filesystem>

namespace pl::test {
namespace {

namespace fs = std::filesystem;
using namespace dialog::layout;

class info_label : public DialogFixture {
protected:
    std::string count(int text, int n) { return text::replaceAll(texts.text(text), "$1$", std::to_string(n)); }
};

// Each state of the spool folders is checked on a freshly loaded dialog and on one that was open
// all along and only heard the timer.
TEST_F(info_label, counts_queued_documents_up_to_the_first_gap_and_this_users_waiting_jobs) {
    const std::string ts = root.folder() + "ts/";
    struct Case {
        std::vector<int> queued;
        std::vector<std::string> waiting; // in the user's spool folder
        int onServer;                     // jobs waiting on the terminal server
        std::string caption;
        std::string multiDocFiles;
    };
    const std::string q = userSpool + "MultiDocanna";
    const Case cases[] = {
        {{}, {}, 0, "", ""},
        {{1}, {"anna0002.ps"}, 0, texts.text(14) + "\r\n" + texts.text(16) + "\r\n", "\"" + q + "1.ps\" "},
        // 4 waits behind the gap at 3; names match without regard to case; bert's are not counted
        {{1, 2, 4},
         {"anna0002.ps", "Anna0003.ps", "bert0001.ps"},
         0,
         count(15, 2) + "\r\n" + count(17, 2) + "\r\n",
         "\"" + q + "1.ps\" \"" + q + "2.ps\" "},
        {{2}, {"anna0002.ps"}, 2, count(17, 3) + "\r\n", ""},
        {{}, {}, 0, "", ""},
    };
    offerMachineJob(); // in the machine's folder: not one of the user's waiting jobs
    dialog::JobDialog open(*context, dialog::noActions);
    open.Load();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.caption);
        fs::remove_all(userSpool);
        fs::remove_all(ts);
        fs::create_directories(userSpool);
        fs::create_directories(ts);
        for (int n : c.queued)
            writeQueued(n);
        for (const auto& name : c.waiting)
            writeJob(userSpool, name, "Waiting");
        for (int n = 1; n <= c.onServer; ++n)
            writeJob(ts, "anna-ts000" + std::to_string(n) + ".ps", "On the server");
        state.TsPath = ts.substr(0, ts.size() - 1);
        state.TsName = "anna-ts";

        open.Timer1_Timer();
        for (auto* d : {&open, &openDialog()}) {
            EXPECT_EQ(d->control("lbInfo").caption, c.caption);
            EXPECT_EQ(d->GetMultiDocFiles(), c.multiDocFiles);
            const auto& sort = d->control("cmdSort");
            EXPECT_EQ(sort.visible, !c.multiDocFiles.empty());
            // Shown once, widened once, and narrowed again when the queue is gone.
            EXPECT_EQ(d->form().width, sort.visible ? FourButtonWidth + SortWidth + 160 : FourButtonWidth);
            EXPECT_EQ(sort.left, buttonLeft(4));
            EXPECT_TRUE(!sort.visible || sort.left + sort.width + Margin + FrameWidth <= d->form().width);
        }
    }
}

} // namespace
} // namespace pl::test
