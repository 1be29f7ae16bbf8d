#pragma once
// Which language the assistant speaks: the stored choice ("language", user key then machine key)
// or, with none stored, the user's locale.

#include "platform/services.h"
#include "texts/texts.h"

#include <string_view>

namespace pl::texts {

// Picks a language code from the locale; for languages served by a file, records the file through
// UseLanguageFile.
int LanguageFromLocale(Services& services);
// 3 (and "LanFile"/"language" written) when `fileName` exists in the suite folder, else 2.
int UseLanguageFile(std::string_view fileName, Services& services);

// The language code of the stored "language" value ("1"/"de", "2"/"en", "3"/"ext"), user key
// first, then machine key; 0 when none is stored.
int SetSpr(Services& services);
// Selects the language (SetSpr, else LanguageFromLocale) and loads its texts into `texts`, reading
// the language file for code 3. Called once at start.
void SetxSpr(Texts& texts, Services& services);

} // namespace pl::texts
