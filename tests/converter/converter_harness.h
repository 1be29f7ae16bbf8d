#pragma once
// Runs the built converter as its own process in a sandbox: a fresh home folder, its own registry
// store and temporary folder, and no desktop (so a failure cannot wait for a click). Print jobs
// are small PostScript files written here; results are checked with poppler's tools.

#include "platform/child_process.h"
#include "support/scoped_env.h"
#include "support/temp_dir.h"
#include "support/test_registry.h"

#include <string>
#include <vector>

namespace pl::test {

using Names = std::vector<std::string>;

class ConverterHarness {
public:
    ConverterHarness();

    // Folders below the sandbox, each ending in "/": for print jobs, for results, the user's home
    // and the temporary folder the converter gets.
    std::string jobs() const { return dir_.folder() + "jobs/"; }
    std::string out() const { return dir_.folder() + "out/"; }
    std::string home() const { return dir_.folder() + "home/"; }
    std::string temp() const { return dir_.folder() + "tmp/"; }

    // A PostScript job in the jobs folder with one page per word, each page showing its word.
    std::string writeJob(const std::string& name, const std::vector<std::string>& words) const;
    // A job in the jobs folder holding exactly `postscript`.
    std::string writeRawJob(const std::string& name, const std::string& postscript) const;
    // A profile in the user's own profile folder.
    std::string writeUserProfile(const std::string& name, const std::string& content) const;
    // Sets a value of HKCU\Software\tobrin\PaperlarkXP in the sandbox's registry store.
    void setUserValue(const std::string& name, const std::string& value);

    // Runs the converter with `args` (the words after the program name).
    platform::ChildResult run(const std::vector<std::string>& args) const;

    // Checks a failed run: exit code 1, `complaint` on standard error, the jobs folder holding
    // exactly `jobs` and the output folder exactly `outputs` (both sorted), and nothing in the
    // temporary folder.
    void expectFailureKeeping(const platform::ChildResult& result, const std::string& complaint,
                              const std::vector<std::string>& jobs, const std::vector<std::string>& outputs = {}) const;

    // The names in a folder, sorted.
    static std::vector<std::string> namesIn(const std::string& folder);

private:
    TempDir dir_;
    ScopedEnv env_;
    TestRegistry registry_;
};

// Pages of a PDF as pdfinfo counts them; -1 when pdfinfo cannot open it (with `password` as the
// user password when one is given).
int pdfPages(const std::string& pdf, const std::string& password = {});
bool pdfEncrypted(const std::string& pdf, const std::string& password);
// A file's whole content; empty when it cannot be read.
std::string readFile(const std::string& path);
// The document's text.
std::string pdfText(const std::string& pdf, const std::string& password = {});
// Whether the words appear in the text in this order.
bool inOrder(const std::string& text, const std::vector<std::string>& words);

} // namespace pl::test
