#pragma once
// A registry of its own for one test, and the registry module on top, as in the program. On POSIX a
// fresh temporary folder holds the hive files and the real store reads and writes them; on Windows
// the real registry, with the roots of this process turned to a key of the test's own.
//
//     pl::test::TestRegistry reg;
//     reg.registry().SetRegValue("HKCU\\Software\\tobrin\\PaperlarkXP", "psdir", "/tmp/spool/");
//     pl::Services services{os, reg.registry(), errors, messages};
//
// While the object lives, PAPERLARK_REGISTRY_DIR points at the folder, so a store made elsewhere
// from the environment (the native platform, a child process) uses the same hives. The user's own
// registry is never touched. Hive files are named after their root: dir().path() /
// "HKEY_CURRENT_USER.reg". On Windows only this process sees the test's own keys.

#include "platform/registry.h"
#include "support/scoped_env.h"
#include "support/temp_dir.h"

#include <memory>
#include <string>

namespace pl::test {

class TestRegistry {
public:
    TestRegistry();
    ~TestRegistry();
    TestRegistry(const TestRegistry&) = delete;
    TestRegistry& operator=(const TestRegistry&) = delete;

    platform::Registry& registry() { return registry_; }
    platform::RegistryBackend& backend();
    const TempDir& dir() const { return dir_; }

    // Writes a hive as a regedit export gives it: writeHive("HKEY_CURRENT_USER", text). On Windows
    // the text is imported into the test's own keys.
    std::string writeHive(const std::string& rootName, const std::string& content) const;
    // The text of a hive file; the empty text when there is none. On Windows the export of the
    // test's own keys of that root.
    std::string readHive(const std::string& rootName) const;

private:
    struct Store; // the system's store, made private to this object

    TempDir dir_;
    ScopedEnv env_;
    std::unique_ptr<Store> store_;
    platform::Registry registry_;
};

} // namespace pl::test
