#include "naming/title_cleanup.h"

#include "recording_sink.h"

#include <gtest/gtest.h>

using namespace pl;
using namespace pl::naming;

namespace {

int errorNumberOf(auto&& call) {
    try {
        call();
    } catch (const RuntimeError& e) {
        return e.number();
    }
    return 0;
}

} // namespace

TEST(hex_string_decoder, decodes_pairs_and_four_digit_units) {
    EXPECT_EQ(DecodeHexString("<6d79>"), "my");
    EXPECT_EQ(DecodeHexString("<0041>tail"), "Atail");
    EXPECT_EQ(DecodeHexString(std::string("<0000>")), std::string(1, '\0'));
    // A digit left over before ">" ends the group; it and the ">" stay as text.
    EXPECT_EQ(DecodeHexString("<414>"), "A4>");
    EXPECT_EQ(DecodeHexString("<4>"), "4>");
}

TEST(hex_string_decoder, leaves_text_without_a_complete_group) {
    EXPECT_EQ(DecodeHexString("Report <draft"), "Report <draft");
    EXPECT_EQ(DecodeHexString("a > b"), "a > b");
    // Both brackets present but the wrong way round: the "<" still opens a group.
    EXPECT_EQ(DecodeHexString("a>b<41"), "a>b41");
}

TEST(hex_string_decoder, rejects_pairs_that_are_not_hexadecimal) {
    EXPECT_EQ(errorNumberOf([] { DecodeHexString("<4G>"); }), err::TypeMismatch);
    EXPECT_EQ(errorNumberOf([] { DecodeHexString("<48 61>"); }), err::TypeMismatch);
    // A zero pair takes the next two characters, even the closing bracket.
    EXPECT_EQ(errorNumberOf([] { DecodeHexString("<00>"); }), err::TypeMismatch);
}

TEST(url_decoder, drops_the_protocol_and_everything_from_the_first_inner_slash) {
    test::RecordingSink sink;
    EXPECT_EQ(URLDecode("HTTP://host.example/a/b", sink), "host.example");
    EXPECT_EQ(URLDecode("http://ftp://x/y", sink), "x");
    EXPECT_EQ(URLDecode("/path/x", sink), "/path/x"); // a slash in front is no path tail
    EXPECT_EQ(URLDecode("a/b/c", sink), "a");
    EXPECT_TRUE(sink.reports.empty());
}

TEST(url_decoder, decodes_only_escapes_from_32_on_and_reads_them_as_hexadecimal) {
    test::RecordingSink sink;
    EXPECT_EQ(URLDecode("%32%33", sink), "23");
    EXPECT_EQ(URLDecode("%31%32", sink), "%312");
    EXPECT_EQ(URLDecode("%19%32", sink), "%192");
    EXPECT_EQ(URLDecode("%99", sink), "\xC2\x99");
    EXPECT_EQ(URLDecode("50%", sink), "50%");
    EXPECT_EQ(URLDecode("%3", sink), "%3");
    EXPECT_EQ(URLDecode("ä+ö", sink), "ä ö");
    EXPECT_TRUE(sink.reports.empty());
}

TEST(url_decoder, overflows_its_16_bit_position_counter_on_long_texts) {
    test::RecordingSink sink;
    const std::string longest(32766, 'a');
    EXPECT_EQ(URLDecode(longest, sink), longest);
    // Escapes do not help: the counter has to pass the end of the text.
    EXPECT_EQ(URLDecode(std::string(32763, 'a') + "%41", sink), std::string(32763, 'a') + "A");
    EXPECT_TRUE(sink.reports.empty());

    EXPECT_EQ(URLDecode(std::string(32767, 'a'), sink), "");
    ASSERT_EQ(sink.reports.size(), 1u);
    EXPECT_EQ(sink.reports[0].tag, "ParsePDFName.URLDecode");
    EXPECT_EQ(sink.reports[0].number, err::Overflow);
    // Characters count, not bytes.
    std::string umlauts;
    for (int i = 0; i < 32766; ++i)
        umlauts += "ä";
    EXPECT_EQ(URLDecode(umlauts, sink), umlauts);
    EXPECT_EQ(sink.reports.size(), 1u);
}

TEST(postscript_escapes, decode_octal_escapes_everywhere_they_occur) {
    test::RecordingSink sink;
    EXPECT_EQ(PsspecialChar("anna", sink), "anna");
    EXPECT_EQ(PsspecialChar("j\\366rg", sink), "jörg");
    EXPECT_EQ(PsspecialChar("\\101\\102\\101", sink), "ABA");
    EXPECT_EQ(PsspecialChar("\\777", sink), "\u01FF");
    // A backslash produced by an escape is not decoded again.
    EXPECT_EQ(PsspecialChar("\\134101", sink), "\\101");
    // Other escapes stay as they are.
    EXPECT_EQ(PsspecialChar("a\\(b\\)\\n\\\\", sink), "a\\(b\\)\\n\\\\");
    EXPECT_EQ(PsspecialChar("\\08", sink), "\\08");
    EXPECT_EQ(PsspecialChar("<6A>\\366rg", sink), "jörg");
    EXPECT_TRUE(sink.reports.empty());
}

TEST(postscript_escapes, report_a_bad_hex_group_and_give_the_empty_text) {
    test::RecordingSink sink;
    EXPECT_EQ(PsspecialChar("user<zz>", sink), "");
    ASSERT_EQ(sink.reports.size(), 1u);
    EXPECT_EQ(sink.reports[0].tag, "psSpecialChar1.PsspecialChar");
    EXPECT_EQ(sink.reports[0].data, "user<zz>");
}

TEST(octal_value, sums_digit_weights_into_a_16_bit_integer) {
    EXPECT_EQ(OctalValue(""), 0);
    EXPECT_EQ(OctalValue("17"), 15);
    EXPECT_EQ(OctalValue("777"), 511);
    EXPECT_EQ(OctalValue("77777"), 32767);
    EXPECT_EQ(OctalValue("0000001"), 1);
    EXPECT_EQ(errorNumberOf([] { OctalValue("100000"); }), err::Overflow);
    EXPECT_EQ(errorNumberOf([] { OctalValue("00000000"); }), err::SubscriptOutOfRange);
    EXPECT_EQ(errorNumberOf([] { OctalValue("1a"); }), err::TypeMismatch);
}
