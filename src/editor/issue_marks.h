// The findings of a check, each fixed to the text that it is about.
#pragma once

#include "editor/syntax_issue.h"

#include <QColor>
#include <QHash>
#include <QList>
#include <QString>
#include <QTextEdit>

class QTextDocument;

// Goes where the text goes; a finding whose text is deleted is gone.
class IssueMarks
{
public:
    using Selections = QList<QTextEdit::ExtraSelection>;

    // `document` must outlive the marks.
    explicit IssueMarks(QTextDocument *document) : m_document(document) {}

    // In place of those there. Lines below the first are left out, those behind the last are taken
    // for the last; columns that do not exist for the end of their line.
    void set(const QList<VlSyntaxIssue> &issues);
    void setColors(const QColor &error, const QColor &warning);

    // Where they stand by now.
    QList<VlSyntaxIssue> issues() const;
    // Wavy underlines. One list as long as nothing is set, for it follows the text.
    const Selections &underlines() const { return m_underlines; }
    // The lines with findings, from 1, and whether all of a line are warnings.
    QHash<int, bool> lines() const;
    // The messages about a position of the document, errors first, one a line; empty without any.
    QString messagesAt(int position) const;

private:
    struct Mark
    {
        VlSyntaxIssue issue;
        QTextCursor place;
        bool hasText = false;

        bool isGone() const { return hasText && !place.hasSelection(); }
    };

    Mark markOf(const VlSyntaxIssue &issue) const;
    void underline();

    QTextDocument *m_document;
    QColor m_error;
    QColor m_warning;
    QList<Mark> m_marks;
    Selections m_underlines;
};
