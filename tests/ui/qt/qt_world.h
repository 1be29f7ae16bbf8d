#pragma once
// A job dialog's world (see JobWorld) drawn by the real Qt view; the resident form lives in it too.

#include "dialog/job_world.h"
#include "ui/qt/qt_view.h"

namespace pl::test {

using QtWorld = JobWorld<qtui::QtView>;

} // namespace pl::test
