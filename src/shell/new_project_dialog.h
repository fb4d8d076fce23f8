// NewProjectDialog: what a new project shall be.
#pragma once

#include "project/project_manager.h"

#include <QDialog>

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class SettingsStore;

// Makes nothing: the caller hands an accepted `project()` to ProjectManager::createProject(), or,
// when its kind is Single, to createSingleFile(). Only what can be made is accepted.
class NewProjectDialog : public QDialog
{
    Q_OBJECT

public:
    // `settings` gives the defaults and must outlive the dialog.
    explicit NewProjectDialog(SettingsStore &settings, QWidget *parent = nullptr);

    NewProject project() const;

public slots:
    void accept() override;

private:
    QWidget *createKinds();
    QGridLayout *createForm();
    QWidget *createFolderRow();
    QWidget *createButtons();
    void fillWindowTypes();
    void browse();
    void update();

    SettingsStore &m_settings;
    QButtonGroup *m_kinds;
    QLabel *m_kindTip;
    QLineEdit *m_name;
    QLabel *m_nameError;
    QLineEdit *m_folder;
    QLabel *m_folderError;
    QCheckBox *m_makeDefault;
    QComboBox *m_windowType;
    QComboBox *m_platform;
    QLabel *m_target;
    QPushButton *m_create;
};
