#pragma once
// The configuration form on the real folders and registry store of the job dialog's tests, with
// a view that answers from a script and records what it showed.

#include "actions_fixture.h"
#include "config/config_form.h"

#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pl::test {

class ScriptedConfigView : public config::ConfigView {
public:
    std::deque<std::optional<std::string>> textAnswers; // none left: cancelled
    std::deque<int> msgBoxAnswers;                      // none left: the first button
    std::vector<std::string> messages;
    bool closed = false;

    int msgBox(std::string_view prompt, int style, std::string_view) override;
    std::optional<std::string> askText(std::string_view, std::string_view, std::string_view proposal) override;
    void refresh() override {}
    void closeWindow() override { closed = true; }
    std::vector<std::string> proposals; // what askText offered
};

class ConfigFixture : public ActionsFixture {
protected:
    // A configuration form, loaded, as the program opens it.
    config::ConfigForm& openConfig();
    // The own profile `name` made with the New button and selected.
    config::ProfileSettings& newProfile(const std::string& name);
    // The entry of the language list for "German", "English" or a language file's name.
    int languageIndex(const std::string& choice) const;

    ScriptedConfigView configView;
    std::unique_ptr<config::ConfigForm> form;
};

} // namespace pl::test
