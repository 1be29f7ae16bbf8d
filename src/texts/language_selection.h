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

// The code a stored "language" value names: "1"/"de" German, "2"/"en" English, "3"/"ext" a language
// file, in any case and with blanks around; 0 for anything else.
int StoredLanguageCode(std::string_view stored);
// The language code of the stored "language" value: "1" or "de" German, "2" or "en" English, "3"
// or "ext" the language file named by "LanFile" (any case, blanks around ignored). The user key
// is asked first, then the machine key; a value that names none of these counts as not stored.
// 0 when neither key stores a language.
int SetSpr(Services& services);
// Selects the language and loads its texts into `texts`; called once at start. The built-in texts
// are loaded first; then the stored language (SetSpr) decides, and with none stored the locale
// (LanguageFromLocale). Only a language file is remembered in the registry, by UseLanguageFile:
// German and English follow the locale until someone stores a choice. For code 3 the file plDir +
// "LanFile" ("LanFile" from the user key, else the machine key; its name's case may differ) is
// read with DateiLaden; when it is missing or has no assistant section, the language is English.
void SetxSpr(Texts& texts, Services& services);

} // namespace pl::texts
