#pragma once
// The process's current drive, which Windows keeps apart from the current folder of each drive.

#include <string_view>

namespace pl::platform {

// Makes the drive named by `drive` ("C:", "d:") the current one. False when it is no drive or the
// system refused. Systems without drives change nothing and answer false. Defined once per
// operating system.
bool changeWorkingDrive(std::string_view drive);

} // namespace pl::platform
