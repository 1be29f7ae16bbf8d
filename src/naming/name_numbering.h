#pragma once

#include "base/errors.h"
#include "naming/naming_state.h"
#include "platform/file_system.h"

#include <string>
#include <string_view>

namespace pl::naming {

// The name to write into `folder` (which ends in the separator): `name` cleaned, with its extension
// (or the current OutputSuffix), numbered " (n)" before the extension when the name is taken;
// " ()" when numbers 1 to 1000 are all taken. Errors go to `errors` ("ParsePDFName.CheckpdfName")
// and give the empty text.
std::string CheckpdfName(std::string_view folder, std::string_view name, const NamingState& state,
                         const platform::FileSystem& files, ErrorSink& errors);

} // namespace pl::naming
