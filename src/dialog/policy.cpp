#include "dialog/policy.h"

#include "base/errors.h"
#include "base/text.h"
#include "dialog/ignore_errors.h"
#include "dialog/job_dialog.h"
#include "dialog/settings.h"

#include <array>
#include <initializer_list>

namespace pl::dialog {

namespace {

struct Feature {
    std::string_view disableCode;
    std::string_view enableCode;
    std::initializer_list<std::string_view> controls;
};

// In the order in which the codes are tested.
const std::array<Feature, 9> Features{{
    {"disableemail", "enableemail", {"cmdEmail"}},
    {"disablesaveas", "enablesaveas", {"cmdSave"}},
    {"disablequality", "enablequality", {"plProfile", "lbPdfProfile"}},
    {"disabledesktop", "enabledesktop", {"cmdDesktop"}},
    {"disablemultidoc", "enablemultidoc", {"cmdMulti"}},
    {"disablefilename", "enablefilename", {"pdfName", "lbPdfName"}},
    {"disableopenpdf", "enableopenpdf", {"chkOpenPDF", "lbOpenPDF"}},
    {"disableencryptpdf", "enableencryptpdf", {"ckEncodePDF", "lbEncodePDF"}},
    {"disableconfig", "enableconfig", {"lbConfig"}},
}};

std::string readLowered(const platform::Registry& registry, std::string_view key) {
    try {
        const std::string value = registry.GetRegValue(key, "APol");
        return isAbsent(value) ? std::string() : text::toLower(value);
    } catch (const RuntimeError&) {
        return {};
    }
}

// Closing up after a hidden button once meant also moving cmdSort to the place of a button that
// was never chosen. That statement fails every time and cmdSort keeps its place; the dialog has
// always behaved so, and its layout depends on it.
constexpr int ObjectVariableNotSet = 91;
void moveSortToUnsetNeighbour(forms::Control& sort, const forms::Control* neighbour) {
    if (neighbour == nullptr)
        raise(ObjectVariableNotSet, "Object variable or With block variable not set");
    sort.left = neighbour->left;
}

void closeUpButtons(forms::Form& f, bool& narrowed) {
    auto& email = f.control("cmdEmail");
    auto& save = f.control("cmdSave");
    auto& desktop = f.control("cmdDesktop");
    auto& multi = f.control("cmdMulti");
    auto& sort = f.control("cmdSort");
    auto& config = f.control("lbConfig");
    const forms::Control* neverSet = nullptr;

    // Each hidden button hands its place to the buttons on its right, the nearest first.
    if (!email.visible) {
        ignoringErrors([&] { moveSortToUnsetNeighbour(sort, neverSet); });
        multi.left = desktop.left;
        desktop.left = save.left;
        save.left = email.left;
        f.width -= email.width;
        narrowed = true;
        config.left = policy::NarrowConfigLeft;
    }
    if (!save.visible) {
        ignoringErrors([&] { moveSortToUnsetNeighbour(sort, neverSet); });
        multi.left = desktop.left;
        desktop.left = save.left;
        f.width -= save.width;
        narrowed = true;
        config.left = policy::NarrowConfigLeft;
    }
    if (!desktop.visible) {
        ignoringErrors([&] { moveSortToUnsetNeighbour(sort, neverSet); });
        multi.left = desktop.left;
        f.width -= desktop.width;
        narrowed = true;
        config.left = policy::NarrowConfigLeft;
    }
    if (!multi.visible) {
        ignoringErrors([&] { moveSortToUnsetNeighbour(sort, neverSet); });
        f.width -= multi.width;
        narrowed = true;
        config.left = policy::NarrowConfigLeft;
    }
    if (!sort.visible)
        f.width -= sort.width + policy::HiddenSortMargin;
}

void liftButtons(forms::Form& f, int by) {
    for (auto name : {"cmdDesktop", "cmdEmail", "cmdMulti", "cmdSave"})
        f.control(name).top -= by;
}

// The options row follows chkOpenPDF, whose Top is the row's.
void liftOptionsRow(forms::Form& f, int by) {
    auto& open = f.control("chkOpenPDF");
    open.top -= by;
    for (auto name : {"lbOpenPDF", "ckEncodePDF", "lbEncodePDF"})
        f.control(name).top = open.top;
}

// The form moves up as it shrinks. cmdSort and lbConfig stay where they are.
void shrink(forms::Form& f, int by) {
    f.height -= by;
    f.top -= by;
}

} // namespace

std::string policyText(const platform::Registry& registry) {
    std::string text = readLowered(registry, MachineKey) + readLowered(registry, UserKey);
    if (const auto bar = text.find('|'); bar != std::string::npos)
        text.resize(bar + 1);
    return text;
}

void applyPolicy(forms::Form& f, std::string_view policyText, std::string& step) {
    const std::string text(policyText);
    step = "Disable Code: " + text;
    for (const auto& feature : Features)
        if (text.find(feature.disableCode) != std::string::npos)
            for (auto name : feature.controls)
                f.control(name).visible = false;

    step = "Enable Code: " + text;
    for (const auto& feature : Features)
        if (text.find(feature.enableCode) != std::string::npos)
            for (auto name : feature.controls)
                f.control(name).visible = true;

    step = "resize Breite: " + text;
    bool narrowed = false;
    closeUpButtons(f, narrowed);
    if (narrowed) {
        f.control("ckEncodePDF").left -= policy::EncodeShift;
        f.control("lbEncodePDF").left -= policy::EncodeShift;
    }
    if (f.width < policy::NarrowestWidth)
        f.width = policy::NarrowestWidth;
    auto& profiles = f.control("plProfile");
    profiles.width = f.width - 2 * profiles.left;
    f.control("pdfName").width = profiles.width;

    step = "resize Hoehe " + text;
    if (!f.control("chkOpenPDF").visible) {
        liftButtons(f, policy::OptionsRowHeight);
        shrink(f, policy::OptionsRowHeight);
    }
    if (!f.control("plProfile").visible) {
        liftOptionsRow(f, policy::RowHeight);
        for (auto name : {"pdfName", "lbPdfName"})
            f.control(name).top -= policy::RowHeight;
        liftButtons(f, policy::RowHeight);
        shrink(f, policy::RowHeight);
    }
    if (!f.control("pdfName").visible) {
        liftOptionsRow(f, policy::RowHeight);
        liftButtons(f, policy::RowHeight);
        shrink(f, policy::RowHeight);
    }
}

void JobDialog::LoadPolicy() {
    std::string step;
    trapErrors(errors(), "plDialog1.LoadPolicy", step, [&] {
        step = "Knoepfe abschalten";
        applyPolicy(form_, policyText(services().registry), step);
        view().refresh(form_);
    });
}

} // namespace pl::dialog
