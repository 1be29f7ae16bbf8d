#include "naming/title_cleanup.h"

#include "base/text.h"

#include <array>
#include <utility>

namespace pl::naming {

namespace {

// What the Office programs and the Windows editors put in front of or behind the document's name.
constexpr std::array<std::string_view, 9> applicationNames{
    "Microsoft Word - ",
    "Microsoft Excel - ",
    "Microsoft Powerpoint - ",
    "Microsoft Project - ",
    "Microsoft Outlook - ",
    "Microsoft Access - ",
    "Microsoft Publisher - ",
    "Editor",
    "Wordpad",
};

// Document extensions. They are removed wherever they occur, not only at the end, so that
// "Report.doc - Compatibility Mode" loses its ".doc" too; a word that happens to contain one
// ("my.document") loses it as well, which users have long been used to. Longer extensions come
// before their prefixes (".docx" before ".doc").
constexpr std::array<std::string_view, 48> documentExtensions{
    ".rtf", ".txt", ".log", ".docx", ".xlsx", ".pptx", ".xlsb", ".xlsm", ".doc", ".dot",  ".xls", ".ppt",
    ".pps", ".pub", ".msg", ".jpg",  ".pdf",  ".bmp",  ".gif",  ".tiff", ".tif", ".html", ".htm", ".asp",
    ".pl",  ".cgi", ".xml", ".vsd",  ".sxw",  ".stw",  ".sdw",  ".sxc",  ".sdc", ".wk1",  ".wks", ".sxi",
    ".sxd", ".dxf", ".sxg", ".sxm",  ".smf",  ".cdr",  ".odt",  ".ott",  ".ods", ".odp",  ".odg", ".odm",
};

// Characters that a file name cannot hold, and what stands in for them. The double quote is left
// alone; the name box's own validation deals with it.
constexpr std::array<std::pair<std::string_view, std::string_view>, 8> forbiddenCharacters{{
    {":", " "},
    {"\\", "-"},
    {"/", "-"},
    {"*", "-"},
    {"?", "-"},
    {"|", "-"},
    {">", "]"},
    {"<", "["},
}};

// Titles are cut to their last 171 characters (not 170: the cut starts at position length - 170,
// counted from one), which keeps the tail where the document's own name usually stands.
void keepTail(std::string& title) {
    std::u32string chars = text::decode(title);
    if (chars.size() > 170)
        chars.erase(0, chars.size() - 171);
    title = text::encode(chars);
}

void removeLeading(std::string& title, char c) {
    std::size_t n = 0;
    while (n < title.size() && title[n] == c)
        ++n;
    title.erase(0, n);
}

} // namespace

std::string RemoveApplicationNames(std::string_view title) {
    std::string result(title);
    for (std::string_view name : applicationNames)
        result = text::ireplaceAll(result, name, "");
    return result;
}

void CutAtNul(std::string& title) {
    const std::size_t nul = title.find('\0');
    if (nul != std::string::npos)
        title.erase(nul);
}

void ParsePdfFileName(std::string& title, ErrorSink& errors) {
    try {
        keepTail(title);
        title = DecodeHexString(title);
        title = URLDecode(title, errors);
        title = PsspecialChar(title, errors);
        CutAtNul(title); // a decoded "\000" or <0000> ends the title as a raw NUL does
        title = RemoveApplicationNames(title);
        for (std::string_view extension : documentExtensions)
            title = text::ireplaceAll(title, extension, "");
        for (const auto& [from, to] : forbiddenCharacters)
            title = text::replaceAll(title, from, to);
        title = text::ireplaceAll(title, ".ps", "");
        // Each kind once, in this order: a blank behind a removed line break stays.
        removeLeading(title, ' ');
        removeLeading(title, '\r');
        removeLeading(title, '\n');
    } catch (...) {
        CutAtNul(title);
        errors.report("ParsePDFName.ParsePdfFileName", "", currentError(), title);
    }
}

} // namespace pl::naming
