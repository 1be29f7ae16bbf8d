#include "assistant/mail_link.h"

namespace pl::assistant {
namespace {

bool keptAsIs(unsigned char c) {
    if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9'))
        return true;
    if (c >= '-' && c <= '/') // "-", "." and "/"
        return true;
    switch (c) {
    case '_':
    case '~':
    case '&':
    case ':':
    case '?':
    case '@':
    case '#':
    case '!':
    case '$':
    case '*':
    case '+':
        return true;
    default:
        return false;
    }
}

} // namespace

std::string HexByte2(unsigned char byte) {
    static constexpr char digits[] = "0123456789ABCDEF";
    return {digits[byte >> 4], digits[byte & 0x0F]};
}

std::string UrlEncode(std::string_view text) {
    std::string out;
    out.reserve(text.size() * 3);
    for (char ch : text) {
        const auto c = static_cast<unsigned char>(ch);
        if (keptAsIs(c)) {
            out.push_back(ch);
        } else {
            out.push_back('%');
            out += HexByte2(c);
        }
    }
    return out;
}

std::string mailtoLink(std::string_view address, std::string_view subject, std::string_view copy,
                       std::string_view blindCopy, std::string_view body) {
    std::string query;
    if (!subject.empty())
        query += "?Subject=" + UrlEncode(subject);
    if (!copy.empty())
        query += "&CC=" + std::string(copy);
    if (!blindCopy.empty())
        query += "&BCC=" + std::string(blindCopy);
    if (!body.empty())
        query += "&Body=" + UrlEncode(body);
    if (!query.empty() && query.front() == '&')
        query.front() = '?';
    return "mailto:" + std::string(address) + query;
}

bool SendMailTo(platform::Shell& shell, std::string_view address, std::string_view subject, std::string_view copy,
                std::string_view blindCopy, std::string_view body) {
    return shell.execute("open", mailtoLink(address, subject, copy, blindCopy, body), "", "",
                         platform::WindowStyle::NormalFocus);
}

} // namespace pl::assistant
