#include "actions_fixture.h"

#include "dialog/sort/queue_reorder.h"
#include "dialog/sort/sort_form.h"

#include <algorithm>
#include <filesystem>

namespace pl::test {
namespace {

namespace fs = std::filesystem;

class multidoc_sort : public ActionsFixture {
protected:
    multidoc_sort() {
        writeQueued(1, "Anfang");
        writeQueued(2, "Mitte");
        writeQueued(3, "Ende");
        offerMachineJob("Neu");
    }
    dialog::SortForm& openSort() {
        openWithActions().actions().cmdSort_Click();
        return *buttons().sortForm();
    }
    // The titles of the queue files in number order, as long as the run is unbroken.
    std::vector<std::string> queueTitles() const {
        std::vector<std::string> titles;
        for (int n = 1; fs::exists(userSpool + "MultiDocanna" + std::to_string(n) + ".ps"); ++n) {
            const std::string content = root.read("spool/MultiDocanna" + std::to_string(n) + ".ps");
            const auto at = content.find("%%Title: ") + 9;
            titles.push_back(content.substr(at, content.find('\r', at) - at));
        }
        return titles;
    }
    std::size_t leftovers() const {
        std::size_t count = 0;
        for (const auto& entry : fs::directory_iterator(userSpool))
            count += entry.path().string().ends_with(".sort") ? 1 : 0;
        return count;
    }
};

TEST_F(multidoc_sort, lists_the_queue_with_positions_and_titles_in_a_modal_dialog) {
    auto& sort = openSort();
    EXPECT_EQ(sort.caption, "MultiDoc Sort");
    EXPECT_TRUE(sort.loaded);
    EXPECT_TRUE(view.saw("show frmSort"));
    EXPECT_EQ(sort.control("lstDocuments").items, (std::vector<std::string>{"1: Anfang", "2: Mitte", "3: Ende"}));
    EXPECT_EQ(sort.control("lstDocuments").value, 0);
}

TEST_F(multidoc_sort, moving_a_document_and_ok_renames_the_queue_into_the_new_order) {
    auto& sort = openSort();
    sort.control("lstDocuments").value = 2;
    sort.cmdUp_Click();
    sort.cmdUp_Click();
    EXPECT_EQ(sort.control("lstDocuments").items, (std::vector<std::string>{"1: Ende", "2: Anfang", "3: Mitte"}));
    EXPECT_EQ(sort.control("lstDocuments").value, 0);
    sort.cmdUp_Click(); // already at the top
    sort.control("lstDocuments").value = 1;
    sort.cmdDown_Click();
    EXPECT_EQ(sort.control("lstDocuments").items, (std::vector<std::string>{"1: Ende", "2: Mitte", "3: Anfang"}));

    sort.cmdOK_Click();

    EXPECT_FALSE(sort.loaded);
    EXPECT_TRUE(view.saw("unload frmSort"));
    EXPECT_EQ(queueTitles(), (std::vector<std::string>{"Ende", "Mitte", "Anfang"}));
    EXPECT_EQ(leftovers(), 0u);
}

TEST_F(multidoc_sort, cancel_leaves_the_queue_as_it_was) {
    auto& sort = openSort();
    sort.control("lstDocuments").value = 0;
    sort.cmdDown_Click();
    sort.cmdCancel_Click();
    EXPECT_EQ(queueTitles(), (std::vector<std::string>{"Anfang", "Mitte", "Ende"}));
}

TEST_F(multidoc_sort, an_interruption_between_the_two_rounds_is_finished_at_the_next_opening) {
    ASSERT_TRUE(dialog::moveAsideInNewOrder(os->files(), userSpool, "anna", {3, 1, 2}));
    // Only the temporary names are left: the queue has no first document.
    EXPECT_TRUE(queueTitles().empty());
    EXPECT_EQ(leftovers(), 3u);

    auto& d = openWithActions();

    EXPECT_EQ(queueTitles(), (std::vector<std::string>{"Ende", "Anfang", "Mitte"}));
    EXPECT_EQ(leftovers(), 0u);
    EXPECT_NE(d.control("lbInfo").caption.find("3 previous documents"), std::string::npos);
    EXPECT_TRUE(d.control("cmdSort").visible);
}

TEST_F(multidoc_sort, an_interruption_during_the_first_round_loses_no_document) {
    // {2, 1, 3}: "Mitte" had gone to its temporary name for place 1 when the program stopped.
    fs::rename(userSpool + "MultiDocanna2.ps", userSpool + "MultiDocanna1.ps.sort");

    auto& sort = openSort();

    EXPECT_EQ(leftovers(), 0u);
    EXPECT_EQ(queueTitles(), (std::vector<std::string>{"Anfang", "Mitte", "Ende"}));
    EXPECT_EQ(sort.control("lstDocuments").items.size(), 3u);
}

TEST_F(multidoc_sort, a_rename_that_fails_is_reported_and_the_queue_put_back_together) {
    fs::create_directories(userSpool + "MultiDocanna2.ps.sort"); // blocks one temporary name
    auto& sort = openSort();
    sort.control("lstDocuments").value = 0;
    sort.cmdDown_Click(); // Mitte, Anfang, Ende

    sort.cmdOK_Click();

    ASSERT_EQ(errors.entries.size(), 1u);
    EXPECT_EQ(errors.entries[0].tag, "frmSort.cmdOK_Click");
    errors.entries.clear();
    auto titles = queueTitles();
    std::ranges::sort(titles);
    EXPECT_EQ(titles, (std::vector<std::string>{"Anfang", "Ende", "Mitte"}));
    EXPECT_FALSE(sort.loaded);
}

TEST_F(multidoc_sort, other_users_temporary_files_are_left_alone) {
    writeJob(userSpool, "MultiDocannabel1.ps.sort", "Annabel's");
    openWithActions();
    EXPECT_TRUE(fs::exists(userSpool + "MultiDocannabel1.ps.sort"));
}

TEST_F(multidoc_sort, keeps_its_size_per_user_and_never_gets_smaller_than_its_controls) {
    auto& sort = openSort();
    const int listWidth = sort.control("lstDocuments").width;
    sort.width += 3000;
    sort.height += 1500;
    sort.Form_Resize();
    EXPECT_EQ(sort.control("lstDocuments").width, listWidth + 3000);
    EXPECT_EQ(sort.control("cmdHelp").top + sort.control("cmdHelp").height + dialog::sort_layout::Margin +
                  dialog::sort_layout::FrameHeight,
              sort.height);
    const std::string kept = std::to_string(sort.width) + ";" + std::to_string(sort.height);
    sort.cmdCancel_Click();
    EXPECT_EQ(user("PDFJoinSize"), kept);

    auto& again = openSort();
    EXPECT_EQ(std::to_string(again.width) + ";" + std::to_string(again.height), kept);
    again.cmdCancel_Click();

    setUser("PDFJoinSize", "100;100");
    auto& small = openSort();
    EXPECT_EQ(small.width, dialog::sort_layout::MinimumWidth);
    EXPECT_EQ(small.height, dialog::sort_layout::MinimumHeight);
}

TEST_F(multidoc_sort, follows_the_style_of_the_job_dialog) {
    EXPECT_TRUE(openSort().background().gradient);
    EXPECT_EQ(buttons().sortForm()->background().gradientStart, dialog::StandardGradientStart);

    setMachine("Style", "VISTA");
    EXPECT_EQ(openSort().background().gradientEnd, dialog::VistaGradientEnd);

    setMachine("Style", "grey");
    auto& grey = openSort();
    EXPECT_FALSE(grey.background().gradient);
    EXPECT_EQ(grey.backColor, dialog::SystemButtonFace);
}

TEST_F(multidoc_sort, help_explains_the_converters_merge_form) {
    openSort().cmdHelp_Click();
    ASSERT_EQ(view.messages.size(), 1u);
    EXPECT_NE(view.messages[0].prompt.find("Paperlark.exe /m \"Output.pdf\" \"Input1\" \"Input2\""), std::string::npos);
    EXPECT_EQ(view.messages[0].title, "MultiDoc Sort");
    EXPECT_EQ(view.messages[0].style, mb::Information);
}

} // namespace
} // namespace pl::test
