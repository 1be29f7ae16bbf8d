#include "converter/ghostscript_command.h"

#include <gtest/gtest.h>

using namespace pl::converter;

TEST(ghostscript_command, the_profile_device_is_found_in_any_case_and_defaults_to_pdf) {
    auto cleaned = cleanProfileSwitches({"-r150", "-sdevice=png16m", "-dTextAlphaBits=4"});
    EXPECT_EQ(cleaned.device, "png16m");
    EXPECT_EQ(cleaned.switches, (std::vector<std::string>{"-sDEVICE=png16m", "-r150", "-dTextAlphaBits=4"}));

    cleaned = cleanProfileSwitches({"-dPDFSETTINGS=/screen"});
    EXPECT_EQ(cleaned.device, "pdfwrite");
    EXPECT_EQ(cleaned.switches, (std::vector<std::string>{"-sDEVICE=pdfwrite", "-dPDFSETTINGS=/screen"}));

    // The last device named wins, and only one reaches Ghostscript.
    cleaned = cleanProfileSwitches({"-sDEVICE=pdfwrite", "-sDEVICE=tiff24nc"});
    EXPECT_EQ(cleaned.switches, std::vector<std::string>{"-sDEVICE=tiff24nc"});
}

TEST(ghostscript_command, a_profile_cannot_name_the_output_lift_the_sandbox_or_add_files) {
    const auto cleaned = cleanProfileSwitches({"-sOutputFile=/tmp/x.pdf", "-o", "/tmp/y.pdf", "-o/tmp/z.pdf",
                                               "-dNOSAFER", "-dDELAYSAFER", "-dSAFER=false", "stolen.ps", "@more", "-c",
                                               "code", "-f", "-", "--", "-dQUIET", "-q"});
    EXPECT_EQ(cleaned.switches, (std::vector<std::string>{"-sDEVICE=pdfwrite", "-dQUIET", "-q"}));
    EXPECT_EQ(cleaned.dropped.size(), 14u);
}

TEST(ghostscript_command, password_switches_in_a_profile_line_are_taken_out) {
    const auto cleaned = cleanProfileSwitches({"-sOwnerPassword=boss", "-sUserPassword=reader", "-r72"});
    EXPECT_EQ(cleaned.switches, (std::vector<std::string>{"-sDEVICE=pdfwrite", "-r72"}));
    EXPECT_EQ(cleaned.ownerPassword, "boss");
    EXPECT_EQ(cleaned.userPassword, "reader");
}

TEST(ghostscript_command, arguments_keep_the_fixed_order_and_every_input_is_a_file) {
    GhostscriptRun run;
    run.program = "gs";
    run.switches = {"-sDEVICE=pdfwrite", "-r300"};
    run.argumentFile = "/tmp/paperlark-abc";
    run.outputFile = "/out/~x.tmp";
    run.inputs = {"/q/first.ps", "/q/-second.ps", "/s/job.ps"};
    EXPECT_EQ(ghostscriptArguments(run),
              (std::vector<std::string>{"gs", "-dSAFER", "-dBATCH", "-dNOPAUSE", "-sDEVICE=pdfwrite", "-r300",
                                        "@/tmp/paperlark-abc", "-sOutputFile=/out/~x.tmp", "-f/q/first.ps",
                                        "-f/q/-second.ps", "-f/s/job.ps"}));
    run.argumentFile.reset();
    const auto args = ghostscriptArguments(run);
    for (const auto& word : args)
        EXPECT_NE(word.front(), '@');
}

TEST(ghostscript_command, the_argument_file_encrypts_with_a_128_bit_key) {
    const auto content = encryptionArgumentFile({"reader", "boss"});
    ASSERT_TRUE(content);
    EXPECT_NE(content->find("\"-sOwnerPassword=boss\""), std::string::npos);
    EXPECT_NE(content->find("\"-sUserPassword=reader\""), std::string::npos);
    EXPECT_NE(content->find("-dEncryptionR=3"), std::string::npos);
    EXPECT_NE(content->find("-dKeyLength=128"), std::string::npos);
    // Without a user password anybody may open the document; only changes are locked.
    const auto ownerOnly = encryptionArgumentFile({"", "boss"});
    ASSERT_TRUE(ownerOnly);
    EXPECT_EQ(ownerOnly->find("UserPassword"), std::string::npos);
}

TEST(ghostscript_command, passwords_the_argument_file_cannot_carry_are_refused) {
    EXPECT_FALSE(encryptionArgumentFile({"", ""}));
    EXPECT_FALSE(encryptionArgumentFile({"two\nlines", "boss"}));
    EXPECT_FALSE(encryptionArgumentFile({"ok", "carriage\rreturn"}));
    EXPECT_FALSE(encryptionArgumentFile({"blank and backslash\\", "boss"}));
    EXPECT_FALSE(encryptionArgumentFile({"quote\"and backslash\\", "boss"}));
    EXPECT_TRUE(encryptionArgumentFile({"only-backslash\\", "boss"}));
}

TEST(ghostscript_command, only_pdfwrite_writes_pdf) {
    EXPECT_TRUE(isPdfDevice("pdfwrite"));
    EXPECT_TRUE(isPdfDevice("PDFWrite"));
    EXPECT_FALSE(isPdfDevice("png16m"));
    EXPECT_FALSE(isPdfDevice("ps2write"));
}
