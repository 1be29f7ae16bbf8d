#include "converter/ghostscript_command.h"

#include "base/text.h"

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

} // namespace

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
    // "-f" ends a "-c" sequence a profile may have opened and makes the next word a file whatever
    // it begins with.
    for (const auto& input : run.inputs)
        args.push_back("-f" + input);
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

} // namespace pl::converter
