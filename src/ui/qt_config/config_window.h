#pragma once
// The configuration program's window on Qt: four tabs drawn from the form model. Every widget
// writes its value into the model and every button calls the model's procedure; the window only
// draws.

#include "config/config_form.h"
#include "config/config_view.h"

#include <QWidget>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QFormLayout;
class QPushButton;
class QSpinBox;
class QTabWidget;

namespace pl::qtui {

class ConfigWindow final : public QWidget, public config::ConfigView {
    Q_OBJECT
public:
    // The model is made by the caller with this window as its view, then handed over.
    ConfigWindow();
    // The model may be gone before the widgets: nothing they signal while they go reaches it.
    ~ConfigWindow() override { model_ = nullptr; }
    void bind(config::ConfigForm& model);

    QTabWidget* tabs() const { return tabs_; }

    // config::ConfigView
    int msgBox(std::string_view prompt, int style, std::string_view title) override;
    std::optional<std::string> askText(std::string_view prompt, std::string_view title,
                                       std::string_view proposal) override;
    void refresh() override;
    void closeWindow() override;

protected:
    // Closing the window by its frame is Cancel: nothing is written.
    void closeEvent(QCloseEvent* event) override;

private:
    QWidget* languagePage();
    QWidget* defaultsPage();
    QWidget* profilesPage();
    QWidget* policyPage();
    void drawTexts();
    void drawProfile();
    void drawPolicy();
    config::ProfileEntry* currentProfile();
    // Runs a change of the model made by a widget, unless the widget is only being drawn.
    template <class Change> void edit(Change&& change);

    config::ConfigForm* model_ = nullptr;
    bool drawing_ = false;
    bool closing_ = false;

    QTabWidget* tabs_;
    QLabel* languageIntro_;
    QListWidget* languages_;
    QLabel *lbDefaultProfile_, *lbDefaultAction_, *lbCaption_, *lbSpool_, *lbAdminProfile_, *lbAdminAction_;
    QComboBox *defaultProfile_, *defaultAction_;
    QCheckBox *openPdf_, *debug_;
    QLineEdit *caption_, *spool_;
    QListWidget* profileList_;
    QPushButton *cmdNew_, *cmdCopy_, *cmdRename_, *cmdDelete_;
    QWidget* profileEditor_;
    QFormLayout* profileForm_;
    QLabel *lbReadOnly_, *lbFormat_, *lbQuality_, *lbResolution_, *lbSwitches_, *lbUserPw_, *lbOwnerPw_, *lbAction_,
        *lbTarget_, *lbSwitchLine_, *lbRefusal_;
    QComboBox *format_, *quality_, *action_;
    QCheckBox* pdfa_;
    QSpinBox* resolution_;
    QLineEdit *switches_, *userPw_, *ownerPw_, *target_;
    QLabel *policyIntro_, *policyLock_, *policyMachine_;
    QLabel* policyHeads_[4];
    QLabel* featureNames_[config::FeatureCount];
    QLabel* machineChoices_[config::FeatureCount];
    QComboBox* userChoices_[config::FeatureCount];
    QLabel* results_[config::FeatureCount];
    QPushButton *cmdOk_, *cmdCancel_, *cmdApply_;
};

} // namespace pl::qtui
