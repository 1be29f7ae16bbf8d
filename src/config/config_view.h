#pragma once
// Everything the configuration program's model asks a person or shows: message boxes, a name
// asked for, the window drawn again, and the window closed. The Qt view (and a Win32 view) draw
// the model; tests answer from a script.

#include "base/message_box.h"

#include <optional>
#include <string>
#include <string_view>

namespace pl::config {

class ConfigView : public MessageBoxes {
public:
    // A line of text: `proposal` is offered; nothing when the person cancelled.
    virtual std::optional<std::string> askText(std::string_view prompt, std::string_view title,
                                               std::string_view proposal) = 0;
    // The model changed by its own doing (a profile added, values read again): draw it again.
    virtual void refresh() = 0;
    // The program's window goes away.
    virtual void closeWindow() = 0;
};

} // namespace pl::config
