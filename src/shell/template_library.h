// The library of example programs to begin from.
#pragma once

#include <QDialog>
#include <QString>
#include <QVector>

class QListWidget;
class CodeEditor;

struct ProgramTemplate
{
    QString name;
    QString description; // from the comment that the program begins with
    QString source;
};

// The programs of ":/shell/templates", in the order of their file names.
QVector<ProgramTemplate> programTemplates();

// A list with a preview.
class TemplateLibrary : public QDialog
{
    Q_OBJECT

public:
    explicit TemplateLibrary(QWidget *parent = nullptr);

signals:
    // The user wants the program in the editor, or in a file of its own.
    void insertRequested(QString source);
    void newFileRequested(QString source);

private:
    void showCurrent();
    QString current() const;

    QVector<ProgramTemplate> m_templates;
    QListWidget *m_list;
    CodeEditor *m_preview;
};
