// The steps every action shares, and the factory that gives a dialog its actions.

#include "dialog/actions/job_actions.h"

#include "assistant/runtime_helpers.h"
#include "dialog/actions/converter_call.h"
#include "dialog/actions/output_names.h"
#include "dialog/job_dialog.h"
#include "dialog/sort/queue_reorder.h"
#include "dialog/sort/sort_form.h"
#include "platform/program_names.h"

namespace pl::dialog {

DialogJobActions::DialogJobActions(JobDialog& dialog, ActionHooks hooks) : dialog_(dialog), hooks_(std::move(hooks)) {
    // A sort that was interrupted between its two renaming rounds left queue files under
    // temporary names; every new job dialog puts them back into the queue before it counts it.
    std::string step = "Sortierung wiederherstellen";
    trapErrors(errors(), "plDialog1.Form_Initialize", step,
               [&] { putSortedBack(services().os.files(), state().PsDirUser, dialog_.userName()); });
}

DialogJobActions::~DialogJobActions() = default;

forms::Context& DialogJobActions::context() {
    return dialog_.context();
}

Services& DialogJobActions::services() {
    return context().services;
}

forms::AppState& DialogJobActions::state() {
    return context().state;
}

forms::View& DialogJobActions::view() {
    return context().view;
}

ErrorSink& DialogJobActions::errors() {
    return context().services.errors;
}

forms::Control& DialogJobActions::control(std::string_view name) {
    return dialog_.control(name);
}

void DialogJobActions::log(std::string_view line) {
    dialog_.log(line);
}

void DialogJobActions::finishJob(std::string_view tag, const std::function<bool(std::string& step)>& procedure) {
    std::string step;
    bool jobTaken = true;
    trapErrors(errors(), tag, step, [&] { jobTaken = procedure(step); });
    if (jobTaken)
        dialog_.Unload();
}

void DialogJobActions::stopTimer() {
    control("Timer1").enabled = false;
}

std::string DialogJobActions::takeJob() {
    const std::string oldPath = state().PsFolder + state().PsFile;
    state().PsFile = assistant::RandomNamePSFile(oldPath, state().PsFolder, context().texts, services());
    return oldPath;
}

std::string DialogJobActions::hideAndTakeJob(std::string_view logLine) {
    log(logLine);
    view().hide(dialog_.form());
    stopTimer();
    return takeJob();
}

std::string& DialogJobActions::fillNameBox() {
    auto& name = control("pdfName").text;
    const auto& suffix = context().naming.OutputSuffix;
    if (name.empty())
        name = EmptyNameBoxName;
    if (characters(name) < 4)
        name += suffix;
    std::string copy = name;
    CheckSuffix(copy);
    return name;
}

ConverterCall DialogJobActions::conversion(std::string folder, std::string actions, std::string output) {
    return {std::move(folder), std::move(actions),   control("plProfile").text,
            std::move(output), state().MultiDocArgs, state().PsFile};
}

void DialogJobActions::startConverter(const ConverterCall& call, std::string_view loggedLine, Route route) {
    log("Aufruf: " + std::string(loggedLine));
    const auto& texts = context().texts;
    if (!converterPresentOrSaid(services(), call.folder,
                                platform::withLocalProgramNames(texts.text(ConverterMissingText)),
                                texts.text(ProgramTitleText)))
        return;
    if (route == Route::Save)
        startOnSaveRoute(services(), view(), call);
    else
        startDirect(services(), call.commandLine());
}

DialogActions jobActions(JobDialog& dialog) {
    return jobActionsWith({})(dialog);
}

DialogActionsFactory jobActionsWith(ActionHooks hooks) {
    return [hooks = std::move(hooks)](JobDialog& dialog) {
        auto buttons = std::make_unique<DialogJobActions>(dialog, hooks);
        auto defaults = std::make_unique<DialogDefaultActions>(dialog, *buttons);
        return DialogActions{std::move(buttons), std::move(defaults)};
    };
}

} // namespace pl::dialog
