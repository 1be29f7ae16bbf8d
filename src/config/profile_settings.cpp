#include "config/profile_settings.h"

#include "base/text.h"
#include "converter/ghostscript_command.h"
#include "platform/command_line.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

namespace pl::config {

namespace {

constexpr std::string_view DeviceSwitch = "-sDEVICE=";
constexpr std::string_view PresetSwitch = "-dPDFSETTINGS=/";
constexpr std::string_view PdfaSwitch = "-dPDFA";
// PDF/A needs its colours made device-independent; without these two Ghostscript writes a file
// that claims PDF/A and is none.
constexpr std::string_view PdfaPolicySwitch = "-dPDFACompatibilityPolicy=1";
constexpr std::string_view PdfaColourSwitch = "-sColorConversionStrategy=UseDeviceIndependentColor";

constexpr std::array<std::string_view, QualityCount> Presets{"", "prepress", "printer", "ebook", "screen"};
constexpr std::array<std::string_view, AutoActionCount> ActionWords{"",         "email",   "saveas",  "desktop",
                                                                    "multidoc", "savedir", "savefile"};

struct KeyLine {
    std::string_view key;
    std::string ProfileSettings::*field;
};

std::optional<int> positiveNumber(std::string_view digits) {
    int value = 0;
    const auto [end, ec] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (ec != std::errc() || end != digits.data() + digits.size() || value <= 0)
        return std::nullopt;
    return value;
}

// The words of a switch line, split by the Windows command-line rules as the converter splits it.
std::vector<std::string> switchWords(std::string_view line) {
    std::vector<std::string> words = platform::splitCommandLine("gs " + std::string(line));
    if (!words.empty())
        words.erase(words.begin());
    return words;
}

void appendWord(std::string& line, std::string_view word) {
    if (!line.empty())
        line += ' ';
    line += platform::quoteArgument(word);
}

// Takes the words the editor shows as settings of their own out of the first line; the rest stays
// as further switches.
void readSwitches(std::string_view line, ProfileSettings& settings) {
    const std::vector<std::string> words = switchWords(line);
    const bool pdfa = std::any_of(words.begin(), words.end(), [](const std::string& w) {
        return w == PdfaSwitch || w.starts_with(std::string(PdfaSwitch) + "=");
    });
    for (const std::string& word : words) {
        if (text::istartsWith(word, DeviceSwitch)) {
            settings.device = word.substr(DeviceSwitch.size());
            continue;
        }
        if (text::istartsWith(word, PresetSwitch)) {
            const std::string preset = text::toLower(word.substr(PresetSwitch.size()));
            const auto at = std::find(Presets.begin() + 1, Presets.end(), preset);
            if (at != Presets.end()) {
                settings.quality = static_cast<Quality>(at - Presets.begin());
                continue;
            }
        }
        if (word == PdfaSwitch) {
            settings.pdfaLevel = 1;
            continue;
        }
        if (word.starts_with(std::string(PdfaSwitch) + "=")) {
            if (const auto level = positiveNumber(std::string_view(word).substr(PdfaSwitch.size() + 1))) {
                settings.pdfaLevel = *level;
                continue;
            }
        }
        if (pdfa && (word == PdfaPolicySwitch || word == PdfaColourSwitch))
            continue;
        if (word.starts_with("-r")) {
            if (const auto dpi = positiveNumber(std::string_view(word).substr(2))) {
                settings.resolution = *dpi;
                continue;
            }
        }
        appendWord(settings.extraSwitches, word);
    }
}

// The value of `key` when `line` is that key's line, indented or not, as the converter reads it.
std::optional<std::string> keyValue(std::string_view line, std::string_view key) {
    while (!line.empty() && (line.front() == ' ' || line.front() == '\t'))
        line.remove_prefix(1);
    if (!text::istartsWith(line, key))
        return std::nullopt;
    return std::string(line.substr(key.size()));
}

} // namespace

const std::vector<OutputFormat>& outputFormats() {
    static const std::vector<OutputFormat> formats{
        {"pdfwrite", "PDF", false},
        {"png16m", "PNG (png16m)", true},
        {"pnggray", "PNG (pnggray)", true},
        {"jpeg", "JPEG (jpeg)", true},
        {"jpeggray", "JPEG (jpeggray)", true},
        {"tiff24nc", "TIFF (tiff24nc)", true},
        {"tiffg4", "TIFF (tiffg4)", true},
        {"bmp16m", "BMP (bmp16m)", true},
        {"pcx24b", "PCX (pcx24b)", true},
        {"psdrgb", "PSD (psdrgb)", true},
        {"pnmraw", "PNM (pnmraw)", true},
        {"ppmraw", "PPM (ppmraw)", true},
        {"pgmraw", "PGM (pgmraw)", true},
        {"pbmraw", "PBM (pbmraw)", true},
        {"eps2write", "EPS (eps2write)", false},
        {"pxlcolor", "PCL XL (pxlcolor)", true},
        {"faxg3", "Fax G3 (faxg3)", true},
        {"faxg4", "Fax G4 (faxg4)", true},
    };
    return formats;
}

bool isPdf(std::string_view device) {
    return converter::isPdfDevice(device);
}

bool isRaster(std::string_view device) {
    for (const OutputFormat& format : outputFormats())
        if (text::iequals(format.device, device))
            return format.raster;
    return false;
}

ProfileSettings parseProfileText(std::string_view fileBytes) {
    std::string all = text::fromFileBytes(fileBytes);
    if (all.starts_with("\xEF\xBB\xBF"))
        all.erase(0, 3);
    ProfileSettings settings;
    settings.device.clear();
    const KeyLine keys[] = {{"userpassword=", &ProfileSettings::userPassword},
                            {"ownerpassword=", &ProfileSettings::ownerPassword},
                            {"plassist2=", &ProfileSettings::actionTarget}};
    // Lines end as the assistant's readers see them: CR LF, LF or a CR alone.
    const std::string lines = text::crlfLines(all);
    bool first = true;
    for (std::size_t from = 0, end; from < lines.size(); from = end + 2) {
        end = lines.find("\r\n", from);
        const std::string_view line = std::string_view(lines).substr(from, end - from);
        if (first) {
            readSwitches(line, settings);
            first = false;
            continue;
        }
        bool known = false;
        for (const KeyLine& key : keys) {
            if (auto value = keyValue(line, key.key)) {
                settings.*key.field = std::move(*value);
                known = true;
            }
        }
        if (auto word = keyValue(line, "plassist=")) {
            const auto at = std::find(ActionWords.begin() + 1, ActionWords.end(), text::toLower(*word));
            if (at != ActionWords.end()) {
                settings.action = static_cast<AutoAction>(at - ActionWords.begin());
                known = true;
            }
        }
        if (!known)
            settings.otherLines.emplace_back(line);
    }
    if (settings.device.empty())
        settings.device = "pdfwrite";
    return settings;
}

std::string switchLine(const ProfileSettings& settings) {
    std::string line;
    appendWord(line, std::string(DeviceSwitch) + settings.device);
    if (isPdf(settings.device)) {
        if (settings.quality != Quality::Default)
            appendWord(line, std::string(PresetSwitch) + std::string(Presets[static_cast<int>(settings.quality)]));
        if (settings.pdfaLevel > 0) {
            appendWord(line, std::string(PdfaSwitch) + "=" + text::number(settings.pdfaLevel));
            appendWord(line, PdfaPolicySwitch);
            appendWord(line, PdfaColourSwitch);
        }
    } else if (isRaster(settings.device) && settings.resolution > 0) {
        appendWord(line, "-r" + text::number(settings.resolution));
    }
    const std::string_view extra = text::trimBlanks(settings.extraSwitches);
    if (!extra.empty())
        line += " " + std::string(extra);
    return line;
}

std::string profileText(const ProfileSettings& settings) {
    std::string file = switchLine(settings) + "\r\n";
    const auto line = [&file](std::string_view key, std::string_view value) {
        if (!value.empty())
            file += std::string(key) + std::string(value) + "\r\n";
    };
    if (isPdf(settings.device)) {
        line("userpassword=", settings.userPassword);
        line("ownerpassword=", settings.ownerPassword);
    }
    line("plassist=", ActionWords[static_cast<int>(settings.action)]);
    line("plassist2=", settings.actionTarget);
    for (const std::string& other : settings.otherLines)
        file += other + "\r\n";
    return file;
}

Refusal checkProfile(const ProfileSettings& settings) {
    const std::vector<std::string> words = switchWords(settings.extraSwitches);
    for (const std::string& word : words) {
        if (text::istartsWith(word, DeviceSwitch))
            return {Txt::DeviceInSwitches, word};
        if (text::istartsWith(word, "-sUserPassword=") || text::istartsWith(word, "-sOwnerPassword="))
            return {Txt::PasswordInSwitches, {}};
    }
    // What the converter would leave out (its own output file, the sandbox switches, file names,
    // PostScript code) cannot be part of a profile.
    const converter::ProfileSwitches cleaned = converter::cleanProfileSwitches(words);
    if (!cleaned.dropped.empty()) {
        std::string dropped;
        for (const std::string& word : cleaned.dropped)
            appendWord(dropped, word);
        return {Txt::SwitchRefused, dropped};
    }
    if (isRaster(settings.device) && settings.resolution != 0 &&
        (settings.resolution < 10 || settings.resolution > 2400))
        return {Txt::ResolutionRange, text::number(settings.resolution)};
    // Passwords protect PDF output only; for other formats they are not written at all.
    const bool passwords = !settings.userPassword.empty() || !settings.ownerPassword.empty();
    if (passwords && isPdf(settings.device)) {
        const converter::Passwords pair{settings.userPassword, settings.ownerPassword.empty() ? settings.userPassword
                                                                                              : settings.ownerPassword};
        if (!converter::encryptionArgumentFile(pair))
            return {Txt::PasswordUnusable, {}};
    }
    const bool needsTarget = settings.action == AutoAction::SaveDir || settings.action == AutoAction::SaveFile;
    if (needsTarget && text::trimBlanks(settings.actionTarget).empty())
        return {Txt::TargetMissing, {}};
    if (settings.actionTarget.find_first_of("\r\n") != std::string::npos ||
        settings.extraSwitches.find_first_of("\r\n") != std::string::npos)
        return {Txt::SwitchRefused, {}};
    return {};
}

bool validProfileName(std::string_view name) {
    if (text::trimBlanks(name).empty() || name != text::trimBlanks(name) || name == "." || name == "..")
        return false;
    for (const char c : name) {
        if (static_cast<unsigned char>(c) < 0x20 || std::string_view("\\/:*?\"<>|").find(c) != std::string_view::npos)
            return false;
    }
    return true;
}

} // namespace pl::config
