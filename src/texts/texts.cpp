#include "texts/texts.h"

#include "texts/language_file.h"

#include <filesystem>
#include <fstream>
#include <iterator>

namespace pl::texts {

namespace {

// The file's bytes; a file that cannot be opened is "File not found" (53), as for the classic Open.
std::string readAllBytes(std::string_view utf8Path) {
    const std::u8string u8(utf8Path.begin(), utf8Path.end());
    std::ifstream in(std::filesystem::path(u8), std::ios::binary);
    if (!in)
        raise(err::FileNotFound);
    std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    if (in.bad())
        raise(err::DeviceIoError);
    return bytes;
}

bool inTable(int slot, int number) {
    return slot >= 0 && slot < Slots && number >= 0 && number < Numbers;
}

} // namespace

Texts::Texts() {
    TexteLaden();
}

bool Texts::DateiLaden(std::string_view filePath, MessageBoxes& messages, ErrorSink& errors) {
    std::string step = "read";
    bool taken = false;
    trapErrors(errors, "plaTexte.DateiLaden", step, [&] {
        const std::string text = decodeLanguageFile(readAllBytes(filePath));

        step = "section";
        std::optional<std::string> section = assistantSection(text);
        if (!section) {
            messages.msgBox("Language File   " + std::string(filePath) + "   defect: No [plAssist.exe] section found!");
            return;
        }
        languageFile_ = std::move(*section);

        // Numbers the file does not hold keep what the slot had.
        step = "copy";
        for (int number = 0; number < Numbers; ++number)
            table_.at(static_cast<std::size_t>(language_)).at(number) = GetText(language_, number);
        taken = true;
    });
    return taken;
}

std::string Texts::GetText(int slot, int number) const {
    if (!inTable(slot, number))
        raise(err::SubscriptOutOfRange);
    if (std::optional<std::string> fromFile = findText(languageFile_, number); fromFile && !fromFile->empty())
        return std::move(*fromFile);
    return table_[static_cast<std::size_t>(slot)][static_cast<std::size_t>(number)];
}

std::string Texts::GetText(int slot, int number, ErrorSink& errors) const {
    std::string result;
    trapErrors(errors, "plaTexte.GetText", "", [&] { result = GetText(slot, number); });
    return result;
}

} // namespace pl::texts
