#pragma once
// The output file may exist and be open in another program (a viewer showing last month's
// invoice). The converter could not replace it then, so the output goes to a free numbered name
// beside it instead; an existing file that nobody holds is left for the converter to overwrite.

#include "base/errors.h"
#include "naming/naming_state.h"
#include "platform/file_system.h"

#include <string>
#include <string_view>

namespace pl::dialog {

// The path to write: `outFile` when no such file exists or nobody holds it open; the numbered free
// name in the same folder when another program holds it; the empty text when the path cannot be
// looked up. The test renames the file to "~" + its name and back: a file that is in use cannot be
// renamed on Windows, and elsewhere a file another process holds a lock on counts as in use. Errors
// go to `errors` ("CheckOpenFile").
std::string CheckOpenFile(std::string_view outFile, platform::FileSystem& files, const naming::NamingState& naming,
                          ErrorSink& errors);

} // namespace pl::dialog
