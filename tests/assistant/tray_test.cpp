// The tray icon's mouse messages, its menu item, and closing the hidden form.

#include "assistant_world.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace pl::test {
namespace {

namespace fs = std::filesystem;

struct Tray {
    explicit Tray(assistant::UserNameSource user = {})
        : host(world.state, world.os->files(), world.takenFolder), form(*world.context, host, nullptr, user) {
        form.Form_Load();
    }
    // The events the view saw for one mouse message at the given screen resolution.
    std::vector<std::string> eventsFor(int message, int twipsPerPixel) {
        world.view.events.clear();
        form.txtTooltip_MouseMove(0, 0, static_cast<float>(message * twipsPerPixel), 0);
        return world.view.events;
    }
    AssistantWorld world;
    TakingDialogHost host;
    assistant::ResidentForm form;
};

TEST(tray, mouse_messages_are_decoded_at_15_and_12_twips_per_pixel_with_the_left_press_known_only_at_15) {
    Tray t;
    const std::vector<std::string> forward{"front frmPlAssist1"};
    const std::vector<std::string> menu{"front frmPlAssist1", "popup frmPlAssist1 taskmenu"};
    const std::vector<std::string> nothing;

    EXPECT_EQ(t.eventsFor(assistant::TrayLeftDoubleClick, 15), forward);
    EXPECT_EQ(t.eventsFor(assistant::TrayLeftButtonDown, 15), menu);
    EXPECT_EQ(t.eventsFor(assistant::TrayRightButtonDown, 15), menu);
    EXPECT_EQ(t.eventsFor(512, 15), nothing) << "a plain mouse move";

    EXPECT_EQ(t.eventsFor(assistant::TrayLeftDoubleClick, 12), forward);
    EXPECT_EQ(t.eventsFor(assistant::TrayLeftButtonDown, 12), nothing);
    EXPECT_EQ(t.eventsFor(assistant::TrayRightButtonDown, 12), menu);
    EXPECT_EQ(t.eventsFor(517, 12), nothing) << "right button up";
}

TEST(tray, the_menu_item_turns_the_first_queued_document_into_a_job_of_the_user) {
    Tray t;
    auto& w = t.world;
    writeJob(w.userFolder + "MultiDocalice1.ps");
    writeJob(w.userFolder + "alice000001.ps"); // a number already taken
    t.form.Timer1_Timer();
    t.form.Timer1_Timer();
    ASSERT_EQ(t.host.taken.size(), 1u) << "the existing job went first";
    t.form.Timer1_Timer();
    ASSERT_TRUE(w.view.trayIconShown);
    writeJob(w.userFolder + "alice000001.ps");

    t.form.mnShowPlAssist_Click();

    EXPECT_EQ(w.state.TrayCheck, 2);
    EXPECT_FALSE(w.view.trayIconShown);
    EXPECT_FALSE(fs::exists(w.userFolder + "MultiDocalice1.ps"));
    EXPECT_TRUE(fs::exists(w.userFolder + "alice000002.ps"));
    EXPECT_EQ(w.state.StepName,
              "14 - name " + w.userFolder + "MultiDocalice1.ps as " + w.userFolder + "alice000002.ps");

    // The old job out of the way, the next tick hands the new one to the dialog and leaves the icon alone.
    fs::remove(w.userFolder + "alice000001.ps");
    t.form.Timer1_Timer();
    ASSERT_EQ(t.host.taken.size(), 2u);
    EXPECT_EQ(t.host.taken[1], w.userFolder + "alice000002.ps");
    EXPECT_FALSE(w.view.trayIconShown);
    EXPECT_TRUE(w.view.messages.empty());
}

TEST(tray, the_menu_item_with_an_empty_queue_renames_nothing_and_opens_no_dialog) {
    Tray t;
    writeJob(t.world.userFolder + "MultiDocbob1.ps");
    t.form.mnShowPlAssist_Click();
    t.form.Timer1_Timer();
    EXPECT_TRUE(t.host.taken.empty());
    EXPECT_TRUE(fs::exists(t.world.userFolder + "MultiDocbob1.ps"));
    EXPECT_EQ(t.world.state.TrayCheck, 2);
    EXPECT_TRUE(t.world.view.messages.empty());
}

TEST(tray, the_menu_item_without_a_user_folder_sets_the_default_one_and_looks_there) {
    Tray t;
    auto& w = t.world;
    const std::string local = w.localAppData + "Paperlark_XP/";
    fs::create_directories(local);
    writeJob(local + "MultiDocalice3.ps");
    w.state.PsDirUser.clear();

    t.form.mnShowPlAssist_Click();

    EXPECT_EQ(w.state.PsDirUser, local);
    EXPECT_EQ(w.user("psdir"), local);
    EXPECT_TRUE(fs::exists(local + "alice000001.ps"));
}

TEST(tray, a_failing_rename_is_reported_with_the_user_folder_and_name_and_leaves_the_queue) {
    // A user name the file system takes for a folder path: the queue search finds the document
    // below it, and the rename looks for it in the user folder itself, where it is not.
    Tray t([] { return std::string("ali/ce"); });
    auto& w = t.world;
    fs::create_directories(w.userFolder + "MultiDocali");
    writeJob(w.userFolder + "MultiDocali/ce1.ps");

    t.form.mnShowPlAssist_Click();

    ASSERT_EQ(w.view.messages.size(), 1u);
    const std::string& prompt = w.view.messages[0].prompt;
    EXPECT_NE(prompt.find("Error in Module frmPlAssist1.showplAssist.click"), std::string::npos) << prompt;
    EXPECT_NE(prompt.find("Data:\r\n14 - name " + w.userFolder + "ce1.ps as " + w.userFolder +
                          "ali/ce000001.ps\r\npsdir = " + w.userFolder + "\r\nUsername = ali/ce"),
              std::string::npos)
        << prompt;
    EXPECT_TRUE(fs::exists(w.userFolder + "MultiDocali/ce1.ps"));
    EXPECT_TRUE(w.state.quitRequested);
}

TEST(tray, the_hidden_form_refuses_to_be_closed_by_the_user_unless_citrix_unload_is_set) {
    Tray t;
    int cancel = 0;
    t.form.Form_QueryUnload(cancel, assistant::UnloadFromControlMenu);
    EXPECT_EQ(cancel, 1);
    EXPECT_TRUE(t.world.view.saw("keys %{TAB}"));

    cancel = 0;
    t.form.Form_QueryUnload(cancel, 2); // the session ends
    EXPECT_EQ(cancel, 0);

    t.world.state.CitrixUnload = true;
    t.form.Form_QueryUnload(cancel, assistant::UnloadFromControlMenu);
    EXPECT_EQ(cancel, 0);

    int key = assistant::KeyF4;
    t.form.Form_KeyDown(key, assistant::ShiftAlt);
    EXPECT_EQ(key, 0);
    key = assistant::KeyF4;
    t.form.Form_KeyDown(key, 0);
    EXPECT_EQ(key, assistant::KeyF4) << "F4 alone passes";
}

TEST(tray, the_tip_is_cut_to_the_63_characters_the_record_holds) {
    Tray t;
    std::string longTip;
    for (int i = 0; i < 70; ++i)
        longTip += "\xC3\xA4"; // ä: one character, two bytes
    t.form.control("txtTooltip").text = longTip;
    t.form.SetTrayIcon(1);
    EXPECT_EQ(t.form.trayIconData().tip, longTip.substr(0, 126));
    EXPECT_EQ(t.world.view.trayTip, longTip.substr(0, 126));
}

} // namespace
} // namespace pl::test
