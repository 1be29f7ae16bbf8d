#include "dialog_fixture.h"

#include "dialog/profiles.h"

#include <algorithm>
#include <filesystem>

namespace pl::test {
namespace {

class profiles : public DialogFixture {
protected:
    profiles() {
        writeJob(machineSpool, "anna0001.ps", "Report");
        offerJob(machineSpool, "anna0001.ps");
    }
    static std::vector<std::string> sorted(std::vector<std::string> names) {
        std::sort(names.begin(), names.end());
        return names;
    }
    // Picks an entry as the user does.
    static void choose(dialog::JobDialog& d, const std::string& name) {
        const auto& items = d.control("plProfile").items;
        const auto at = std::find(items.begin(), items.end(), name);
        ASSERT_NE(at, items.end()) << name;
        d.selectProfile(static_cast<int>(at - items.begin()));
    }
};

TEST_F(profiles, lists_the_installation_profiles_before_the_user_profiles) {
    writeProfile(suite, "Fax.plp");
    writeProfile(suite, "screen.PLP");
    writeProfile(suite, "readme.txt");
    writeProfile(userProfiles, "Mine.plp");

    const auto& combo = openDialog().control("plProfile");

    ASSERT_EQ(combo.items.size(), 3u);
    EXPECT_EQ(sorted({combo.items[0], combo.items[1]}), (std::vector<std::string>{"Fax", "screen"}));
    EXPECT_EQ(combo.items[2], "Mine");
}

TEST_F(profiles, a_name_ends_at_its_first_plp) {
    writeProfile(suite, "old.PLP.plp");
    EXPECT_EQ(dialog::profileNamesIn(os->files(), suite), "old|");
    EXPECT_EQ(dialog::profileNamesIn(os->files(), root.folder() + "missing/"), "");
}

TEST_F(profiles, without_profile_files_the_box_is_empty_and_the_dialog_still_opens) {
    auto& d = openDialog();
    const auto& combo = d.control("plProfile");
    EXPECT_TRUE(combo.items.empty());
    EXPECT_EQ(combo.value, -1);
    EXPECT_EQ(combo.text, "");
    EXPECT_TRUE(d.form().loaded);
    EXPECT_EQ(d.control("pdfName").text, "Report");
}

TEST_F(profiles, the_users_default_profile_is_selected_when_it_matches_exactly) {
    writeProfile(suite, "fax.plp");
    writeProfile(suite, "High Quality.plp");
    writeProfile(suite, "screen.plp");
    setUser("DefaultProfile", "screen");
    setMachine("DefaultProfile", "fax");

    EXPECT_EQ(openDialog().control("plProfile").text, "screen");
}

TEST_F(profiles, a_default_differing_in_letter_case_falls_through_to_the_machine_default) {
    writeProfile(suite, "fax.plp");
    writeProfile(suite, "High Quality.plp");
    setUser("DefaultProfile", "Fax");
    setMachine("DefaultProfile", "fax");

    EXPECT_EQ(openDialog().control("plProfile").text, "fax");
}

TEST_F(profiles, without_a_usable_default_high_quality_is_chosen_and_remembered_for_the_user) {
    writeProfile(suite, "fax.plp");
    writeProfile(suite, "high quality.plp");
    setUser("DefaultProfile", "Fax"); // no such profile: letter case counts
    setMachine("DefaultProfile", "gone");

    EXPECT_EQ(openDialog().control("plProfile").text, "high quality");
    EXPECT_EQ(user("DefaultProfile"), "High Quality");
}

TEST_F(profiles, without_any_default_the_first_entry_is_selected) {
    writeProfile(suite, "fax.plp");
    const auto& combo = openDialog().control("plProfile");
    EXPECT_EQ(combo.value, 0);
    EXPECT_EQ(combo.text, "fax");
    EXPECT_EQ(user("DefaultProfile"), "");
}

TEST_F(profiles, every_selection_change_tells_the_actions_so_they_read_the_profile) {
    writeProfile(suite, "fax.plp");
    auto& d = openDialogRecording();
    const auto clicks = std::count(actionLog.calls.begin(), actionLog.calls.end(), "plProfile_Click");
    EXPECT_EQ(clicks, 1);
    d.selectProfile(0); // no change
    EXPECT_EQ(std::count(actionLog.calls.begin(), actionLog.calls.end(), "plProfile_Click"), clicks);
}

TEST_F(profiles, a_profile_added_while_the_dialog_is_open_appears_and_the_users_choice_stays) {
    writeProfile(suite, "fax.plp");
    writeProfile(suite, "High Quality.plp");
    writeProfile(suite, "screen.plp");
    auto& d = openDialog();
    ASSERT_EQ(d.control("plProfile").text, "High Quality");
    choose(d, "screen");

    d.Timer1_Timer(); // nothing changed: nothing refilled
    EXPECT_EQ(d.control("plProfile").text, "screen");
    EXPECT_EQ(d.LoadProfiles(), 1);

    writeProfile(userProfiles, "new.plp");
    d.Timer1_Timer();

    const auto& combo = d.control("plProfile");
    EXPECT_EQ(combo.items.size(), 4u);
    EXPECT_EQ(combo.items.back(), "new");
    EXPECT_EQ(combo.text, "screen");
    EXPECT_EQ(combo.items[static_cast<std::size_t>(combo.value)], "screen");
}

TEST_F(profiles, when_the_chosen_profile_is_removed_the_refresh_falls_back_to_the_default) {
    writeProfile(suite, "fax.plp");
    writeProfile(suite, "High Quality.plp");
    auto& d = openDialog();
    choose(d, "fax");

    std::filesystem::remove(suite + "fax.plp");
    d.Timer1_Timer();

    EXPECT_EQ(d.control("plProfile").items, std::vector<std::string>{"High Quality"});
    EXPECT_EQ(d.control("plProfile").text, "High Quality");
}

} // namespace
} // namespace pl::test
