#pragma once
// Whether a file that Ghostscript wrote is whole. Ghostscript reports success even when the disk
// filled up under it and the file ends in the middle, so its exit code alone proves nothing: the
// file's own structure must be there up to its last byte.

#include <optional>
#include <string>

namespace pl::converter {

// What is wrong with the file at `path`, or nothing when it is complete. Recognised by content:
// a PDF needs its trailer, a cross-reference where the trailer points and at least one page; PNG
// its end chunk; TIFF every image directory and strip inside the file; JPEG its end marker;
// PostScript its end comment; BMP the length it states. Any other file must not be empty.
std::optional<std::string> incompleteOutput(const std::string& path);

} // namespace pl::converter
