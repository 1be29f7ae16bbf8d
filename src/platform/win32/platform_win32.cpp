#include "platform/platform.h"
#include "platform/standard_clock.h"
#include "platform/win32/win32_registry.h"
#include "platform/win32/win32_services.h"

namespace pl::platform {

namespace {

class Win32Platform : public Platform {
public:
    Environment& environment() override { return environment_; }
    FileSystem& files() override { return files_; }
    Processes& processes() override { return processes_; }
    Shell& shell() override { return shell_; }
    SpecialFolders& folders() override { return folders_; }
    Clock& clock() override { return clock_; }
    Random& random() override { return random_; }
    RegistryBackend& registry() override { return registry_; }
    std::unique_ptr<InstanceLock> makeInstanceLock() override { return std::make_unique<win32::Win32InstanceLock>(); }

private:
    win32::Win32Environment environment_;
    win32::Win32FileSystem files_;
    win32::Win32Processes processes_;
    win32::Win32Shell shell_;
    win32::Win32SpecialFolders folders_;
    SystemClock clock_;
    UniformRandom random_;
    win32::Win32Registry registry_;
};

} // namespace

std::unique_ptr<Platform> makeNativePlatform() {
    return std::make_unique<Win32Platform>();
}

} // namespace pl::platform
