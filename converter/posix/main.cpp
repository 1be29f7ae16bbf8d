#include "converter/program.h"

// POSIX hands the program its words as they were given, in the locale's encoding, which on every
// supported desktop is UTF-8.
int main(int argc, char** argv) {
    std::vector<std::string> args;
    for (int i = 1; i < argc; ++i)
        args.emplace_back(argv[i]);
    return pl::converter::converterMain(args);
}
