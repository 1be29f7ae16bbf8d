#pragma once
// Where the converter's messages go. A failure is always written to standard error, to the log when
// logging is on, and to a message box where a desktop is there: the person who printed must learn
// that no document came out, even when nobody watches a console.

#include "converter/user_interface.h"

#include <functional>
#include <ostream>
#include <string_view>

namespace pl::converter {

class Reporter {
public:
    using LogWriter = std::function<void(std::string_view line)>;

    // `log` is empty when logging is off.
    Reporter(UserInterface& ui, LogWriter log, std::ostream& errors) : ui_(ui), log_(std::move(log)), errors_(errors) {}

    void log(std::string_view line);
    void failure(std::string_view message);

private:
    UserInterface& ui_;
    LogWriter log_;
    std::ostream& errors_;
};

} // namespace pl::converter
