#pragma once
// Helpers that every part of the assistant uses: the debug log, the desktop folder's name, taking a
// job out of the watcher's sight, and whether PDF encryption can be offered.

#include "platform/services.h"
#include "texts/texts.h"

#include <string>
#include <string_view>

namespace pl::assistant {

// Appends one line, ended by "\r\n", to plAssist.log on the user's desktop (C:\plAssist.log or
// /tmp/plAssist.log when there is no user profile). Opens and closes the file on every call;
// failures are ignored.
void DebugWrite(std::string_view line, Services& services);
// Where DebugWrite writes.
std::string logFilePath(Services& services);

// The name of the user's desktop folder as shown to the user ("Desktop" when unknown).
std::string LoadDesktop(Services& services);

// Renames the job file `path` (in `folder`) to folder + "~" + user name + 1..999 + ".ps" so that
// the watcher will not offer it again; retries a bounded number of times with a fresh number when
// the name is taken. Returns the new full path, or the empty text on failure (after a message box
// with text 22 of the current language and "Permission error: Cannot delete " + path).
std::string RandomNamePSFile(std::string_view path, std::string_view folder, const texts::Texts& texts,
                             Services& services);

// The cleaned user name that prefixes every job file of this user.
std::string userName(Services& services);

// Whether Ghostscript can be found, so that PDF encryption can be offered: the registry value
// "gswin32c" (user key, then machine key; environment references expanded) naming the program or
// a folder holding gswin64c.exe, gswin32c.exe or gs directly or below "bin", "gs" or "gs\bin";
// else one of these programs in a folder of PATH.
bool EncryptionAvailable(Services& services);

} // namespace pl::assistant
