// FindBar: searching and replacing in a code editor.
#pragma once

#include "editor/text_search.h"

#include <QPointer>
#include <QTextCursor>
#include <QTimer>
#include <QWidget>

class CodeEditor;
class QLabel;
class QLineEdit;
class QToolButton;

// Stands under an editor, not in it, and shows its hits there. Hidden until it is opened. In its
// fields Return and Shift+Return go to the next and the previous hit, Escape closes; F3 and
// Shift+F3 work in the editor too. Every replacement is one step of undo.
class FindBar : public QWidget
{
    Q_OBJECT

public:
    explicit FindBar(QWidget *parent = nullptr);
    ~FindBar() override;

    // Null: searches nowhere. The hits of the editor before are no longer shown.
    void setEditor(CodeEditor *editor);
    CodeEditor *editor() const { return m_editor; }

    // With the field of the replacement or without; what is selected in one line becomes the
    // pattern, a selection of several lines the part to search in.
    void openFind() { open(false); }
    void openReplace() { open(true); }

public slots:
    void findNext();
    void findPrevious();
    void replaceCurrent();
    void replaceAll();
    // The keyboard goes back to the editor.
    void closeBar();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void open(bool withReplacement);
    void build();
    QToolButton *addToggle(const QString &text, const QString &toolTip);
    QToolButton *addButton(const QString &text, const QString &toolTip, void (FindBar::*run)());
    bool runKey(QObject *watched, int key, Qt::KeyboardModifiers modifiers);
    SearchRange range() const;
    void setScope(bool isLimited);
    // Searches anew and shows all hits.
    void refresh();
    void showHits();
    void showCount();
    void findWhileTyping();
    void select(int index);
    void apply(const QVector<SearchReplacement> &changes);

    QPointer<CodeEditor> m_editor;
    QLineEdit *m_pattern;
    QLineEdit *m_replacement;
    QWidget *m_replaceRow;
    QToolButton *m_case;
    QToolButton *m_words;
    QToolButton *m_expression;
    QToolButton *m_inSelection;
    QLabel *m_count;
    QLabel *m_message;
    TextSearch m_search;
    QVector<SearchHit> m_hits;
    QTextCursor m_scope;  // null: the whole text
    QTextCursor m_origin; // where typing in the field searches from
    QTimer m_refreshTimer;
};
