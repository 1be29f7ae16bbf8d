#pragma once
// The title a PDF carries in its document information: the name the person gave it, without the
// extension. A merge of given files takes the first document's title, as the merged document
// begins with it.

#include "converter/arguments.h"

#include <string>

namespace pl::converter {

// `output` is the output's full path.
std::string documentTitle(const Request& request, const std::string& output);

} // namespace pl::converter
