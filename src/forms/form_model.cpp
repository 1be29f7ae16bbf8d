#include "forms/form_model.h"

#include "base/errors.h"
#include "base/text.h"

namespace pl::forms {

Control& Form::control(std::string_view name) {
    for (auto& c : controls_)
        if (text::iequals(c.name, name))
            return c;
    raise(err::SubscriptOutOfRange, "No control " + std::string(name) + " on " + name_);
}

const Control& Form::control(std::string_view name) const { return const_cast<Form*>(this)->control(name); }

bool Form::hasControl(std::string_view name) const {
    for (const auto& c : controls_)
        if (text::iequals(c.name, name))
            return true;
    return false;
}

Control& Form::add(Control c) {
    controls_.push_back(std::move(c));
    return controls_.back();
}

} // namespace pl::forms
