#include "converter/conversion.h"

#include "converter/document_title.h"
#include "converter/file_ops.h"
#include "converter/ghostscript_command.h"
#include "converter/output_check.h"
#include "converter/output_files.h"
#include "converter/profile.h"
#include "platform/child_process.h"
#include "platform/command_line.h"
#include "platform/durable_files.h"
#include "platform/run_marks.h"
#include "platform/stop_signals.h"

#include <algorithm>
#include <map>
#include <optional>
#include <random>
#include <vector>

namespace pl::converter {

namespace {

// At most this many lines of Ghostscript's own output go into a failure message.
constexpr std::size_t kQuotedLines = 8;
// A name that another job took meanwhile is numbered up to this, as free names are.
constexpr int kHighestNumber = 1000;
// Ghostscript's work folders in the temporary folder begin with this.
constexpr const char* kWorkFolderPrefix = "paperlark-";

std::string inQuotes(std::string_view s) {
    return "\"" + std::string(s) + "\"";
}

std::string randomHex() {
    std::random_device device;
    const unsigned long long value = (static_cast<unsigned long long>(device()) << 32) ^ device();
    static const char digits[] = "0123456789abcdef";
    std::string hex;
    for (int shift = 60; shift >= 0; shift -= 4)
        hex += digits[(value >> shift) & 0xF];
    return hex;
}

// What Ghostscript said about its failure: its error lines and its last word, or, when it named no
// error, the last few lines it printed. The stacks it dumps after an error mean nothing to the user.
std::string failureDetails(const std::string& output) {
    std::vector<std::string> lines;
    std::size_t start = 0;
    while (start < output.size()) {
        std::size_t end = output.find('\n', start);
        if (end == std::string::npos)
            end = output.size();
        std::string line = output.substr(start, end - start);
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        // The page count is for the progress window, not for a failure message.
        if (line.find_first_not_of(" \t") != std::string::npos && pageOfLine(line) == 0)
            lines.push_back(std::move(line));
        start = end + 1;
    }
    if (lines.empty())
        return {};
    std::vector<std::string> chosen;
    for (const auto& line : lines) {
        if (line.find("Error") != std::string::npos || line.find("error:") != std::string::npos)
            chosen.push_back(line);
    }
    if (chosen.empty() || chosen.back() != lines.back()) {
        if (chosen.empty())
            chosen.assign(lines.end() - static_cast<std::ptrdiff_t>(std::min(lines.size(), kQuotedLines)), lines.end());
        else
            chosen.push_back(lines.back());
    }
    if (chosen.size() > kQuotedLines)
        chosen.erase(chosen.begin(), chosen.end() - static_cast<std::ptrdiff_t>(kQuotedLines));
    std::string details;
    for (const auto& line : chosen)
        details += "\n" + line;
    return details;
}

std::optional<std::string> nonEmpty(const std::optional<std::string>& value) {
    if (value && !value->empty())
        return value;
    return std::nullopt;
}

// Page files in page order: with a minimum width, a longer number is always the larger one.
bool pageOrder(const std::string& a, const std::string& b) {
    return a.size() != b.size() ? a.size() < b.size() : a < b;
}

class Job {
public:
    Job(const Request& request, ConversionContext& context) : request_(request), context_(context) {}
    ~Job() { removeWorkFolder(); }
    Job(const Job&) = delete;
    Job& operator=(const Job&) = delete;

    int run() {
        context_.report.log("Konvertiere " + describeRequest());
        output_ = absolutePath(request_.output);
        outputExisted_ = context_.outputExisted;
        if (!checkInputs() || !settleSwitches() || !settleEncryption() || !prepareOutput() || !convert() ||
            !putInPlace())
            return 1;
        return afterActions();
    }

    // Leaves nothing behind of a run that did not produce its result.
    void abandon() {
        removeWorkFolder();
        if (!finished_) {
            if (!temporary_.empty())
                removeFile(temporary_);
            for (const auto& file : producedPageFiles())
                removeFile(file);
        }
        // Nothing is left to clean up: a request to stop may end the program at once again.
        stopRequests_.reset();
    }

private:
    const Request& request_;
    ConversionContext& context_;
    std::vector<std::string> inputs_;
    std::string output_;
    bool outputExisted_ = false;
    std::optional<platform::StopRequests> stopRequests_; // while there are files to clean up
    ProfileSwitches switches_;
    std::optional<std::string> argumentFileText_; // the passwords for Ghostscript, when encrypting
    std::optional<std::string> workFolder_;       // Ghostscript's private temporary folder
    std::optional<std::string> argumentFile_;     // the password file in it
    std::optional<PagePattern> pattern_;
    std::map<std::string, std::filesystem::file_time_type> pagesBefore_;
    std::string temporary_;
    std::vector<std::string> results_;
    bool finished_ = false; // the result is in place: from here on nothing may remove it

    std::string describeRequest() const {
        std::string text = request_.mode == Mode::Merge ? "/m" : "/3 profile " + inQuotes(request_.profile);
        text += " output " + inQuotes(request_.output);
        for (const auto& input : request_.inputs)
            text += " " + inQuotes(input);
        return text;
    }

    bool fail(const std::string& message) {
        abandon();
        context_.report.failure(message + keptNote());
        return false;
    }

    std::string keptNote() const {
        return request_.inputs.size() == 1 ? "\nThe input file was kept." : "\nEvery input file was kept.";
    }

    bool checkInputs() {
        for (const auto& input : request_.inputs) {
            const std::string full = absolutePath(input);
            if (!isFile(full))
                return fail("The input file " + inQuotes(full) + " does not exist; nothing was converted.");
            inputs_.push_back(full);
        }
        return true;
    }

    bool settleSwitches() {
        if (request_.mode == Mode::Merge) {
            // Merging always makes a PDF, whatever the default profile would say.
            switches_ = cleanProfileSwitches({});
            return true;
        }
        const auto path =
            locateProfile(request_.profile, context_.userProfileFolder, context_.suiteFolder, context_.files);
        Profile profile;
        if (path) {
            const auto text = readWholeFile(*path);
            if (!text)
                return fail("The profile " + inQuotes(*path) + " cannot be read; nothing was converted.");
            profile = parseProfile(*text);
            profile.path = *path;
            // The line itself may hold a password; what reaches Ghostscript is logged later.
            context_.report.log("Profil: " + *path);
        } else {
            context_.report.log("Profil " + inQuotes(request_.profile) + " nicht gefunden: PDF mit Standardwerten");
        }
        // The profile's line is a Windows command line without the program; a stand-in program word
        // keeps the first switch from being read by the program-name rule.
        std::vector<std::string> words = platform::splitCommandLine("gs " + profile.switches);
        if (!words.empty())
            words.erase(words.begin());
        switches_ = cleanProfileSwitches(words);
        for (const auto& word : switches_.dropped)
            context_.report.log("Profilschalter ignoriert: " + word);
        if (!switches_.userPassword)
            switches_.userPassword = profile.userPassword;
        if (!switches_.ownerPassword)
            switches_.ownerPassword = profile.ownerPassword;
        return true;
    }

    bool settleEncryption() {
        const Actions& actions = request_.actions;
        if (request_.mode == Mode::Merge || actions.noCode)
            return true;
        const auto user = nonEmpty(switches_.userPassword);
        const auto owner = nonEmpty(switches_.ownerPassword);
        if (!isPdfDevice(switches_.device)) {
            if (actions.encode)
                context_.report.log("encode ignoriert: das Geraet " + switches_.device + " schreibt kein PDF");
            return true;
        }
        Passwords passwords;
        if (user || owner) {
            passwords = Passwords{user.value_or(""), owner ? *owner : *user};
        } else if (actions.encode) {
            if (!context_.ui.canAsk())
                return fail("The PDF is to be protected with a password, but its profile holds none and there is "
                            "no desktop to ask for one; nothing was converted.");
            const auto asked = context_.ui.askPassword(fileNameOf(absolutePath(request_.output)));
            if (!asked || asked->empty())
                return fail("No password was given for the protected PDF; nothing was converted.");
            passwords = Passwords{*asked, *asked};
        } else {
            return true;
        }

        argumentFileText_ = encryptionArgumentFile(passwords);
        if (!argumentFileText_)
            return fail("The PDF password cannot be used: it must not contain a line break, and a password "
                        "ending in a backslash must not contain blanks or double quotes. Nothing was converted.");
        return true;
    }

    bool prepareOutput() {
        const std::string folder = folderOf(output_);
        if (!isFolder(folder))
            return fail("The folder " + inQuotes(folder) + " does not exist; nothing was converted.");
        if (isFolder(output_))
            return fail("The output " + inQuotes(output_) + " is a folder; nothing was converted.");
        if (outputExisted_ && platform::isReadOnly(output_))
            return fail(readOnlyMessage());

        stopRequests_.emplace();
        removeStaleTemporaries(folder);
        // Trying to create a file is the only sure test that the folder can be written. It is
        // hidden: nobody should open or take it for a result while it is written.
        const std::string probe = temporaryPath(folder, platform::currentRunTag(), randomHex());
        if (!createEmptyFile(probe))
            return fail("Cannot write into the folder " + inQuotes(folder) + "; nothing was converted.");

        // A page number in the name means one file per page, which is how image devices are used;
        // a PDF is one document, and a "%d" in its name is just part of the name.
        if (!isPdfDevice(switches_.device))
            pattern_ = findPagePattern(output_);
        if (pattern_) {
            // One file per page, written by Ghostscript under their final names.
            removeFile(probe);
            pagesBefore_ = existingPageFiles(*pattern_);
        } else {
            temporary_ = probe;
        }
        return true;
    }

    // A folder of Ghostscript's own, which only this user can enter: it holds the password file,
    // and Ghostscript's temporary files go there too, so that none stays behind when it is ended.
    bool prepareWorkFolder() {
        platform::removeStalePrivateTempFolders(kWorkFolderPrefix);
        workFolder_ = platform::createPrivateTempFolder(kWorkFolderPrefix);
        if (!workFolder_)
            return fail("No temporary folder can be created for Ghostscript; nothing was converted.");
        if (argumentFileText_) {
            const std::string file = utf8Path(fsPath(*workFolder_) / "passwords");
            if (!platform::writePrivateFile(file, *argumentFileText_))
                return fail("The password file for Ghostscript cannot be written; nothing was converted.");
            argumentFile_ = file;
        }
        return true;
    }

    bool convert() {
        if (!prepareWorkFolder())
            return false;
        GhostscriptRun run;
        run.program = context_.settings.ghostscript;
        run.switches = switches_.switches;
        run.argumentFile = argumentFile_;
        run.outputFile = pattern_ ? ghostscriptOutputFile(output_, true) : ghostscriptOutputFile(temporary_, false);
        run.inputs = inputs_;
        run.pageCountTag = "paperlark-pages-" + randomHex();
        run.countPages = true;
        if (isPdfDevice(switches_.device))
            run.title = documentTitle(request_, output_);
        const std::vector<std::string> args = ghostscriptArguments(run);

        std::string commandLine;
        for (const auto& word : args)
            commandLine += (commandLine.empty() ? "" : " ") + platform::quoteArgument(word);
        context_.report.log("Ghostscript: " + commandLine);

        const auto limit = std::chrono::duration_cast<std::chrono::milliseconds>(context_.settings.timeLimit);
        const platform::ChildWatch watch = context_.report.watchConversion(fileNameOf(output_));
        platform::ChildResult result = platform::runAndWait(args, limit, *workFolder_, &watch);
        context_.report.conversionEnded();
        removeWorkFolder();
        const auto pages = takePageCount(result.output, run.pageCountTag);

        if (result.stopped && !platform::stopRequested()) {
            // The person cancelled: the job stays, and that is no failure to report.
            abandon();
            context_.report.cancelled();
            return false;
        }
        if (!result.started)
            return fail("Ghostscript (" + inQuotes(run.program) + ") cannot be started: " + result.startError +
                        ". Nothing was converted.");
        if (result.stopped)
            return fail(stoppedMessage());
        if (result.timedOut)
            return fail("Ghostscript did not finish within " + std::to_string(context_.settings.timeLimit.count()) +
                        " seconds and was stopped; nothing was converted.");
        if (result.exitCode != 0)
            return fail("Ghostscript could not convert the job (exit code " + std::to_string(result.exitCode) +
                        "); nothing was converted." + failureDetails(result.output));

        if (pages && *pages == 0)
            return fail("The job drew no page; nothing was converted.");

        // Ghostscript's exit code proves nothing: it reports success when the disk filled up under
        // it. Only a result that is on the disk and whole up to its end counts.
        std::vector<std::string> written;
        if (pattern_) {
            written = producedPageFiles();
            if (written.empty())
                return fail("Ghostscript wrote no page; nothing was converted." + failureDetails(result.output));
        } else {
            written = {temporary_};
        }
        for (const auto& file : written) {
            const auto problem = platform::syncFile(file) ? incompleteOutput(file) : "it cannot be written to the disk";
            if (problem)
                return fail("Ghostscript's result is incomplete: " + *problem +
                            " (is the disk full?); nothing was converted." + failureDetails(result.output));
        }
        results_ = written;
        return true;
    }

    std::string readOnlyMessage() const {
        return "The output " + inQuotes(output_) + " is read-only and is not replaced; nothing was converted.";
    }

    std::string stoppedMessage() const {
        return "The conversion was stopped (signal " + std::to_string(platform::stopRequested()) +
               "); nothing was converted.";
    }

    // The result under the output's name, or, when another job took that name while this one was
    // converted, under the next free numbered name. Never in place of a file it was not meant to
    // replace.
    std::optional<std::string> placeResult() {
        if (outputExisted_)
            return replaceFile(temporary_, output_) ? std::optional(output_) : std::nullopt;
        for (int n = 0; n <= kHighestNumber; ++n) {
            const std::string candidate = n == 0 ? output_ : numberedPath(output_, n);
            switch (platform::placeWithoutReplacing(temporary_, candidate)) {
            case platform::Placed::Done:
                if (n > 0)
                    context_.report.log("Name inzwischen vergeben: " + output_);
                return candidate;
            case platform::Placed::Taken:
                continue;
            case platform::Placed::Failed:
                return std::nullopt;
            }
        }
        return std::nullopt;
    }

    bool putInPlace() {
        if (platform::stopRequested())
            return fail(stoppedMessage());
        if (pattern_) {
            finished_ = true;
            stopRequests_.reset();
            return true;
        }
        if (outputExisted_ && platform::isReadOnly(output_))
            return fail(readOnlyMessage());
        const auto placed = placeResult();
        if (!placed)
            return fail("The result cannot be saved as " + inQuotes(output_) + "; nothing was converted.");
        temporary_.clear();
        finished_ = true;
        stopRequests_.reset();
        platform::syncFolder(folderOf(*placed));
        results_ = {*placed};
        context_.report.log("Ausgabe geschrieben: " + *placed);
        return true;
    }

    int afterActions() {
        int exitCode = 0;
        const Actions& actions = request_.actions;
        if (actions.deleteInputs) {
            for (const auto& input : inputs_) {
                if (!removeFile(input) && isFile(input)) {
                    context_.report.failure("The result was written, but the input file " + inQuotes(input) +
                                            " cannot be deleted.");
                    exitCode = 1;
                }
            }
        }
        if (actions.open && !context_.desktop.open(results_.front())) {
            context_.report.cannotOpen(results_.front());
            exitCode = 1;
        }
        if (actions.email && !context_.desktop.mail(results_)) {
            context_.report.cannotMail(results_);
            exitCode = 1;
        }
        // A viewer or a mail program shows the result by itself; otherwise the person is told.
        if (!actions.open && !actions.email)
            context_.report.finished(results_);
        return exitCode;
    }

    // Page files that did not exist before this run or that it has rewritten, in page order.
    std::vector<std::string> producedPageFiles() const {
        std::vector<std::string> produced;
        if (!pattern_)
            return produced;
        for (const auto& [file, time] : existingPageFiles(*pattern_)) {
            const auto before = pagesBefore_.find(file);
            if (before == pagesBefore_.end() || before->second != time)
                produced.push_back(file);
        }
        std::sort(produced.begin(), produced.end(), pageOrder);
        return produced;
    }

    void removeWorkFolder() {
        if (workFolder_) {
            std::error_code ignored;
            std::filesystem::remove_all(fsPath(*workFolder_), ignored);
            workFolder_.reset();
            argumentFile_.reset();
        }
    }
};

} // namespace

int carryOut(const Request& request, ConversionContext& context) {
    Job job(request, context);
    try {
        return job.run();
    } catch (const std::exception& error) {
        job.abandon();
        context.report.failure(std::string("Unexpected error: ") + error.what() + "\nEvery input file was kept.");
        return 1;
    }
}

} // namespace pl::converter
