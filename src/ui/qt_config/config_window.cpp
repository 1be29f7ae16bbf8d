#include "ui/qt_config/config_window.h"

#include "ui/qt/message_boxes.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QVBoxLayout>

namespace pl::qtui {

namespace {

using config::Txt;

QString qs(std::string_view s) {
    return QString::fromUtf8(s.data(), static_cast<qsizetype>(s.size()));
}

std::string str(const QString& s) {
    return s.toUtf8().toStdString();
}

template <class W> W* named(W* widget, const char* name) {
    widget->setObjectName(QString::fromLatin1(name));
    return widget;
}

// A combo box's items set anew only when they differ, so that drawing does not reset an open list.
void setItems(QComboBox* box, const QStringList& items) {
    QStringList now;
    for (int i = 0; i < box->count(); ++i)
        now << box->itemText(i);
    if (now != items) {
        box->clear();
        box->addItems(items);
    }
}

} // namespace

ConfigWindow::ConfigWindow() {
    setObjectName(QStringLiteral("plConfig"));
    auto* layout = new QVBoxLayout(this);
    tabs_ = named(new QTabWidget(this), "tabs");
    tabs_->addTab(languagePage(), QString());
    tabs_->addTab(defaultsPage(), QString());
    tabs_->addTab(profilesPage(), QString());
    tabs_->addTab(policyPage(), QString());
    layout->addWidget(tabs_);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    cmdOk_ = named(new QPushButton(this), "cmdOk");
    cmdCancel_ = named(new QPushButton(this), "cmdCancel");
    cmdApply_ = named(new QPushButton(this), "cmdApply");
    cmdOk_->setDefault(true);
    for (QPushButton* b : {cmdOk_, cmdCancel_, cmdApply_})
        buttons->addWidget(b);
    layout->addLayout(buttons);
    connect(cmdOk_, &QPushButton::clicked, this, [this] { model_->cmdOk_Click(); });
    connect(cmdCancel_, &QPushButton::clicked, this, [this] { model_->cmdCancel_Click(); });
    connect(cmdApply_, &QPushButton::clicked, this, [this] { model_->cmdApply_Click(); });
    resize(720, 500);
}

void ConfigWindow::bind(config::ConfigForm& model) {
    model_ = &model;
    refresh();
}

template <class Change> void ConfigWindow::edit(Change&& change) {
    if (drawing_ || model_ == nullptr)
        return;
    change();
    refresh();
}

QWidget* ConfigWindow::languagePage() {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    languageIntro_ = new QLabel(page);
    languages_ = named(new QListWidget(page), "languages");
    layout->addWidget(languageIntro_);
    layout->addWidget(languages_);
    connect(languages_, &QListWidget::currentRowChanged, this, [this](int row) {
        edit([&] {
            if (row >= 0)
                model_->language = row;
        });
    });
    return page;
}

QWidget* ConfigWindow::defaultsPage() {
    auto* page = new QWidget;
    auto* form = new QFormLayout(page);
    lbDefaultProfile_ = new QLabel(page);
    defaultProfile_ = named(new QComboBox(page), "defaultProfile");
    lbAdminProfile_ = new QLabel(page);
    openPdf_ = named(new QCheckBox(page), "openPdf");
    lbDefaultAction_ = new QLabel(page);
    defaultAction_ = named(new QComboBox(page), "defaultAction");
    lbAdminAction_ = new QLabel(page);
    lbCaption_ = new QLabel(page);
    caption_ = named(new QLineEdit(page), "desktopCaption");
    lbSpool_ = new QLabel(page);
    spool_ = named(new QLineEdit(page), "userSpool");
    debug_ = named(new QCheckBox(page), "debug");
    form->addRow(lbDefaultProfile_, defaultProfile_);
    form->addRow(QString(), lbAdminProfile_);
    form->addRow(QString(), openPdf_);
    form->addRow(lbDefaultAction_, defaultAction_);
    form->addRow(QString(), lbAdminAction_);
    form->addRow(lbCaption_, caption_);
    form->addRow(lbSpool_, spool_);
    form->addRow(QString(), debug_);

    connect(defaultProfile_, &QComboBox::currentIndexChanged, this, [this](int i) {
        edit([&] { model_->defaults.defaultProfile = i <= 0 ? std::string() : str(defaultProfile_->itemText(i)); });
    });
    connect(openPdf_, &QCheckBox::toggled, this, [this](bool on) { edit([&] { model_->defaults.openPdf = on; }); });
    connect(defaultAction_, &QComboBox::currentIndexChanged, this,
            [this](int i) { edit([&] { model_->defaults.defaultAction = std::max(i, 0); }); });
    connect(caption_, &QLineEdit::textEdited, this,
            [this](const QString& t) { edit([&] { model_->defaults.desktopCaption = str(t); }); });
    connect(spool_, &QLineEdit::textEdited, this,
            [this](const QString& t) { edit([&] { model_->defaults.userSpool = str(t); }); });
    connect(debug_, &QCheckBox::toggled, this, [this](bool on) { edit([&] { model_->defaults.debug = on; }); });
    return page;
}

QWidget* ConfigWindow::profilesPage() {
    auto* page = new QWidget;
    auto* layout = new QHBoxLayout(page);
    auto* left = new QVBoxLayout;
    profileList_ = named(new QListWidget(page), "profiles");
    left->addWidget(profileList_);
    auto* buttons = new QGridLayout;
    cmdNew_ = named(new QPushButton(page), "cmdNew");
    cmdCopy_ = named(new QPushButton(page), "cmdCopy");
    cmdRename_ = named(new QPushButton(page), "cmdRename");
    cmdDelete_ = named(new QPushButton(page), "cmdDelete");
    buttons->addWidget(cmdNew_, 0, 0);
    buttons->addWidget(cmdCopy_, 0, 1);
    buttons->addWidget(cmdRename_, 1, 0);
    buttons->addWidget(cmdDelete_, 1, 1);
    left->addLayout(buttons);
    layout->addLayout(left, 2);

    profileEditor_ = new QWidget(page);
    auto* form = profileForm_ = new QFormLayout(profileEditor_);
    lbReadOnly_ = new QLabel(profileEditor_);
    lbFormat_ = new QLabel(profileEditor_);
    format_ = named(new QComboBox(profileEditor_), "format");
    lbQuality_ = new QLabel(profileEditor_);
    quality_ = named(new QComboBox(profileEditor_), "quality");
    pdfa_ = named(new QCheckBox(profileEditor_), "pdfa");
    lbResolution_ = new QLabel(profileEditor_);
    resolution_ = named(new QSpinBox(profileEditor_), "resolution");
    resolution_->setRange(0, 2400);
    lbSwitches_ = new QLabel(profileEditor_);
    switches_ = named(new QLineEdit(profileEditor_), "switches");
    lbUserPw_ = new QLabel(profileEditor_);
    userPw_ = named(new QLineEdit(profileEditor_), "userPassword");
    lbOwnerPw_ = new QLabel(profileEditor_);
    ownerPw_ = named(new QLineEdit(profileEditor_), "ownerPassword");
    userPw_->setEchoMode(QLineEdit::PasswordEchoOnEdit);
    ownerPw_->setEchoMode(QLineEdit::PasswordEchoOnEdit);
    lbAction_ = new QLabel(profileEditor_);
    action_ = named(new QComboBox(profileEditor_), "action");
    lbTarget_ = new QLabel(profileEditor_);
    target_ = named(new QLineEdit(profileEditor_), "target");
    lbSwitchLine_ = named(new QLabel(profileEditor_), "switchLine");
    lbSwitchLine_->setWordWrap(true);
    lbSwitchLine_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    lbRefusal_ = named(new QLabel(profileEditor_), "refusal");
    lbRefusal_->setWordWrap(true);
    lbRefusal_->setStyleSheet(QStringLiteral("color: #b00000"));
    form->addRow(lbReadOnly_);
    form->addRow(lbFormat_, format_);
    form->addRow(lbQuality_, quality_);
    form->addRow(QString(), pdfa_);
    form->addRow(lbResolution_, resolution_);
    form->addRow(lbSwitches_, switches_);
    form->addRow(lbUserPw_, userPw_);
    form->addRow(lbOwnerPw_, ownerPw_);
    form->addRow(lbAction_, action_);
    form->addRow(lbTarget_, target_);
    form->addRow(lbSwitchLine_);
    form->addRow(lbRefusal_);
    layout->addWidget(profileEditor_, 3);

    connect(profileList_, &QListWidget::currentRowChanged, this,
            [this](int row) { edit([&] { model_->profiles.selected = row; }); });
    connect(cmdNew_, &QPushButton::clicked, this, [this] { edit([&] { model_->cmdNew_Click(); }); });
    connect(cmdCopy_, &QPushButton::clicked, this, [this] { edit([&] { model_->cmdCopy_Click(); }); });
    connect(cmdRename_, &QPushButton::clicked, this, [this] { edit([&] { model_->cmdRename_Click(); }); });
    connect(cmdDelete_, &QPushButton::clicked, this, [this] { edit([&] { model_->cmdDelete_Click(); }); });
    const auto settings = [this](auto change) {
        return [this, change](auto value) {
            edit([&] {
                if (config::ProfileEntry* entry = currentProfile(); entry != nullptr && entry->own)
                    change(entry->settings, value);
            });
        };
    };
    connect(format_, &QComboBox::activated, this, settings([this](config::ProfileSettings& s, int i) {
                const auto& formats = config::outputFormats();
                if (i >= 0 && i < static_cast<int>(formats.size()))
                    s.device = std::string(formats[i].device);
            }));
    connect(quality_, &QComboBox::activated, this,
            settings([](config::ProfileSettings& s, int i) { s.quality = static_cast<config::Quality>(i); }));
    connect(pdfa_, &QCheckBox::toggled, this,
            settings([](config::ProfileSettings& s, bool on) { s.pdfaLevel = on ? std::max(s.pdfaLevel, 2) : 0; }));
    connect(resolution_, &QSpinBox::valueChanged, this,
            settings([](config::ProfileSettings& s, int dpi) { s.resolution = dpi; }));
    connect(switches_, &QLineEdit::textEdited, this,
            settings([](config::ProfileSettings& s, const QString& t) { s.extraSwitches = str(t); }));
    connect(userPw_, &QLineEdit::textEdited, this,
            settings([](config::ProfileSettings& s, const QString& t) { s.userPassword = str(t); }));
    connect(ownerPw_, &QLineEdit::textEdited, this,
            settings([](config::ProfileSettings& s, const QString& t) { s.ownerPassword = str(t); }));
    connect(action_, &QComboBox::activated, this,
            settings([](config::ProfileSettings& s, int i) { s.action = static_cast<config::AutoAction>(i); }));
    connect(target_, &QLineEdit::textEdited, this,
            settings([](config::ProfileSettings& s, const QString& t) { s.actionTarget = str(t); }));
    return page;
}

QWidget* ConfigWindow::policyPage() {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    policyIntro_ = new QLabel(page);
    policyIntro_->setWordWrap(true);
    policyLock_ = named(new QLabel(page), "policyLock");
    policyLock_->setWordWrap(true);
    policyLock_->setStyleSheet(QStringLiteral("color: #b00000; font-weight: bold"));
    policyMachine_ = new QLabel(page);
    layout->addWidget(policyIntro_);
    layout->addWidget(policyLock_);
    layout->addWidget(policyMachine_);
    auto* grid = new QGridLayout;
    for (int c = 0; c < 4; ++c) {
        policyHeads_[c] = new QLabel(page);
        policyHeads_[c]->setStyleSheet(QStringLiteral("font-weight: bold"));
        grid->addWidget(policyHeads_[c], 0, c);
    }
    for (int i = 0; i < config::FeatureCount; ++i) {
        featureNames_[i] = new QLabel(page);
        machineChoices_[i] = new QLabel(page);
        userChoices_[i] = new QComboBox(page);
        userChoices_[i]->setObjectName(QStringLiteral("userPolicy%1").arg(i));
        results_[i] = new QLabel(page);
        grid->addWidget(featureNames_[i], i + 1, 0);
        grid->addWidget(machineChoices_[i], i + 1, 1);
        grid->addWidget(userChoices_[i], i + 1, 2);
        grid->addWidget(results_[i], i + 1, 3);
        connect(userChoices_[i], &QComboBox::activated, this, [this, i](int choice) {
            edit([&] { model_->policy.setUserChoice(i, static_cast<config::PolicyChoice>(choice)); });
        });
    }
    layout->addLayout(grid);
    layout->addStretch();
    return page;
}

config::ProfileEntry* ConfigWindow::currentProfile() {
    auto& entries = model_->profiles.entries();
    const int i = model_->profiles.selected;
    return i >= 0 && i < static_cast<int>(entries.size()) ? &entries[i] : nullptr;
}

void ConfigWindow::refresh() {
    if (model_ == nullptr || drawing_)
        return;
    drawing_ = true;
    drawTexts();
    config::ConfigForm& m = *model_;
    const config::ConfigTexts& t = m.texts();

    QStringList languageItems;
    for (const auto& choice : m.languages)
        languageItems << qs(choice.label);
    if (languages_->count() != languageItems.size()) {
        languages_->clear();
        languages_->addItems(languageItems);
    }
    for (int i = 0; i < languages_->count(); ++i)
        languages_->item(i)->setText(languageItems[i]);
    languages_->setCurrentRow(m.language);

    QStringList names{qs(t(Txt::NotSet))};
    int current = 0;
    for (const std::string& name : m.profiles.names()) {
        if (name == m.defaults.defaultProfile)
            current = static_cast<int>(names.size());
        names << qs(name);
    }
    if (current == 0 && !m.defaults.defaultProfile.empty()) {
        current = static_cast<int>(names.size()); // a default naming no profile is shown as it is
        names << qs(m.defaults.defaultProfile);
    }
    setItems(defaultProfile_, names);
    defaultProfile_->setCurrentIndex(current);
    openPdf_->setChecked(m.defaults.openPdf);
    setItems(defaultAction_,
             {qs(t(Txt::ActionNone)), qs(t(Txt::ActionEmail)), qs(t(Txt::ActionSaveAs)), qs(t(Txt::ActionDesktop))});
    defaultAction_->setCurrentIndex(m.defaults.defaultAction);
    const auto admin = [&](QLabel* label, const std::string& value) {
        label->setText(qs(t(Txt::AdminValue, value)));
        label->setVisible(!value.empty());
    };
    admin(lbAdminProfile_, m.machineDefaultProfile);
    admin(lbAdminAction_, m.machineDefaultAction);
    if (caption_->text() != qs(m.defaults.desktopCaption))
        caption_->setText(qs(m.defaults.desktopCaption));
    caption_->setPlaceholderText(qs(m.machineDesktopCaption));
    if (spool_->text() != qs(m.defaults.userSpool))
        spool_->setText(qs(m.defaults.userSpool));
    debug_->setChecked(m.defaults.debug);

    const auto& entries = m.profiles.entries();
    if (profileList_->count() != static_cast<int>(entries.size()))
        profileList_->clear();
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const auto& e = entries[i];
        const QString label = qs(e.own ? t(Txt::OwnProfile, e.name) : t(Txt::SuiteProfile, e.name));
        if (static_cast<int>(i) >= profileList_->count())
            profileList_->addItem(label);
        QListWidgetItem* item = profileList_->item(static_cast<int>(i));
        item->setText(label);
        item->setHidden(e.deleted);
        QFont font = item->font();
        font.setItalic(!e.own);
        item->setFont(font);
    }
    profileList_->setCurrentRow(m.profiles.selected);
    drawProfile();
    drawPolicy();
    drawing_ = false;
}

void ConfigWindow::drawTexts() {
    const config::ConfigTexts& t = model_->texts();
    setWindowTitle(qs(t(Txt::Title)));
    const Txt tabTexts[] = {Txt::TabLanguage, Txt::TabDefaults, Txt::TabProfiles, Txt::TabPolicy};
    for (int i = 0; i < 4; ++i)
        tabs_->setTabText(i, qs(t(tabTexts[i])));
    const std::pair<QWidget*, Txt> captions[] = {
        {languageIntro_, Txt::LanguageIntro},
        {lbDefaultProfile_, Txt::DefaultProfile},
        {openPdf_, Txt::OpenPdf},
        {lbDefaultAction_, Txt::DefaultAction},
        {lbCaption_, Txt::DesktopCaption},
        {lbSpool_, Txt::UserSpool},
        {debug_, Txt::Debug},
        {cmdNew_, Txt::NewProfile},
        {cmdCopy_, Txt::CopyProfile},
        {cmdRename_, Txt::RenameProfile},
        {cmdDelete_, Txt::DeleteProfile},
        {lbReadOnly_, Txt::ReadOnlyProfile},
        {lbFormat_, Txt::Format},
        {lbQuality_, Txt::Quality},
        {pdfa_, Txt::PdfA},
        {lbResolution_, Txt::Resolution},
        {lbSwitches_, Txt::ExtraSwitches},
        {lbUserPw_, Txt::UserPassword},
        {lbOwnerPw_, Txt::OwnerPassword},
        {lbAction_, Txt::AutoAction},
        {lbTarget_, Txt::ActionTarget},
        {policyIntro_, Txt::PolicyIntro},
        {policyLock_, Txt::PolicyLocked},
        {cmdOk_, Txt::Ok},
        {cmdCancel_, Txt::Cancel},
        {cmdApply_, Txt::Apply},
    };
    for (const auto& [widget, id] : captions) {
        if (auto* label = qobject_cast<QLabel*>(widget))
            label->setText(qs(t(id)));
        else if (auto* button = qobject_cast<QAbstractButton*>(widget))
            button->setText(qs(t(id)));
    }
    const Txt heads[] = {Txt::PolicyFeature, Txt::PolicyMachine, Txt::PolicyUser, Txt::PolicyResult};
    for (int c = 0; c < 4; ++c)
        policyHeads_[c]->setText(qs(t(heads[c])));
}

void ConfigWindow::drawProfile() {
    const config::ConfigTexts& t = model_->texts();
    const config::ProfileEntry* entry = currentProfile();
    const bool editable = entry != nullptr && entry->own && !entry->deleted;
    profileEditor_->setVisible(entry != nullptr && !entry->deleted);
    cmdCopy_->setEnabled(entry != nullptr && !entry->deleted);
    cmdRename_->setEnabled(editable);
    cmdDelete_->setEnabled(editable);
    if (entry == nullptr)
        return;
    const config::ProfileSettings& s = entry->settings;
    for (QWidget* w : std::initializer_list<QWidget*>{format_, quality_, pdfa_, resolution_, switches_, userPw_,
                                                      ownerPw_, action_, target_})
        w->setEnabled(editable);
    profileForm_->setRowVisible(lbReadOnly_, !editable);

    QStringList formats;
    int formatIndex = -1;
    for (const auto& f : config::outputFormats()) {
        if (f.device == s.device)
            formatIndex = static_cast<int>(formats.size());
        formats << qs(f.label);
    }
    if (formatIndex < 0) {
        formatIndex = static_cast<int>(formats.size()); // a device of its own, shown as it is
        formats << qs(s.device);
    }
    setItems(format_, formats);
    format_->setCurrentIndex(formatIndex);
    setItems(quality_, {qs(t(Txt::QualityDefault)), qs(t(Txt::QualityPrepress)), qs(t(Txt::QualityPrinter)),
                        qs(t(Txt::QualityEbook)), qs(t(Txt::QualityScreen))});
    quality_->setCurrentIndex(static_cast<int>(s.quality));
    pdfa_->setChecked(s.pdfaLevel > 0);
    resolution_->setValue(s.resolution);
    const bool pdf = config::isPdf(s.device);
    // Rows that do not apply to the format go, without leaving gaps.
    for (QWidget* field : std::initializer_list<QWidget*>{quality_, pdfa_, userPw_, ownerPw_})
        profileForm_->setRowVisible(field, pdf);
    profileForm_->setRowVisible(resolution_, config::isRaster(s.device));
    const auto setText = [](QLineEdit* edit, const std::string& value) {
        if (edit->text() != qs(value))
            edit->setText(qs(value));
    };
    setText(switches_, s.extraSwitches);
    setText(userPw_, s.userPassword);
    setText(ownerPw_, s.ownerPassword);
    setText(target_, s.actionTarget);
    setItems(action_,
             {qs(t(Txt::ActionNone)), qs(t(Txt::ActionEmail)), qs(t(Txt::ActionSaveAs)), qs(t(Txt::ActionDesktop)),
              qs(t(Txt::ActionMultiDoc)), qs(t(Txt::ActionSaveDir)), qs(t(Txt::ActionSaveFile))});
    action_->setCurrentIndex(static_cast<int>(s.action));
    const bool targeted = s.action == config::AutoAction::SaveDir || s.action == config::AutoAction::SaveFile;
    profileForm_->setRowVisible(target_, targeted);
    lbSwitchLine_->setText(qs(config::switchLine(s)));
    const config::Refusal refusal = editable ? config::checkProfile(s) : config::Refusal{};
    lbRefusal_->setText(refusal ? qs(t(refusal.text, refusal.detail)) : QString());
    lbRefusal_->setVisible(static_cast<bool>(refusal));
}

void ConfigWindow::drawPolicy() {
    const config::ConfigTexts& t = model_->texts();
    const config::PolicyPage& p = model_->policy;
    policyLock_->setVisible(p.locked());
    policyMachine_->setText(qs(t(Txt::AdminValue, p.machineValue())));
    policyMachine_->setVisible(!p.machineValue().empty());
    const QStringList choices{QStringLiteral("-"), qs(t(Txt::PolicyHide)), qs(t(Txt::PolicyShow))};
    for (int i = 0; i < config::FeatureCount; ++i) {
        featureNames_[i]->setText(qs(t(config::policyFeatures()[i].label)));
        machineChoices_[i]->setText(choices[static_cast<int>(p.machineChoice(i))]);
        setItems(userChoices_[i], choices);
        userChoices_[i]->setCurrentIndex(static_cast<int>(p.userChoice(i)));
        userChoices_[i]->setEnabled(!p.locked());
        results_[i]->setText(qs(t(p.shown(i) ? Txt::Shown : Txt::Hidden)));
    }
}

int ConfigWindow::msgBox(std::string_view prompt, int style, std::string_view title) {
    return showMessageBox(this, prompt, style, title, windowTitle());
}

std::optional<std::string> ConfigWindow::askText(std::string_view prompt, std::string_view title,
                                                 std::string_view proposal) {
    bool ok = false;
    const QString answer = QInputDialog::getText(this, qs(title), qs(prompt), QLineEdit::Normal, qs(proposal), &ok);
    if (!ok)
        return std::nullopt;
    return str(answer);
}

void ConfigWindow::closeWindow() {
    closing_ = true;
    QWidget::close();
}

void ConfigWindow::closeEvent(QCloseEvent* event) {
    if (!closing_ && model_ != nullptr) {
        // The frame's close button: as Cancel, which closes the window itself.
        event->ignore();
        model_->cmdCancel_Click();
        return;
    }
    event->accept();
}

} // namespace pl::qtui
