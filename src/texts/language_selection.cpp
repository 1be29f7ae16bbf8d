#include "texts/language_selection.h"

#include "base/text.h"
#include "platform/environment_expand.h"
#include "platform/suite_settings.h"

#include <charconv>

namespace pl::texts {

namespace {

constexpr std::string_view UserKey = platform::SuiteUserKey;
constexpr std::string_view MachineKey = platform::SuiteMachineKey;
constexpr std::string_view InternationalKey = "HKCU\\Control Panel\\International";

std::string valueOrEmpty(const Services& services, std::string_view key, std::string_view name) {
    return platform::regText(services.registry, key, name);
}

// The installation folder, where the language files lie. The value ends in the separator and the
// file name is appended directly.
std::string suiteFolder(Services& services) {
    std::string folder = valueOrEmpty(services, MachineKey, "plDir");
    return platform::ReplaceEnviron(folder, services.os.environment());
}

std::string_view lastChars(std::string_view s, std::size_t n) {
    return s.size() <= n ? s : s.substr(s.size() - n);
}

// The leading decimal digits as a number, 0 when there are none (as the classic Val reads "C04").
long leadingNumber(std::string_view s) {
    long value = 0;
    std::from_chars(s.data(), s.data() + s.size(), value);
    return value;
}

struct LocaleRow {
    std::string_view key; // last two hexadecimal digits of the locale, upper case as Windows writes them
    int code;             // the language code, or 0 when `file` names the language file
    std::string_view file;
};

// First match wins. English ("09") has no row of its own: it is the fallback.
constexpr LocaleRow LocaleTable[] = {
    {"07", German, {}},          {"10", 0, "Italian.lan"},
    {"13", 0, "Nederlands.lan"}, {"0C", 0, "French.lan"},
    {"0A", 0, "Español.lan"},    {"16", 0, {}}, // Portuguese: Brazil or Portugal, see below
    {"0B", English, {}},         {"14", English, {}},
    {"15", 0, "Polish.lan"},     {"19", 0, "Russian.lan"},
    {"1D", English, {}},         {"04", 0, {}}, // Chinese: simplified or traditional, see below
    {"05", 0, "Cesky.lan"},      {"0E", 0, "Hungarian.lan"},
};

std::string_view fileOfRow(const LocaleRow& row, std::string_view locale) {
    if (row.key == "16")
        return lastChars(locale, 3) == "416" ? "Português(Brasil).lan" : "Português(Portugal).lan";
    if (row.key == "04")
        return leadingNumber(lastChars(locale, 3)) == 804 ? "Chinese simplified.lan" : "Chinese traditional.lan";
    return row.file;
}

} // namespace

int StoredLanguageCode(std::string_view stored) {
    const std::string value = text::toLower(text::trimBlanks(stored));
    if (value == "1" || value == "de")
        return German;
    if (value == "2" || value == "en")
        return English;
    if (value == "3" || value == "ext")
        return External;
    return 0;
}

int LanguageFromLocale(Services& services) {
    int code = English;
    trapErrors(services.errors, "plaTexte.LanguageFromLocale", "", [&] {
        const std::string locale(text::trimBlanks(valueOrEmpty(services, InternationalKey, "locale")));
        // Only the primary language counts: 00000807 (Swiss German) is German as 00000407 is.
        const std::string_view key = lastChars(locale, 2);
        for (const LocaleRow& row : LocaleTable) {
            if (row.key != key)
                continue;
            code = row.code != 0 ? row.code : UseLanguageFile(fileOfRow(row, locale), services);
            return;
        }
    });
    return code;
}

int UseLanguageFile(std::string_view fileName, Services& services) {
    if (!services.os.files().exists(suiteFolder(services) + std::string(fileName)))
        return English;
    services.registry.SetRegValue(UserKey, "LanFile", fileName);
    services.registry.SetRegValue(UserKey, "language", "3");
    return External;
}

int SetSpr(Services& services) {
    // The user's own choice first; an administrator's machine-wide value serves every user who
    // has made none.
    for (const std::string_view key : {UserKey, MachineKey}) {
        if (const int code = StoredLanguageCode(valueOrEmpty(services, key, "language")); code != 0)
            return code;
    }
    return 0;
}

void SetxSpr(Texts& texts, Services& services) {
    texts.TexteLaden();
    int code = SetSpr(services);
    if (code == 0)
        code = LanguageFromLocale(services);
    texts.setLanguage(code);
    if (code != External)
        return;

    std::string lanFile = valueOrEmpty(services, UserKey, "LanFile");
    if (lanFile.empty())
        lanFile = valueOrEmpty(services, MachineKey, "LanFile");
    platform::FileSystem& files = services.os.files();
    const std::string path = files.resolveCase(suiteFolder(services) + lanFile);

    // Without a readable section the language-file slot would hold nothing but the title, so the
    // assistant speaks English instead.
    if (lanFile.empty() || !files.exists(path) || files.isFolder(path) ||
        !texts.DateiLaden(path, services.messages, services.errors))
        texts.setLanguage(English);
}

} // namespace pl::texts
