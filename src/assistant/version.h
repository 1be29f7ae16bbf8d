#pragma once
// The program's own version, from the build.

namespace pl::assistant {

inline constexpr int VersionMajor = PAPERLARK_VERSION_MAJOR;
inline constexpr int VersionMinor = PAPERLARK_VERSION_MINOR;
inline constexpr int VersionRevision = PAPERLARK_VERSION_PATCH;

} // namespace pl::assistant
