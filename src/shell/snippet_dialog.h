// The dialog of the snippets: to read, write, remove and insert them.
#pragma once

#include <QDialog>

class QLabel;
class QLineEdit;
class QListWidget;
class QPlainTextEdit;
class QPushButton;
class SnippetManager;

// Changes are kept by "保存", and when another snippet is chosen they are dropped.
class SnippetDialog : public QDialog
{
    Q_OBJECT

public:
    // The manager must outlive the dialog.
    explicit SnippetDialog(SnippetManager &manager, QWidget *parent = nullptr);

    // Begins a new snippet with this text.
    void beginNew(const QString &text = QString());

signals:
    // The user wants this text in the editor.
    void insertRequested(QString text);

private:
    void build();
    void fill(const QString &current);
    void showCurrent();
    void save();
    void removeCurrent();

    SnippetManager &m_manager;
    QString m_shownName; // empty: a new one
    QListWidget *m_list;
    QLineEdit *m_name;
    QLineEdit *m_description;
    QPlainTextEdit *m_text;
    QLabel *m_message;
    QPushButton *m_remove;
    QPushButton *m_insert;
};
