#include "support/test_registry.h"

namespace pl::test {

TestRegistry::TestRegistry() : env_("PAPERLARK_REGISTRY_DIR", dir_.path().string()), backend_(), registry_(backend_) {}

std::string TestRegistry::writeHive(const std::string& rootName, const std::string& content) const {
    return dir_.write(rootName + ".reg", content);
}

std::string TestRegistry::readHive(const std::string& rootName) const {
    return dir_.exists(rootName + ".reg") ? dir_.read(rootName + ".reg") : std::string();
}

} // namespace pl::test
