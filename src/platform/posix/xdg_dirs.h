#pragma once
// Where the freedesktop conventions put the user's folders, and where the running installation
// lies. Shared by the special folders and by the registry store, which answers the values Windows
// keeps by itself (the desktop folder, the data home, the suite folder) from here.

#include <string>

namespace pl::platform::posix {

// Folders are given without a trailing "/" unless said otherwise; empty when no home is known.

// $HOME, else the password database's home folder.
std::string homeDir();
// XDG_DESKTOP_DIR from the environment or ${XDG_CONFIG_HOME:-~/.config}/user-dirs.dirs, else ~/Desktop.
std::string xdgDesktopDir();
// XDG_DOCUMENTS_DIR, found the same way, else ~/Documents.
std::string xdgDocumentsDir();
// ${XDG_DATA_HOME:-~/.local/share}
std::string xdgDataHome();
// ${XDG_CONFIG_HOME:-~/.config}
std::string xdgConfigHome();
// The folder the running program lies in (links resolved), with a trailing "/": the suite folder of
// an installation or of a build tree.
std::string suiteFolder();

} // namespace pl::platform::posix
