#pragma once
// A registry of its own for one test: a fresh temporary folder holds the hive files, the real POSIX
// store reads and writes them, and the registry module sits on top, as in the program.
//
//     pl::test::TestRegistry reg;
//     reg.registry().SetRegValue("HKCU\\Software\\tobrin\\PaperlarkXP", "psdir", "/tmp/spool/");
//     pl::Services services{os, reg.registry(), errors, messages};
//
// While the object lives, PAPERLARK_REGISTRY_DIR points at the folder, so a store made elsewhere
// from the environment (the native platform, a child process) uses the same hives. The user's own
// registry is never touched. Hive files are named after their root: dir().path() /
// "HKEY_CURRENT_USER.reg".

#include "platform/posix/registry/posix_registry.h"
#include "platform/registry.h"
#include "support/scoped_env.h"
#include "support/temp_dir.h"

#include <string>

namespace pl::test {

class TestRegistry {
public:
    TestRegistry();
    TestRegistry(const TestRegistry&) = delete;
    TestRegistry& operator=(const TestRegistry&) = delete;

    platform::Registry& registry() { return registry_; }
    platform::posix::PosixRegistry& backend() { return backend_; }
    const TempDir& dir() const { return dir_; }

    // Writes a hive file as it is, e.g. a regedit export: writeHive("HKEY_CURRENT_USER", text).
    std::string writeHive(const std::string& rootName, const std::string& content) const;
    // The text of a hive file; the empty text when there is none.
    std::string readHive(const std::string& rootName) const;

private:
    TempDir dir_;
    ScopedEnv env_;
    platform::posix::PosixRegistry backend_;
    platform::Registry registry_;
};

} // namespace pl::test
