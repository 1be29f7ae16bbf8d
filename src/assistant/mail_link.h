#pragma once
// Handing a prepared e-mail to the user's mail program as a "mailto:" link.

#include "platform/processes.h"

#include <string>
#include <string_view>

namespace pl::assistant {

// Two upper-case hexadecimal digits of a byte.
std::string HexByte2(unsigned char byte);

// Percent-encodes each UTF-8 byte of `text` except letters, digits, "-", ".", "/" and each of
// "_~&:?@#!$*+". "&" and "?" stay as they are, so a body holding them ends early in some mail
// programs; that is how the link has always been built.
std::string UrlEncode(std::string_view text);

// "mailto:" + address + "?Subject=..." + "&CC=..." + "&BCC=..." + "&Body=...", parts left out when
// empty; the first "&" becomes "?" when there is no subject. Copy addresses are not encoded.
std::string mailtoLink(std::string_view address, std::string_view subject, std::string_view copy,
                       std::string_view blindCopy, std::string_view body);

// Opens the link with the shell's "open" in a normal window. True when something was started.
bool SendMailTo(platform::Shell& shell, std::string_view address, std::string_view subject, std::string_view copy,
                std::string_view blindCopy, std::string_view body);

} // namespace pl::assistant
