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
    // A job that stops with a PostScript error on its first page.
    std::string writeBrokenJob(const std::string& name) const;
    // A job that never ends.
    std::string writeEndlessJob(const std::string& name) const;
    // A profile in the user's own profile folder.
    std::string writeUserProfile(const std::string& name, const std::string& content) const;
    // Sets a value of HKCU\Software\tobrin\PaperlarkXP in the sandbox's registry store.
    void setUserValue(const std::string& name, const std::string& value);

    // Runs the converter with `args` (the words after the program name).
    platform::ChildResult run(const std::vector<std::string>& args) const;

    // Checks a failed run: exit code 1, `complaint` on standard error, the jobs folder holding
    // exactly `jobs` (sorted) and nothing in the output or temporary folder.
    void expectFailureKeeping(const platform::ChildResult& result, const std::string& complaint,
                              const std::vector<std::string>& jobs) const;

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
// The document's text.
std::string pdfText(const std::string& pdf, const std::string& password = {});
// Whether the words appear in the text in this order.
bool inOrder(const std::string& text, const std::vector<std::string>& words);

} // namespace pl::test
