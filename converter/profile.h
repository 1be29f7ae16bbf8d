#pragma once
// Conversion profiles: `NAME.plp`, in the user's own profile folder or else in the suite folder.
// The first line holds the Ghostscript switches; further lines may hold `userpassword=` and
// `ownerpassword=` for encrypted PDF output (other lines, such as the assistant's automatic
// actions, are not the converter's business).

#include "platform/file_system.h"

#include <optional>
#include <string>
#include <string_view>

namespace pl::converter {

struct Profile {
    std::string path;     // the file that was read; empty when there is no profile
    std::string switches; // the first line, as written
    std::optional<std::string> userPassword;
    std::optional<std::string> ownerPassword;
};

// Splits a profile file's text (CR LF or LF lines, an optional UTF-8 byte-order mark).
Profile parseProfile(std::string_view text);

// The profile file for `name`: `userFolder` first, then `suiteFolder` (both end in the separator);
// a name differing only in case counts, as it does on Windows. Nothing for an empty name or when
// neither folder has it.
std::optional<std::string> locateProfile(std::string_view name, std::string_view userFolder,
                                         std::string_view suiteFolder, const platform::FileSystem& files);

} // namespace pl::converter
