// TextToolDialog: turns a text into another one by an operation from a list.
#pragma once

#include <QDialog>
#include <QString>
#include <QVector>

class QLabel;
class QListWidget;
class QPlainTextEdit;
class QPushButton;

// What an operation has made of a text; `error` in Chinese, empty if there is none.
struct TextResult
{
    QString text;
    QString error;
};

// One row of the list; a new operation is one more row in its table.
struct TextOperation
{
    const char *group;
    const char *name;
    TextResult (*run)(const QString &input);
};

// Shows the result while the text is typed.
class TextToolDialog : public QDialog
{
    Q_OBJECT

public:
    TextToolDialog(const QString &title, const QVector<TextOperation> &operations,
                   QWidget *parent = nullptr);

    void setInput(const QString &text);

signals:
    // The user wants the result in the editor.
    void insertRequested(QString text);

private:
    void build();
    QWidget *buildTexts();
    void fillOperations();
    void update();
    void useResultAsInput();

    QVector<TextOperation> m_operations;
    QListWidget *m_list;
    QPlainTextEdit *m_input;
    QPlainTextEdit *m_output;
    QLabel *m_status;
    QVector<QPushButton *> m_resultButtons;
};
