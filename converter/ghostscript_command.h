#pragma once
// The words of one Ghostscript run. Pure: everything here can be checked without running anything.
//
// Order: program, -dSAFER -dBATCH -dNOPAUSE, the profile's switches, the argument file with the
// passwords, the output, the page counter, then the input files in the order they are to appear in
// the result, and last the document's title.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pl::converter {

// A profile's switch line after the converter has taken out what is not the profile's to decide.
struct ProfileSwitches {
    std::vector<std::string> switches; // in order; always with exactly one -sDEVICE=
    std::string device;                // the output device, "pdfwrite" when the profile names none
    // Password switches found in the line: they must never reach a command line, so they travel
    // with the other passwords in the argument file.
    std::optional<std::string> userPassword;
    std::optional<std::string> ownerPassword;
    // Words that were left out (shown in the log).
    std::vector<std::string> dropped;
};

// Cleans the words of a profile's first line: the output file and the safety switches are the
// converter's (a profile cannot name its own output or switch the sandbox off), file names would
// be converted as part of the job, and "-sdevice=" in any letter case selects the device.
ProfileSwitches cleanProfileSwitches(const std::vector<std::string>& words);

// Whether `device` writes PDF (the only output that can be encrypted).
bool isPdfDevice(std::string_view device);

struct Passwords {
    std::string user;  // needed to open the document; may be empty
    std::string owner; // needed to change it; never empty
};

// The text of a Ghostscript argument file that sets the passwords and 128-bit encryption.
// Nothing when a password cannot be written in such a file (a line break in it, or a trailing
// backslash together with a blank or a double quote).
std::optional<std::string> encryptionArgumentFile(const Passwords& passwords);

struct GhostscriptRun {
    std::string program;
    std::vector<std::string> switches;       // from cleanProfileSwitches
    std::optional<std::string> argumentFile; // path of the password file
    std::string outputFile;                  // already in Ghostscript's form (ghostscriptOutputFile)
    std::vector<std::string> inputs;         // absolute paths
    // When not empty, Ghostscript reports how many pages the job put out, after the last input
    // (see takePageCount); a job that ends with "quit" leaves it out.
    std::string pageCountTag;
    // Print "Page N" as each page is finished, for a progress display.
    bool countPages = false;
    // The PDF's title in its document information (PDF devices only); UTF-8.
    std::optional<std::string> title;
};

// The PostScript code that sets `title` (UTF-8) as the document's title: the title travels as a
// hexadecimal UTF-16 string, which holds nothing but hexadecimal digits, so no title can end the
// string and run as code.
std::string titlePdfmark(std::string_view title);

std::vector<std::string> ghostscriptArguments(const GhostscriptRun& run);

// The page count reported under `tag` in Ghostscript's `output`, which loses that line; nothing
// when the report is not there.
std::optional<int> takePageCount(std::string& output, std::string_view tag);
// The page number of a line "Page N" of Ghostscript's output (with or without its line end); 0 for
// any other line.
int pageOfLine(std::string_view line);

} // namespace pl::converter
