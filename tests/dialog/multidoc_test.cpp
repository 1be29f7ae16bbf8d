#include "actions_fixture.h"

#include "dialog/sort/queue_reorder.h"
#include "dialog/sort/sort_form.h"

#include <filesystem>

namespace pl::test {
namespace {

namespace fs = std::filesystem;
using Titles = std::vector<std::string>;

class multidoc : public ActionsFixture {
protected:
    std::string queued(int n) const { return userSpool + "MultiDocanna" + std::to_string(n) + ".ps"; }
    void queueJob(const std::string& title, const std::string& name) {
        offerMachineJob(title, name);
        openWithActions().actions().cmdMulti_Click();
    }
    dialog::SortForm& openSort() {
        openWithActions().actions().cmdSort_Click();
        return *buttons().sortForm();
    }
    std::size_t leftovers() const {
        std::size_t count = 0;
        for (const auto& entry : fs::directory_iterator(userSpool))
            count += entry.path().string().ends_with(".sort") ? 1 : 0;
        return count;
    }
};

TEST_F(multidoc, queues_under_the_lowest_free_number_without_converting) {
    writeJob(userSpool, "MultiDocbert1.ps", "Bert's"); // another user's queue is not counted
    queueJob("Eins", "anna0001.ps");
    EXPECT_FALSE(fs::exists(machineSpool + "anna0001.ps"));
    EXPECT_FALSE(dialog->form().loaded);
    EXPECT_FALSE(state.DialogActive);
    writeQueued(3, "Drei");
    queueJob("Zwei", "anna0002.ps");
    EXPECT_EQ(queueTitles(), (Titles{"Eins", "Zwei", "Drei"}));
    EXPECT_TRUE(noCallArrives());
}

TEST_F(multidoc, sorting_renames_the_queue_into_the_new_order) {
    writeQueued(1, "Anfang");
    writeQueued(2, "Mitte");
    writeQueued(3, "Ende");
    offerMachineJob("Neu");
    auto& sort = openSort();
    EXPECT_EQ(sort.control("lstDocuments").items, (Titles{"1: Anfang", "2: Mitte", "3: Ende"}));
    sort.control("lstDocuments").value = 2;
    sort.cmdUp_Click();
    sort.cmdUp_Click();
    EXPECT_EQ(sort.control("lstDocuments").items, (Titles{"1: Ende", "2: Anfang", "3: Mitte"}));
    EXPECT_EQ(sort.control("lstDocuments").value, 0);
    sort.cmdUp_Click(); // already at the top
    sort.control("lstDocuments").value = 1;
    sort.cmdDown_Click();
    EXPECT_EQ(sort.control("lstDocuments").items, (Titles{"1: Ende", "2: Mitte", "3: Anfang"}));

    sort.cmdOK_Click();

    EXPECT_FALSE(sort.loaded);
    EXPECT_EQ(queueTitles(), (Titles{"Ende", "Mitte", "Anfang"}));
    EXPECT_EQ(leftovers(), 0u);
}

TEST_F(multidoc, a_sort_interrupted_in_either_round_is_finished_at_the_next_opening_and_loses_nothing) {
    writeQueued(1, "Anfang");
    writeQueued(2, "Mitte");
    writeQueued(3, "Ende");
    writeJob(userSpool, "MultiDocannabel1.ps.sort", "Annabel's"); // another user's: left alone
    ASSERT_TRUE(dialog::moveAsideInNewOrder(os->files(), userSpool, "anna", {3, 1, 2}));
    // Between the two rounds only the temporary names are left: the queue has no first document.
    EXPECT_TRUE(queueTitles().empty());
    offerMachineJob("Neu");

    auto& d = openWithActions();

    EXPECT_EQ(queueTitles(), (Titles{"Ende", "Anfang", "Mitte"}));
    EXPECT_EQ(leftovers(), 1u);
    EXPECT_TRUE(fs::exists(userSpool + "MultiDocannabel1.ps.sort"));
    EXPECT_NE(d.control("lbInfo").caption.find("3 previous documents"), std::string::npos);
    EXPECT_TRUE(d.control("cmdSort").visible);

    // In the first round: "Anfang" had gone to its temporary name for place 1 when the program stopped.
    fs::rename(queued(2), queued(1) + ".sort");
    auto& sort = openSort();
    EXPECT_EQ(leftovers(), 1u);
    EXPECT_EQ(queueTitles(), (Titles{"Ende", "Anfang", "Mitte"}));
    EXPECT_EQ(sort.control("lstDocuments").items.size(), 3u);
}

} // namespace
} // namespace pl::test
