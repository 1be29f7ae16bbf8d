#include "converter/document_title.h"

#include "base/errors.h"
#include "converter/file_ops.h"
#include "naming/title_extraction.h"

namespace pl::converter {

namespace {

constexpr std::string_view kNoTitle = "Paperlark File";

std::string withoutExtension(const std::string& name) {
    const auto dot = name.rfind('.');
    return dot == std::string::npos || dot == 0 ? name : name.substr(0, dot);
}

// Title errors are not the converter's business: the file name serves instead.
class QuietSink final : public ErrorSink {
public:
    void report(std::string_view, std::string_view, const RuntimeError&, std::string_view) override {}
};

} // namespace

std::string documentTitle(const Request& request, const std::string& output) {
    if (request.mode == Mode::Merge && !request.inputs.empty()) {
        const std::string& first = request.inputs.front();
        naming::NamingState state;
        QuietSink quiet;
        std::string title = naming::GetPsFileTitle(first, state, quiet);
        // The naming rules keep the parentheses of a PostScript string for a file name; a title
        // shown in a viewer is the text inside them.
        if (title.size() >= 2 && title.front() == '(' && title.back() == ')')
            title = title.substr(1, title.size() - 2);
        if (!title.empty() && title != kNoTitle)
            return title;
        return withoutExtension(fileNameOf(first));
    }
    return withoutExtension(fileNameOf(output));
}

} // namespace pl::converter
