#include "dialog/multidoc_queue.h"

#include "base/text.h"

#include <algorithm>

namespace pl::dialog {

std::string multiDocFilePath(std::string_view folder, std::string_view user, int n) {
    return std::string(folder) + "MultiDoc" + std::string(user) + text::number(n) + ".ps";
}

int countMultiDocFiles(const platform::FileSystem& files, std::string_view folder, std::string_view user) {
    // Without a user spool folder there is no queue (the bare names would point into the working
    // folder).
    if (folder.empty())
        return 0;
    int count = 0;
    while (count < MultiDocLimit && files.exists(multiDocFilePath(folder, user, count + 1)))
        ++count;
    return count;
}

std::string multiDocArguments(const platform::FileSystem& files, std::string_view folder, std::string_view user) {
    std::string arguments;
    const int count = countMultiDocFiles(files, folder, user);
    for (int n = 1; n <= count; ++n)
        arguments += "\"" + multiDocFilePath(folder, user, n) + "\" ";
    return arguments;
}

int countMatchingFiles(const platform::FileSystem& files, std::string_view folder, std::string_view pattern) {
    if (folder.empty())
        return 0;
    const auto found = files.findAll(folder, pattern).size();
    return static_cast<int>(std::min<std::size_t>(found, MultiDocLimit));
}

} // namespace pl::dialog
