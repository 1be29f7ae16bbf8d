#include "platform/platform.h"
#include "platform/posix/posix_services.h"
#include "platform/posix/registry/posix_registry.h"
#include "platform/standard_clock.h"

namespace pl::platform {

namespace {

class PosixPlatform : public Platform {
public:
    PosixPlatform() : shell_(processes_) {}

    Environment& environment() override { return environment_; }
    FileSystem& files() override { return files_; }
    Processes& processes() override { return processes_; }
    Shell& shell() override { return shell_; }
    SpecialFolders& folders() override { return folders_; }
    Clock& clock() override { return clock_; }
    Random& random() override { return random_; }
    RegistryBackend& registry() override { return registry_; }
    std::unique_ptr<InstanceLock> makeInstanceLock() override { return std::make_unique<posix::PosixInstanceLock>(); }

private:
    posix::PosixEnvironment environment_;
    posix::PosixFileSystem files_;
    posix::PosixProcesses processes_;
    posix::PosixShell shell_;
    posix::PosixSpecialFolders folders_;
    SystemClock clock_;
    UniformRandom random_;
    posix::PosixRegistry registry_;
};

} // namespace

std::unique_ptr<Platform> makeNativePlatform() {
    return std::make_unique<PosixPlatform>();
}

} // namespace pl::platform
