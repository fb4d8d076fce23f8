#include "driver/program_finish.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>

namespace {

// One row of removed_features.json: if a program names any of `names`, `text` is shown, for each
// name or once.
struct RemovedFeature
{
    QStringList names;
    QString text;
    bool once;
};

// One row of framework_stubs.json. The key is the head of a definition up to its bracket.
struct FrameworkStub
{
    QString key;
    QString name;
    QString text;
};

QJsonArray readRows(const char *path)
{
    QFile file((QString::fromLatin1(path)));
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning("driver: missing resource %s", path);
        return {};
    }
    return QJsonDocument::fromJson(file.readAll()).array();
}

const QList<RemovedFeature> &removedFeatures()
{
    static const QList<RemovedFeature> features = [] {
        QList<RemovedFeature> rows;
        const QJsonArray array = readRows(":/codegen/removed_features.json");
        for (const QJsonValue &value : array) {
            const QJsonObject object = value.toObject();
            RemovedFeature row{{},
                               object.value(QLatin1String("text")).toString(),
                               object.value(QLatin1String("once")).toBool()};
            const QJsonArray names = object.value(QLatin1String("names")).toArray();
            for (const QJsonValue &name : names)
                row.names << name.toString();
            rows << row;
        }
        return rows;
    }();
    return features;
}

const QList<FrameworkStub> &frameworkStubs()
{
    static const QList<FrameworkStub> stubs = [] {
        QList<FrameworkStub> rows;
        const QJsonArray array = readRows(":/codegen/framework_stubs.json");
        for (const QJsonValue &value : array) {
            const QString key = value.toObject().value(QLatin1String("key")).toString();
            const int space = key.lastIndexOf(QLatin1Char(' '));
            rows << FrameworkStub{key, key.mid(space + 1).chopped(1),
                                  value.toObject().value(QLatin1String("stub")).toString() +
                                      QLatin1Char('\n')};
        }
        return rows;
    }();
    return stubs;
}

bool isNameCharacter(QChar character)
{
    return character.isLetterOrNumber() || character == QLatin1Char('_');
}

// Every name that begins with "VL_", as often as it may stand in the text, once: the text is long
// and the questions about it are many.
QSet<QString> runtimeNames(const QString &text)
{
    static const QString prefix = QStringLiteral("VL_");
    QSet<QString> names;
    QSet<QStringRef> known;
    for (int at = text.indexOf(prefix); at >= 0;) {
        int end = at + prefix.size();
        while (end < text.size() && isNameCharacter(text.at(end)))
            ++end;
        known.insert(text.midRef(at, end - at));
        at = text.indexOf(prefix, end);
    }
    for (const QStringRef &name : qAsConst(known))
        names.insert(name.toString());
    return names;
}

QSet<QString> programNames(const ProgramText &program)
{
    QSet<QString> names;
    for (const ProgramText::Part &part : program.parts()) {
        if (part.kind == ProgramText::PartKind::Program)
            names.unite(runtimeNames(part.text));
    }
    return names;
}

// Whether a name, or the beginning of a longer one, is among `names`.
bool holdsBeginning(const QSet<QString> &names, const QString &beginning)
{
    return std::any_of(names.begin(), names.end(),
                       [&beginning](const QString &name) { return name.startsWith(beginning); });
}

QString programParts(const ProgramText &program)
{
    QString text;
    for (const ProgramText::Part &part : program.parts()) {
        if (part.kind == ProgramText::PartKind::Program)
            text += part.text;
    }
    return text;
}

QString missingStubs(const ProgramText &program, const QString &libraryText)
{
    QString text;
    const QSet<QString> names = programNames(program).unite(runtimeNames(libraryText));
    for (const FrameworkStub &stub : frameworkStubs()) {
        if (names.contains(stub.name) && !libraryText.contains(stub.key) &&
            !program.contains(stub.key))
            text += stub.text;
    }
    return text;
}

} // namespace

QStringList removedFeatureWarnings(const ProgramText &program)
{
    QStringList warnings;
    const QSet<QString> used = programNames(program);
    for (const RemovedFeature &feature : removedFeatures()) {
        for (const QString &name : feature.names) {
            if (!holdsBeginning(used, name))
                continue;
            warnings << (feature.text.contains(QLatin1String("%1")) ? feature.text.arg(name)
                                                                    : feature.text);
            if (feature.once)
                break;
        }
    }
    return warnings;
}

bool usesScriptEngine(const ProgramText &program)
{
    static const QRegularExpression comments(
        QStringLiteral("//[^\\n]*|/\\*[^*]*\\*+(?:[^/*][^*]*\\*+)*/"));
    static const QRegularExpression use(
        QStringLiteral("(VL_JSEngine\\s+\\w+|VL_JSEngine\\s*[*&]|new\\s+VL_JSEngine|"
                       "VL_JSEngine\\s*\\()"));
    if (!program.programContains(QStringLiteral("VL_JSEngine")))
        return false;
    return programParts(program).remove(comments).contains(use);
}

bool usesNetworkClasses(const ProgramText &program)
{
    const QSet<QString> names = programNames(program);
    return holdsBeginning(names, QStringLiteral("VL_HttpClass")) ||
           holdsBeginning(names, QStringLiteral("VL_TCPClass")) ||
           holdsBeginning(names, QStringLiteral("VL_UDPClass")) ||
           holdsBeginning(names, QStringLiteral("VL_WebSocketClass"));
}

void insertUserClasses(ProgramText &program, const QString &userClasses)
{
    static const QRegularExpression name(QStringLiteral("VL_User_[a-zA-Z0-9_]+_t"));
    if (program.programContains(QStringLiteral("struct VL_User_")))
        return;
    QString text = userClasses;
    if (text.isEmpty() && program.programContains(QStringLiteral("VL_User_"))) {
        QStringList names;
        QRegularExpressionMatchIterator matches = name.globalMatch(programParts(program));
        while (matches.hasNext())
            names << matches.next().captured();
        names.removeDuplicates();
        for (const QString &structName : qAsConst(names)) {
            text += QStringLiteral("struct %1 { %1() {} template<typename... Args> "
                                   "%1(Args&&...) {} };\n")
                        .arg(structName);
        }
    }
    if (text.isEmpty())
        return;
    program.insertBehindLeadingBlock(
        QStringLiteral("// User class placeholders (declared before first code use to avoid "
                       "C2065)\n") +
        text + QLatin1Char('\n'));
}

void insertLibraryText(ProgramText &program, const QString &libraryText)
{
    const QString stubs = missingStubs(program, libraryText);
    if (!libraryText.isEmpty()) {
        program.insertLibraryText(
            QStringLiteral("\n// ========== Extension Library Runtime Code ==========\n") +
            libraryText +
            (libraryText.endsWith(QLatin1Char('\n')) ? QString() : QStringLiteral("\n")));
    }
    // The same place again: what comes second stands ahead of what came first.
    if (!stubs.isEmpty()) {
        program.insertLibraryText(QStringLiteral("\n// ========== Framework Stubs ==========\n") +
                                  stubs);
    }
}

void repairHeaders(ProgramText &program)
{
    const bool needed = program.contains(QStringLiteral("VL_Thread_Start")) ||
                        program.contains(QStringLiteral("VL_ThreadPool_Submit")) ||
                        program.contains(QStringLiteral("__vl_sp_"));
    if (!needed)
        return;
    QString missing;
    for (const char *header : {"memory", "functional", "string"}) {
        const QString name = QLatin1String(header);
        if (!program.contains(QStringLiteral("#include <%1>").arg(name)) &&
            !program.contains(QStringLiteral("#include<%1>").arg(name)))
            missing += QStringLiteral("#include <%1>\n").arg(name);
    }
    if (!missing.isEmpty())
        program.insertBehindLeadingBlock(missing);
}
