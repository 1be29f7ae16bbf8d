#include "converter/profile.h"

#include <gtest/gtest.h>

using pl::converter::parseProfile;

TEST(converter_profile, the_first_line_is_the_switches_and_later_lines_may_hold_passwords) {
    const auto profile = parseProfile("\xEF\xBB\xBF-sDEVICE=pdfwrite -r300\r\n"
                                      "plassist=savedir\r\n"
                                      "  UserPassword=open sesame \r\n"
                                      "OWNERPASSWORD=Chef\\\"in\r\n"
                                      "-sDEVICE=png16m\r\n");
    EXPECT_EQ(profile.switches, "-sDEVICE=pdfwrite -r300");
    EXPECT_EQ(profile.userPassword, "open sesame ");
    EXPECT_EQ(profile.ownerPassword, "Chef\\\"in");
}

TEST(converter_profile, plain_line_feeds_and_missing_parts_are_fine) {
    auto profile = parseProfile("-dPDFSETTINGS=/screen\nuserpassword=x");
    EXPECT_EQ(profile.switches, "-dPDFSETTINGS=/screen");
    EXPECT_EQ(profile.userPassword, "x");
    EXPECT_FALSE(profile.ownerPassword);

    profile = parseProfile("");
    EXPECT_EQ(profile.switches, "");
    EXPECT_FALSE(profile.userPassword);

    // A password key on the first line is part of the switches, not a password.
    profile = parseProfile("userpassword=x\r\n");
    EXPECT_EQ(profile.switches, "userpassword=x");
    EXPECT_FALSE(profile.userPassword);
}
