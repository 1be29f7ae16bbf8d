#pragma once
// The system's headers for the Win32 front-end. The portable headers name the registry's root keys
// as constants, which the system's headers define as macros: the portable ones come first, so the
// front-end can include both in any order.

#include "platform/registry_backend.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
