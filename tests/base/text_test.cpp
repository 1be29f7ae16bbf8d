#include "base/text.h"

#include <gtest/gtest.h>

using namespace pl;

TEST(text, stray_bytes_survive_a_round_trip_as_latin1) {
    const std::string latin1 = "Gr\xFC\xDF"; // "Grüß" in an 8-bit file
    const auto chars = text::decode(latin1);
    ASSERT_EQ(chars.size(), 4u);
    EXPECT_EQ(chars[2], 0xFCu);
    EXPECT_EQ(text::encode(chars), "Grüß");
}

TEST(text, case_blind_search_covers_latin1_and_keeps_offsets) {
    EXPECT_TRUE(text::iequals("ÄRGER", "ärger"));
    EXPECT_EQ(text::ifind("xxÜber %%TITLE: a", "%%title:"), 8u); // Ü is two bytes
    EXPECT_EQ(text::ireplaceAll("Unknown1.ps UNKNOWN2", "unknown", "bob"), "bob1.ps bob2");
    EXPECT_EQ(text::length("Grüß"), 4u);
}

TEST(text, replace_all_is_one_left_to_right_pass) {
    EXPECT_EQ(text::replaceAll("aaa", "aa", "a"), "aa");
    EXPECT_EQ(text::replaceAll("abc", "", "x"), "abc");
    EXPECT_EQ(text::trimBlanks("  a b  "), "a b");
}

TEST(text, file_bytes_are_utf8_only_when_the_whole_file_is) {
    EXPECT_EQ(text::fromFileBytes("B\xC3\xBCro"), "Büro");                 // UTF-8 stays
    EXPECT_EQ(text::fromFileBytes("B\xFCro"), "Büro");                     // an 8-bit file's letter
    EXPECT_EQ(text::fromFileBytes("\xC3\xBC \xFC"), "\xC3\x83\xC2\xBC ü"); // one stray byte: all 8-bit
}

TEST(text, every_kind_of_line_end_becomes_crlf) {
    EXPECT_EQ(text::crlfLines("a\r\nb\nc\rd"), "a\r\nb\r\nc\r\nd\r\n");
    EXPECT_EQ(text::crlfLines("a\n\r\nb\r\r"), "a\r\n\r\nb\r\n\r\n");
    EXPECT_EQ(text::crlfLines(""), "");
}
