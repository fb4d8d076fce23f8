#include "driver/toolchain_names.h"

#include "catalog/command_library.h"
#include "codegen/generator_tables.h"
#include "driver/toolchain_table.h"
#include "frontend/parser.h"
#include "frontend/value_type.h"

#include <QRegularExpression>

#include <algorithm>

#if __has_include(<cxxabi.h>)
#include <cstdlib>
#include <cxxabi.h>
#endif

namespace {

// The characters that `expression` finds, its last group their code.
QString withCharacters(const QString &text, const QRegularExpression &expression)
{
    QString result;
    int copied = 0;
    QRegularExpressionMatchIterator matches = expression.globalMatch(text);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        const uint code = match.captured(match.lastCapturedIndex()).toUInt(nullptr, 16);
        result += text.midRef(copied, match.capturedStart() - copied);
        result += QString::fromUcs4(&code, 1);
        copied = match.capturedEnd();
    }
    return result + text.midRef(copied);
}

// "\u4e3b" and "\U00004e3b", as g++ shows what is not ASCII.
QString withoutUniversalNames(const QString &text)
{
    static const QRegularExpression escape(
        QStringLiteral("\\\\(?:U([0-9A-Fa-f]{8})|u([0-9A-Fa-f]{4}))"));
    return text.contains(QLatin1Char('\\')) ? withCharacters(text, escape) : text;
}

QString demangled(const QString &symbol)
{
    static const QRegularExpression import(
        QStringLiteral("^(?:__imp_|__declspec\\(dllimport\\) )"));
    static const QRegularExpression msvc(QStringLiteral("^\\?([A-Za-z_]\\w*)@"));
    QString name = symbol.trimmed();
    name.remove(import);
    const QRegularExpressionMatch decorated = msvc.match(name);
    if (decorated.hasMatch())
        return decorated.captured(1);
#if __has_include(<cxxabi.h>)
    // 32-bit symbols have one more underscore.
    const int begin = name.startsWith(QLatin1String("__Z")) ? 1 : 0;
    if (name.midRef(begin).startsWith(QLatin1String("_Z"))) {
        int status = 0;
        char *text =
            abi::__cxa_demangle(name.mid(begin).toUtf8().constData(), nullptr, nullptr, &status);
        if (status == 0)
            name = QString::fromUtf8(text);
        std::free(text);
    }
#endif
    return name;
}

// The name in a declaration: "VL_SubStr" in "std::wstring VL_SubStr(const std::wstring&)".
QString declaredName(const QString &declaration)
{
    static const QRegularExpression arguments(QStringLiteral("<[^<>]*>"));
    static const QRegularExpression decoration(QStringLiteral("@\\d+$"));
    QString name = withoutUniversalNames(declaration).section(QLatin1Char('('), 0, 0).trimmed();
    while (name.contains(arguments))
        name.remove(arguments);
    name = name.section(QLatin1Char(' '), -1);
    while (name.startsWith(QLatin1Char('*')) || name.startsWith(QLatin1Char('&')))
        name.remove(0, 1);
    return name.remove(decoration);
}

// Of names that mean the same the one that the user wrote; without one, the best.
QString written(const QStringList &names, const QString &source)
{
    QString best;
    for (const QString &name : names) {
        if (name.size() > best.size() && source.contains(name))
            best = name;
    }
    return best.isEmpty() && !names.isEmpty() ? names.first() : best;
}

// One spelling for a type, whoever names it.
QString plainType(const QString &cppType)
{
    static const QRegularExpression defaults(
        QStringLiteral(",\\s*std::(?:allocator|char_traits)<[^<>]*>\\s*"));
    static const QRegularExpression words(
        QStringLiteral("\\b(?:const|volatile|struct|class|enum|std::__cxx11::|__cdecl)\\b\\s*"));
    static const QRegularExpression array(QStringLiteral("\\s*\\[\\d*\\]$"));
    static const QRegularExpression number(QStringLiteral(
        "^(?:unsigned |signed )?(?:long long|long|short|int)(?: unsigned)?(?: int)?$"));
    QString type = withoutUniversalNames(cppType);
    while (type.contains(defaults))
        type.remove(defaults);
    type.remove(words).remove(QLatin1String("__cxx11::"));
    type.replace(QLatin1String("> >"), QLatin1String(">>"));
    const bool isArray = type.contains(array);
    type.remove(array).remove(QLatin1Char('&'));
    type = type.trimmed();
    if (type.endsWith(QLatin1Char('*')) || isArray)
        type = type.remove(QLatin1Char('*')).trimmed() + QLatin1Char('*');
    if (type == QLatin1String("std::basic_string<wchar_t>") ||
        type == QLatin1String("basic_string<wchar_t>"))
        return QStringLiteral("std::wstring");
    return type.contains(number) ? QStringLiteral("int") : type;
}

} // namespace

const ToolchainNames &ToolchainNames::instance()
{
    static const ToolchainNames names;
    return names;
}

ToolchainNames::ToolchainNames()
{
    addCommands();
    addConstants();
    addClasses();
    const QHash<QString, QString> &functions = ToolchainTable::instance().functions;
    for (auto fixed = functions.cbegin(); fixed != functions.cend(); ++fixed)
        m_commands.insert(fixed.key(), {fixed.value()});
}

// Main names of the catalogue come first, then short ones.
void ToolchainNames::addCommands()
{
    const CommandLibrary &library = CommandLibrary::builtin();
    const QList<CommandInfo> &records = library.allCommands();
    for (const CommandInfo &record : records) {
        if (!record.cppFunction.isEmpty())
            m_commands[record.cppFunction] << record.name;
    }
    QStringList names;
    const QHash<QString, QString> &map = GeneratorTables::instance().commandMap;
    for (auto row = map.cbegin(); row != map.cend(); ++row) {
        if (!row.key().startsWith(QLatin1Char('#')))
            names << row.key();
    }
    const auto rank = [&library](const QString &name) {
        const CommandInfo *record = library.commandInfo(name);
        return std::make_tuple(!record || record->name != name, name.size(), name);
    };
    std::sort(names.begin(), names.end(), [&rank](const QString &one, const QString &other) {
        return rank(one) < rank(other);
    });
    for (const QString &name : qAsConst(names)) {
        QStringList &known = m_commands[map.value(name)];
        if (!known.contains(name))
            known << name;
    }
}

void ToolchainNames::addConstants()
{
    static const QRegularExpression identifier(QStringLiteral("^[A-Za-z_]\\w*$"));
    const QHash<QString, QString> &map = GeneratorTables::instance().commandMap;
    for (auto row = map.cbegin(); row != map.cend(); ++row) {
        if (row.key().startsWith(QLatin1Char('#')) && row.value().contains(identifier))
            m_constants[row.value()] << row.key().mid(1);
    }
    for (QStringList &names : m_constants)
        names.sort();
}

void ToolchainNames::addClasses()
{
    const auto classes = Parser().classRegistry();
    for (const auto &one : classes) {
        m_classes.insert(one.cppName, one.name);
        for (const auto &member : {one.methods, one.properties}) {
            for (auto it = member.cbegin(); it != member.cend(); ++it) {
                m_commands[one.cppName + QLatin1String("::") + it.value().cppName]
                    << one.name + QLatin1Char('.') + it.key();
            }
        }
    }
}

// "动物" as the generator has it may be "动物类" in the source.
QString ToolchainNames::classWord(const QString &cppClass, const UserText &user) const
{
    const QString known = m_classes.value(cppClass);
    if (!known.isEmpty() || !cppClass.startsWith(QLatin1String("VL_User_")) ||
        cppClass.contains(QLatin1Char(':')))
        return known;
    const QString name = decoded(cppClass);
    const QString withSuffix = name + QChar(u'类');
    return user.whole.contains(withSuffix) ? withSuffix : name;
}

QString ToolchainNames::typeWord(const QString &cppType, const UserText &user) const
{
    static const QRegularExpression list(QStringLiteral("^std::vector<(?!std::vector).*>$"));
    const QString type = plainType(cppType);
    QString word = ToolchainTable::instance().types.value(type);
    if (word.isEmpty())
        word = wordOf(type.contains(list) ? ValueType::Array : valueTypeOf(type));
    return word.isEmpty() ? classWord(type, user) : word;
}

KnownName ToolchainNames::find(const QString &cppName, const UserText &user) const
{
    static const QRegularExpression form(QStringLiteral("^#?[\\w:~]+$"),
                                         QRegularExpression::UseUnicodePropertiesOption);
    KnownName known;
    const QString name = declaredName(demangled(cppName));
    if (!name.contains(form))
        return known;
    known.command = written(m_commands.value(name), user.line);
    if (!known.command.isEmpty())
        return known;
    known.constant = name.startsWith(QLatin1Char('#'))
                         ? name.mid(1)
                         : written(m_constants.value(name), user.line);
    known.name = known.constant.isEmpty() ? ToolchainTable::instance().names.value(name)
                                          : QLatin1Char('#') + known.constant;
    if (known.name.isEmpty())
        known.name = classWord(name, user);
    return known.name.isEmpty() ? findMember(name, user) : known;
}

// A name that is in no table, perhaps within a class.
KnownName ToolchainNames::findMember(const QString &name, const UserText &user) const
{
    const QStringList &internals = ToolchainTable::instance().internalPrefixes;
    const int separator = name.lastIndexOf(QLatin1String("::"));
    const QString cppMember = name.mid(separator < 0 ? 0 : separator + 2);
    const QString owner = classWord(name.left(qMax(0, separator)), user);
    const QString member = decoded(cppMember);
    // What can be decoded was the user's.
    const bool isOurs =
        owner.isEmpty() && member == cppMember &&
        std::any_of(internals.begin(), internals.end(),
                    [&name](const QString &prefix) { return name.startsWith(prefix); });
    KnownName known;
    known.internal = isOurs || !typeWord(name, user).isEmpty();
    if (known.internal)
        return known;
    const bool isConstructor = !owner.isEmpty() && classWord(cppMember, user) == owner;
    if (isConstructor || owner.isEmpty())
        known.name = isConstructor ? owner : member;
    else
        known.name = owner + QLatin1Char('.') + member;
    return known;
}

QString ToolchainNames::identifierOf(const QString &cppName)
{
    return declaredName(demangled(cppName)).section(QLatin1String("::"), -1);
}

QString ToolchainNames::decoded(const QString &name)
{
    static const QRegularExpression escape(QStringLiteral("_u([0-9A-Fa-f]{4})"));
    static const QRegularExpression handle(
        QStringLiteral("^(?:(?:g_hWnd|hwnd)(?=_u[0-9A-Fa-f]{4})|(?:g_hWnd_|hwnd_)(?=.))"));
    static const QRegularExpression frame(QStringLiteral("^VL_User_(.+)_t$"));
    QString result = withoutUniversalNames(name);
    const GeneratorTables &tables = GeneratorTables::instance();
    const QString bare = result.chopped(result.endsWith(QLatin1Char('_')) ? 1 : 0);
    if (tables.cppReserved.contains(bare))
        return bare;
    const QRegularExpressionMatch framed = frame.match(result);
    if (framed.hasMatch())
        result = framed.captured(1);
    return withCharacters(result.remove(handle), escape);
}
