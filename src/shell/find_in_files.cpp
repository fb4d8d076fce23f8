#include "shell/find_in_files.h"

#include "driver/output_files.h"
#include "project/project_info.h"

#include <QDir>
#include <QFile>
#include <QTextCodec>
#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>

namespace {

const QByteArray utf8Mark("\xEF\xBB\xBF");

QTextCodec *gb18030()
{
    return QTextCodec::codecForName("GB18030");
}

QString expanded(const SearchQuery &query, const QRegularExpressionMatch &match)
{
    if (!query.isRegularExpression)
        return query.replacement;
    QString result;
    const QString &form = query.replacement;
    for (int i = 0; i < form.size(); ++i) {
        const bool isGroup = form.at(i) == QLatin1Char('$') && i + 1 < form.size() &&
                             form.at(i + 1) >= QLatin1Char('0') &&
                             form.at(i + 1) <= QLatin1Char('9');
        if (isGroup)
            result += match.captured(form.at(++i).digitValue());
        else
            result += form.at(i);
    }
    return result;
}

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

SearchPattern compileSearch(const SearchQuery &query)
{
    if (query.text.isEmpty())
        return {{}, QStringLiteral("请输入要查找的内容。")};
    QString text = query.isRegularExpression ? query.text : QRegularExpression::escape(query.text);
    QRegularExpression::PatternOptions options = QRegularExpression::UseUnicodePropertiesOption;
    if (!query.matchCase)
        options |= QRegularExpression::CaseInsensitiveOption;
    // Alone first: a mistake must not be hidden, nor its place moved, by what is put around it.
    QRegularExpression expression(text, options);
    if (!expression.isValid()) {
        return {{},
                QStringLiteral("正则表达式有误：第 %1 个字符附近的写法不对（比如括号没有配对）。")
                    .arg(expression.patternErrorOffset())};
    }
    if (query.wholeWord)
        expression.setPattern(QStringLiteral("(?<!\\w)(?:%1)(?!\\w)").arg(text));
    expression.optimize();
    return {expression, QString()};
}

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

void searchText(const SearchFile &file, const QString &text, const SearchPattern &pattern,
                const SearchQuery &query, const TakeHit &take)
{
    int start = 0;
    for (int line = 1; start <= text.size(); ++line) {
        int end = text.indexOf(QLatin1Char('\n'), start);
        end = end < 0 ? text.size() : end;
        QString lineText = text.mid(start, end - start);
        if (lineText.endsWith(QLatin1Char('\r')))
            lineText.chop(1);
        auto matches = pattern.expression.globalMatch(lineText);
        while (matches.hasNext()) {
            const QRegularExpressionMatch match = matches.next();
            if (match.capturedLength() == 0)
                continue;
            const int column = match.capturedStart();
            const FileHit hit{file.path,
                              file.name,
                              line,
                              column + 1,
                              start + column,
                              match.captured(),
                              expanded(query, match),
                              lineText};
            if (!take(hit))
                return;
        }
        start = end + 1;
    }
}

std::optional<FileText> decodeFileText(const QByteArray &bytes)
{
    if (bytes.contains('\0'))
        return std::nullopt;
    FileText result;
    const bool hasMark = bytes.startsWith(utf8Mark);
    result.encoding = hasMark ? FileText::Encoding::Utf8WithMark : FileText::Encoding::Utf8;
    result.text = QString::fromUtf8(hasMark ? bytes.mid(utf8Mark.size()) : bytes);
    if (encodeFileText(result) == bytes)
        return result;
    // What older editors wrote.
    if (!gb18030())
        return std::nullopt;
    result.encoding = FileText::Encoding::Gb18030;
    result.text = gb18030()->toUnicode(bytes);
    if (encodeFileText(result) == bytes)
        return result;
    return std::nullopt;
}

QByteArray encodeFileText(const FileText &text)
{
    switch (text.encoding) {
    case FileText::Encoding::Utf8:
        break;
    case FileText::Encoding::Utf8WithMark:
        return utf8Mark + text.text.toUtf8();
    case FileText::Encoding::Gb18030:
        return gb18030()->fromUnicode(text.text);
    }
    return text.text.toUtf8();
}

std::optional<FileText> readFileText(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > maxSearchBytes)
        return std::nullopt;
    return decodeFileText(file.read(maxSearchBytes));
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
    const QString shown = QDir::toNativeSeparators(edits.path);
    std::optional<FileText> file = readFileText(edits.path);
    if (!file || !applyEdits(file->text, edits.edits))
        return changedError(edits.path);
    const QByteArray bytes = encodeFileText(*file);
    // The old encoding need not have the new characters.
    if (const auto written = decodeFileText(bytes); !written || written->text != file->text)
        return QStringLiteral("替换的内容无法用文件“%1”原来的编码保存，没有替换。").arg(shown);
    if (!OutputFiles::write(edits.path, bytes))
        return QStringLiteral("无法写入文件“%1”，请检查权限与磁盘空间。").arg(shown);
    return QString();
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
