// The dialog's words and looks: the language texts on the controls, the grey look, and the
// gradient of the other two looks.

#include "dialog/appearance.h"

#include "dialog/job_dialog.h"
#include "dialog/settings.h"

namespace pl::dialog {

void JobDialog::TexteAnzeigen() {
    std::string step;
    trapErrors(errors(), "plDialog1.TexteAnzeigen", step, [&] {
        const auto& texts = context_.texts;
        // An installation-specific support line; shows what the registry answers, also when empty.
        control("lbSupport").caption = services().registry.GetRegValue(MachineKey, "Support");
        form_.caption = texts.text(1);
        control("lbPleaseChoose").caption = texts.text(3);
        control("lbPdfProfile").caption = texts.text(4);
        control("lbPdfName").caption = texts.text(5);
        control("lbOpenPDF").caption = texts.text(6);
        control("lbEncodePDF").caption = texts.text(18);
        control("cmdEmail").caption = texts.text(7);
        control("cmdSave").caption = texts.text(8);
        control("cmdDesktop").caption = texts.text(9);
        control("cmdMulti").caption = texts.text(10);
        control("cmdSort").caption = texts.text(20);
        control("lbConfig").caption = texts.text(19);
        view().refresh(form_);
    });
}

void JobDialog::Graumodus() {
    std::string step;
    trapErrors(errors(), "plDialog1.Graumodus", step, [&] {
        form_.backColor = SystemButtonFace;
        background_.gradient = false;
        for (auto name : {"lbPleaseChoose", "lbPdfProfile", "lbPdfName", "lbOpenPDF", "lbEncodePDF"})
            control(name).foreColor = forms::rgb(0, 0, 0);
        control("lbConfig").foreColor = GreyLinkText;
        for (auto name : {"plProfile", "pdfName"}) {
            control(name).foreColor = forms::rgb(0, 0, 0);
            control(name).backColor = forms::rgb(0xFF, 0xFF, 0xFF);
        }
        view().refresh(form_);
    });
}

void JobDialog::Farbverlauf(forms::Rgb start, forms::Rgb end) {
    background_.gradient = true;
    background_.gradientStart = start;
    background_.gradientEnd = end;
    // Lines one pixel apart, two pixels wide: no seam shows between neighbours.
    background_.drawWidth = 2;
    view().refresh(form_);
}

} // namespace pl::dialog
