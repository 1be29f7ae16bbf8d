#include "dialog/actions/open_file_check.h"

#include "base/errors.h"
#include "dialog/actions/dir_lookup.h"
#include "naming/name_numbering.h"
#include "platform/file_in_use.h"

namespace pl::dialog {

namespace {

// Renames `from` to `to` the way a file in use refuses it.
bool renameUnlessInUse(platform::FileSystem& files, const std::string& from, const std::string& to) {
    if (platform::heldOpenElsewhere(from))
        return false;
    return files.rename(from, to);
}

} // namespace

std::string CheckOpenFile(std::string_view outFile, platform::FileSystem& files, const naming::NamingState& naming,
                          ErrorSink& errors) {
    std::string step;
    std::string result;
    trapErrors(errors, "CheckOpenFile", step, [&] {
        bool exists = false;
        try {
            exists = fileFound(files, outFile);
        } catch (...) {
            return; // an unusable path: the empty text
        }
        result = std::string(outFile);
        if (!exists)
            return;

        step = "outFile in Pfad und Name Trennen";
        const std::size_t cut = nameStart(outFile);
        const std::string folder(outFile.substr(0, cut));
        const std::string name(outFile.substr(cut));

        step = "Versuche Datei umbenennen:";
        const std::string aside = folder + "~" + name;
        ignoringErrors([&] { renameUnlessInUse(files, result, aside); });
        if (files.exists(aside)) {
            // Nobody holds it: put it back for the converter to overwrite. Failing that, the user's
            // file would stay under its "~" name unnoticed: that is worth a report.
            if (!files.rename(aside, result))
                raise(err::FileAlreadyExists, aside + " -> " + result);
            return;
        }
        result = folder + naming::CheckpdfName(folder, name, naming, files, errors);
    });
    return result;
}

} // namespace pl::dialog
