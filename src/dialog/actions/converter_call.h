#pragma once
// The one command line with which every action hands a job to the converter, how the converter is
// found, and the two ways it is started. The assistant converts nothing itself; this line is all
// it knows of the converter.
//
//     "FOLDERPaperlark.exe" /3 ACTIONS "PROFILE" "OUTPUT" "QUEUED1" "QUEUED2" "JOBFILE"
//
// Nothing in the line is escaped: file names cannot hold a double quote. On POSIX the platform splits
// the line by the Windows rules and starts the program without a shell, so whatever a title, a file
// name or a profile name holds arrives as a plain argument.

#include "forms/view.h"
#include "platform/file_system.h"
#include "platform/processes.h"
#include "platform/services.h"

#include <string>
#include <string_view>

namespace pl::dialog {

// The converter's name as the user and the log know it, on every system.
inline constexpr std::string_view ConverterProgram = "Paperlark.exe";
// The switch that stands in every conversion call.
inline constexpr std::string_view ConversionSwitch = "/3";

// Text 12 of the language table: the converter was not found.
inline constexpr int ConverterMissingText = 12;
// Text 1: the program title, used as the title of the assistant's messages.
inline constexpr int ProgramTitleText = 1;

// The inputs of one conversion call.
struct ConverterCall {
    std::string folder;   // the suite folder, ending in its separator; "Paperlark.exe" follows directly
    std::string actions;  // "delps,save,open,nocode", ...
    std::string profile;  // the profile box's text
    std::string output;   // the output file's full path
    std::string multiDoc; // the queued files, each quoted and followed by one blank
    std::string jobFile;  // the job's PostScript file under its private name

    // Everything after the action list: ` "PROFILE" "OUTPUT" QUEUED"JOBFILE"`.
    std::string afterActions() const;
    // The line that starts the converter.
    std::string commandLine() const;
    // The line as the debug log shows it: without folder and without the quotes round the program.
    std::string logged() const;
};

// The suite folder from "plDir" of the machine key, environment references expanded; read afresh
// for every action.
std::string converterFolder(Services& services);

// The action list. Save, the automatic save and Desktop write a file ("delps,save", plus ",open" when
// the open box is ticked); E-mail hands the file to mail ("delps,email") and ignores the open box.
// The encryption word follows: ",encode" for a ticked encrypt box, ",nocode" for an unticked one and
// nothing for a greyed one, which leaves the choice to the profile.
std::string saveActionList(int openPdfValue, int encodeValue);
std::string emailActionList(int encodeValue);
std::string encryptionWord(int encodeValue);

// Whether the suite program `windowsName` ("Paperlark.exe", "plconfig.exe") lies in `folder`: a
// directory lookup of the folder's text with the name appended, so a folder value without its
// trailing separator finds nothing. Outside Windows the suite installs its programs in lower case
// without ".exe"; only one of the two names ever exists in a suite folder.
bool suiteProgramPresent(const platform::FileSystem& files, std::string_view folder, std::string_view windowsName);

// The presence check of every conversion: when the converter is missing, says so (exclamation icon,
// text 12 and the program title) and answers false.
bool converterPresentOrSaid(Services& services, std::string_view folder, std::string_view missingText,
                            std::string_view title);

// Starts a command line as the runtime's Shell does: normal window with focus, no waiting, no working
// folder. A program that cannot be started raises "File not found" (53).
void startDirect(Services& services, std::string_view commandLine);

// Save's way of starting the converter. A direct start is attempted first with a program path that
// begins with "ccc" and so cannot exist; its failure sends the call on to the shell's "open" with the
// user's temporary folder as the converter's working folder. Errors on the way stop nothing, and the
// shell's answer is not looked at.
void startOnSaveRoute(Services& services, forms::View& view, const ConverterCall& call);

// The shell's "open" as ShellExecute gives it: true when something was started. Pending window
// events run twice afterwards, as a caller of ShellExecute lets them. A program path in double
// quotes is accepted, as ShellExecute accepts it.
bool ShellExec(Services& services, forms::View& view, std::string_view file, int showCmd, std::string_view operation,
               std::string_view parameters, std::string_view directory);

} // namespace pl::dialog
