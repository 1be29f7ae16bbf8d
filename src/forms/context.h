#pragma once
// What the assistant's forms share: the outside world, the process-wide state, the texts of the
// current language, the name derivation's values and the view.

#include "forms/app_state.h"
#include "forms/view.h"
#include "naming/naming_state.h"
#include "platform/services.h"
#include "texts/texts.h"

namespace pl::forms {

struct Context {
    Services& services;
    AppState& state;
    texts::Texts& texts;
    naming::NamingState& naming;
    View& view;
};

// The watcher's way to the job dialog without knowing it: loads the dialog (running its load
// sequence) unless it is loaded, and returns its form. The dialog may have finished its job and
// unloaded itself during the load (an automatic action); the form then reports loaded == false.
class JobDialogHost {
public:
    virtual ~JobDialogHost() = default;
    virtual Form& loadJobDialog() = 0;
};

} // namespace pl::forms
