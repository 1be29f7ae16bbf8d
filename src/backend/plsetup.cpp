// plsetup: the machine's part of setting the suite up, run by the package as root after it installed
// the programs. It points the machine key's spool folder (psdir) at the printer's folder unless an
// administrator has set one already: values in the machine hive are the administrator's and are
// never overwritten. It works through the suite's own registry store, so the hive keeps its other
// values and a concurrent writer loses nothing.
//
//   plsetup --machine-spool /var/spool/paperlark/

#include "platform/posix/registry/posix_registry.h"
#include "platform/registry.h"
#include "platform/suite_settings.h"

#include <cstdio>
#include <string>
#include <string_view>

int main(int argc, char** argv) {
    if (argc != 3 || std::string_view(argv[1]) != "--machine-spool" || argv[2][0] != '/') {
        std::fprintf(stderr, "usage: plsetup --machine-spool /absolute/spool/folder/\n");
        return 2;
    }
    std::string folder = argv[2];
    // Folder values end in the separator: file names are appended to them as they are.
    if (folder.back() != '/')
        folder += '/';

    pl::platform::posix::PosixRegistry store;
    if (const auto problem = store.hiveProblem(pl::platform::HKEY_LOCAL_MACHINE)) {
        std::fprintf(stderr, "plsetup: the machine registry is left as it is: %s\n", problem->c_str());
        return 1;
    }
    pl::platform::Registry registry(store);
    const std::string current = pl::platform::regText(registry, pl::platform::SuiteMachineKey, "psdir");
    const std::string hive = store.hiveFile(pl::platform::HKEY_LOCAL_MACHINE).string();
    if (!current.empty()) {
        std::printf("plsetup: the machine spool folder stays %s (%s)\n", current.c_str(), hive.c_str());
        return 0;
    }
    if (registry.SetRegValue(pl::platform::SuiteMachineKey, "psdir", folder) != "True") {
        std::fprintf(stderr, "plsetup: cannot write psdir into %s\n", hive.c_str());
        return 1;
    }
    std::printf("plsetup: the machine spool folder is now %s (%s)\n", folder.c_str(), hive.c_str());
    return 0;
}
