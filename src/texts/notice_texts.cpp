#include "texts/notice_texts.h"

#include "texts/texts.h"

namespace pl::texts {

namespace {

struct NoticeEntry {
    Notice id;
    std::string_view german;
    std::string_view english;
};

constexpr NoticeEntry Entries[] = {
    {Notice::Page, "Seite $1$", "Page $1$"},
    {Notice::Making, "$1$ wird erstellt ...", "Making $1$ ..."},
    {Notice::Cancel, "Abbrechen", "Cancel"},
    {Notice::OnDesktop, "$1$ liegt auf Ihrem Desktop", "$1$ is on your desktop"},
    {Notice::InFolder, "$1$ liegt im Ordner $2$", "$1$ is in the folder $2$"},
    {Notice::Open, "Öffnen", "Open"},
    {Notice::ShowFolder, "Ordner anzeigen", "Show folder"},
    {Notice::NotMade, "Das Dokument konnte nicht erstellt werden.", "The document could not be made."},
    {Notice::JobKept, "Der Druckauftrag wurde aufbewahrt:\n$1$", "The print job was kept:\n$1$"},
    {Notice::Cancelled, "Die Umwandlung wurde abgebrochen.", "The conversion was cancelled."},
    {Notice::NoMailProgram, "Es konnte kein E-Mail-Programm gestartet werden. Das PDF liegt hier:\n$1$",
     "No mail program could be started. The PDF is here:\n$1$"},
    {Notice::NoViewer, "Es konnte kein Programm zum Anzeigen gestartet werden. Die Datei liegt hier:\n$1$",
     "No program to view it could be started. The file is here:\n$1$"},
    {Notice::Close, "Schließen", "Close"},
    {Notice::PasswordsDiffer, "Die Kennwörter stimmen nicht überein.", "The passwords do not match."},
    {Notice::PasswordIntro, "PDF mit Kennwort schützen:\n$1$", "Lock PDF with Password:\n$1$"},
    {Notice::Password, "Kennwort:", "Password:"},
    {Notice::RepeatPassword, "Kennwort wiederholen:", "Repeat password:"},
};

void replaceAll(std::string& text, std::string_view marker, std::string_view value) {
    for (std::size_t at = text.find(marker); at != std::string::npos; at = text.find(marker, at + value.size()))
        text.replace(at, marker.size(), value);
}

} // namespace

std::string noticeText(int language, Notice id, std::string_view first, std::string_view second) {
    std::string text;
    for (const NoticeEntry& entry : Entries) {
        if (entry.id == id)
            text = language == German ? entry.german : entry.english;
    }
    replaceAll(text, "$1$", first);
    replaceAll(text, "$2$", second);
    return text;
}

} // namespace pl::texts
