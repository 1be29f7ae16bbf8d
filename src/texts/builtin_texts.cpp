// The texts the assistant speaks without any language file: German in slot 1, English in slot 2.
#include "texts/texts.h"

namespace pl::texts {

namespace {

constexpr std::string_view VersionText = "4.12";

struct BuiltinText {
    int number;
    std::string_view german;
    std::string_view english;
};

// Text 1 (the program title) is built from the version; text 2 is empty in both languages.
constexpr BuiltinText Builtin[] = {
    {3, "Bitte wählen Sie:", "Please choose:"},
    {4, "PDF-Profil", "PDF Profile"},
    {5, "PDF-Dateiname", "PDF File Name"},
    {6, "PDF öffnen", "View new PDF File"},
    {7, "Per &E-Mail senden", "&Send by Mail"},
    {8, "&Ablegen", "Save &As..."},
    {9, "Auf &Desktop", "Send to &Desktop"},
    {10, "&MultiDoc", "Add to &next PDF"},
    {11, "Diesen PDF Druck abbrechen?", "Delete this PDF job?"},
    {12, "Paperlark.exe nicht gefunden", "Paperlark.exe not found"},
    {13, "Paperlark Dialog anzeigen", "Show Paperlark dialog"},
    {14, "Diese Datei wird an ein bestehendes Dokument angehängt", "This file will be added to a previous document"},
    {15, "Diese Datei wird an $1$ bestehende Dokumente angehängt", "This file will be added to $1$ previous documents"},
    {16, "Ein Dokument folgt auf dieses Dokument", "One more document is queued"},
    {17, "$1$ Dokumente folgen auf dieses Dokument", "$1$ more documents are queued"},
    {18, "PDF Verschlüsseln", "Lock PDF with Password"},
    {19, "Konfigurieren", "Edit Configuration"},
    {20, "&Sortieren", "&Change order"},
    {21,
     "Der Pfad enthält Unicode-Zeichen. Diese werden nicht unterstützt. Bitte wählen Sie ein Pfad OHNE "
     "Unicode-Zeichen aus.",
     "The Path contains Unicode letters. This is not supported. Please select a Path without Unicode letters."},
    {22, "Unzulässiger Pfad", "Illegal Path"},
};

} // namespace

void Texts::TexteLaden() {
    for (auto& slot : table_)
        slot.fill({});
    languageFile_.clear();

    // The title is the same in every language; a language file starts from it alone.
    const std::string title = "Paperlark " + std::string(VersionText);
    table_[German][1] = title;
    table_[English][1] = title;
    table_[External][1] = title;

    for (const BuiltinText& t : Builtin) {
        table_[German][t.number] = t.german;
        table_[English][t.number] = t.english;
    }
}

} // namespace pl::texts
