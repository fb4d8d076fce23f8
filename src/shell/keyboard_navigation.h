// KeyboardNavigation: the ways between editor and panels without a mouse.
#pragma once

#include <QObject>

class DockLayout;
class EditorTabs;
class OutputPanel;
class QMainWindow;

// The rows of ":/shell/editor_shortcuts.json" that name a `dock`, a `tab` of the output or the
// `editor` become keys of the window that lead there: what is hidden is shown, and what has the
// keyboard then answers to the arrow keys. Escape, where a panel has no use for it, leads back to
// the editor.
class KeyboardNavigation : public QObject
{
    Q_OBJECT

public:
    // All of them must outlive it.
    KeyboardNavigation(QMainWindow &window, const DockLayout &docks, EditorTabs &tabs,
                       OutputPanel &output);

    void focusEditor();
    // A name that the docks do not have changes nothing.
    void focusDock(const QString &name);
    // A page of the output by its number.
    void focusOutput(int page);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void addKeys(QMainWindow &window);

    const DockLayout &m_docks;
    EditorTabs &m_tabs;
    OutputPanel &m_output;
};
