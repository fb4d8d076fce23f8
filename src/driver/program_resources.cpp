#include "driver/program_resources.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSet>
#include <QtEndian>

namespace {

const char defaultVersion[] = "1.0.0.0";
const char nameWithoutProject[] = "VLProgram";
const char defaultIcon[] = "resources/icons/default/fa.ico";
const char embeddedIcon[] = ":/icons/default/fa.ico";
// Part of every key: changes when the script or the manifest is written in another way.
const char scriptForm[] = "dpi_aware";

const char iconUnusable[] = "程序图标“%1”%2，已改用%3。";
const char bitmapUnusable[] = "右键菜单图片“%1”%2，已忽略。";
const char fileMissing[] = "不存在";
const char fileUnreadable[] = "无法读取";
const char notAnIcon[] = "不是有效的 .ico 图标文件";
const char notABitmap[] = "不是有效的位图文件";
const char theDefaultIcon[] = "默认图标";
const char theProjectIcon[] = "工程图标";

constexpr qint64 largestImage = qint64(64) * 1024 * 1024;
constexpr int largestId = 65535;
// For bitmaps whose design gives them no number of their own.
constexpr int firstFreeId = 20000;

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

quint32 little32(const char *bytes)
{
    return qFromLittleEndian<quint32>(bytes);
}

// Whether every image of the directory lies within the file: resource compilers read past the end
// or give up otherwise.
bool isIcon(QFile &file)
{
    const QByteArray head = file.read(6);
    if (head.size() < 6 || little32(head.constData()) != 0x00010000)
        return false;
    const int count = qFromLittleEndian<quint16>(head.constData() + 4);
    const QByteArray entries = file.read(qint64(count) * 16);
    if (count == 0 || entries.size() != count * 16)
        return false;
    const char *const end = entries.constData() + entries.size();
    for (const char *entry = entries.constData(); entry != end; entry += 16) {
        const qint64 size = little32(entry + 8);
        const qint64 offset = little32(entry + 12);
        if (size == 0 || offset < 6 + count * 16 || offset + size > file.size())
            return false;
    }
    return true;
}

bool isBitmap(QFile &file)
{
    const QByteArray head = file.read(18);
    // Behind the file's header comes that of the image, which tells its own length.
    return head.size() == 18 && head.startsWith("BM") &&
           14 + qint64(little32(head.constData() + 14)) <= file.size();
}

// Empty when `path` holds an image for which `accepts` is true, else what is wrong with it.
QString faultOf(const QString &path, bool (*accepts)(QFile &), const char *wrongKind)
{
    const QFileInfo info(path);
    if (!info.exists())
        return text(fileMissing);
    QFile file(path);
    if (!info.isFile() || info.size() > largestImage)
        return text(wrongKind);
    if (!file.open(QIODevice::ReadOnly))
        return text(fileUnreadable);
    return accepts(file) ? QString() : text(wrongKind);
}

ResourceFile describe(const QString &path)
{
    const QFileInfo info(path);
    return {info.absoluteFilePath(), info.size(), info.lastModified().toMSecsSinceEpoch()};
}

// Projects carry paths of the host on which they were made.
QString withSlashes(QString path)
{
    return path.replace(QLatin1Char('\\'), QLatin1Char('/'));
}

// Relative paths start at the project, then at the current folder.
QString resolved(const QString &path, const CompilerBuildRequest &request)
{
    const QString clean = withSlashes(path);
    if (QDir::isAbsolutePath(clean) || !request.hasProject)
        return QFileInfo(clean).absoluteFilePath();
    const QString inProject = QDir(request.projectPath).absoluteFilePath(clean);
    return QFileInfo::exists(inProject) ? inProject : QFileInfo(clean).absoluteFilePath();
}

// The icon that is set for the main window in its design.
QString windowIcon(const CompilerBuildRequest &request)
{
    QList<VL::DesignComponent> components;
    for (const CompilerWindowBuildSpec &window : request.windowSpecs) {
        if (window.isMain)
            components += window.components;
    }
    components += request.components;
    for (const VL::DesignComponent &component : qAsConst(components)) {
        const QString icon = component.properties.value(QStringLiteral("icon")).toString();
        if (component.type == VL::Window && !icon.trimmed().isEmpty())
            return icon.trimmed();
    }
    return QString();
}

QString findDefaultIcon()
{
    for (const char *up : {"", "../", "../../"}) {
        QString path = QDir::cleanPath(QCoreApplication::applicationDirPath() + QLatin1Char('/') +
                                       QLatin1String(up) + QLatin1String(defaultIcon));
        if (faultOf(path, isIcon, notAnIcon).isEmpty())
            return path;
    }
    return QLatin1String(embeddedIcon);
}

ResourceFile chooseIcon(const CompilerBuildRequest &request, QStringList *warnings)
{
    struct Refused
    {
        QString path;
        QString fault;
    };
    QList<Refused> refused;
    QString chosen;
    const QStringList candidates{windowIcon(request), request.identity.icon.trimmed()};
    for (const QString &candidate : candidates) {
        if (candidate.isEmpty() || !chosen.isEmpty())
            continue;
        const QString path = resolved(candidate, request);
        const QString fault = faultOf(path, isIcon, notAnIcon);
        if (fault.isEmpty())
            chosen = path;
        else
            refused << Refused{candidate, fault};
    }
    const char *used = chosen.isEmpty() ? theDefaultIcon : theProjectIcon;
    for (const Refused &one : qAsConst(refused))
        *warnings << text(iconUnusable).arg(one.path, one.fault, text(used));
    return describe(chosen.isEmpty() ? findDefaultIcon() : chosen);
}

// Gathers the images that designs of context menus want inside the program.
class BitmapSearch
{
public:
    BitmapSearch(const QString &projectFolder, QStringList *warnings)
        : m_folder(projectFolder + QLatin1String("/resource/")), m_warnings(warnings)
    {}

    void addComponents(const QList<VL::DesignComponent> &components);
    QList<DesignBitmap> bitmaps() const { return m_bitmaps; }

private:
    void addMenu(const QByteArray &json);
    void addIcon(const QJsonObject &icon);
    int idFor(int wanted);

    QString m_folder;
    QStringList *m_warnings;
    QList<DesignBitmap> m_bitmaps;
    QSet<int> m_ids;
    QSet<QString> m_seen; // number and name
    int m_nextFree = firstFreeId;
};

void BitmapSearch::addComponents(const QList<VL::DesignComponent> &components)
{
    // A list instead of a call for each level: forms are nested as deep as their file says.
    QList<VL::DesignComponent> open = components;
    while (!open.isEmpty()) {
        const VL::DesignComponent component = open.takeFirst();
        const QString menu =
            component.properties.value(QStringLiteral("designContextMenu")).toString();
        if (!menu.trimmed().isEmpty())
            addMenu(menu.toUtf8());
        open += component.children;
    }
}

void BitmapSearch::addMenu(const QByteArray &json)
{
    // Text that does not parse counts as no menu.
    const QJsonObject root = QJsonDocument::fromJson(json).object();
    QList<QJsonArray> open{root.value(QLatin1String("items")).toArray()};
    while (!open.isEmpty()) {
        const QJsonArray items = open.takeFirst();
        for (const QJsonValue &item : items) {
            const QJsonObject entry = item.toObject();
            addIcon(entry.value(QLatin1String("icon")).toObject());
            if (entry.value(QLatin1String("kind")).toString() == QLatin1String("submenu"))
                open << entry.value(QLatin1String("items")).toArray();
        }
    }
}

void BitmapSearch::addIcon(const QJsonObject &icon)
{
    if (icon.value(QLatin1String("mode")).toString() != QLatin1String("embed"))
        return;
    static const QRegularExpression madeName(QStringLiteral("^vl_cm_[^/\\\\]*\\.bmp$"),
                                             QRegularExpression::CaseInsensitiveOption);
    QString name;
    for (const char *key : {"fileName", "sourceResource", "sourcePath"}) {
        const QString path = icon.value(QLatin1String(key)).toString();
        const QString last = QFileInfo(withSlashes(path)).fileName();
        if (name.isEmpty() && madeName.match(last).hasMatch())
            name = last;
    }
    const int wanted = icon.value(QLatin1String("embedId")).toInt();
    const QString seen = QString::number(wanted) + QLatin1Char('|') + name;
    if (name.isEmpty() || m_seen.contains(seen))
        return;
    m_seen.insert(seen);
    const QString path = m_folder + name;
    const QString fault = faultOf(path, isBitmap, notABitmap);
    if (!fault.isEmpty())
        *m_warnings << text(bitmapUnusable).arg(name, fault);
    else if (const int id = idFor(wanted))
        m_bitmaps << DesignBitmap{id, describe(path)};
}

// The wanted number, a free one when it is taken or none at all, 0 when there is no more.
int BitmapSearch::idFor(int wanted)
{
    int id = wanted;
    if (id < 1 || id > largestId || m_ids.contains(id)) {
        while (m_nextFree <= largestId && m_ids.contains(m_nextFree))
            ++m_nextFree;
        id = m_nextFree <= largestId ? m_nextFree : 0;
    }
    m_ids.insert(id);
    return id;
}

QList<DesignBitmap> findBitmaps(const CompilerBuildRequest &request, QStringList *warnings)
{
    if (!request.hasProject)
        return {};
    BitmapSearch search(QDir(request.projectPath).absolutePath(), warnings);
    search.addComponents(request.components);
    for (const CompilerWindowBuildSpec &window : request.windowSpecs)
        search.addComponents(window.components);
    return search.bitmaps();
}

QString productName(const CompilerBuildRequest &request)
{
    if (!request.identity.productName.trimmed().isEmpty())
        return request.identity.productName.trimmed();
    if (request.hasProject && !request.projectName.isEmpty())
        return request.projectName;
    return QLatin1String(nameWithoutProject);
}

// A value's own "|" must not look like the end of the value.
QString keyPart(QString value)
{
    return value.replace(QLatin1Char('\\'), QLatin1String("\\\\"))
        .replace(QLatin1Char('|'), QLatin1String("\\|"));
}

QString keyPart(const ResourceFile &file)
{
    return QStringLiteral("%1|%2|%3")
        .arg(keyPart(file.path), QString::number(file.size), QString::number(file.modified));
}

} // namespace

QString fourPartVersion(const QString &version)
{
    const QString told = version.trimmed();
    if (told.isEmpty())
        return QLatin1String(defaultVersion);
    const QStringList parts = told.left(200).split(QLatin1Char('.'));
    QStringList numbers;
    for (int i = 0; i < 4; ++i) {
        const QString part = parts.value(i).trimmed();
        int number = 0;
        for (const QChar c : part) {
            // Only these digits are digits to a resource compiler.
            if (c < QLatin1Char('0') || c > QLatin1Char('9'))
                break;
            number = qMin(65535, number * 10 + (c.unicode() - '0'));
        }
        numbers << QString::number(number);
    }
    return numbers.join(QLatin1Char('.'));
}

GatheredResources gatherProgramResources(const CompilerBuildRequest &request,
                                         const QString &executable)
{
    GatheredResources result;
    ProgramResources &resources = result.resources;
    resources.icon = chooseIcon(request, &result.warnings);
    resources.productName = productName(request);
    resources.fileDescription = request.identity.fileDescription.trimmed();
    resources.companyName = request.identity.companyName.trimmed();
    resources.copyright = request.identity.copyright.trimmed();
    resources.version = fourPartVersion(request.identity.version);
    resources.internalName = QFileInfo(executable).completeBaseName();
    resources.bitmaps = findBitmaps(request, &result.warnings);
    return result;
}

QString resourceKey(const ProgramResources &resources)
{
    QStringList bitmaps;
    for (const DesignBitmap &bitmap : resources.bitmaps)
        bitmaps << QString::number(bitmap.id) + QLatin1Char('=') + keyPart(bitmap.file);
    const QStringList parts{keyPart(resources.icon),
                            keyPart(resources.productName),
                            keyPart(resources.fileDescription),
                            keyPart(resources.companyName),
                            keyPart(resources.copyright),
                            keyPart(resources.version),
                            keyPart(resources.internalName),
                            QLatin1String(scriptForm),
                            bitmaps.join(QLatin1Char(';'))};
    return parts.join(QLatin1Char('|'));
}
