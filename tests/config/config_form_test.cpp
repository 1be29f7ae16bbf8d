#include "config_fixture.h"

#include "converter/profile.h"
#include "dialog/policy.h"
#include "naming/output_suffix.h"
#include "platform/paths.h"
#include "texts/language_selection.h"

#include <filesystem>

namespace pl::test {
namespace {

namespace fs = std::filesystem;
using config::AutoAction;
using config::PolicyChoice;

class config_form : public ConfigFixture {};

// What the assistant speaks after the choice, read as it reads it at start and after the
// configuration program was started.
TEST_F(config_form, a_chosen_language_is_the_one_the_assistant_loads) {
    root.write("suite/Italian.lan", "[plAssist.exe]\r\ntext_19: Configura\r\nEOF\r\n");
    struct Case {
        std::string choice;
        int code;
        std::string configText, ownTitle;
    };
    const Case cases[] = {
        {"German", 1, "Konfigurieren", "Paperlark Konfiguration"},
        {"Italian.lan", 3, "Configura", "Paperlark Configuration"},
        {"English", 2, "Edit Configuration", "Paperlark Configuration"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.choice);
        auto& f = openConfig();
        f.language = languageIndex(c.choice);
        f.cmdOk_Click();
        EXPECT_TRUE(configView.closed);
        texts::Texts spoken;
        texts::SetxSpr(spoken, *services);
        EXPECT_EQ(spoken.language(), c.code);
        EXPECT_EQ(spoken.text(19), c.configText);
        EXPECT_EQ(openConfig().texts()(config::Txt::Title), c.ownTitle);
        EXPECT_EQ(form->language, languageIndex(c.choice)); // shown as chosen
    }
    // Back to the desktop's language: the user's own value goes.
    auto& f = openConfig();
    f.language = 0;
    ASSERT_TRUE(f.cmdApply_Click());
    EXPECT_EQ(user("language"), "");
}

TEST_F(config_form, cancel_writes_nothing_and_ok_writes_only_what_changed) {
    setUser("Debug", "2");
    setUser("ADefault", "email");
    const std::string before = hives.readHive("HKEY_CURRENT_USER");
    const std::string spool = root.folder() + "elsewhere"; // a full path on every system

    auto& f = openConfig();
    f.language = 1;
    f.defaults = {"High Quality", false, 3, "Ablage", spool, true};
    f.policy.setUserChoice(0, PolicyChoice::Hide);
    newProfile("Mine");
    f.cmdCancel_Click();
    EXPECT_TRUE(configView.closed);
    EXPECT_EQ(hives.readHive("HKEY_CURRENT_USER"), before);
    EXPECT_FALSE(fs::exists(userProfiles + "Mine.plp"));

    // Nothing changed: "Debug" keeps its "2", the file is not touched.
    openConfig().cmdOk_Click();
    EXPECT_EQ(hives.readHive("HKEY_CURRENT_USER"), before);

    auto& g = openConfig();
    g.defaults = {"High Quality", false, 3, "Ablage", spool, g.defaults.debug};
    g.cmdOk_Click();
    EXPECT_EQ(user("DefaultProfile"), "High Quality");
    EXPECT_EQ(user("OpenPdf"), "0");
    EXPECT_EQ(user("ADefault"), "desktop");
    EXPECT_EQ(user("DesktopCaption"), "Ablage");
    EXPECT_EQ(user("psdir"), spool + platform::PathSep);
    EXPECT_EQ(user("Debug"), "2");

    // Emptied values go, so that the administrator's or the built-in ones apply again.
    auto& h = openConfig();
    h.defaults.defaultAction = 0;
    h.defaults.desktopCaption.clear();
    h.defaults.debug = true;
    h.cmdOk_Click();
    EXPECT_EQ(user("ADefault"), "");
    EXPECT_EQ(user("DesktopCaption"), "");
    EXPECT_EQ(user("Debug"), "1");

    // A spool folder that is no full path is refused, and nothing else is written with it.
    auto& k = openConfig();
    k.defaults.userSpool = "spool";
    k.defaults.openPdf = true;
    k.cmdOk_Click();
    EXPECT_FALSE(configView.closed);
    ASSERT_EQ(configView.messages.size(), 1u);
    EXPECT_EQ(configView.messages[0], "The spool folder must be a full path: spool");
    EXPECT_EQ(user("OpenPdf"), "0");
}

class config_profiles : public ConfigFixture {};

TEST_F(config_profiles, a_png_profile_at_300_dpi_makes_numbered_png_pages) {
    auto& f = openConfig();
    auto& png = newProfile("Scans");
    png.device = "png16m";
    png.resolution = 300;
    png.quality = config::Quality::Screen; // a PDF setting: not written for images
    f.cmdOk_Click();
    ASSERT_TRUE(configView.closed);
    EXPECT_EQ(root.read("home/Paperlark/Scans.plp"), "-sDEVICE=png16m -r300\r\n");

    naming::LoadSuffix("Scans", naming, *services);
    EXPECT_EQ(naming.OutputSuffix, ".png");
    EXPECT_EQ(naming.PageNumberPattern, " - %02d");

    // The converter runs it as it stands: config_conversion.
}

TEST_F(config_profiles, a_password_and_a_save_folder_are_what_the_dialog_and_the_converter_read) {
    auto& f = openConfig();
    auto& archive = newProfile("Archiv");
    archive.quality = config::Quality::Prepress;
    archive.userPassword = "geheim";
    archive.action = AutoAction::SaveDir;
    archive.actionTarget = out;
    f.cmdOk_Click();
    ASSERT_TRUE(configView.closed);

    offerMachineJob("Report", "anna~profile~Archiv.ps");
    dialog = std::make_unique<dialog::JobDialog>(*context, dialog::jobActions);
    dialog->control("plProfile").text = "Archiv"; // as the dialog's load selects it
    EXPECT_EQ(dialog->defaults().LoadDefaultAction("Archiv"), "plassist=savedir\r\nplassist2=" + out + "\r\n");
    const auto profile = converter::parseProfile(root.read("home/Paperlark/Archiv.plp"));
    EXPECT_EQ(profile.switches, "-sDEVICE=pdfwrite -dPDFSETTINGS=/prepress");
    EXPECT_EQ(profile.userPassword, "geheim");
    EXPECT_FALSE(profile.ownerPassword); // the converter takes the user's password for both
    if (platform::PathSep == '/') {
        const auto others =
            fs::status(userProfiles + "Archiv.plp").permissions() & (fs::perms::group_all | fs::perms::others_all);
        EXPECT_EQ(others, fs::perms::none) << "the passwords are readable by other users";
    }
}

TEST_F(config_profiles, an_edited_profile_keeps_the_lines_it_does_not_understand) {
    root.write("home/Paperlark/Mine.plp", "-sDEVICE=pdfwrite -dPDFSETTINGS=/ebook -dFastWebView\r\n"
                                          "; made by hand\r\nplassist3=kept along\r\n  ownerpassword=chef\r\n"
                                          "plassist=print\r\n");
    auto& f = openConfig();
    const auto& entries = f.profiles.entries();
    const auto mine = std::find_if(entries.begin(), entries.end(), [](const auto& e) { return e.name == "Mine"; });
    ASSERT_NE(mine, entries.end());
    ASSERT_TRUE(mine->own);
    f.profiles.selected = static_cast<int>(mine - entries.begin());
    auto& settings = f.profiles.entries()[f.profiles.selected].settings;
    EXPECT_EQ(settings.quality, config::Quality::Ebook);
    EXPECT_EQ(settings.extraSwitches, "-dFastWebView");
    settings.pdfaLevel = 2;
    settings.action = AutoAction::Desktop;
    f.cmdOk_Click();
    EXPECT_EQ(root.read("home/Paperlark/Mine.plp"),
              "-sDEVICE=pdfwrite -dPDFSETTINGS=/ebook -dPDFA=2 -dPDFACompatibilityPolicy=1 "
              "-sColorConversionStrategy=UseDeviceIndependentColor -dFastWebView\r\n"
              "ownerpassword=chef\r\nplassist=desktop\r\n"
              "; made by hand\r\nplassist3=kept along\r\nplassist=print\r\n");
}

TEST_F(config_profiles, suite_profiles_are_copied_and_own_ones_renamed_and_deleted) {
    setUser("DefaultProfile", "Mine");
    root.write("home/Paperlark/Mine.plp", "-sDEVICE=jpeg -r72\r\n");
    auto& f = openConfig();
    const auto select = [&](const std::string& name, bool own) {
        const auto& e = form->profiles.entries();
        for (std::size_t i = 0; i < e.size(); ++i)
            if (e[i].name == name && e[i].own == own)
                form->profiles.selected = static_cast<int>(i);
    };
    select("High Quality", false);
    f.cmdRename_Click(); // the suite's own: nothing asked, nothing renamed
    EXPECT_TRUE(configView.proposals.empty());
    configView.textAnswers = {"High Quality"};
    f.cmdCopy_Click();
    select("Mine", true);
    configView.textAnswers = {"high quality", "Photos"}; // the first is taken already
    f.cmdRename_Click();
    f.cmdRename_Click();
    EXPECT_EQ(f.defaults.defaultProfile, "Photos");
    configView.textAnswers = {"Later"};
    f.cmdCopy_Click();
    EXPECT_EQ(configView.proposals.back(), "Copy of Photos");
    configView.msgBoxAnswers = {mb::Yes};
    f.cmdDelete_Click();
    EXPECT_EQ(configView.messages, (std::vector<std::string>{"You already have a profile \"high quality\".",
                                                             "Delete the profile \"Later\"?"}));
    EXPECT_TRUE(fs::exists(userProfiles + "Mine.plp")); // nothing happens before OK
    f.cmdOk_Click();

    EXPECT_EQ(root.read("home/Paperlark/High Quality.plp"), "-sDEVICE=pdfwrite -dPDFSETTINGS=/prepress\r\n");
    EXPECT_EQ(root.read("home/Paperlark/Photos.plp"), "-sDEVICE=jpeg -r72\r\n");
    EXPECT_FALSE(fs::exists(userProfiles + "Mine.plp"));
    EXPECT_FALSE(fs::exists(userProfiles + "Later.plp"));
    EXPECT_EQ(user("DefaultProfile"), "Photos");

    // A name given up by a rename is free again, and the new profile under it stays.
    auto& g = openConfig();
    select("Photos", true);
    configView.textAnswers = {"Scans"};
    g.cmdRename_Click();
    newProfile("Photos");
    g.cmdOk_Click();
    EXPECT_EQ(root.read("home/Paperlark/Scans.plp"), "-sDEVICE=jpeg -r72\r\n");
    EXPECT_EQ(root.read("home/Paperlark/Photos.plp"), "-sDEVICE=pdfwrite\r\n");
}

TEST_F(config_profiles, switches_the_converter_refuses_cannot_be_saved) {
    struct Case {
        std::string switches, message; // no message: accepted
    };
    const Case cases[] = {
        {"-sOutputFile=/tmp/x.pdf", "Paperlark decides these switches itself and they cannot be part of a profile: "
                                    "-sOutputFile=/tmp/x.pdf"},
        {"-o /tmp/x.pdf", "Paperlark decides these switches itself and they cannot be part of a profile: -o "
                          "/tmp/x.pdf"},
        {"-dNOSAFER", "Paperlark decides these switches itself and they cannot be part of a profile: -dNOSAFER"},
        {"-c \"(x) print\"", "Paperlark decides these switches itself and they cannot be part of a profile: -c "
                             "\"(x) print\""},
        {"-sDEVICE=jpeg", "The output format is chosen above, not with -sDEVICE=jpeg."},
        {"-sUserPassword=x", "Passwords belong in the password fields, not among the switches."},
        {"-dTextAlphaBits=4", ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.switches);
        fs::remove(userProfiles + "Odd.plp");
        auto& f = openConfig();
        newProfile("Odd").extraSwitches = c.switches;
        EXPECT_EQ(f.cmdApply_Click(), c.message.empty());
        if (c.message.empty()) {
            EXPECT_EQ(root.read("home/Paperlark/Odd.plp"), "-sDEVICE=pdfwrite " + c.switches + "\r\n");
        } else {
            EXPECT_EQ(configView.messages, (std::vector<std::string>{"Odd: " + c.message}));
            EXPECT_FALSE(fs::exists(userProfiles + "Odd.plp"));
        }
    }
}

TEST_F(config_form, a_bar_in_the_machine_policy_locks_the_users_choices) {
    struct Case {
        std::string machine, user;
        bool locked, emailShown;
    };
    const Case cases[] = {
        {"disableemail|", "enableemail", true, false},
        {"DisableEmail", "enableemail", false, true},
        {"", "disableemail", false, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.machine + " / " + c.user);
        setMachine("APol", c.machine);
        setUser("APol", c.user);
        auto& f = openConfig();
        // Each feature is named as the job dialog labels it.
        EXPECT_EQ(f.texts()(config::policyFeatures()[7].label), "Lock PDF with Password");
        EXPECT_EQ(f.texts()(config::policyFeatures()[1].label), "Save As...");
        EXPECT_EQ(f.policy.locked(), c.locked);
        EXPECT_EQ(f.policy.shown(0), c.emailShown);
        // The page says what the job dialog does.
        EXPECT_EQ(f.policy.shown(0), dialog::policyText(registry).find("disableemail") == std::string::npos ||
                                         dialog::policyText(registry).find("enableemail") != std::string::npos);
        EXPECT_EQ(f.policy.setUserChoice(3, PolicyChoice::Hide), !c.locked);
        f.cmdOk_Click();
        EXPECT_EQ(user("APol"), c.locked ? c.user : c.user + ",disabledesktop");
    }
}

} // namespace
} // namespace pl::test
