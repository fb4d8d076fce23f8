#include "project/source_list.h"

#include "driver/build_messages.h"
#include "project/merge_messages.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <tuple>

namespace {

const QString &mainName()
{
    static const QString name = QStringLiteral("source/main.vc");
    return name;
}

QString fileName(const SourceFile &file)
{
    return file.name.mid(file.name.lastIndexOf(QLatin1Char('/')) + 1);
}

// As names of windows and of their sources are compared.
QString comparableName(const QString &name)
{
    return name.normalized(QString::NormalizationForm_C).toCaseFolded();
}

QString withSlash(const QString &folder)
{
    return folder.endsWith(QLatin1Char('/')) ? folder : folder + QLatin1Char('/');
}

std::optional<SourceKind> kindOf(const QString &name)
{
    static const QHash<QString, SourceKind> kinds{
        {QStringLiteral("vc"), SourceKind::Code},
        {QStringLiteral("vpp"), SourceKind::ClassFile},
        {QStringLiteral("vt"), SourceKind::TypeFile},
        {QStringLiteral("vd"), SourceKind::TypeBlockFile},
    };
    const int dot = name.lastIndexOf(QLatin1Char('.'));
    const auto found = kinds.constFind(name.mid(dot + 1).toLower());
    return dot < 0 || found == kinds.constEnd() ? std::nullopt : std::make_optional(*found);
}

class SourceCollector
{
public:
    explicit SourceCollector(const QString &projectPath)
        : m_root(withSlash(QDir(projectPath).absolutePath())),
          m_canonicalRoot(withSlash(QFileInfo(m_root).canonicalFilePath()))
    {}

    void add(const QString &entry);
    SourceList take() { return std::move(m_list); }

private:
    bool isInside(const SourceFile &file);
    QString canonicalFolder(const QString &folder);

    const QString m_root;
    const QString m_canonicalRoot;
    QHash<QString, QString> m_canonicalFolders;
    QSet<QString> m_known;
    SourceList m_list;
};

// With a slash at its end; empty if it does not exist.
QString SourceCollector::canonicalFolder(const QString &folder)
{
    const auto known = m_canonicalFolders.constFind(folder);
    if (known != m_canonicalFolders.constEnd())
        return *known;
    const QString canonical = QFileInfo(folder).canonicalFilePath();
    return *m_canonicalFolders.insert(folder,
                                      canonical.isEmpty() ? canonical : withSlash(canonical));
}

// A link may lead anywhere. What does not exist is inside; reading it tells that it is missing.
bool SourceCollector::isInside(const SourceFile &file)
{
    if (!file.path.startsWith(m_root))
        return false;
    const QFileInfo info(file.path);
    const QString canonical =
        info.isSymLink() ? info.canonicalFilePath() : canonicalFolder(info.path());
    return canonical.isEmpty() || canonical.startsWith(m_canonicalRoot);
}

void SourceCollector::add(const QString &entry)
{
    QString written = entry;
    written.replace(QLatin1Char('\\'), QLatin1Char('/'));
    const std::optional<SourceKind> kind = kindOf(written);
    if (!kind)
        return;
    const bool isAbsolute = QDir::isAbsolutePath(written);
    SourceFile file;
    file.path = QDir::cleanPath(isAbsolute ? written : m_root + written);
    file.name = file.path.startsWith(m_root) ? file.path.mid(m_root.size()) : file.path;
    file.kind = *kind;
    if (m_known.contains(file.path))
        return;
    m_known.insert(file.path);
    if (isAbsolute || isInside(file)) {
        m_list.files << file;
        return;
    }
    m_list.errors << BuildDiagnostic{BuildDiagnostic::Severity::Error, entry, 0,
                                     BuildMessage::text(MergeMessage::outsideProject).arg(entry)};
}

// The one exact name wins over others of a file system that tells cases apart.
void markMain(QList<SourceFile> &files)
{
    SourceFile *chosen = nullptr;
    for (SourceFile &file : files) {
        if (file.name.compare(mainName(), Qt::CaseInsensitive) == 0 &&
            (!chosen || file.name == mainName()))
            chosen = &file;
    }
    if (chosen)
        chosen->kind = SourceKind::Main;
}

// The first file of a name is the window's, and the first window of a name has it.
void assignWindows(QList<SourceFile> &files, const QList<ProjectWindow> &windows)
{
    QHash<QString, int> byName;
    for (int i = windows.size() - 1; i >= 0; --i)
        byName.insert(comparableName(windows.at(i).name), i);
    for (SourceFile &file : files) {
        const QString name = comparableName(QFileInfo(file.name).completeBaseName());
        if (file.kind == SourceKind::Code && byName.contains(name))
            file.window = byName.take(name);
    }
}

} // namespace

SourceList listSources(const ProjectSources &sources)
{
    SourceCollector collector(sources.projectPath);
    for (const QString &entry : sources.files)
        collector.add(entry);
    SourceList list = collector.take();
    markMain(list.files);
    const auto byName = [](const SourceFile &left, const SourceFile &right) {
        return std::make_tuple(fileName(left), left.path) <
               std::make_tuple(fileName(right), right.path);
    };
    std::sort(list.files.begin(), list.files.end(), byName);
    assignWindows(list.files, sources.windows);
    const auto rank = [](const SourceFile &file) {
        const bool isBlocks = file.kind == SourceKind::TypeBlockFile;
        return std::make_tuple(isBlocks ? SourceKind::TypeFile : file.kind, file.window < 0,
                               file.window);
    };
    std::stable_sort(
        list.files.begin(), list.files.end(),
        [&](const SourceFile &left, const SourceFile &right) { return rank(left) < rank(right); });
    return list;
}
