#include "dialog/sort/queue_reorder.h"

#include "base/text.h"
#include "dialog/multidoc_queue.h"
#include "naming/title_extraction.h"

#include <algorithm>
#include <map>
#include <optional>

namespace pl::dialog {

namespace {

std::string temporaryPath(std::string_view folder, std::string_view user, int n) {
    return multiDocFilePath(folder, user, n) + std::string(SortSuffix);
}

// The number in a temporary queue file's name "MultiDoc" + user + n + ".ps.sort"; nothing for a
// name of another user whose name merely begins with this one's.
std::optional<int> temporaryNumber(std::string_view name, std::string_view user) {
    const std::string prefix = "MultiDoc" + std::string(user);
    const std::string ending = ".ps" + std::string(SortSuffix);
    if (name.size() <= prefix.size() + ending.size() || !text::istartsWith(name, prefix) ||
        !text::iendsWith(name, ending))
        return std::nullopt;
    const std::string_view digits = name.substr(prefix.size(), name.size() - prefix.size() - ending.size());
    if (digits.size() > 4 || !std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; }))
        return std::nullopt;
    const int n = std::stoi(std::string(digits));
    if (n < 1 || n > MultiDocLimit)
        return std::nullopt;
    return n;
}

} // namespace

std::vector<QueuedDocument> readQueue(const platform::FileSystem& files, std::string_view folder, std::string_view user,
                                      ErrorSink& errors) {
    std::vector<QueuedDocument> documents;
    const int count = countMultiDocFiles(files, folder, user);
    for (int n = 1; n <= count; ++n) {
        // Titles are read with a state of their own: the job dialog's title stays the job's.
        naming::NamingState scratch;
        documents.push_back({n, naming::GetPsFileTitle(multiDocFilePath(folder, user, n), scratch, errors)});
    }
    return documents;
}

bool moveAsideInNewOrder(platform::FileSystem& files, std::string_view folder, std::string_view user,
                         const std::vector<int>& numbers) {
    for (std::size_t place = 0; place < numbers.size(); ++place) {
        const int newNumber = static_cast<int>(place) + 1;
        if (numbers[place] == newNumber)
            continue; // stays where it is
        if (!files.rename(multiDocFilePath(folder, user, numbers[place]), temporaryPath(folder, user, newNumber)))
            return false;
    }
    return true;
}

bool putSortedBack(platform::FileSystem& files, std::string_view folder, std::string_view user) {
    if (folder.empty())
        return true;
    std::map<int, std::string> waiting; // by the number each one is meant for
    for (const auto& entry : files.findAll(folder, "MultiDoc" + std::string(user) + "*.ps" + std::string(SortSuffix)))
        if (const auto n = temporaryNumber(entry.name, user))
            waiting.emplace(*n, std::string(folder) + entry.name);

    bool allBack = true;
    // First every file whose own number is free: after a complete round 1 that is all of them.
    std::vector<std::string> homeless;
    for (const auto& [n, path] : waiting) {
        const std::string target = multiDocFilePath(folder, user, n);
        if (files.exists(target) || !files.rename(path, target))
            homeless.push_back(path);
    }
    // Then the files that round 1 left sharing a number with a document that had not moved yet: the
    // numbers the moved documents left are free, and the lowest of them keeps the run unbroken.
    for (const auto& path : homeless) {
        bool placed = false;
        for (int n = 1; n <= MultiDocLimit && !placed; ++n) {
            const std::string target = multiDocFilePath(folder, user, n);
            placed = !files.exists(target) && files.rename(path, target);
        }
        allBack = allBack && placed;
    }
    return allBack;
}

bool applyQueueOrder(platform::FileSystem& files, std::string_view folder, std::string_view user,
                     const std::vector<int>& numbers) {
    const bool movedAside = moveAsideInNewOrder(files, folder, user, numbers);
    const bool back = putSortedBack(files, folder, user);
    return movedAside && back;
}

} // namespace pl::dialog
