#include "driver/build_hashes.h"

#include "driver/source_collapser.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>

// Written by the build of this program.
extern const char vorelGeneratorFingerprint[];

namespace BuildHash {

namespace {

QByteArray json(const QJsonValue &value)
{
    const QByteArray array = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return array.mid(1, array.size() - 2);
}

// An object whose keys keep their order.
class OrderedObject
{
public:
    OrderedObject &add(const QString &key, const QByteArray &valueText)
    {
        m_members += (m_members.isEmpty() ? "" : ",") + json(key) + ':' + valueText;
        return *this;
    }
    OrderedObject &add(const char *key, const QJsonValue &value)
    {
        return add(QLatin1String(key), json(value));
    }
    OrderedObject &add(const char *key, const QByteArray &valueText)
    {
        return add(QString(QLatin1String(key)), valueText);
    }
    QByteArray text() const { return '{' + m_members + '}'; }

private:
    QByteArray m_members;
};

// Lists and maps have no text of their own.
QString valueText(const QVariant &value)
{
    const QJsonValue asJson = QJsonValue::fromVariant(value);
    if (asJson.isArray() || asJson.isObject())
        return QString::fromUtf8(json(asJson));
    return value.toString();
}

QByteArray propertiesJson(const VL::DesignComponent &component)
{
    OrderedObject object;
    for (auto it = component.properties.begin(); it != component.properties.end(); ++it) {
        if (!it.value().isNull())
            object.add(it.key(), json(valueText(it.value())));
    }
    return object.text();
}

QByteArray eventsJson(const VL::DesignComponent &component)
{
    OrderedObject object;
    for (auto it = component.eventHandlers.begin(); it != component.eventHandlers.end(); ++it)
        object.add(it.key(), json(it.value()));
    return object.text();
}

QByteArray joined(const QList<QByteArray> &items)
{
    return '[' + items.join(',') + ']';
}

QByteArray componentsJson(const QList<VL::DesignComponent> &components)
{
    QList<QByteArray> items;
    for (const VL::DesignComponent &component : components) {
        items << OrderedObject()
                     .add("id", component.id)
                     .add("originalName", component.originalName)
                     .add("type", component.type)
                     .add("x", component.x)
                     .add("y", component.y)
                     .add("w", component.width)
                     .add("h", component.height)
                     .add("z", component.zOrder)
                     .add("locked", component.locked)
                     .add("props", propertiesJson(component))
                     .add("events", eventsJson(component))
                     .add("children", componentsJson(component.children))
                     .text();
    }
    return joined(items);
}

// The components of all designs.
QList<VL::DesignComponent> designed(const CompilerBuildRequest &request)
{
    if (!request.hasProject && request.windowSpecs.isEmpty())
        return request.components;
    QList<VL::DesignComponent> all;
    for (const CompilerWindowBuildSpec &window : request.windowSpecs)
        all += window.components;
    return all;
}

QByteArray breakpointsJson(const CompilerDebugBreakpointsMap &breakpoints)
{
    QList<QByteArray> items;
    for (auto it = breakpoints.begin(); it != breakpoints.end(); ++it) {
        QJsonArray lines;
        for (const int line : it.value())
            lines << line;
        items << OrderedObject().add("file", it.key()).add("lines", QJsonValue(lines)).text();
    }
    return joined(items);
}

void appendGeometry(const QList<VL::DesignComponent> &components, QString &text)
{
    for (const VL::DesignComponent &component : components) {
        text += QStringLiteral("_%1_%2_%3_%4_")
                    .arg(component.x)
                    .arg(component.y)
                    .arg(component.width)
                    .arg(component.height);
        text += QString::fromUtf8(propertiesJson(component) + eventsJson(component));
        appendGeometry(component.children, text);
    }
}

// Files of classes and types that are read from disk though the text was handed in.
QByteArray classFiles(const CompilerBuildRequest &request)
{
    if (!request.hasProject || request.sourceText.isEmpty())
        return QByteArray();
    QByteArray content;
    for (const char *folder : {"/source", ""}) {
        const QDir dir(request.projectPath + QLatin1String(folder));
        const QFileInfoList files = dir.entryInfoList(
            {QStringLiteral("*.vpp"), QStringLiteral("*.vt")}, QDir::Files, QDir::Name);
        for (const QFileInfo &info : files) {
            QFile file(info.filePath());
            content += info.fileName().toUtf8() + '\n';
            if (file.open(QIODevice::ReadOnly))
                content += QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha1);
        }
    }
    return content;
}

// What the snapshot leaves out and the program shows all the same.
QByteArray otherInputs(const CompilerBuildRequest &request, const DebugOptions &debug)
{
    OrderedObject object;
    object.add("useBeautification", request.useBeautification)
        .add("splitRuntime", request.splitRuntime && qEnvironmentVariableIsEmpty("VOREL_NO_SPLIT"));
    QList<QByteArray> windows;
    for (const CompilerWindowBuildSpec &window : request.windowSpecs) {
        windows << OrderedObject()
                       .add("name", window.name)
                       .add("file", window.filePath)
                       .add("main", window.isMain)
                       .add("startup", window.isStartup)
                       .add("components", componentsJson(window.components))
                       .text();
    }
    if (debug.stopsAnywhere())
        object.add("breakpoints", breakpointsJson(debug.breakpoints));
    return object.add("windows", joined(windows)).text();
}

QByteArray decimal(const QByteArray &bytes)
{
    return QByteArray::number(qHash(bytes, 0U));
}

} // namespace

QByteArray ofText(const QString &text)
{
    return decimal(text.toUtf8());
}

bool countsDebugging()
{
    return qgetenv("VL_IDE_DISABLE_AGGRESSIVE_INCREMENTAL") == "1";
}

QByteArray inputsSnapshot(const QByteArray &sourceHash, const CompilerBuildRequest &request,
                          const DebugOptions &debug)
{
    const bool counts = countsDebugging();
    return OrderedObject()
        .add("srcHash", QString::fromLatin1(sourceHash))
        .add("uiBackend", request.uiBackend)
        .add("platform", request.platform)
        .add("buildCfg", request.buildConfig)
        .add("debugMode", counts && debug.isOn)
        .add("useBeautification", counts && request.useBeautification)
        .add("beautificationScheme", request.beautificationScheme)
        .add("compilerType", request.effectiveCompiler())
        .add("staticLink", request.staticLink)
        .add("sourceProtection", false)
        .add("quickjsRoot", request.quickjsRoot)
        .add("ui", componentsJson(designed(request)))
        .add("bps", counts ? breakpointsJson(debug.breakpoints) : QByteArray("[]"))
        .text();
}

BuildHashes ofBuild(const QString &text, const CompilerBuildRequest &request,
                    const DebugOptions &debug)
{
    QString windows;
    for (const CompilerWindowBuildSpec &window : request.windowSpecs)
        appendGeometry(window.components, windows);
    const QByteArray windowText = windows.toUtf8();
    const QString collapsed = collapsedSource(text);
    const QByteArray collapsedHash = ofText(collapsed);

    BuildHashes hashes;
    hashes.codeHash = decimal(ofText(text) + windowText);
    hashes.normalizedHash = decimal(collapsedHash + windowText);
    const QByteArray snapshot = inputsSnapshot(hashes.normalizedHash, request, debug);
    hashes.inputsHash = decimal(snapshot);
    hashes.sizeText = QByteArray::number(collapsed.size()) + '_' + collapsedHash;
    // As UTF-16: half a surrogate pair has no UTF-8.
    const QByteArray units =
        QByteArray::fromRawData(reinterpret_cast<const char *>(collapsed.constData()),
                                collapsed.size() * int(sizeof(QChar)));
    hashes.digest = digestOf({units, snapshot, otherInputs(request, debug), classFiles(request)});
    return hashes;
}

// Runs of line feeds are cut to two first, then blanks at line ends are dropped.
QString cleanedProgram(const QString &program)
{
    QString result(program.size(), Qt::Uninitialized);
    QChar *const begin = result.data();
    QChar *out = begin;
    int feeds = 0;
    for (const QChar c : program) {
        if (c != QLatin1Char('\n')) {
            feeds = 0;
            *out++ = c;
            continue;
        }
        if (++feeds > 2)
            continue;
        while (out > begin && (out[-1] == QLatin1Char(' ') || out[-1] == QLatin1Char('\t')))
            --out;
        *out++ = c;
    }
    result.truncate(int(out - begin));
    return result;
}

QByteArray digestOf(const QList<QByteArray> &parts)
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    for (const QByteArray &part : parts) {
        hash.addData(QByteArray::number(part.size()) + ':');
        hash.addData(part);
    }
    return hash.result().toHex();
}

QString digestOfTexts(const QStringList &parts)
{
    QList<QByteArray> bytes;
    for (const QString &part : parts)
        bytes << part.toUtf8();
    return QString::fromLatin1(digestOf(bytes));
}

QByteArray generatorFingerprint()
{
    return QByteArray(vorelGeneratorFingerprint);
}

} // namespace BuildHash
