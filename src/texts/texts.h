#pragma once
// The assistant's user-interface texts: a table of built-in German and English texts, optionally
// overridden from a language file, looked up by number.

#include "base/errors.h"
#include "base/message_box.h"

#include <array>
#include <string>
#include <string_view>

namespace pl::texts {

inline constexpr int German = 1;
inline constexpr int English = 2;
inline constexpr int External = 3; // the language file named by "LanFile"

inline constexpr int Slots = 4;    // language slots 0..3
inline constexpr int Numbers = 23; // text numbers 0..22

class Texts {
public:
    Texts(); // the built-in texts are loaded

    // Fills the built-in texts and forgets a language file read before.
    void TexteLaden();
    // Reads a language file (full path) into the slot of the current language. A file without an
    // "[plAssist.exe]" section is announced through `messages` and leaves the built-in texts.
    // Errors go to `errors` ("plaTexte.DateiLaden"). True when the file's section was taken.
    bool DateiLaden(std::string_view filePath, MessageBoxes& messages, ErrorSink& errors);
    // The text `number` of language `slot`, from the loaded language file when it holds it, else
    // from the table. An index outside the table raises subscript out of range (9).
    std::string GetText(int slot, int number) const;
    // The same with its errors reported to `errors` ("plaTexte.GetText"); the empty text then.
    std::string GetText(int slot, int number, ErrorSink& errors) const;

    int language() const { return language_; }
    void setLanguage(int code) { language_ = code; }
    // The text `number` of the current language. Once an error sink is set, its errors are trapped
    // as GetText's are (the empty text then), as every procedure traps its own; before, they are
    // raised to the caller.
    std::string text(int number) const {
        return errors_ ? GetText(language_, number, *errors_) : GetText(language_, number);
    }
    void trapErrorsWith(ErrorSink& errors) { errors_ = &errors; }

private:
    std::array<std::array<std::string, Numbers>, Slots> table_{};
    std::string languageFile_; // the loaded file's "[plAssist.exe]" section, lines ending in "\r\n"
    int language_ = English;
    ErrorSink* errors_ = nullptr;
};

} // namespace pl::texts
