// The info label: how many documents are collected for a MultiDoc PDF and how many jobs wait
// behind this one, and the Sort button that is there exactly while documents are collected.

#include "base/text.h"
#include "dialog/job_dialog.h"
#include "dialog/multidoc_queue.h"
#include "platform/paths.h"

namespace pl::dialog {

namespace {
constexpr int SortMargin = 160; // room given with cmdSort's width when it appears
} // namespace

std::string JobDialog::GetInfos() {
    std::string step;
    std::string label;
    trapErrors(errors(), "plDialog1.GetInfos", step, [&] {
        log("Infolabel laden");
        const auto& files = services().os.files();
        const auto& state = this->state();
        const std::string user = userName();

        step = "1. Multidoc Files zaehlen";
        const int collected = countMultiDocFiles(files, state.PsDirUser, user);

        step = "2. Folgedokumente zaehlen";
        int waiting = countMatchingFiles(files, state.PsDirUser, user + "*.ps");

        step = "Neu in 1.1 - Dokumente auf dem Terminal Server mitzaehlen";
        if (!state.TsPath.empty())
            waiting += countMatchingFiles(files, platform::withTrailingSep(state.TsPath), state.TsName + "*.ps");

        const auto& texts = context_.texts;
        std::string composed;
        if (collected == 1)
            composed += texts.text(14) + "\r\n";
        else if (collected > 1)
            composed += text::replaceAll(texts.text(15), "$1$", text::number(collected)) + "\r\n";
        if (waiting == 1)
            composed += texts.text(16) + "\r\n";
        else if (waiting > 1)
            composed += text::replaceAll(texts.text(17), "$1$", text::number(waiting)) + "\r\n";

        auto& sort = control("cmdSort");
        if (collected > 0 && !sort.visible) {
            form_.width += sort.width + SortMargin;
            sort.visible = true;
        } else if (collected == 0 && sort.visible) {
            sort.visible = false;
            form_.width -= sort.width + SortMargin;
        }
        label = std::move(composed);
    });
    return label;
}

std::string JobDialog::GetMultiDocFiles() {
    return multiDocArguments(services().os.files(), state().PsDirUser, userName());
}

} // namespace pl::dialog
