#pragma once
// The watcher tests' fixture: a resident form in a world of real folders, watching with the folder
// change service or reading the folders on every tick, as the test's parameter says.

#include "assistant_world.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace pl::test {

class watcher : public ::testing::TestWithParam<bool> {
protected:
    // Starts a resident form in `w`, watching with the change service when the parameter says so.
    std::unique_ptr<Resident> startIn(AssistantWorld& w) {
        if (GetParam())
            changes.push_back(platform::makeFolderChanges());
        auto started = std::make_unique<Resident>(w, w.takenFolder, GetParam() ? changes.back().get() : nullptr);
        started->form.Form_Load();
        EXPECT_TRUE(started->form.timerEnabled());
        EXPECT_FALSE(w.state.quitRequested);
        return started;
    }
    void start() { r = startIn(world); }

    AssistantWorld world;
    std::vector<std::unique_ptr<platform::FolderChanges>> changes;
    std::unique_ptr<Resident> r;
};

} // namespace pl::test
