#include "dialog/proposed_name.h"

#include "base/text.h"
#include "dialog/name_box.h"

namespace pl::dialog {

std::string RemoveSpaces(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (char c : text)
        if (c != ' ')
            result += c;
    return result;
}

std::optional<std::string> profileNamedByJob(std::string_view psFile) {
    constexpr std::string_view Marker = "~profile~";
    const auto at = text::ifind(psFile, Marker);
    if (at == std::string_view::npos)
        return std::nullopt;
    std::string name(psFile.substr(at + Marker.size()));
    if (text::iendsWith(name, ".ps"))
        name.resize(name.size() - 3);
    return name;
}

std::string cleanProposedName(std::string name) {
    if (!name.empty() && name.front() == '(' && name.back() == ')' && name != "()")
        name = name.substr(1, name.size() - 2);
    if (name == "()")
        name.clear();
    name = ValidFileName(name);
    // A name of blanks only is no name either: it would give a file called " .pdf".
    if (RemoveSpaces(name).empty())
        name = "Paperlark PDF";
    return name;
}

} // namespace pl::dialog
