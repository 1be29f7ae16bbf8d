// The title in a PDF's document information: the name the person gave it, not the title of the
// last job that went into it; a merge of given files takes the first document's.

#include "converter_harness.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace {

std::string titleOf(const std::string& pdf) {
    const auto info = pl::platform::runAndWait({"pdfinfo", "-enc", "UTF-8", pdf}, 30s);
    const auto at = info.output.find("Title:");
    if (at == std::string::npos)
        return "(none)";
    const auto start = info.output.find_first_not_of(' ', at + 6);
    return info.output.substr(start, info.output.find('\n', start) - start);
}

} // namespace

TEST(document_title, is_the_output_name_or_for_a_merge_the_first_documents_title) {
    pl::test::ConverterHarness sandbox;
    const auto job = [&](const std::string& name, const std::string& title) {
        return sandbox.writeRawJob(name, "%!PS-Adobe-3.0\n%%Title: (" + title + ")\nshowpage\n");
    };
    // Queued documents and the job into one PDF named by the person.
    auto result = sandbox.run({"/3", "delps,save", "", sandbox.out() + "Angebot M\xC3\xBCller.pdf",
                               job("MultiDocanna1.ps", "Angebot"), job("anna0001.ps", "Anlage")});
    ASSERT_EQ(result.exitCode, 0) << result.output;
    EXPECT_EQ(titleOf(sandbox.out() + "Angebot M\xC3\xBCller.pdf"), "Angebot M\xC3\xBCller");

    // A merge: the first document's title as the naming rules clean it, inside the parentheses of
    // its PostScript string.
    result = sandbox.run(
        {"/m", sandbox.out() + "merged.pdf", job("a.ps", "Microsoft Word - Brief.docx"), job("b.ps", "Anhang")});
    ASSERT_EQ(result.exitCode, 0) << result.output;
    EXPECT_EQ(titleOf(sandbox.out() + "merged.pdf"), "Brief");

    // A first document without a title line: its file name.
    const std::string untitled = sandbox.writeRawJob("Preisliste 2026.ps", "%!PS\nshowpage\n");
    result = sandbox.run({"/m", sandbox.out() + "merged2.pdf", untitled, job("c.ps", "Anhang")});
    ASSERT_EQ(result.exitCode, 0) << result.output;
    EXPECT_EQ(titleOf(sandbox.out() + "merged2.pdf"), "Preisliste 2026");
}
