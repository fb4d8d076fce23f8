// Finding and replacing text in many files.
#pragma once

#include "editor/text_search.h"

#include <QHash>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

class QTextDocument;

namespace VL {
struct ProjectInfo;
}

struct SearchQuery
{
    QString text;
    SearchOptions options;
    QString replacement; // what a hit is to become, as TextSearch takes it
};

// A file to be searched.
struct SearchFile
{
    QString path; // absolute
    QString name; // how results call it
    // What an editor holds of it; searched in place of the file.
    std::optional<QString> liveText;
};

// The sources and resources of a project; forms are left to the designer. `liveTexts` is keyed by
// absolute path.
QList<SearchFile> searchFilesOf(const VL::ProjectInfo &info,
                                const QHash<QString, QString> &liveTexts);

struct FileHit
{
    QString path;
    QString name;
    int line = 0;     // from 1
    int column = 0;   // from 1
    int position = 0; // in the text of the file
    QString match;    // never empty, never more than one line
    QString replacement;
    QString lineText; // without its line end
};

Q_DECLARE_METATYPE(QList<FileHit>)

// Receives the hits of a text one by one and says whether to go on.
using TakeHit = std::function<bool(const FileHit &hit)>;

// The hits in `text`, the file's own or the live one. Returns why the search was given up, a
// Chinese sentence; empty: it was not.
QString searchText(const SearchFile &file, const QString &text, const TextSearch &search,
                   const QString &replacement, const TakeHit &take);

// One replacement.
struct TextEdit
{
    int position = 0;
    QString oldText;
    QString newText;
};

// The replacements in one file, in the order of their places, none touching another.
struct FileEdits
{
    QString path;
    QList<TextEdit> edits;
};

Q_DECLARE_METATYPE(QList<FileEdits>)

// One record for each file, for hits in the order in which they were found.
QList<FileEdits> editsOf(const QList<FileHit> &hits);

// All or nothing: false, and nothing changes, when the text is no longer the one that was searched.
[[nodiscard]] bool applyEdits(QString &text, const QList<TextEdit> &edits);
// The same in an open document, as one step of undo.
[[nodiscard]] bool applyEdits(QTextDocument &document, const QList<TextEdit> &edits);
// The same in a file on disk, whose encoding and line ends stay. Empty, or why not: a Chinese
// sentence.
QString applyEditsToFile(const FileEdits &edits);

struct ReplaceOutcome
{
    int replacements = 0;
    int files = 0;
    QStringList errors; // one Chinese sentence for each file that stays as it was

    // In Chinese, for a status line.
    QString text() const;
};

// Replaces in open documents, where `documentOf` knows one for a path, and on disk elsewhere.
ReplaceOutcome
replaceInFiles(const QList<FileEdits> &files,
               const std::function<QTextDocument *(const QString &path)> &documentOf);
