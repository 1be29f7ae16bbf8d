#pragma once
// The administrator's policy "APol": codes that hide features of the job dialog or show them
// again, and the layout that closes up what was hidden.

#include "forms/form_model.h"
#include "platform/registry.h"

#include <string>
#include <string_view>

namespace pl::dialog {

namespace policy {
inline constexpr int NarrowestWidth = 6825;   // the dialog never gets narrower than this
inline constexpr int NarrowConfigLeft = 3960; // lbConfig in a dialog that lost a button
inline constexpr int EncodeShift = 1300;      // the encryption option moves this far left then
inline constexpr int HiddenSortMargin = 260;  // given back with cmdSort's width when it is hidden
inline constexpr int OptionsRowHeight = 250;  // taken away with the options row
inline constexpr int RowHeight = 720;         // taken away with the profile or the file-name row
} // namespace policy

// The policy text: the machine's value, lower-cased, followed directly by the user's, cut after
// the first "|" (so an administrator's "|" locks out the user's value). Unreadable values count
// as empty.
std::string policyText(const platform::Registry& registry);

// Hides the controls of each disabled feature, then shows those of each enabled one (enabling
// wins), and lays the dialog out anew without the gaps. `step` follows the progress.
void applyPolicy(forms::Form& form, std::string_view policy, std::string& step);

} // namespace pl::dialog
