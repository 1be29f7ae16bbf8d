#include "naming/name_numbering.h"

#include "base/text.h"
#include "naming/title_cleanup.h"

namespace pl::naming {

namespace {

constexpr std::string_view numberPlaceholder = ":nummer:";
constexpr int highestNumber = 1000;

// From the last "." to the end, or the empty text.
std::string extensionOf(std::string_view name) {
    const std::size_t dot = name.rfind('.');
    return dot == std::string_view::npos ? std::string() : std::string(name.substr(dot));
}

} // namespace

std::string CheckpdfName(std::string_view folder, std::string_view name, const NamingState& state,
                         const platform::FileSystem& files, ErrorSink& errors) {
    // How far the procedure got, for the error report.
    std::string progress = "1";
    try {
        // The extension is taken before the clean-up, which strips the common ones, and appended
        // again afterwards; one that the clean-up keeps therefore appears twice.
        std::string extension = extensionOf(name);
        progress = "2";
        std::string cleaned(name);
        ParsePdfFileName(cleaned, errors);
        progress = "3 ";
        if (extension.empty())
            extension = state.OutputSuffix;
        const std::string candidate = cleaned + extension;
        const std::string base(folder);
        if (!files.exists(base + candidate))
            return candidate;

        const std::string numbered =
            text::ireplaceAll(candidate, extension, " (" + std::string(numberPlaceholder) + ")" + extension);
        progress = "Alle Dateien 'Dateiname (?)" + extension + "' einlesen";
        for (int n = 1; n <= highestNumber; ++n) {
            std::string free = text::replaceAll(numbered, numberPlaceholder, text::number(n));
            if (!files.exists(base + free))
                return free;
        }
        // Every number is taken: the name goes out with empty parentheses, taken or not.
        return text::replaceAll(numbered, numberPlaceholder, "");
    } catch (...) {
        errors.report("ParsePDFName.CheckpdfName", progress, currentError(), name);
        return {};
    }
}

} // namespace pl::naming
