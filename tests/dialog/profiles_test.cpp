#include "dialog_fixture.h"

#include <algorithm>
#include <filesystem>

namespace pl::test {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

class profiles : public DialogFixture {
protected:
    profiles() { offerMachineJob(); }
    // Picks an entry as the user does.
    static void choose(dialog::JobDialog& d, const std::string& name) {
        const auto& items = d.control("plProfile").items;
        const auto at = std::find(items.begin(), items.end(), name);
        ASSERT_NE(at, items.end()) << name;
        d.selectProfile(static_cast<int>(at - items.begin()));
    }
};

TEST_F(profiles, lists_installation_before_user_profiles_and_selects_the_default_that_matches_exactly) {
    struct Case {
        Names suiteFiles;
        Names userFiles;
        std::string userDefault, machineDefault;
        Names items; // the installation's part sorted: the folder's order is the system's
        std::string selected;
        std::string userDefaultAfter;
    };
    const std::string first = "(the first entry)";
    const Case cases[] = {
        {{"Fax.plp", "screen.PLP", "readme.txt"}, {"Mine.plp"}, "", "", {"Fax", "screen", "Mine"}, first, ""},
        {{"fax.plp", "High Quality.plp", "screen.plp"},
         {},
         "screen",
         "fax",
         {"High Quality", "fax", "screen"},
         "screen",
         "screen"},
        {{"fax.plp", "High Quality.plp"}, {}, "Fax", "fax", {"High Quality", "fax"}, "fax", "Fax"}, // case counts
        // Without a usable default: "High Quality", remembered for the user.
        {{"fax.plp", "high quality.plp"}, {}, "Fax", "gone", {"fax", "high quality"}, "high quality", "High Quality"},
        {{"old.PLP.plp"}, {}, "", "", {"old"}, first, ""}, // a name ends at its first ".plp"
        {{}, {}, "", "", {}, "", ""},                      // no profiles: the dialog still opens
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.suiteFiles.empty() ? "(none)" : c.suiteFiles[0]);
        for (const auto& folder : {suite, userProfiles}) {
            fs::remove_all(folder);
            fs::create_directories(folder);
        }
        for (const auto& name : c.suiteFiles)
            writeProfile(suite, name);
        for (const auto& name : c.userFiles)
            writeProfile(userProfiles, name);
        setUser("DefaultProfile", c.userDefault);
        setMachine("DefaultProfile", c.machineDefault);

        auto& d = openDialog();

        const auto& combo = d.control("plProfile");
        auto items = combo.items;
        ASSERT_EQ(items.size(), c.items.size());
        std::sort(items.begin(), items.end() - static_cast<long>(c.userFiles.size()));
        EXPECT_EQ(items, c.items);
        if (c.items.empty()) {
            EXPECT_EQ(combo.value, -1);
            EXPECT_EQ(combo.text, "");
        } else {
            ASSERT_GE(combo.value, 0);
            EXPECT_EQ(combo.text, combo.items[static_cast<std::size_t>(combo.value)]);
            EXPECT_EQ(combo.text, c.selected == first ? combo.items[0] : c.selected);
        }
        EXPECT_EQ(user("DefaultProfile"), c.userDefaultAfter);
        EXPECT_TRUE(d.form().loaded);
        EXPECT_EQ(d.control("pdfName").text, "Report");
    }
}

TEST_F(profiles, the_timer_refreshes_the_list_and_keeps_the_users_choice_while_it_exists) {
    for (auto name : {"fax.plp", "High Quality.plp", "screen.plp"})
        writeProfile(suite, name);
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

    fs::remove(suite + "screen.plp"); // the choice is gone: back to the default
    d.Timer1_Timer();
    EXPECT_EQ(combo.items.size(), 3u);
    EXPECT_EQ(combo.text, "High Quality");
}

} // namespace
} // namespace pl::test
