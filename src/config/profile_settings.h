#pragma once
// A conversion profile as a person thinks of it: an output format, a quality for PDF, PDF/A, a
// resolution for images, passwords and an automatic action. It is read from and written to the
// profile file that the converter and the assistant read: the first line is the Ghostscript
// switches, then "userpassword=", "ownerpassword=", "plassist=" and "plassist2=" lines. Lines the
// editor does not understand are kept as they were.

#include "config/config_texts.h"

#include <string>
#include <string_view>
#include <vector>

namespace pl::config {

// The output formats offered: Ghostscript devices whose files the assistant names correctly.
struct OutputFormat {
    std::string_view device;
    std::string_view label;
    bool raster; // a resolution applies
};
const std::vector<OutputFormat>& outputFormats();
bool isPdf(std::string_view device);
bool isRaster(std::string_view device);

// Ghostscript's PDF presets, in the order offered; Default writes no preset.
enum class Quality { Default, Prepress, Printer, Ebook, Screen };
inline constexpr int QualityCount = 5;

// What the assistant does without asking when a job names the profile.
enum class AutoAction { None, Email, SaveAs, Desktop, MultiDoc, SaveDir, SaveFile };
inline constexpr int AutoActionCount = 7;

struct ProfileSettings {
    std::string device = "pdfwrite";
    Quality quality = Quality::Default; // PDF only
    int pdfaLevel = 0;                  // PDF only; 0 = plain PDF
    int resolution = 0;                 // raster devices; 0 = Ghostscript's default
    std::string extraSwitches;          // further switches, as a person typed them
    std::string userPassword;           // needed to open the PDF
    std::string ownerPassword;          // needed to change it; the user password when empty
    AutoAction action = AutoAction::None;
    std::string actionTarget;            // the folder (SaveDir) or the file (SaveFile)
    std::vector<std::string> otherLines; // lines the editor does not understand, in their order

    bool operator==(const ProfileSettings&) const = default;
};

// Reads a profile file's text (CR LF or LF lines, 8-bit or UTF-8).
ProfileSettings parseProfileText(std::string_view fileBytes);
// The first line: the Ghostscript switches.
std::string switchLine(const ProfileSettings& settings);
// The whole file, CR LF lines.
std::string profileText(const ProfileSettings& settings);

// Why the settings cannot be written, as the text that says so
// (Txt::Count when they can), and the offending words for the message.
struct Refusal {
    Txt text = Txt::Count;
    std::string detail;
    explicit operator bool() const { return text != Txt::Count; }
};
Refusal checkProfile(const ProfileSettings& settings);

// A name a profile file can carry: not empty, no folder separators or characters a Windows file
// name may not hold.
bool validProfileName(std::string_view name);

} // namespace pl::config
