#include "shell/find_in_files.h"

#include "project/project_info.h"
#include "shell/text_file.h"

#include <QDir>
#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>

namespace {

QString changedError(const QString &path)
{
    return QStringLiteral("文件“%1”在查找之后变了，没有替换。请重新查找。")
        .arg(QDir::toNativeSeparators(path));
}

bool fits(const QString &text, const QList<TextEdit> &edits)
{
    return std::all_of(edits.begin(), edits.end(), [&text](const TextEdit &edit) {
        return text.midRef(edit.position, edit.oldText.size()) == edit.oldText;
    });
}

} // namespace

QList<SearchFile> searchFilesOf(const VL::ProjectInfo &info,
                                const QHash<QString, QString> &liveTexts)
{
    QList<SearchFile> files;
    const QStringList names = info.sourceFiles + info.resourceFiles;
    for (const QString &name : names) {
        SearchFile file;
        file.path = QDir::cleanPath(QDir(info.path).absoluteFilePath(name));
        file.name = name;
        const auto live = liveTexts.find(file.path);
        if (live != liveTexts.end())
            file.liveText = *live;
        files << file;
    }
    return files;
}

QString searchText(const SearchFile &file, const QString &text, const TextSearch &search,
                   const QString &replacement, const TakeHit &take)
{
    int line = 1;
    int lineStart = 0;
    return search.forEach(text, replacement, {}, [&](const SearchReplacement &found) {
        if (found.length == 0)
            return true;
        int lineEnd = text.indexOf(QLatin1Char('\n'), lineStart);
        while (lineEnd >= 0 && lineEnd < found.start) {
            ++line;
            lineStart = lineEnd + 1;
            lineEnd = text.indexOf(QLatin1Char('\n'), lineStart);
        }
        QString lineText = text.mid(lineStart, lineEnd < 0 ? -1 : lineEnd - lineStart);
        if (lineText.endsWith(QLatin1Char('\r')))
            lineText.chop(1);
        return take({file.path, file.name, line, found.start - lineStart + 1, found.start,
                     text.mid(found.start, found.length), found.text, lineText});
    });
}

QList<FileEdits> editsOf(const QList<FileHit> &hits)
{
    QList<FileEdits> files;
    for (const FileHit &hit : hits) {
        if (files.isEmpty() || files.last().path != hit.path)
            files << FileEdits{hit.path, {}};
        files.last().edits << TextEdit{hit.position, hit.match, hit.replacement};
    }
    return files;
}

bool applyEdits(QString &text, const QList<TextEdit> &edits)
{
    if (!fits(text, edits))
        return false;
    // From the end, so that the places before stay right.
    for (int i = edits.size() - 1; i >= 0; --i)
        text.replace(edits.at(i).position, edits.at(i).oldText.size(), edits.at(i).newText);
    return true;
}

bool applyEdits(QTextDocument &document, const QList<TextEdit> &edits)
{
    if (!fits(document.toPlainText(), edits))
        return false;
    QTextCursor cursor(&document);
    cursor.beginEditBlock();
    for (int i = edits.size() - 1; i >= 0; --i) {
        const TextEdit &edit = edits.at(i);
        cursor.setPosition(edit.position);
        cursor.setPosition(edit.position + edit.oldText.size(), QTextCursor::KeepAnchor);
        cursor.insertText(edit.newText);
    }
    cursor.endEditBlock();
    return true;
}

QString applyEditsToFile(const FileEdits &edits)
{
    ReadText file = TextFile::readExactly(edits.path);
    if (!file.succeeded() || !applyEdits(file.text, edits.edits))
        return changedError(edits.path);
    return TextFile::write(edits.path, file.text, file.form);
}

QString ReplaceOutcome::text() const
{
    QString text = QStringLiteral("在 %2 个文件中替换了 %1 处").arg(replacements).arg(files);
    if (!errors.isEmpty())
        text += QStringLiteral("，%1 个文件没有替换").arg(errors.size());
    return text;
}

ReplaceOutcome replaceInFiles(const QList<FileEdits> &files,
                              const std::function<QTextDocument *(const QString &path)> &documentOf)
{
    ReplaceOutcome outcome;
    for (const FileEdits &file : files) {
        QString error;
        if (QTextDocument *document = documentOf(file.path))
            error = applyEdits(*document, file.edits) ? QString() : changedError(file.path);
        else
            error = applyEditsToFile(file);
        if (!error.isEmpty()) {
            outcome.errors << error;
            continue;
        }
        ++outcome.files;
        outcome.replacements += file.edits.size();
    }
    return outcome;
}
