#include "support/test_registry.h"

#include "platform/posix/registry/posix_registry.h"

namespace pl::test {

struct TestRegistry::Store {
    platform::posix::PosixRegistry backend; // from the environment: the test's folder
};

TestRegistry::TestRegistry()
    : env_("PAPERLARK_REGISTRY_DIR", dir_.path().string()), store_(std::make_unique<Store>()),
      registry_(store_->backend) {}

TestRegistry::~TestRegistry() = default;

platform::RegistryBackend& TestRegistry::backend() {
    return store_->backend;
}

std::string TestRegistry::writeHive(const std::string& rootName, const std::string& content) const {
    return dir_.write(rootName + ".reg", content);
}

std::string TestRegistry::readHive(const std::string& rootName) const {
    return dir_.exists(rootName + ".reg") ? dir_.read(rootName + ".reg") : std::string();
}

} // namespace pl::test
