#pragma once

#include "base/errors.h"
#include "naming/naming_state.h"

#include <string>
#include <string_view>

namespace pl::naming {

// The proposed name for the job in the PostScript file at `path`, from its "%%Title:" comment,
// cleaned and reduced to a bare name; "Paperlark File" when there is none or the file cannot be
// read. Also left in `state.title`. Streams the file: memory stays small whatever its size.
std::string GetPsFileTitle(std::string_view path, NamingState& state, ErrorSink& errors);

} // namespace pl::naming
