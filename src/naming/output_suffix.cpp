#include "naming/output_suffix.h"

#include "base/text.h"
#include "platform/environment_expand.h"
#include "platform/paths.h"
#include "platform/suite_settings.h"

#include <array>
#include <filesystem>
#include <fstream>

namespace pl::naming {

namespace {

struct DeviceFormat {
    std::string_view key; // the first three letters of the Ghostscript device
    std::string_view suffix;
    std::string_view pagePattern;
};

// Devices that write one file per page get a page number in front of the extension, which
// Ghostscript fills in. Searched top to bottom; the repeated rows are never reached and are kept
// so that the table reads as it always has.
constexpr std::string_view perPage = " - %02d";
constexpr std::array<DeviceFormat, 18> deviceFormats{{
    {"png", ".png", perPage},
    {"jpe", ".jpg", perPage},
    {"tif", ".tif", ""},
    {"psw", ".ps", ""},
    {"eps", ".eps", ""},
    {"pxl", ".pxl", ""},
    {"pbm", ".pbm", perPage},
    {"pgm", ".pgm", perPage},
    {"pgm", ".pgm", perPage},
    {"pgn", ".pgnm", perPage},
    {"pgn", ".pgnm", perPage},
    {"pnm", ".pnm", perPage},
    {"ppm", ".ppm", perPage},
    {"pkm", ".pkm", perPage},
    {"pks", ".pksm", perPage},
    {"bmp", ".bmp", perPage},
    {"pcx", ".pcx", perPage},
    {"psd", ".psd", perPage},
}};

struct OutputFormat {
    std::string suffix = ".pdf";
    std::string pagePattern;
};

OutputFormat formatOfDevice(std::string_view device) {
    const std::string lower = text::toLower(device);
    const std::u32string chars = text::decode(lower);
    const std::string key = text::encode(std::u32string_view(chars).substr(0, 3));
    for (const DeviceFormat& row : deviceFormats)
        if (row.key == key)
            return {std::string(row.suffix), std::string(row.pagePattern)};
    if (lower == "faxg3" || lower == "faxg32d")
        return {".fg3", ""};
    if (lower == "faxg4")
        return {".fg4", ""};
    return {};
}

// The first line of the file, ended by CR, LF or CR LF; raises a file error when it cannot be read.
std::string firstLine(const std::string& path) {
    std::ifstream in(platform::fsPath(path), std::ios::binary);
    if (!in)
        raise(err::PathFileAccessError);
    std::string line;
    std::getline(in, line, '\n');
    if (in.bad())
        raise(err::DeviceIoError);
    const std::size_t cr = line.find('\r');
    if (cr != std::string::npos)
        line.erase(cr);
    return line;
}

// The output format that the profile's switches select: only its first line counts.
OutputFormat formatOfProfile(const std::string& path) {
    const std::string line = firstLine(path);
    constexpr std::string_view deviceSwitch = "-sdevice=";
    const std::size_t at = text::ifind(line, deviceSwitch);
    if (at == std::string::npos)
        return {};
    std::string_view device = std::string_view(line).substr(at + deviceSwitch.size());
    device = device.substr(0, device.find(' '));
    return formatOfDevice(device);
}

} // namespace

std::string profileFilePath(std::string_view profileName, Services& services) {
    platform::FileSystem& files = services.os.files();
    const std::string fileName = std::string(profileName) + ".plp";

    std::string suiteFolder = services.registry.GetRegValue(platform::SuiteMachineKey, "pldir");
    platform::ReplaceEnviron(suiteFolder, services.os.environment());

    // The user's own profiles win over the suite's.
    const std::string userProfile = services.os.environment().get("userprofile");
    const std::string own =
        files.resolveCase(userProfile + platform::PathSep + "Paperlark" + platform::PathSep + fileName);
    if (files.exists(own))
        return own;
    return files.resolveCase(suiteFolder + fileName);
}

void LoadSuffix(std::string_view profileName, NamingState& state, Services& services) {
    try {
        const std::string path = profileFilePath(profileName, services);
        const OutputFormat format = services.os.files().exists(path) ? formatOfProfile(path) : OutputFormat{};
        state.OutputSuffix = format.suffix;
        state.PageNumberPattern = format.pagePattern;
    } catch (...) {
        services.errors.report("plAssist1.LoadSuffix", "", currentError(), profileName);
    }
}

} // namespace pl::naming
