// Arbitrary bytes as a registry file: the parser must never crash, and whatever parses must come
// back unchanged after being written out and parsed again, or the store would slowly alter hives.

#include "platform/posix/registry/regedit_format.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace pl::platform::posix;
    const RegFileParse first = parseRegFile(std::string_view(reinterpret_cast<const char*>(data), size));
    if (!first.file)
        return 0;
    const std::string written = writeRegFile(*first.file);
    const RegFileParse second = parseRegFile(written);
    if (!second.file || !(*second.file == *first.file))
        std::abort();
    // Writing is stable too: the second text equals the first.
    if (writeRegFile(*second.file) != written)
        std::abort();
    return 0;
}
