#pragma once
// Registry values that Windows maintains by itself and that the program reads: the user's shell
// folders, the user's locale, the system's version and the suite folder. On POSIX nobody writes
// them, so the store answers them from the running system while the hive holds no value of the
// same name.

#include "platform/registry_backend.h"

#include <string>
#include <string_view>
#include <vector>

namespace pl::platform::posix {

// True for a key that holds platform values, and for each of its parents: such keys exist even in
// an empty hive.
bool isPlatformKey(RootKey root, std::string_view subKey);

// The platform values of the key (REG_SZ, in a fixed order), read from the system now.
std::vector<RegValue> platformValues(RootKey root, std::string_view subKey);

// The Windows locale identifier, eight hexadecimal digits ("00000407"), of a POSIX locale name such
// as "de_DE.UTF-8"; "00000409" for anything unknown.
std::string localeIdentifier(std::string_view posixLocale);

} // namespace pl::platform::posix
