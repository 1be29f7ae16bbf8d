#include "platform/folder_changes.h"

namespace pl::platform {

namespace {

// Until notifications are wired up, no folder can be watched: callers read the folder each time,
// which is always correct.
class UnwatchedFolders final : public FolderChanges {
public:
    std::optional<FolderStamp> stamp(std::string_view) override { return std::nullopt; }
    bool changedSince(const FolderStamp&) override { return true; }
    bool changedFor(FolderStamp&, const std::function<bool(std::string_view)>&) override { return true; }
};

} // namespace

std::unique_ptr<FolderChanges> makeFolderChanges() {
    return std::make_unique<UnwatchedFolders>();
}

} // namespace pl::platform
