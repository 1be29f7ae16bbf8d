#include "dialog/actions.h"

namespace pl::dialog {

namespace {

class NoJobActions final : public JobActions {
public:
    void cmdEmail_Click() override {}
    void cmdSave_Click() override {}
    void cmdDesktop_Click() override {}
    void cmdMulti_Click() override {}
    void cmdSort_Click() override {}
    void plProfile_Click() override {}
    void chkOpenPDF_LostFocus() override {}
    void lbOpenPDF_Click() override {}
    void ckEncodePDF_MouseUp(int, int, float, float) override {}
    void lbEncodePDF_Click() override {}
    void lbConfig_Click() override {}
};

class NoDefaultActions final : public DefaultActions {
public:
    std::string LoadDefaultAction(std::string_view) override { return {}; }
    bool RunProfileDefault(std::string_view) override { return false; }
    bool RunDefault() override { return false; }
};

} // namespace

DialogActions noActions(JobDialog&) {
    return {std::make_unique<NoJobActions>(), std::make_unique<NoDefaultActions>()};
}

} // namespace pl::dialog
