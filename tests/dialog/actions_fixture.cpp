#include "actions_fixture.h"

#include "platform/paths.h"

#include <filesystem>

namespace pl::test {

ActionsFixture::ActionsFixture() {
    tempFolder = root.folder() + "tmp";
    // Folder values end in the system's separator, as the program writes them.
    out = root.folder() + "out" + platform::PathSep;
    std::filesystem::create_directories(tempFolder);
    std::filesystem::create_directories(out);
    env.set("TMPDIR", tempFolder);
    env.set("TEMP", tempFolder);
    // The suite folder ("pldir") is where the converter is looked for ("plDir", the same value).
    installRecordingConverter(RECORDING_CONVERTER);
    writeProfile(suite, "High Quality.plp");
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
