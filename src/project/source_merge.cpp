#include "project/source_merge.h"

#include "driver/build_messages.h"
#include "driver/type_source.h"
#include "project/merge_messages.h"
#include "project/source_list.h"
#include "project/window_prefix.h"

#include <QDir>
#include <QFileInfo>

namespace {

using BuildMessage::text;

QHash<QString, QString> byAbsolutePath(const ProjectSources &sources)
{
    const QDir project(sources.projectPath);
    QHash<QString, QString> texts;
    for (auto live = sources.liveTexts.cbegin(); live != sources.liveTexts.cend(); ++live) {
        QString path = live.key();
        path.replace(QLatin1Char('\\'), QLatin1Char('/'));
        texts.insert(QDir::cleanPath(project.absoluteFilePath(path)), live.value());
    }
    return texts;
}

// A name goes into a comment line of the program; it must not end that line.
QString markerLine(const SourceFile &file)
{
    QString name = file.name.mid(file.name.lastIndexOf(QLatin1Char('/')) + 1);
    for (QChar &c : name) {
        if (c.category() == QChar::Other_Control)
            c = QLatin1Char(' ');
    }
    return QStringLiteral("\n\n// [FILE_BOUNDARY] ==========%1 ==========\n").arg(name);
}

class SourceMerge
{
public:
    SourceMerge(const ProjectSources &sources, const MergeLimits &limits)
        : m_windows(sources.windows), m_liveTexts(byAbsolutePath(sources)), m_limits(limits)
    {}

    void fail(const QString &file, int line, const QString &error)
    {
        m_merged.errors << BuildDiagnostic{BuildDiagnostic::Severity::Error, file, line, error};
    }
    void warn(const QString &file, const QString &warning)
    {
        m_merged.errors << BuildDiagnostic{BuildDiagnostic::Severity::Warning, file, 0, warning};
    }
    // Whether any file is there, usable or not.
    bool hasSources() const { return m_hasSources; }
    // False when a limit is passed.
    bool add(const SourceFile &file);
    MergedSource take();

private:
    SourceText read(const SourceFile &file) const;
    std::optional<QString> usableText(const SourceFile &file);
    bool append(const SourceFile &file, const QString &text);
    QString limitMessage(SourceKind kind) const;

    const QList<ProjectWindow> m_windows;
    const QHash<QString, QString> m_liveTexts;
    const MergeLimits m_limits;
    MergedSource m_merged;
    int m_nextLine = 1;
    bool m_hasSources = false;
};

SourceText SourceMerge::read(const SourceFile &file) const
{
    SourceText result;
    const auto live = m_liveTexts.constFind(file.path);
    if (live != m_liveTexts.constEnd()) {
        const QByteArray bytes = live->toUtf8();
        if (bytes.size() <= m_limits.fileBytes)
            return decodeSource(bytes, file.name);
        result.error = text(MergeMessage::fileTooLarge).arg(file.name);
        return result;
    }
    const QFileInfo info(file.path);
    if (info.isFile() && info.size() > m_limits.fileBytes) {
        result.error = text(BuildMessage::fileTooLarge)
                           .arg(QString::number(info.size() / 1048576), file.name,
                                QString::number(m_limits.fileBytes / 1048576));
        return result;
    }
    return readSourceFile(file.path, file.name);
}

// The text of a file with its type blocks translated; nothing, and errors, where it has none.
std::optional<QString> SourceMerge::usableText(const SourceFile &file)
{
    // Whoever deletes a file need not tell the project.
    if (!m_liveTexts.contains(file.path) && !QFileInfo::exists(file.path)) {
        warn(file.name, text(BuildMessage::fileMissing).arg(file.name));
        return std::nullopt;
    }
    m_hasSources = true;
    const SourceText source = read(file);
    if (!source.isValid()) {
        fail(file.name, source.line, source.error);
        return std::nullopt;
    }
    const bool isBlocks = file.kind == SourceKind::TypeBlockFile;
    if (file.kind != SourceKind::TypeFile && !isBlocks)
        return source.text;
    const TypeSource types = translateTypeSource(
        source.text, isBlocks ? TypeSourceKind::BlocksOnly : TypeSourceKind::WithClasses);
    for (const TypeSource::Fault &fault : types.faults)
        fail(file.name, fault.line, fault.text);
    return types.faults.isEmpty() ? std::make_optional(types.text) : std::nullopt;
}

QString SourceMerge::limitMessage(SourceKind kind) const
{
    const QString millions = QString::number(m_limits.mergedChars / 1e7, 'f', 1);
    switch (kind) {
    case SourceKind::Main:
        return text(MergeMessage::alreadyTooLarge).arg(millions);
    case SourceKind::Code:
        return text(MergeMessage::sourceTooLarge).arg(millions);
    case SourceKind::ClassFile:
        return text(MergeMessage::classFileTooLarge);
    case SourceKind::TypeFile:
    case SourceKind::TypeBlockFile:
        break;
    }
    return text(MergeMessage::typeFileTooLarge);
}

bool SourceMerge::append(const SourceFile &file, const QString &content)
{
    // The main source stands as it is: its lines are the first of the program.
    const bool isMain = file.kind == SourceKind::Main;
    const QString trimmed = content.trimmed();
    if (trimmed.isEmpty())
        return true;
    QString body = isMain ? content : trimmed;
    const int taken = isMain ? 0 : content.indexOf(trimmed.at(0));
    if (file.window >= 0 && !m_windows.at(file.window).isMain) {
        const ProjectWindow &window = m_windows.at(file.window);
        body = withWindowPrefix(body, window.name, window.components);
    }
    const QString marker = isMain ? QString() : markerLine(file);
    if (qint64(m_merged.text.size()) + marker.size() + body.size() > m_limits.mergedChars) {
        fail(file.name, 0, limitMessage(file.kind));
        return false;
    }
    m_merged.text += marker;
    m_merged.text += body;
    m_nextLine += marker.count(QLatin1Char('\n'));
    SourceLocation place{file.name, content.leftRef(taken).count(QLatin1Char('\n')) + 1};
    const int lines = body.count(QLatin1Char('\n')) + 1;
    for (int line = m_nextLine; line < m_nextLine + lines; ++line, ++place.line)
        m_merged.lineMap.insert(m_merged.lineMap.cend(), line, place);
    m_nextLine += lines - 1;
    return true;
}

bool SourceMerge::add(const SourceFile &file)
{
    const std::optional<QString> content = usableText(file);
    return !content || append(file, *content);
}

MergedSource SourceMerge::take()
{
    // Without a text a build would look for sources by itself.
    if (m_merged.text.isEmpty())
        m_merged.text = QStringLiteral("\n");
    return std::move(m_merged);
}

} // namespace

MergedSource mergeSources(const ProjectSources &sources, const MergeLimits &limits)
{
    SourceMerge merge(sources, limits);
    const SourceList list = listSources(sources);
    for (const BuildDiagnostic &error : list.errors)
        merge.fail(error.file, error.line, error.text);
    for (const SourceFile &file : list.files) {
        if (!merge.add(file))
            break;
    }
    if (!merge.hasSources() && list.errors.isEmpty()) {
        merge.fail(QString(), 0,
                   text(BuildMessage::projectWithoutSource)
                       .arg(QDir::toNativeSeparators(sources.projectPath)));
    }
    return merge.take();
}
