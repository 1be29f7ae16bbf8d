#include "config/config_texts.h"

#include "base/text.h"
#include "texts/texts.h"

#include <iterator>

namespace pl::config {

namespace {

struct Pair {
    std::string_view german;
    std::string_view english;
};

constexpr Pair Table[] = {
    {"Paperlark Konfiguration", "Paperlark Configuration"},
    {"Sprache", "Language"},
    {"Voreinstellungen", "Defaults"},
    {"Profile", "Profiles"},
    {"Richtlinien", "Policy"},
    {"Sprache des Assistenten:", "Language of the assistant:"},
    {"Wie der Desktop (Gebietsschema)", "As the desktop (locale)"},
    {"Deutsch", "German"},
    {"Englisch", "English"},
    {"Sprachdatei $1$", "Language file $1$"},
    {"Standardprofil:", "Default profile:"},
    {"(nicht gesetzt)", "(not set)"},
    {"PDF danach öffnen", "Open the PDF afterwards"},
    {"Aktion ohne Nachfrage:", "Action without asking:"},
    {"keine (Dialog zeigen)", "none (show the dialog)"},
    {"Per E-Mail senden", "Send by mail"},
    {"Ablegen unter...", "Save as..."},
    {"Auf den Desktop", "Send to desktop"},
    {"MultiDoc", "MultiDoc"},
    {"In Ordner speichern", "Save into folder"},
    {"In Datei speichern", "Save to file"},
    {"Beschriftung des Desktop-Knopfs:", "Caption of the desktop button:"},
    {"Eigener Spool-Ordner:", "Own spool folder:"},
    {"Protokoll plAssist.log auf dem Desktop schreiben", "Write the log plAssist.log on the desktop"},
    {"Administrator: $1$", "Administrator: $1$"},
    {"$1$ (Paperlark)", "$1$ (Paperlark)"},
    {"$1$", "$1$"},
    {"&Neu...", "&New..."},
    {"&Kopieren...", "&Copy..."},
    {"&Umbenennen...", "&Rename..."},
    {"&Löschen", "&Delete"},
    {"Ausgabeformat:", "Output format:"},
    {"PDF-Qualität:", "PDF quality:"},
    {"Ghostscript-Standard", "Ghostscript's default"},
    {"Hohe Qualität (Druckvorstufe)", "High quality (prepress)"},
    {"Drucken", "Printing"},
    {"Bildschirm (E-Book)", "Screen (e-book)"},
    {"Kleinste Datei", "Smallest file"},
    {"PDF/A (Archiv)", "PDF/A (archive)"},
    {"Auflösung (dpi, 0 = Standard):", "Resolution (dpi, 0 = default):"},
    {"Weitere Ghostscript-Schalter:", "Further Ghostscript switches:"},
    {"Kennwort zum Öffnen:", "Password to open:"},
    {"Kennwort zum Ändern:", "Password to change:"},
    {"Automatische Aktion:", "Automatic action:"},
    {"Ordner oder Datei:", "Folder or file:"},
    {"Profile von Paperlark können nur kopiert werden.", "Paperlark's own profiles can only be copied."},
    {"Diese Einstellungen legen fest, welche Knöpfe der Druckdialog zeigt.",
     "These settings decide which buttons the print dialog shows."},
    {"Der Administrator hat die Richtlinie gesperrt: Ihre eigenen Werte gelten nicht.",
     "The administrator has locked the policy: your own values do not count."},
    {"Funktion", "Feature"},
    {"Administrator", "Administrator"},
    {"Eigene Wahl", "Your choice"},
    {"Ergebnis", "Result"},
    {"ausblenden", "hide"},
    {"anzeigen", "show"},
    {"sichtbar", "shown"},
    {"ausgeblendet", "hidden"},
    // The features of the job dialog: named by the dialog's own texts (DialogText below).
    {},
    {},
    {},
    {},
    {},
    {},
    {},
    {},
    {},
    {"Name des Profils:", "Name of the profile:"},
    {"\"$1$\" kann kein Profilname sein: er darf nicht leer sein und keines der Zeichen \\ / : * ? \" < > | "
     "enthalten.",
     "\"$1$\" cannot be a profile name: it must not be empty nor hold any of the characters \\ / : * ? \" < > |."},
    {"Ein eigenes Profil \"$1$\" gibt es schon.", "You already have a profile \"$1$\"."},
    {"Das Profil \"$1$\" löschen?", "Delete the profile \"$1$\"?"},
    {"Diese Schalter bestimmt Paperlark selbst und sie können nicht in einem Profil stehen: $1$",
     "Paperlark decides these switches itself and they cannot be part of a profile: $1$"},
    {"Das Ausgabeformat wird oben gewählt, nicht mit $1$.", "The output format is chosen above, not with $1$."},
    {"Kennwörter gehören in die Kennwort-Felder, nicht zu den Schaltern.",
     "Passwords belong in the password fields, not among the switches."},
    {"Dieses Kennwort kann nicht verwendet werden (Zeilenumbruch, oder ein \\ am Ende zusammen mit Leerzeichen oder "
     "\").",
     "This password cannot be used (a line break, or a \\ at its end together with blanks or \")."},
    {"Für diese automatische Aktion fehlt der Ordner oder die Datei.",
     "This automatic action needs its folder or file."},
    {"Die Auflösung $1$ liegt nicht zwischen 10 und 2400 dpi.", "The resolution $1$ is not between 10 and 2400 dpi."},
    {"Der Spool-Ordner muss ein vollständiger Pfad sein: $1$", "The spool folder must be a full path: $1$"},
    {"Konnte nicht gespeichert werden: $1$", "Could not be saved: $1$"},
    {"Kopie von $1$", "Copy of $1$"},
    {"OK", "OK"},
    {"Abbrechen", "Cancel"},
    {"Ü&bernehmen", "&Apply"},
};
// One row for every text, in the order of Txt.
static_assert(std::size(Table) == static_cast<std::size_t>(Txt::Count));

// The policy page names each feature as the job dialog labels it, so that a person finds it there.
struct DialogText {
    Txt id;
    int number; // the assistant's text
};
constexpr DialogText DialogTexts[] = {
    {Txt::FeatureEmail, 7},   {Txt::FeatureSaveAs, 8},    {Txt::FeatureProfile, 4},
    {Txt::FeatureDesktop, 9}, {Txt::FeatureMultiDoc, 10}, {Txt::FeatureFileName, 5},
    {Txt::FeatureOpenPdf, 6}, {Txt::FeatureEncrypt, 18},  {Txt::FeatureConfig, 19},
};

} // namespace

std::string ConfigTexts::operator()(Txt id, std::string_view detail) const {
    for (const DialogText& dialogText : DialogTexts) {
        if (dialogText.id != id)
            continue;
        // Without the "&" that marks a button's access key.
        std::string label = texts::Texts().GetText(german_ ? texts::German : texts::English, dialogText.number);
        std::erase(label, '&');
        return label;
    }
    const Pair& pair = Table[static_cast<std::size_t>(id)];
    return text::replaceAll(german_ ? pair.german : pair.english, "$1$", detail);
}

} // namespace pl::config
