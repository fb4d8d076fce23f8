// Keys and marked texts for tests of the code editor.
#pragma once

#include "editor/code_editor.h"

#include <QInputMethodEvent>
#include <QtTest>

namespace EditorKeys {

// Shows a text with the cursor at '|'; where there is a '^', the selection begins there.
inline void load(CodeEditor &editor, QString marked)
{
    int anchor = marked.indexOf(QLatin1Char('^'));
    int cursor = marked.indexOf(QLatin1Char('|'));
    marked.remove(QLatin1Char('^')).remove(QLatin1Char('|'));
    if (anchor >= 0)
        (anchor < cursor ? cursor : anchor) -= 1;
    editor.setPlainText(marked);
    QTextCursor shown = editor.textCursor();
    shown.setPosition(anchor < 0 ? cursor : anchor);
    shown.setPosition(cursor, QTextCursor::KeepAnchor);
    editor.setTextCursor(shown);
}

// The inverse of load().
inline QString marked(const CodeEditor &editor)
{
    QString text = editor.toPlainText();
    const QTextCursor cursor = editor.textCursor();
    const int anchor = cursor.anchor();
    const int position = cursor.position();
    text.insert(position, QLatin1Char('|'));
    if (anchor != position)
        text.insert(anchor < position ? anchor : anchor + 1, QLatin1Char('^'));
    return text;
}

inline void sendInput(CodeEditor &editor, const QString &preedit, const QString &committed)
{
    QInputMethodEvent event(preedit, {});
    event.setCommitString(committed);
    QCoreApplication::sendEvent(&editor, &event);
}

// One key in angle brackets: "<Ctrl+Shift+D>", or what an input method does: "<compose:ni>",
// "<commit:你>".
inline void pressNamed(CodeEditor &editor, const QString &name)
{
    const QString argument = name.section(QLatin1Char(':'), 1);
    if (name.startsWith(QLatin1String("compose:"))) {
        sendInput(editor, argument, QString());
    } else if (name.startsWith(QLatin1String("commit:"))) {
        sendInput(editor, QString(), argument);
    } else {
        const int keys = QKeySequence(name)[0];
        QVERIFY2(keys != Qt::Key_unknown && keys != 0, qPrintable(name));
        QTest::keyClick(&editor, Qt::Key(keys & ~int(Qt::KeyboardModifierMask)),
                        Qt::KeyboardModifiers(keys & int(Qt::KeyboardModifierMask)));
    }
}

// Signs as they are, and named keys in angle brackets.
inline void press(CodeEditor &editor, const QString &keys)
{
    for (int i = 0; i < keys.size(); ++i) {
        const QChar sign = keys.at(i);
        if (sign == QLatin1Char('<')) {
            const int end = keys.indexOf(QLatin1Char('>'), i);
            pressNamed(editor, keys.mid(i + 1, end - i - 1));
            i = end;
        } else if (sign.unicode() < 0x80) {
            QTest::keyClick(&editor, sign.toLatin1());
        } else {
            QKeyEvent event(QEvent::KeyPress, 0, Qt::NoModifier, sign);
            QCoreApplication::sendEvent(&editor, &event);
        }
    }
}

} // namespace EditorKeys
