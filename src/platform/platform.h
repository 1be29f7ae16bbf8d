#pragma once
// Every operating-system service the program uses, bundled so that one object can be handed down.
// The native implementation is chosen by the build, never by the callers.

#include "platform/clock.h"
#include "platform/environment.h"
#include "platform/file_system.h"
#include "platform/processes.h"
#include "platform/registry_backend.h"
#include "platform/special_folders.h"

#include <memory>

namespace pl::platform {

struct Platform {
    virtual ~Platform() = default;
    virtual Environment& environment() = 0;
    virtual FileSystem& files() = 0;
    virtual Processes& processes() = 0;
    virtual Shell& shell() = 0;
    virtual SpecialFolders& folders() = 0;
    virtual Clock& clock() = 0;
    virtual Random& random() = 0;
    virtual RegistryBackend& registry() = 0;
    // A new lock object; the lock is held for as long as the object lives.
    virtual std::unique_ptr<InstanceLock> makeInstanceLock() = 0;
};

// The services of the operating system the program was built for.
std::unique_ptr<Platform> makeNativePlatform();

} // namespace pl::platform
