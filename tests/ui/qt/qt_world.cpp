#include "qt_world.h"

#include <filesystem>

namespace pl::test {

QtWorld::QtWorld() {
    machineSpool = root.folder() + "machine/";
    userSpool = root.folder() + "spool/";
    suite = root.folder() + "suite/";
    home = root.folder() + "home";
    desktop = root.folder() + "desktop/";
    for (const auto& folder : {machineSpool, userSpool, suite, home + "/Paperlark/", desktop, root.folder() + "config/",
                               root.folder() + "data/", root.folder() + "run/"})
        std::filesystem::create_directories(folder);
    std::filesystem::permissions(root.folder() + "run", std::filesystem::perms::owner_all);

    // Everything the program may look at lies in the temporary folder.
    env.set("HOME", home);
    env.set("XDG_CONFIG_HOME", root.folder() + "config");
    env.set("XDG_DATA_HOME", root.folder() + "data");
    env.set("XDG_RUNTIME_DIR", root.folder() + "run");
    env.set("TMPDIR", root.folder());
    env.set("username", "anna");
    env.set("userprofile", home);
    // No Ghostscript on the way: the encryption option stays hidden unless a test wants it.
    env.set("PATH", root.folder() + "bin");

    os = platform::makeNativePlatform();
    services = std::make_unique<Services>(Services{*os, hives.registry(), errors, view});
    context = std::make_unique<forms::Context>(forms::Context{*services, state, texts, naming, view});

    setMachine("pldir", suite);
    setUser("language", "2"); // English
    hives.registry().SetRegValue("HKCU\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders",
                                 "Desktop", desktop.substr(0, desktop.size() - 1));
    state.PsDirMachine = machineSpool;
    state.PsDirUser = userSpool;
}

void QtWorld::setUser(const std::string& name, const std::string& value) {
    hives.registry().SetRegValue(UserKey, name, value);
}

void QtWorld::setMachine(const std::string& name, const std::string& value) {
    hives.registry().SetRegValue(MachineKey, name, value);
}

std::string QtWorld::writeJob(const std::string& folder, const std::string& name, const std::string& title) const {
    const std::string relative = std::filesystem::relative(folder + name, root.path()).string();
    return root.write(relative, "%!PS-Adobe-3.0\r\n%%Creator: a printer driver\r\n%%Title: " + title +
                                    "\r\n%%Pages: 1\r\n%%EndComments\r\nshowpage\r\n%%EOF\r\n");
}

bool QtWorld::exists(const std::string& path) const {
    return std::filesystem::exists(path);
}

void QtWorld::offerJob(const std::string& folder, const std::string& name) {
    state.PsFolder = folder;
    state.PsFile = name;
}

std::string QtWorld::errorList() const {
    std::string list;
    for (const auto& e : errors.entries)
        list += "error " + std::to_string(e.number) + " in " + e.tag + " at \"" + e.step + "\"\n";
    return list;
}

} // namespace pl::test
