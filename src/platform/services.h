#pragma once
// What the behaviour code needs from outside itself, handed down as one bundle: the operating
// system, the registry, the error report and the message boxes.

#include "base/errors.h"
#include "base/message_box.h"
#include "platform/platform.h"
#include "platform/registry.h"

namespace pl {

struct Services {
    platform::Platform& os;
    platform::Registry& registry;
    ErrorSink& errors;
    MessageBoxes& messages;
};

} // namespace pl
