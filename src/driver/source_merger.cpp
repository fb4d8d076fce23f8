#include "driver/source_merger.h"

#include "driver/build_messages.h"
#include "driver/source_text.h"
#include "driver/type_source.h"

#include <QDir>
#include <QFileInfo>
#include <QStringList>

#include <optional>

namespace {

using BuildMessage::text;

// One kind of source file: its pattern, and what stands ahead of its name in the marker line.
struct SourceKind
{
    const char *pattern;
    const char *markerLabel;
    std::optional<TypeSourceKind> types; // what its type blocks stand among
};

constexpr SourceKind sourceKinds[] = {
    {"*.vc", " ", std::nullopt},
    {"*.vpp", " 类定义", std::nullopt},
    {"*.vt", " 类型定义", TypeSourceKind::WithClasses},
    {"*.vd", " 类型定义", TypeSourceKind::BlocksOnly},
};

class Merger
{
public:
    void addFile(const QString &path, const QString &name, const SourceKind &kind);
    void addText(const QString &content, const QString &name);
    void refuse(const QString &error, const QString &name, int line);
    bool isTooLarge() const { return m_merged.text.size() > maxMergedChars; }
    MergedSource take() { return std::move(m_merged); }

private:
    void append(const QString &content);

    MergedSource m_merged;
    int m_nextLine = 1;
};

void Merger::refuse(const QString &error, const QString &name, int line)
{
    m_merged.errors << BuildDiagnostic{BuildDiagnostic::Severity::Error, name, line, error};
}

void Merger::append(const QString &content)
{
    m_merged.text += content;
    m_nextLine += content.count(QLatin1Char('\n'));
}

void Merger::addText(const QString &content, const QString &name)
{
    const int first = m_nextLine;
    append(content);
    for (int line = first; line <= m_nextLine; ++line)
        m_merged.lineMap.insert(m_merged.lineMap.end(), line, {name, line - first + 1});
}

void Merger::addFile(const QString &path, const QString &name, const SourceKind &kind)
{
    const SourceText source = readSourceFile(path, name);
    if (!source.isValid()) {
        refuse(source.error, name, source.line);
        return;
    }
    TypeSource code{source.text, {}};
    if (kind.types)
        code = translateTypeSource(source.text, *kind.types);
    for (const TypeSource::Fault &fault : qAsConst(code.faults))
        refuse(fault.text, name, fault.line);
    append(QStringLiteral("// =====%1%2 =====\n")
               .arg(QString::fromUtf8(kind.markerLabel), QFileInfo(path).fileName()));
    addText(code.text, name);
    append(QStringLiteral("\n\n"));
}

} // namespace

MergedSource mergeProject(const QString &projectPath)
{
    const QDir project(projectPath);
    const bool hasFolder = QFileInfo(project.filePath(QStringLiteral("source"))).isDir();
    const QDir folder(hasFolder ? project.filePath(QStringLiteral("source")) : project.path());
    Merger merger;
    bool any = false;
    for (const SourceKind &kind : sourceKinds) {
        const QStringList names = folder.entryList({QString::fromLatin1(kind.pattern)},
                                                   QDir::Files | QDir::System, QDir::Name);
        for (const QString &name : names) {
            any = true;
            merger.addFile(folder.filePath(name), project.relativeFilePath(folder.filePath(name)),
                           kind);
            if (merger.isTooLarge())
                return merger.take();
        }
    }
    if (!any) {
        merger.refuse(
            text(BuildMessage::projectWithoutSource).arg(QDir::toNativeSeparators(folder.path())),
            QString(), 0);
    }
    return merger.take();
}

MergedSource mergeSingleFile(const QString &path, const QString &displayName)
{
    Merger merger;
    const SourceText source = readSourceFile(path, displayName);
    if (!source.isValid())
        merger.refuse(source.error, source.line > 0 ? displayName : QString(), source.line);
    else if (source.text.trimmed().isEmpty())
        merger.refuse(text(BuildMessage::fileEmpty).arg(displayName), QString(), 0);
    else
        merger.addText(source.text, displayName);
    return merger.take();
}
