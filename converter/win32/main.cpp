#include "converter/program.h"
#include "converter/win32/wide_text.h"

#include <windows.h>

#include <shellapi.h>

// The words come from the wide command line, so that file names outside the system's code page
// arrive intact; the converter works in UTF-8 from here on.
int main() {
    int count = 0;
    wchar_t** words = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::string> args;
    for (int i = 1; words && i < count; ++i)
        args.push_back(pl::converter::win32::narrow(words[i]));
    LocalFree(words);
    return pl::converter::converterMain(args);
}
