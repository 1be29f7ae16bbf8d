// The tray icon's mouse messages, its menu item, and closing the hidden form.

#include "assistant_world.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace pl::test {
namespace {

namespace fs = std::filesystem;

struct Tray : AssistantWorld, Resident {
    Tray() : Resident(static_cast<Session&>(*this), takenFolder) { form.Form_Load(); }
    // The events the view saw for one mouse message at the given screen resolution.
    std::vector<std::string> eventsFor(int message, int twipsPerPixel) {
        view.events.clear();
        form.txtTooltip_MouseMove(0, 0, static_cast<float>(message * twipsPerPixel), 0);
        return view.events;
    }
};

TEST(tray, mouse_messages_are_decoded_at_15_and_12_twips_per_pixel_with_the_left_press_known_only_at_15) {
    Tray t;
    const std::vector<std::string> forward{"front frmPlAssist1"};
    const std::vector<std::string> menu{"front frmPlAssist1", "popup frmPlAssist1 taskmenu"};
    const std::vector<std::string> nothing;
    struct Case {
        int message, twips;
        const std::vector<std::string>& expected;
    };
    for (const Case& c :
         {Case{assistant::TrayLeftDoubleClick, 15, forward}, Case{assistant::TrayLeftButtonDown, 15, menu},
          Case{assistant::TrayRightButtonDown, 15, menu}, Case{512, 15, nothing}, // a plain mouse move
          Case{assistant::TrayLeftDoubleClick, 12, forward}, Case{assistant::TrayLeftButtonDown, 12, nothing},
          Case{assistant::TrayRightButtonDown, 12, menu}, Case{517, 12, nothing}}) // right button up
        EXPECT_EQ(t.eventsFor(c.message, c.twips), c.expected) << c.message << " at " << c.twips;
}

TEST(tray, the_menu_item_turns_the_first_queued_document_into_a_job_of_the_user) {
    Tray t;
    writeJob(t.userFolder + "MultiDocalice1.ps");
    writeJob(t.userFolder + "alice000001.ps"); // a number already taken
    t.ticks(2);
    ASSERT_EQ(t.host.taken.size(), 1u) << "the existing job went first";
    t.ticks(1);
    ASSERT_TRUE(t.view.trayIconShown);
    EXPECT_EQ(t.view.trayTip, t.form.control("txtTooltip").text);
    writeJob(t.userFolder + "alice000001.ps");

    t.form.mnShowPlAssist_Click();

    EXPECT_EQ(t.state.TrayCheck, 2);
    EXPECT_FALSE(t.view.trayIconShown);
    EXPECT_FALSE(fs::exists(t.userFolder + "MultiDocalice1.ps"));
    EXPECT_TRUE(fs::exists(t.userFolder + "alice000002.ps"));
    EXPECT_EQ(t.state.StepName,
              "14 - name " + t.userFolder + "MultiDocalice1.ps as " + t.userFolder + "alice000002.ps");

    // The old job out of the way, the next tick hands the new one to the dialog and leaves the icon alone.
    fs::remove(t.userFolder + "alice000001.ps");
    t.ticks(1);
    ASSERT_EQ(t.host.taken.size(), 2u);
    EXPECT_EQ(t.host.taken[1], t.userFolder + "alice000002.ps");
    EXPECT_FALSE(t.view.trayIconShown);
    EXPECT_TRUE(t.view.messages.empty());
}

TEST(tray, the_hidden_form_refuses_to_be_closed_by_the_user_unless_citrix_unload_is_set) {
    Tray t;
    int cancel = 0;
    t.form.Form_QueryUnload(cancel, assistant::UnloadFromControlMenu);
    EXPECT_EQ(cancel, 1);
    EXPECT_TRUE(t.view.saw("keys %{TAB}"));

    cancel = 0;
    t.form.Form_QueryUnload(cancel, 2); // the session ends
    EXPECT_EQ(cancel, 0);

    t.state.CitrixUnload = true;
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
    EXPECT_EQ(t.view.trayTip, longTip.substr(0, 126));
    EXPECT_TRUE(t.form.trayIconData().hasIcon);
}

} // namespace
} // namespace pl::test
