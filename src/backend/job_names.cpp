#include "backend/job_names.h"

#include <algorithm>

namespace pl::backend {

namespace {

constexpr std::size_t MaxUserName = 128;
constexpr std::size_t MaxTitle = 200;

bool isControl(unsigned char c) {
    return c < 0x20 || c == 0x7f;
}

} // namespace

std::optional<std::string> usableUserName(std::string_view user) {
    if (user.empty() || user.size() > MaxUserName)
        return std::nullopt;
    if (user.front() == '-' || user.front() == '.' || user.front() == '~')
        return std::nullopt;
    // "*" and "?" would turn the assistant's search for its own jobs into a search for other jobs.
    const bool bad = std::any_of(user.begin(), user.end(), [](char c) {
        return c == '/' || c == '*' || c == '?' || isControl(static_cast<unsigned char>(c));
    });
    if (bad)
        return std::nullopt;
    return std::string(user);
}

std::string jobNumber(std::string_view jobId) {
    const bool digits = !jobId.empty() && jobId.size() <= 10 &&
                        std::all_of(jobId.begin(), jobId.end(), [](char c) { return c >= '0' && c <= '9'; });
    std::string number = digits ? std::string(jobId) : std::string("0");
    return std::string(10 - number.size(), '0') + number;
}

std::string finalJobName(std::string_view user, std::string_view number, int attempt) {
    std::string name(user);
    name += number;
    if (attempt > 0)
        name += "_" + std::to_string(attempt);
    return name + ".ps";
}

std::string partialJobName(std::string_view finalName) {
    return "~" + std::string(finalName);
}

std::string titleLine(std::string_view title, std::string_view lineEnd) {
    std::string text;
    for (char c : title) {
        if (!isControl(static_cast<unsigned char>(c)))
            text += c;
    }
    if (text.size() > MaxTitle) {
        std::size_t cut = MaxTitle;
        // Never end inside a UTF-8 sequence: step back over continuation bytes.
        while (cut > 0 && (static_cast<unsigned char>(text[cut]) & 0xC0) == 0x80)
            --cut;
        text.resize(cut);
    }
    const auto start = text.find_first_not_of(' ');
    if (start == std::string::npos)
        return {};
    return "%%Title: " + text.substr(start) + std::string(lineEnd);
}

std::optional<std::size_t> endOfFirstPostScriptLine(std::string_view head) {
    if (head.substr(0, 2) != "%!")
        return std::nullopt;
    const auto end = head.find_first_of("\r\n");
    if (end == std::string_view::npos)
        return std::nullopt;
    if (head[end] == '\r') {
        // "\r\n" is one line end, but only once its "\n" has been read too.
        if (end + 1 >= head.size())
            return std::nullopt;
        return head[end + 1] == '\n' ? end + 2 : end + 1;
    }
    return end + 1;
}

} // namespace pl::backend
