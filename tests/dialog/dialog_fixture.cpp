#include "dialog_fixture.h"

#include "dialog/settings.h"
#include "platform/registry.h"

#include "platform/paths.h"

#include <filesystem>

namespace pl::test {

namespace {
// Folder values end in the system's separator, as the program writes them.
const std::string sep(1, platform::PathSep);
} // namespace

DialogFixture::DialogFixture() {
    machineSpool = root.folder() + "machine" + sep;
    userSpool = root.folder() + "spool" + sep;
    suite = root.folder() + "suite" + sep;
    home = root.folder() + "home";
    userProfiles = home + sep + "Paperlark" + sep;
    for (const auto& folder : {machineSpool, userSpool, suite, userProfiles, root.folder() + "desktop" + sep,
                               root.folder() + "config" + sep, root.folder() + "data" + sep})
        std::filesystem::create_directories(folder);

    // Everything the program may look at lies in the temporary folder.
    env.set("HOME", home);
    env.set("XDG_CONFIG_HOME", root.folder() + "config");
    env.set("XDG_DATA_HOME", root.folder() + "data");
    env.set("username", "anna");
    env.set("userprofile", home);
    // No Ghostscript on the way: whether encryption is offered is up to each test.
    env.set("PATH", root.folder() + "bin");

    os = platform::makeNativePlatform();
    registry = &hives.registry();
    services = std::make_unique<Services>(Services{*os, *registry, errors, view});
    context = std::make_unique<forms::Context>(forms::Context{*services, state, texts, naming, view});

    setMachine("pldir", suite);
    setUser("language", "2"); // English texts
    // The log and the desktop of this user, should anything be written there.
    registry->SetRegValue("HKCU\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders", "Desktop",
                          root.folder() + "desktop");

    state.PsDirMachine = machineSpool;
    state.PsDirUser = userSpool;
}

void DialogFixture::TearDown() {
    for (const auto& r : errors.entries)
        ADD_FAILURE() << "error " << r.number << " reported by " << r.tag << " at step \"" << r.step << "\"";
}

void DialogFixture::setUser(const std::string& name, const std::string& value) {
    ASSERT_EQ(registry->SetRegValue(dialog::UserKey, name, value), "True");
}

void DialogFixture::setMachine(const std::string& name, const std::string& value) {
    ASSERT_EQ(registry->SetRegValue(dialog::MachineKey, name, value), "True");
}

std::string DialogFixture::user(const std::string& name) const {
    return registry->GetRegValue(dialog::UserKey, name);
}

std::string DialogFixture::writeJob(const std::string& folder, const std::string& name,
                                    const std::string& title) const {
    const std::string relative = std::filesystem::relative(folder + name, root.path()).string();
    return root.write(relative, "%!PS-Adobe-3.0\r\n%%Creator: a printer driver\r\n%%Title: " + title +
                                    "\r\n%%Pages: 1\r\n%%EndComments\r\nshowpage\r\n%%EOF\r\n");
}

void DialogFixture::offerJob(const std::string& folder, const std::string& name) {
    state.PsFolder = folder;
    state.PsFile = name;
}

void DialogFixture::writeProfile(const std::string& folder, const std::string& name) const {
    const std::string relative = std::filesystem::relative(folder + name, root.path()).string();
    root.write(relative, "-sDEVICE=pdfwrite -dPDFSETTINGS=/prepress\r\n");
}

std::string DialogFixture::writeQueued(int n, const std::string& title) const {
    return writeJob(userSpool, "MultiDocanna" + std::to_string(n) + ".ps", title);
}

void DialogFixture::offerMachineJob(const std::string& title, const std::string& name) {
    writeJob(machineSpool, name, title);
    offerJob(machineSpool, name);
}

dialog::JobDialog& DialogFixture::openDialog() {
    dialog = std::make_unique<dialog::JobDialog>(*context, dialog::noActions);
    dialog->Load();
    return *dialog;
}

} // namespace pl::test
