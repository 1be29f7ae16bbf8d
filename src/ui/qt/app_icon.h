#pragma once
// The assistant's icon: a folded page with a lark's wing. Qt reads SVG only with an extra image
// plugin that many desktops lack, so the picture of data/icons/paperlark.svg is drawn here with the
// same shapes on the same 64-unit grid; keep the two in step.

#include <QIcon>
#include <QPixmap>

namespace pl::qtui {

// The icon drawn `size` pixels square.
QPixmap appIconPixmap(int size);
// The icon in the sizes trays and title bars ask for.
QIcon appIcon();

} // namespace pl::qtui
