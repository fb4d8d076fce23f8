// SnippetManager: the pieces of code that a user keeps.
#pragma once

#include <QString>
#include <QVector>

struct Snippet
{
    QString name;
    QString description;
    QString text;

    bool operator==(const Snippet &other) const
    {
        return name == other.name && description == other.description && text == other.text;
    }
};

// Holds them in one JSON file. Names are unique and not empty. A file that is broken is kept as
// "<file>.bak" when the first change is saved.
class SnippetManager
{
public:
    // Reads the file; a missing one is empty.
    explicit SnippetManager(const QString &path);

    const QVector<Snippet> &snippets() const { return m_snippets; }
    // Null: there is none of this name.
    const Snippet *find(const QString &name) const;

    // In place of the snippet `oldName`, or as a new one where that is empty. These return a
    // Chinese sentence, empty when it is done; nothing changes when the file cannot be written.
    [[nodiscard]] QString put(const QString &oldName, const Snippet &snippet);
    [[nodiscard]] QString remove(const QString &name);

private:
    void load();
    QString save(const QVector<Snippet> &snippets);
    int indexOf(const QString &name) const;

    QString m_path;
    QVector<Snippet> m_snippets;
    bool m_isBroken = false;
};
