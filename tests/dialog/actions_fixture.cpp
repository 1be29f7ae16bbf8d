#include "actions_fixture.h"

#include "platform/paths.h"

#include <filesystem>
#include <sstream>
#include <thread>

namespace pl::test {

namespace {

// Folder values end in the system's separator, as the program writes them.
const std::string sep(1, platform::PathSep);

std::vector<RecordedCall> parseCalls(const std::string& record) {
    std::vector<RecordedCall> calls;
    std::istringstream lines(record);
    std::string line;
    RecordedCall current;
    bool open = false;
    while (std::getline(lines, line)) {
        if (line == "=== call") {
            current = {};
            open = true;
        } else if (line == "=== end" && open) {
            calls.push_back(current);
            open = false;
        } else if (line.starts_with("folder=")) {
            current.folder = line.substr(7);
        } else if (line.starts_with("arg=")) {
            current.args.push_back(line.substr(4));
        }
    }
    return calls;
}

} // namespace

ActionsFixture::ActionsFixture() {
    recordFile = root.folder() + "calls.txt";
    tempFolder = root.folder() + "tmp";
    desktop = root.folder() + "desktop" + sep;
    out = root.folder() + "out" + sep;
    std::filesystem::create_directories(tempFolder);
    std::filesystem::create_directories(out);
    env.set("RECORDING_CONVERTER_LOG", recordFile);
    env.set("TMPDIR", tempFolder);
    env.set("TEMP", tempFolder);
    // The suite folder ("pldir") is where the converter is looked for ("plDir", the same value).
    std::filesystem::copy_file(RECORDING_CONVERTER, suite + CONVERTER_FILE);
    writeProfile(suite, "High Quality.plp");
}

std::vector<RecordedCall> ActionsFixture::waitForCalls(std::size_t count, std::chrono::milliseconds timeout) const {
    const auto until = std::chrono::steady_clock::now() + timeout;
    for (;;) {
        auto calls = parseCalls(root.read("calls.txt"));
        if (calls.size() >= count || std::chrono::steady_clock::now() > until)
            return calls;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

bool ActionsFixture::noCallArrives() const {
    return waitForCalls(1, std::chrono::milliseconds(400)).empty();
}

void ActionsFixture::expectOneWarning(const std::string& prompt) const {
    ASSERT_EQ(view.messages.size(), 1u);
    EXPECT_EQ(view.messages[0].prompt, prompt);
    EXPECT_EQ(view.messages[0].style, mb::Exclamation);
    EXPECT_EQ(view.messages[0].title, "Paperlark 4.12");
}

dialog::JobDialog& ActionsFixture::openWithActions() {
    dialog = std::make_unique<dialog::JobDialog>(*context, dialog::jobActions);
    dialog->Load();
    return *dialog;
}

dialog::DialogJobActions& ActionsFixture::buttons() {
    return dynamic_cast<dialog::DialogJobActions&>(dialog->actions());
}

} // namespace pl::test
