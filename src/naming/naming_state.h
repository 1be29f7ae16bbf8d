#pragma once

#include <string>

namespace pl::naming {

// The name derivation's module-wide values: the title of the current job and the output format of
// the selected profile, read by the name proposal, the name box and the converter call.
struct NamingState {
    std::string title;                  // set by GetPsFileTitle
    std::string OutputSuffix = ".pdf";  // set by LoadSuffix
    std::string PageNumberPattern;      // "" or " - %02d"
};

} // namespace pl::naming
