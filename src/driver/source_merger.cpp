#include "driver/source_merger.h"

#include "driver/build_messages.h"
#include "driver/source_text.h"
#include "frontend/type_blocks.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStringList>

namespace {

using BuildMessage::text;

// One kind of source file: its pattern, and what stands ahead of its name in the marker line.
struct SourceKind
{
    const char *pattern;
    const char *markerLabel;
    bool isTypeBlocks;
};

constexpr SourceKind sourceKinds[] = {
    {"*.vc", " ", false},
    {"*.vpp", " 类定义", false},
    {"*.vt", " 类型定义", false},
    {"*.vd", " 类型定义", true},
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
    void addTypeBlocks(const QString &content, const QString &name);

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

// The class text that type blocks become has other lines than the file: each line belongs to the
// next line of the file that holds its last word.
void Merger::addTypeBlocks(const QString &content, const QString &name)
{
    static const QRegularExpression word(QStringLiteral("[\\p{L}_][\\p{L}\\p{N}_]*"));
    QString error;
    const QString converted = convertTypeBlocks(content, &error);
    if (!error.isEmpty()) {
        static const QRegularExpression number(QStringLiteral("第\\s*(\\d+)\\s*行"));
        refuse(error, name, number.match(error).captured(1).toInt());
        return;
    }
    const QStringList original = content.split(QLatin1Char('\n'));
    int at = 0;
    const QStringList lines = converted.split(QLatin1Char('\n'));
    for (int i = 0; i < lines.size(); ++i) {
        QString last;
        QRegularExpressionMatchIterator words = word.globalMatch(lines.at(i));
        while (words.hasNext())
            last = words.next().captured();
        for (int ahead = at; !last.isEmpty() && ahead < qMin(at + 200, original.size()); ++ahead) {
            if (original.at(ahead).contains(last)) {
                at = ahead;
                break;
            }
        }
        m_merged.lineMap.insert(m_nextLine + i, SourceLocation{name, at + 1});
    }
    append(converted);
}

void Merger::addFile(const QString &path, const QString &name, const SourceKind &kind)
{
    const SourceText source = readSourceFile(path, name);
    if (!source.isValid()) {
        refuse(source.error, name, source.line);
        return;
    }
    append(QStringLiteral("// =====%1%2 =====\n")
               .arg(QString::fromUtf8(kind.markerLabel), QFileInfo(path).fileName()));
    if (kind.isTypeBlocks)
        addTypeBlocks(source.text, name);
    else
        addText(source.text, name);
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
