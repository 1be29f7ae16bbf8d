#include "converter/reporter.h"

#include <string>

namespace pl::converter {

void Reporter::log(std::string_view line) {
    if (log_)
        log_("Paperlark: " + std::string(line));
}

void Reporter::failure(std::string_view message) {
    errors_ << "paperlark: " << message << std::endl;
    log(message);
    ui_.showError(message);
}

} // namespace pl::converter
