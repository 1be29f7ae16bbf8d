#include "config_fixture.h"

namespace pl::test {

int ScriptedConfigView::msgBox(std::string_view prompt, int style, std::string_view) {
    messages.emplace_back(prompt);
    if (!msgBoxAnswers.empty()) {
        const int answer = msgBoxAnswers.front();
        msgBoxAnswers.pop_front();
        return answer;
    }
    return (style & 0x0F) == mb::YesNo ? mb::Yes : mb::Ok;
}

std::optional<std::string> ScriptedConfigView::askText(std::string_view, std::string_view, std::string_view proposal) {
    proposals.emplace_back(proposal);
    if (textAnswers.empty())
        return std::nullopt;
    auto answer = textAnswers.front();
    textAnswers.pop_front();
    return answer;
}

config::ConfigForm& ConfigFixture::openConfig() {
    configView = {};
    form = std::make_unique<config::ConfigForm>(*services, configView);
    form->Form_Load();
    return *form;
}

config::ProfileSettings& ConfigFixture::newProfile(const std::string& name) {
    configView.textAnswers.push_back(name);
    form->cmdNew_Click();
    auto& entry = form->profiles.entries().at(form->profiles.selected);
    EXPECT_EQ(entry.name, name);
    return entry.settings;
}

int ConfigFixture::languageIndex(const std::string& choice) const {
    const int code = choice == "German" ? 1 : choice == "English" ? 2 : 3;
    for (std::size_t i = 0; i < form->languages.size(); ++i)
        if (form->languages[i].code == code && (code != 3 || form->languages[i].file == choice))
            return static_cast<int>(i);
    ADD_FAILURE() << "no language " << choice;
    return 0;
}

} // namespace pl::test
