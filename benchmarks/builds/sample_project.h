// Generated projects in several languages, and the small changes that a user makes to them.
#pragma once

#include <QString>
#include <QStringList>

// How projects of one language are made. Paths are relative to `folder`, which holds the sources
// as they stand and the patterns ("*.in") of what is generated.
struct ProjectLanguage
{
    struct Pattern
    {
        QString source;
        QString target; // may hold {{unit}} and {{variant}}
    };

    QString folder;
    QList<Pattern> small; // files of the one-line project
    QList<Pattern> fixed; // files of a generated project that exist once
    QList<Pattern> units; // files that exist once for each unit
    QString smallEdited;  // the file that a user changes, in the one-line project
    QString unitEdited;   // and in a generated one: a target of `units`
};

// Values for the names of a pattern.
struct PatternValues
{
    int variant = 1; // differs between projects, so that no two have a file in common
    int unit = 1;
    int units = 1;
};

// The text of a pattern: {{unit}}, {{previous}} (the unit before, in a circle), {{variant}}; lines
// between {{#units}} and {{/units}} are repeated for each unit, those between {{#groups}} and
// {{/groups}} for each group of functions of the unit, which {{group}} numbers. Other braces stay.
QString expandedPattern(const QString &pattern, const PatternValues &values);

// One project in a folder of its own.
class SampleProject
{
public:
    // Writes the project into `folder`, which must not exist. Empty, or what went wrong.
    [[nodiscard]] QString write(const ProjectLanguage &language, const QString &folder, int lines,
                                int variant);

    // Each call gives a text that was never there before. Empty, or what went wrong.
    [[nodiscard]] QString changeLine();
    [[nodiscard]] QString changeComment();

    const QString &folder() const { return m_folder; }
    // What the changed line holds now. The one-line program prints it.
    QString lineText() const;
    bool isOneLine() const { return m_isOneLine; }

private:
    QString change(const QString &mark, int *number);
    QString writeText(const QString &target, const QString &text) const;
    QString writePattern(const ProjectLanguage::Pattern &pattern, const QString &languageFolder,
                         const PatternValues &values) const;

    QString m_folder;
    QString m_edited; // the file that is changed
    bool m_isOneLine = true;
    int m_line = 1;
    int m_comment = 1;
};
