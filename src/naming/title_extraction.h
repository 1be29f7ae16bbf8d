#pragma once

#include "base/errors.h"
#include "naming/naming_state.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace pl::naming {

// The job file is read in blocks of this size: large enough to read at the speed of the disk cache,
// small enough that memory stays bounded whatever the file holds.
inline constexpr std::size_t TitleReadBlockSize = 256 * 1024;

// The proposed name for the job in the PostScript file at `path`, from its first "%%Title:" comment
// (in any case, anywhere in a line), cleaned and reduced to a bare name; "Paperlark File" when there
// is none. Also left in `state.title`. When the file cannot be read the result is "Paperlark File"
// too, but `state.title` is left empty. Lines end in CR LF, LF or CR alike. Streams the file: memory
// stays small whatever its size or the length of its lines.
std::string GetPsFileTitle(std::string_view path, NamingState& state, ErrorSink& errors);

} // namespace pl::naming
