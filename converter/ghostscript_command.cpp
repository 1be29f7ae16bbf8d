#include "converter/ghostscript_command.h"

#include "base/text.h"

#include <charconv>

namespace pl::converter {

namespace {

constexpr std::string_view kDeviceSwitch = "-sDEVICE=";

bool isOutputSwitch(std::string_view word) {
    return word.starts_with("-sOutputFile=") || word.starts_with("-SOutputFile=") || word.starts_with("-o");
}

// Switches that would undo the sandbox or the unattended run that every conversion relies on.
bool isSafetySwitch(std::string_view word) {
    for (std::string_view name : {"-dNOSAFER", "-dDELAYSAFER", "-dSAFER", "-dBATCH", "-dNOPAUSE"}) {
        if (word == name || (word.starts_with(name) && word.size() > name.size() && word[name.size()] == '='))
            return true;
    }
    return false;
}

// Words that are not settings: file names, "@" argument files, PostScript code after "-c", and the
// switches that make Ghostscript read a file or take the following words as a program's arguments.
bool isPlainSwitch(std::string_view word) {
    if (word.size() < 2 || word.front() != '-')
        return false;
    for (std::string_view fileSwitch : {"-c", "-f", "-_", "--", "-+", "-@"}) {
        if (word.starts_with(fileSwitch))
            return false;
    }
    return true;
}

std::optional<std::string> switchValue(std::string_view word, std::string_view name) {
    if (word.starts_with(name))
        return std::string(word.substr(name.size()));
    return std::nullopt;
}

// One password in the argument file. Ghostscript's argument files group a word in double quotes
// that end before a blank or the line's end; inside, backslash-quote is a quote and any other
// backslash is itself. A backslash right before the closing quote would escape it, so a password
// ending in one is written without quotes, which works while it has no blank or quote in it.
std::optional<std::string> argumentFileWord(std::string_view name, std::string_view value) {
    if (value.find_first_of("\r\n") != std::string_view::npos)
        return std::nullopt;
    if (value.ends_with('\\')) {
        if (value.find_first_of(" \t\"") != std::string_view::npos)
            return std::nullopt;
        return std::string(name) + std::string(value);
    }
    std::string word = "\"" + std::string(name);
    for (char c : value) {
        if (c == '"')
            word += '\\';
        word += c;
    }
    word += '"';
    return word;
}

// Counts finished pages in global memory, which a job's save and restore do not undo, and prints
// them in the words Ghostscript uses for the pages of a PDF. A job that installs its own EndPage
// procedure just goes without a count.
constexpr std::string_view kPageCounter =
    "currentglobal true setglobal globaldict /PaperlarkPages 0 put setglobal "
    "<< /EndPage { exch pop dup 2 ne { globaldict /PaperlarkPages 2 copy get 1 add put "
    "(Page ) print globaldict /PaperlarkPages get =only (\n) print flush } if 2 ne } >> setpagedevice";

// The UTF-16 code units of UTF-8 text; a byte that is not part of valid UTF-8 stands for itself.
std::u16string utf16(std::string_view text) {
    std::u16string units;
    for (std::size_t i = 0; i < text.size();) {
        const auto byte = static_cast<unsigned char>(text[i]);
        const int length = byte < 0x80           ? 1
                           : (byte >> 5) == 0x6  ? 2
                           : (byte >> 4) == 0xE  ? 3
                           : (byte >> 3) == 0x1E ? 4
                                                 : 0;
        char32_t code = length == 1 ? byte : length == 2 ? byte & 0x1F : length == 3 ? byte & 0x0F : byte & 0x07;
        bool valid = length > 0 && i + static_cast<std::size_t>(length) <= text.size();
        for (int k = 1; valid && k < length; ++k) {
            const auto next = static_cast<unsigned char>(text[i + static_cast<std::size_t>(k)]);
            valid = (next & 0xC0) == 0x80;
            code = (code << 6) | (next & 0x3F);
        }
        if (!valid || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) {
            units += static_cast<char16_t>(byte);
            ++i;
            continue;
        }
        if (code >= 0x10000) {
            code -= 0x10000;
            units += static_cast<char16_t>(0xD800 + (code >> 10));
            units += static_cast<char16_t>(0xDC00 + (code & 0x3FF));
        } else {
            units += static_cast<char16_t>(code);
        }
        i += static_cast<std::size_t>(length);
    }
    return units;
}

} // namespace

std::string titlePdfmark(std::string_view title) {
    static const char digits[] = "0123456789ABCDEF";
    std::string hex = "FEFF";
    for (const char16_t unit : utf16(title)) {
        for (int shift = 12; shift >= 0; shift -= 4)
            hex += digits[(unit >> shift) & 0xF];
    }
    return "[ /Title <" + hex + "> /DOCINFO pdfmark";
}

ProfileSwitches cleanProfileSwitches(const std::vector<std::string>& words) {
    ProfileSwitches result;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (word.empty())
            continue;
        if (text::istartsWith(word, kDeviceSwitch)) {
            // The last device named wins, as it would on Ghostscript's own command line.
            result.device = word.substr(kDeviceSwitch.size());
            continue;
        }
        if (auto user = switchValue(word, "-sUserPassword=")) {
            result.userPassword = std::move(user);
            continue;
        }
        if (auto owner = switchValue(word, "-sOwnerPassword=")) {
            result.ownerPassword = std::move(owner);
            continue;
        }
        if (isOutputSwitch(word) || isSafetySwitch(word) || !isPlainSwitch(word)) {
            result.dropped.push_back(word);
            // "-o FILE" names the file in the next word.
            if (word == "-o" && i + 1 < words.size())
                result.dropped.push_back(words[++i]);
            continue;
        }
        result.switches.push_back(word);
    }
    if (result.device.empty())
        result.device = "pdfwrite";
    result.switches.insert(result.switches.begin(), std::string(kDeviceSwitch) + result.device);
    return result;
}

bool isPdfDevice(std::string_view device) {
    return text::iequals(device, "pdfwrite");
}

std::optional<std::string> encryptionArgumentFile(const Passwords& passwords) {
    if (passwords.owner.empty())
        return std::nullopt;
    auto owner = argumentFileWord("-sOwnerPassword=", passwords.owner);
    if (!owner)
        return std::nullopt;
    std::string content = *owner + " \n";
    if (!passwords.user.empty()) {
        auto user = argumentFileWord("-sUserPassword=", passwords.user);
        if (!user)
            return std::nullopt;
        content += *user + " \n";
    }
    // Revision 3 with a 128-bit key: the strongest that Ghostscript's PDF writer offers, and what
    // every PDF reader opens.
    content += "-dEncryptionR=3 \n-dKeyLength=128 \n";
    return content;
}

std::vector<std::string> ghostscriptArguments(const GhostscriptRun& run) {
    std::vector<std::string> args{run.program, "-dSAFER", "-dBATCH", "-dNOPAUSE"};
    args.insert(args.end(), run.switches.begin(), run.switches.end());
    if (run.argumentFile)
        args.push_back("@" + *run.argumentFile);
    args.push_back("-sOutputFile=" + run.outputFile);
    if (run.countPages) {
        args.push_back("-c");
        args.emplace_back(kPageCounter);
    }
    // "-f" ends a "-c" sequence a profile may have opened and makes the next word a file whatever
    // it begins with.
    for (const auto& input : run.inputs)
        args.push_back("-f" + input);
    // After the inputs, so that it wins over a title the job's own comments gave.
    if (run.title) {
        args.push_back("-c");
        args.push_back(titlePdfmark(*run.title));
    }
    if (!run.pageCountTag.empty()) {
        // The device counts every page a job puts out; a job without one (no showpage, or no
        // content at all) still gets a blank page from the PDF writer, so only this tells. The
        // names are taken from systemdict, whatever the job defined.
        args.push_back("-c");
        args.push_back("systemdict begin (\\n%%" + run.pageCountTag +
                       ": ) print currentpagedevice /PageCount get 20 string cvs print (\\n) print flush end");
    }
    return args;
}

std::optional<int> takePageCount(std::string& output, std::string_view tag) {
    const std::string marker = "%%" + std::string(tag) + ": ";
    const std::size_t at = output.rfind(marker);
    if (at == std::string::npos)
        return std::nullopt;
    std::size_t end = output.find('\n', at);
    if (end == std::string::npos)
        end = output.size();
    const std::string number = output.substr(at + marker.size(), end - at - marker.size());
    output.erase(at, end - at);
    int pages = 0;
    for (const char c : number) {
        if (c < '0' || c > '9' || pages > 1000000)
            return std::nullopt;
        pages = pages * 10 + (c - '0');
    }
    return number.empty() ? std::nullopt : std::optional<int>(pages);
}

int pageOfLine(std::string_view line) {
    if (!line.empty() && line.back() == '\r')
        line.remove_suffix(1);
    constexpr std::string_view prefix = "Page ";
    if (!line.starts_with(prefix))
        return 0;
    line.remove_prefix(prefix.size());
    int page = 0;
    const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), page);
    return error == std::errc() && end == line.data() + line.size() ? page : 0;
}

} // namespace pl::converter
