// ProjectSettingsDialog: what the user may change of a project.
#pragma once

#include "project/project_info.h"

#include <QDialog>

class QComboBox;
class QLineEdit;
class QPlainTextEdit;

class ProjectSettingsDialog : public QDialog
{
    Q_OBJECT

public:
    explicit ProjectSettingsDialog(const VL::ProjectInfo &project, QWidget *parent = nullptr);

    // The project with what the user has entered.
    VL::ProjectInfo project() const;

private:
    QComboBox *addChoice(const QString &label, const QStringList &words, const QString &current);
    QLineEdit *addLine(const QString &label, const QString &text);

    VL::ProjectInfo m_project;
    QLineEdit *m_version;
    QLineEdit *m_author;
    QPlainTextEdit *m_description;
    QComboBox *m_platform;
    QComboBox *m_compiler;
    QComboBox *m_mainWindow;
    QComboBox *m_startupWindow;
};
