#include "converter/arguments.h"

#include "base/text.h"

namespace pl::converter {

namespace {

ParsedArguments failure(std::string error) {
    return ParsedArguments{std::nullopt, std::move(error)};
}

// Sets the flag of one action word; false for a word the converter does not know.
bool applyActionWord(const std::string& word, Actions& actions) {
    if (text::iequals(word, "delps"))
        actions.deleteInputs = true;
    else if (text::iequals(word, "save"))
        actions.save = true;
    else if (text::iequals(word, "open"))
        actions.open = true;
    else if (text::iequals(word, "email"))
        actions.email = true;
    else if (text::iequals(word, "encode"))
        actions.encode = true;
    else if (text::iequals(word, "nocode"))
        actions.noCode = true;
    else
        return false;
    return true;
}

std::optional<std::string> parseActions(const std::string& list, Actions& actions) {
    std::size_t start = 0;
    for (;;) {
        const std::size_t comma = list.find(',', start);
        const std::string word = list.substr(start, comma == std::string::npos ? std::string::npos : comma - start);
        if (word.empty())
            return "empty action word in \"" + list + "\"";
        if (!applyActionWord(word, actions))
            return "unknown action \"" + word + "\"";
        if (comma == std::string::npos)
            break;
        start = comma + 1;
    }
    if (actions.encode && actions.noCode)
        return "the actions encode and nocode exclude each other";
    return std::nullopt;
}

// The output at `outputAt` and every word after it as the inputs. An empty name would reach
// Ghostscript as the current folder, so it is refused here.
ParsedArguments withFiles(Request request, const std::string& form, const std::vector<std::string>& args,
                          std::size_t outputAt) {
    request.output = args[outputAt];
    if (request.output.empty())
        return failure(form + ": OUTPUT is empty");
    request.inputs.assign(args.begin() + static_cast<std::ptrdiff_t>(outputAt) + 1, args.end());
    for (const auto& input : request.inputs) {
        if (input.empty())
            return failure(form + ": an input file name is empty");
    }
    return ParsedArguments{std::move(request), {}};
}

ParsedArguments parseConvert(const std::vector<std::string>& args) {
    static const char* const names[] = {"ACTIONS", "PROFILE", "OUTPUT", "JOBFILE"};
    if (args.size() < 5)
        return failure(std::string("/3: missing argument ") + names[args.size() - 1]);

    Request request;
    request.mode = Mode::Convert;
    if (auto error = parseActions(args[1], request.actions))
        return failure("/3: " + *error);
    request.profile = args[2];
    return withFiles(std::move(request), "/3", args, 3);
}

ParsedArguments parseMerge(const std::vector<std::string>& args) {
    if (args.size() < 2)
        return failure("/m: missing argument OUTPUT");
    if (args.size() < 3)
        return failure("/m: missing argument INPUT");
    Request request;
    request.mode = Mode::Merge;
    return withFiles(std::move(request), "/m", args, 1);
}

} // namespace

ParsedArguments parseArguments(const std::vector<std::string>& args) {
    if (args.empty())
        return failure("no switch given");
    if (args[0] == "/3")
        return parseConvert(args);
    if (text::iequals(args[0], "/m"))
        return parseMerge(args);
    return failure("unknown switch \"" + args[0] + "\"");
}

std::string usageText() {
    return "usage: paperlark /3 ACTIONS \"PROFILE\" \"OUTPUT\" [\"QUEUED\" ...] \"JOBFILE\"\n"
           "       paperlark /m \"OUTPUT\" \"INPUT\" [\"INPUT\" ...]\n"
           "ACTIONS: a comma list of delps, save, open, email, encode, nocode\n";
}

} // namespace pl::converter
