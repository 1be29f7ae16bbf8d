// frmSort's events: filling the list, moving a document, applying or dropping the new order, and
// the help text on the converter's merge form.

#include "dialog/sort/sort_form.h"

#include "assistant/runtime_helpers.h"
#include "base/text.h"
#include "platform/program_names.h"
#include "texts/texts.h"

#include <algorithm>

namespace pl::dialog {

namespace {

struct Captions {
    std::string_view hint, up, down, ok, cancel, help, helpText;
};

constexpr Captions German{
    "Die Dokumente werden in dieser Reihenfolge zu einem PDF zusammengefügt:",
    "Nach &oben",
    "Nach &unten",
    "OK",
    "Abbrechen",
    "&Hilfe",
    "Die Dokumente der Liste werden in der gezeigten Reihenfolge zu einem PDF zusammengefügt, das oberste "
    "zuerst. Wählen Sie ein Dokument und verschieben Sie es mit \"Nach oben\" und \"Nach unten\"; OK übernimmt "
    "die neue Reihenfolge.\r\n\r\n"
    "Dateien zusammenfügen kann auch der Konverter selbst:\r\n"
    "Paperlark.exe /m \"Ausgabe.pdf\" \"Eingabe1\" \"Eingabe2\" ...\r\n"
    "Zuerst die Ausgabedatei, dann die Eingabedateien (PostScript oder PDF), jede in doppelten "
    "Anführungszeichen.",
};

constexpr Captions English{
    "The documents are joined into one PDF in this order:",
    "Move &up",
    "Move &down",
    "OK",
    "Cancel",
    "&Help",
    "The documents of the list are joined into one PDF in the order shown, the top one first. Select a "
    "document and move it with \"Move up\" and \"Move down\"; OK applies the new order.\r\n\r\n"
    "The converter can also join files by itself:\r\n"
    "Paperlark.exe /m \"Output.pdf\" \"Input1\" \"Input2\" ...\r\n"
    "First the output file, then the input files (PostScript or PDF), each in double quotes.",
};

const Captions& captionsFor(const texts::Texts& texts) {
    return texts.language() == texts::German ? German : English;
}

} // namespace

SortForm::SortForm(forms::Context& context) : forms::Form("frmSort"), context_(context) {
    build();
}

std::string SortForm::userName() {
    return assistant::userName(services());
}

void SortForm::Load() {
    if (loaded)
        return;
    loaded = true;
    Form_Load();
    view().showModal(*this);
}

void SortForm::Unload() {
    if (!loaded)
        return;
    int cancel = 0;
    Form_Unload(cancel);
    loaded = false;
    view().unload(*this);
}

void SortForm::Form_Load() {
    std::string step;
    trapErrors(errors(), "frmSort.Form_Load", step, [&] {
        step = "Texte";
        applyLanguage();
        step = "Hintergrund";
        applyStyle();
        step = "Groesse";
        restoreSize();

        auto& files = services().os.files();
        const std::string folder = context_.state.PsDirUser;
        const std::string user = userName();
        // What an interrupted sort left under temporary names goes back into the queue first.
        step = "Sortierung wiederherstellen";
        putSortedBack(files, folder, user);

        step = "Liste fuellen";
        documents_ = readQueue(files, folder, user, errors());
        fillList(documents_.empty() ? -1 : 0);
    });
}

void SortForm::applyLanguage() {
    const Captions& words = captionsFor(context_.texts);
    control("lbHint").caption = std::string(words.hint);
    control("cmdUp").caption = std::string(words.up);
    control("cmdDown").caption = std::string(words.down);
    control("cmdOK").caption = std::string(words.ok);
    control("cmdCancel").caption = std::string(words.cancel);
    control("cmdHelp").caption = std::string(words.help);
}

void SortForm::fillList(int selected) {
    auto& list = control("lstDocuments");
    list.items.clear();
    for (std::size_t i = 0; i < documents_.size(); ++i)
        list.items.push_back(text::number(static_cast<long long>(i) + 1) + ": " + documents_[i].title);
    list.value = selected;
    const bool canMove = documents_.size() > 1;
    control("cmdUp").enabled = canMove;
    control("cmdDown").enabled = canMove;
    if (loaded)
        view().refresh(*this);
}

void SortForm::move(int by) {
    const int from = control("lstDocuments").value;
    const int to = from + by;
    if (from < 0 || to < 0 || from >= static_cast<int>(documents_.size()) || to >= static_cast<int>(documents_.size()))
        return;
    std::swap(documents_[static_cast<std::size_t>(from)], documents_[static_cast<std::size_t>(to)]);
    fillList(to);
}

void SortForm::cmdUp_Click() {
    move(-1);
}

void SortForm::cmdDown_Click() {
    move(+1);
}

bool SortForm::orderChanged() const {
    for (std::size_t i = 0; i < documents_.size(); ++i)
        if (documents_[i].number != static_cast<int>(i) + 1)
            return true;
    return false;
}

void SortForm::cmdOK_Click() {
    std::string step = "Reihenfolge uebernehmen";
    trapErrors(errors(), "frmSort.cmdOK_Click", step, [&] {
        if (!orderChanged())
            return;
        std::vector<int> numbers;
        for (const auto& document : documents_)
            numbers.push_back(document.number);
        if (!applyQueueOrder(services().os.files(), context_.state.PsDirUser, userName(), numbers))
            raise(err::PathFileAccessError, "the queue files could not all be renamed");
    });
    Unload();
}

void SortForm::Form_KeyDown(int& keyCode, int) {
    constexpr int Escape = 27;
    if (keyCode != Escape)
        return;
    keyCode = 0;
    cmdCancel_Click();
}

void SortForm::cmdCancel_Click() {
    Unload();
}

void SortForm::cmdHelp_Click() {
    services().messages.msgBox(platform::withLocalProgramNames(captionsFor(context_.texts).helpText), mb::Information,
                               caption);
}

} // namespace pl::dialog
