#include "platform/posix/posix_services.h"
#include "platform/posix/xdg_dirs.h"

namespace pl::platform::posix {

std::string PosixSpecialFolders::desktop() const {
    return xdgDesktopDir();
}

std::string PosixSpecialFolders::localAppData() const {
    return xdgDataHome();
}

std::string PosixSpecialFolders::documents() const {
    return xdgDocumentsDir();
}

std::string PosixSpecialFolders::programFolder() const {
    std::string folder = suiteFolder();
    if (folder.size() > 1 && folder.back() == '/')
        folder.pop_back();
    return folder;
}

} // namespace pl::platform::posix
