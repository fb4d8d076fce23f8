#include "project/project_info.h"

#include "designer/model/json_tree.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>

#include <algorithm>

namespace {

const char cannotOpen[] = "无法打开工程文件：%1";
const char tooLarge[] = "工程文件过大：%1";
const char notJson[] = "工程文件不是有效的 JSON：%1（%2）";
const char notAnObject[] = "工程文件的内容不是 JSON 对象：%1";

constexpr qint64 maxProjectBytes = 16 << 20;
constexpr int highestScheme = 5;

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

// Paths of other hosts have backward slashes.
QString cleanPath(QString path)
{
    return path.replace(QLatin1Char('\\'), QLatin1Char('/'));
}

// One key of the file. `read` is only called for a value of the kind that the key has.
struct Field
{
    const char *key;
    JsonKind kind;
    QJsonValue (*value)(const VL::ProjectInfo &info);
    void (*read)(VL::ProjectInfo &info, const QVariant &value);
};

template <QString VL::ProjectInfo::*Member>
constexpr Field textField(const char *key)
{
    return {key, JsonKind::String,
            [](const VL::ProjectInfo &info) { return QJsonValue(info.*Member); },
            [](VL::ProjectInfo &info, const QVariant &value) { info.*Member = value.toString(); }};
}

template <QString VL::ProjectInfo::*Member>
constexpr Field pathField(const char *key)
{
    return {key, JsonKind::String,
            [](const VL::ProjectInfo &info) { return QJsonValue(info.*Member); },
            [](VL::ProjectInfo &info, const QVariant &value) {
                info.*Member = cleanPath(value.toString());
            }};
}

template <bool VL::ProjectInfo::*Member>
constexpr Field flagField(const char *key)
{
    return {key, JsonKind::Bool,
            [](const VL::ProjectInfo &info) { return QJsonValue(info.*Member); },
            [](VL::ProjectInfo &info, const QVariant &value) { info.*Member = value.toBool(); }};
}

template <int VL::ProjectInfo::*Member>
constexpr Field numberField(const char *key)
{
    return {key, JsonKind::Number,
            [](const VL::ProjectInfo &info) { return QJsonValue(info.*Member); },
            [](VL::ProjectInfo &info, const QVariant &value) {
                if (value.type() == QVariant::Int)
                    info.*Member = value.toInt();
            }};
}

template <QStringList VL::ProjectInfo::*Member>
constexpr Field listField(const char *key)
{
    return {key, JsonKind::Array,
            [](const VL::ProjectInfo &info) {
                return QJsonValue(QJsonArray::fromStringList(info.*Member));
            },
            [](VL::ProjectInfo &info, const QVariant &value) {
                QStringList &list = info.*Member;
                list.clear();
                const QVariantList items = value.toList();
                for (const QVariant &item : items) {
                    if (item.type() == QVariant::String && !item.toString().isEmpty())
                        list << cleanPath(item.toString());
                }
                list.removeDuplicates();
            }};
}

template <QDateTime VL::ProjectInfo::*Member>
constexpr Field dateField(const char *key)
{
    return {key, JsonKind::String,
            [](const VL::ProjectInfo &info) {
                return QJsonValue((info.*Member).toString(Qt::ISODate));
            },
            [](VL::ProjectInfo &info, const QVariant &value) {
                info.*Member = QDateTime::fromString(value.toString(), Qt::ISODate);
            }};
}

using Info = VL::ProjectInfo;

// In the order of the file.
const Field fields[] = {
    textField<&Info::name>("name"),
    textField<&Info::version>("version"),
    textField<&Info::author>("author"),
    textField<&Info::description>("description"),
    textField<&Info::targetPlatform>("targetPlatform"),
    textField<&Info::compiler>("compiler"),
    flagField<&Info::unicode>("unicode"),
    listField<&Info::sourceFiles>("sourceFiles"),
    listField<&Info::uiFiles>("uiFiles"),
    listField<&Info::windowFiles>("windowFiles"),
    pathField<&Info::mainWindowFile>("mainWindowFile"),
    pathField<&Info::startupWindowFile>("startupWindowFile"),
    listField<&Info::resourceFiles>("resourceFiles"),
    pathField<&Info::globalVarsFile>("globalVarsFile"),
    pathField<&Info::globalConstFile>("globalConstFile"),
    flagField<&Info::encryptSource>("encryptSource"),
    numberField<&Info::encryptLevel>("encryptLevel"),
    textField<&Info::uiBackend>("uiBackend"),
    flagField<&Info::useBeautification>("useBeautification"),
    numberField<&Info::beautificationScheme>("beautificationScheme"),
    dateField<&Info::created>("created"),
    dateField<&Info::modified>("modified"),
};

bool hasSuffix(const QStringList &files, const char *suffix)
{
    return std::any_of(files.begin(), files.end(), [suffix](const QString &file) {
        return file.endsWith(QLatin1String(suffix), Qt::CaseInsensitive);
    });
}

// The windows tell it when the file does not.
QString backendOfWindows(const QStringList &windowFiles)
{
    const bool hasClassic = hasSuffix(windowFiles, ".vui");
    const bool hasLayout = hasSuffix(windowFiles, ".xml");
    if (hasSuffix(windowFiles, ".vlwin") && !hasClassic && !hasLayout)
        return QStringLiteral("vlwin");
    return hasLayout && !hasClassic ? QStringLiteral("vlui") : QStringLiteral("win32");
}

// In an object of their own, or as keys "ProjectSettings/..." beside the others.
ProgramIdentity readIdentity(const JsonTree &tree)
{
    const QByteArray group = "ProjectSettings";
    const JsonNode *settings = tree.find(tree.root(), group.constData());
    const auto value = [&](const char *name) {
        const JsonNode *node = settings ? tree.find(*settings, name) : nullptr;
        if (!node)
            node = tree.find(tree.root(), (group + '/' + name).constData());
        return node ? tree.string(*node) : QString();
    };
    return {value("icon"),        value("productName"), value("fileDescription"),
            value("companyName"), value("copyright"),   value("version")};
}

QByteArray newFile(const VL::ProjectInfo &info)
{
    JsonLayout layout;
    layout.indent = layout.unit;
    QByteArray bytes;
    for (const Field &field : fields) {
        bytes += (bytes.isEmpty() ? "{" : ",") + layout.newline + layout.unit +
                 quotedJson(QLatin1String(field.key)) + layout.colon +
                 formatJson(field.value(info), layout);
    }
    return bytes + layout.newline + '}' + layout.newline;
}

QStringList folderFiles(const QString &folder, const QString &name, const QStringList &patterns)
{
    QStringList files;
    const QStringList found =
        QDir(folder + QLatin1Char('/') + name).entryList(patterns, QDir::Files, QDir::Name);
    for (const QString &file : found)
        files << name + QLatin1Char('/') + file;
    return files;
}

// On a host that does not tell names by case, one file has one name in the list.
void addMissing(QStringList &list, const QStringList &files)
{
#ifdef Q_OS_WIN
    constexpr Qt::CaseSensitivity sensitivity = Qt::CaseInsensitive;
#else
    constexpr Qt::CaseSensitivity sensitivity = Qt::CaseSensitive;
#endif
    for (const QString &file : files) {
        if (!list.contains(file, sensitivity))
            list << file;
    }
}

QStringList windowPatterns(const QString &backend)
{
    if (backend == QLatin1String("vlui"))
        return {QStringLiteral("*.xml")};
    if (backend == QLatin1String("vlwin"))
        return {QStringLiteral("*.vlwin"), QStringLiteral("*.vui")};
    return {QStringLiteral("*.vui"), QStringLiteral("*.xml")};
}

} // namespace

namespace ProjectFile {

ReadProject read(const QString &path)
{
    ReadProject result;
    QFile file(path);
    const QFileInfo info(path);
    // A pipe of that name would never end.
    if (!info.isFile() || !file.open(QIODevice::ReadOnly))
        result.error = text(cannotOpen).arg(QDir::toNativeSeparators(path));
    else if (file.size() > maxProjectBytes)
        result.error = text(tooLarge).arg(QDir::toNativeSeparators(path));
    else
        result = parse(file.readAll(), QDir::toNativeSeparators(path));
    result.info.path = info.absolutePath();
    return result;
}

ReadProject parse(const QByteArray &bytes, const QString &displayName)
{
    ReadProject result;
    JsonTree tree;
    JsonError error;
    if (!tree.parse(bytes, &error)) {
        result.error = text(notJson).arg(displayName, error.message());
        return result;
    }
    if (tree.root().kind != JsonKind::Object) {
        result.error = text(notAnObject).arg(displayName);
        return result;
    }
    VL::ProjectInfo &info = result.info;
    for (const Field &field : fields) {
        const JsonNode *node = tree.find(tree.root(), field.key);
        if (node && node->kind == field.kind)
            field.read(info, tree.variant(*node));
    }
    const bool tellsBackend = tree.find(tree.root(), "uiBackend") != nullptr;
    if (!tellsBackend)
        info.uiBackend = backendOfWindows(info.windowFiles);
    else if (info.uiBackend.isEmpty() || info.uiBackend == QLatin1String("advanced"))
        info.uiBackend = QStringLiteral("win32");
    if (info.beautificationScheme < 0 || info.beautificationScheme > highestScheme)
        info.beautificationScheme = VL::ProjectInfo().beautificationScheme;
    info.identity = readIdentity(tree);
    info.original = bytes;
    return result;
}

QByteArray serialize(const VL::ProjectInfo &info)
{
    JsonTree tree;
    if (info.original.isEmpty() || !tree.parse(info.original))
        return newFile(info);
    const VL::ProjectInfo known = parse(info.original, QString()).info;
    for (const Field &field : fields) {
        const QJsonValue value = field.value(info);
        if (value != field.value(known))
            tree.setMember(tree.root(), QByteArray(), QLatin1String(field.key), value);
    }
    return tree.toBytes();
}

void addFilesOfFolders(VL::ProjectInfo &info)
{
    addMissing(info.sourceFiles,
               folderFiles(info.path, QStringLiteral("source"),
                           {QStringLiteral("*.vc"), QStringLiteral("*.vpp"), QStringLiteral("*.vt"),
                            QStringLiteral("*.vd"), QStringLiteral("*.vpi")}));
    addMissing(info.windowFiles,
               folderFiles(info.path, QStringLiteral("ui"), windowPatterns(info.uiBackend)));
}

bool stores(const VL::ProjectInfo &info, const char *key)
{
    JsonTree tree;
    return tree.parse(info.original) && tree.find(tree.root(), key);
}

QString windowName(const QString &windowFile)
{
    return QFileInfo(windowFile).completeBaseName();
}

} // namespace ProjectFile
