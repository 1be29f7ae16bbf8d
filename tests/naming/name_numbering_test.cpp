#include "naming/name_numbering.h"

#include "platform/platform.h"
#include "support/recording_errors.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <memory>

using namespace pl;
using naming::CheckpdfName;

namespace {

// A real output folder and the program's own file system.
class OutputFolder {
public:
    std::string check(std::string_view proposal, std::string_view outputSuffix = ".pdf") {
        naming::NamingState state;
        state.OutputSuffix = std::string(outputSuffix);
        test::RecordingErrors errors;
        std::string name = CheckpdfName(dir.folder(), proposal, state, os->files(), errors);
        EXPECT_TRUE(errors.entries.empty());
        return name;
    }
    void add(const std::string& name) { dir.write(name, "%PDF-1.4\n"); }

    test::TempDir dir;
    std::unique_ptr<platform::Platform> os = platform::makeNativePlatform();
};

} // namespace

TEST(name_numbering, a_taken_name_gets_the_first_free_number_and_empty_parentheses_after_1000) {
    OutputFolder out;
    EXPECT_EQ(out.check("Report.pdf"), "Report.pdf");
    out.add("Report.pdf");
    EXPECT_EQ(out.check("Report.pdf"), "Report (1).pdf");
    out.add("Report (1).pdf");
    out.add("Report (3).pdf");
    EXPECT_EQ(out.check("Report.pdf"), "Report (2).pdf");
    // The folder's names count whatever their case, as on Windows.
    out.add("INVOICE.PDF");
    EXPECT_EQ(out.check("Invoice.pdf"), "Invoice (1).pdf");

    for (int n = 2; n <= 999; ++n)
        out.add("Report (" + std::to_string(n) + ").pdf");
    EXPECT_EQ(out.check("Report.pdf"), "Report (1000).pdf");
    out.add("Report (1000).pdf");
    EXPECT_EQ(out.check("Report.pdf"), "Report ().pdf");
    out.add("Report ().pdf");
    EXPECT_EQ(out.check("Report.pdf"), "Report ().pdf");
}

TEST(name_numbering, the_extension_is_taken_before_cleaning_and_appended_after_it) {
    OutputFolder out;
    EXPECT_EQ(out.check("Letter.doc"), "Letter.doc");
    EXPECT_EQ(out.check("a.pdf.pdf"), "a.pdf");
    EXPECT_EQ(out.check("Microsoft Word - Brief.docx"), "Brief.docx");
    EXPECT_EQ(out.check("Q1: Plan.pdf"), "Q1  Plan.pdf");
    // Without an extension the output format's suffix is taken.
    out.add("Scan.png");
    EXPECT_EQ(out.check("Scan", ".png"), "Scan (1).png");
    // An extension that the clean-up keeps appears twice, and numbering marks both.
    EXPECT_EQ(out.check("Scan.xyz"), "Scan.xyz.xyz");
    out.add("Scan.xyz.xyz");
    EXPECT_EQ(out.check("Scan.xyz"), "Scan (1).xyz (1).xyz");
    // Wildcard characters are no wildcards when testing for a file.
    out.add("a.p-f.pxf");
    EXPECT_EQ(out.check("a.p?f"), "a.p-f.p?f");
}
