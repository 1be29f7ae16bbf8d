#include "converter/installed_ghostscript.h"

namespace pl::converter {

// Distributions put Ghostscript on the PATH; the program is found there when it starts.
std::string installedGhostscript(const platform::Environment&, const platform::FileSystem&) {
    return "gs";
}

} // namespace pl::converter
