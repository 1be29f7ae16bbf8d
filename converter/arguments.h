#pragma once
// The converter's command line, already split into words by the operating system:
//   /3 ACTIONS PROFILE OUTPUT [QUEUED ...] JOBFILE   convert queued files, then the job, into OUTPUT
//   /m OUTPUT INPUT [INPUT ...]                      merge PostScript or PDF files into one PDF
// Parsing is pure: a bad command line is answered before anything on disk is looked at.

#include <optional>
#include <string>
#include <vector>

namespace pl::converter {

enum class Mode { Convert, Merge };

// The action words of /3. None of encode and nocode means the profile decides about encryption.
struct Actions {
    bool deleteInputs = false; // delps
    bool save = false;
    bool open = false;
    bool email = false;
    bool encode = false;
    bool noCode = false; // nocode
};

struct Request {
    Mode mode = Mode::Convert;
    Actions actions;     // /3 only
    std::string profile; // /3 only; may be empty (no profile: PDF with Ghostscript's defaults)
    std::string output;
    // /3: the queued files in queue order, the job file last. /m: the files to merge, in order.
    std::vector<std::string> inputs;
};

struct ParsedArguments {
    std::optional<Request> request;
    std::string error; // what was wrong, when there is no request
};

// `args` are the words after the program name.
ParsedArguments parseArguments(const std::vector<std::string>& args);

// The two forms, for a usage message.
std::string usageText();

} // namespace pl::converter
