#include "driver/toolchain_table.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace {

// What the code finds out; the rest of a message's facts are the groups of the `extract` patterns.
const QStringList &derivedFacts()
{
    static const QStringList names{QStringLiteral("command"),      QStringLiteral("constant"),
                                   QStringLiteral("possible"),     QStringLiteral("lineNumber"),
                                   QStringLiteral("count"),        QStringLiteral("internal"),
                                   QStringLiteral("placed"),       QStringLiteral("countMismatch"),
                                   QStringLiteral("oneConversion")};
    return names;
}

const QStringList &extractedFacts()
{
    static const QStringList names{
        QStringLiteral("from"),     QStringLiteral("to"),       QStringLiteral("left"),
        QStringLiteral("right"),    QStringLiteral("argument"), QStringLiteral("given"),
        QStringLiteral("function"), QStringLiteral("name"),     QStringLiteral("symbol"),
        QStringLiteral("operator"), QStringLiteral("file"),     QStringLiteral("library")};
    return names;
}

const QRegularExpression &placeholder()
{
    static const QRegularExpression expression(QStringLiteral("\\{(\\w+)\\}"));
    return expression;
}

QStringList placeholders(const QString &text)
{
    QStringList names;
    QRegularExpressionMatchIterator matches = placeholder().globalMatch(text);
    while (matches.hasNext())
        names << matches.next().captured(1);
    return names;
}

QStringList toList(const QJsonValue &value)
{
    QStringList result;
    const QJsonArray array = value.toArray();
    for (const QJsonValue &item : array)
        result << item.toString();
    return result;
}

QHash<QString, QString> toHash(const QJsonValue &value)
{
    QHash<QString, QString> result;
    const QJsonObject object = value.toObject();
    for (auto it = object.begin(); it != object.end(); ++it)
        result.insert(it.key(), it.value().toString());
    return result;
}

bool holdsAny(const QString &text, const QStringList &words)
{
    return std::any_of(words.begin(), words.end(), [&text](const QString &word) {
        return text.contains(word, Qt::CaseInsensitive);
    });
}

bool holdsAll(const QString &text, const QStringList &words)
{
    return std::all_of(words.begin(), words.end(), [&text](const QString &word) {
        return text.contains(word, Qt::CaseInsensitive);
    });
}

bool knowsAll(const MessageFacts &facts, const QStringList &names)
{
    return std::all_of(names.begin(), names.end(),
                       [&facts](const QString &name) { return !facts.value(name).isEmpty(); });
}

bool mentionsAny(const MessageToTest &subject, const QStringList &words)
{
    return words.isEmpty() || holdsAny(subject.text, words) || holdsAny(subject.context, words);
}

std::optional<ToolMessage::Tool> toolNamed(const QString &name)
{
    static const QHash<QString, ToolMessage::Tool> tools{
        {QStringLiteral("compiler"), ToolMessage::Tool::Compiler},
        {QStringLiteral("linker"), ToolMessage::Tool::Linker},
        {QStringLiteral("resource"), ToolMessage::Tool::ResourceCompiler},
        {QStringLiteral("script"), ToolMessage::Tool::Script}};
    const auto found = tools.constFind(name);
    return found == tools.cend() ? std::nullopt : std::make_optional(*found);
}

} // namespace

bool MessageTest::matches(const MessageToTest &subject, const MessageFacts &facts) const
{
    if (tool && *tool != subject.message.tool)
        return false;
    const bool isSaid =
        (words.isEmpty() && patterns.isEmpty()) || holdsAny(subject.text, words) ||
        std::any_of(patterns.begin(), patterns.end(), [&subject](const QRegularExpression &one) {
            return subject.text.contains(one);
        });
    return isSaid && holdsAll(subject.text, all) && !holdsAny(subject.text, unless) &&
           (files.isEmpty() || holdsAny(subject.message.place.file, files)) &&
           mentionsAny(subject, mentions) && (notes.isEmpty() || holdsAny(subject.notes, notes)) &&
           knowsAll(facts, needs);
}

bool MessageForm::isUsable(const MessageToTest &subject, const MessageFacts &facts) const
{
    return knowsAll(facts, needs) && mentionsAny(subject, mentions);
}

const ToolchainTable &ToolchainTable::instance()
{
    static const ToolchainTable table = [] {
        QFile file(QStringLiteral(":/driver/toolchain_messages.json"));
        return ToolchainTable(file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray());
    }();
    return table;
}

ToolchainTable::ToolchainTable(const QByteArray &json)
{
    QJsonParseError error{};
    const QJsonObject object = QJsonDocument::fromJson(json, &error).object();
    if (object.isEmpty())
        fault(QStringLiteral("table"), error.errorString());
    const auto value = [&object](const char *key) { return object.value(QLatin1String(key)); };
    checkKeys(QStringLiteral("table"), object,
              {QStringLiteral("parts"), QStringLiteral("warning"), QStringLiteral("more"),
               QStringLiteral("functions"), QStringLiteral("names"),
               QStringLiteral("internalPrefixes"), QStringLiteral("types"),
               QStringLiteral("operators"), QStringLiteral("extract"), QStringLiteral("rows")});
    warning = value("warning").toString();
    more = value("more").toString();
    functions = toHash(value("functions"));
    names = toHash(value("names"));
    types = toHash(value("types"));
    operators = toHash(value("operators"));
    internalPrefixes = toList(value("internalPrefixes"));
    const QJsonObject parts = value("parts").toObject();
    for (auto it = parts.begin(); it != parts.end(); ++it)
        m_parts.insert(it.key(), toList(it.value()));
    for (auto it = m_parts.cbegin(); it != m_parts.cend(); ++it) {
        for (const QString &text : it.value())
            checkNames(it.key(), text);
    }
    const QStringList patterns = toList(value("extract"));
    for (const QString &pattern : patterns)
        extract << readPattern(QStringLiteral("extract"), pattern);
    const QJsonArray rows = value("rows").toArray();
    for (const QJsonValue &row : rows)
        readRow(row.toObject());
    gatherLoose();
    for (const QString &what : qAsConst(m_faults))
        qWarning("toolchain messages: %s", qPrintable(what));
}

void ToolchainTable::fault(const QString &where, const QString &what)
{
    m_faults << where + QLatin1String(": ") + what;
}

void ToolchainTable::checkKeys(const QString &where, const QJsonObject &object,
                               const QStringList &known)
{
    const QStringList keys = object.keys();
    for (const QString &key : keys) {
        if (!known.contains(key))
            fault(where, QStringLiteral("unknown key \"%1\"").arg(key));
    }
}

void ToolchainTable::checkNames(const QString &where, const QString &text)
{
    const QStringList used = placeholders(text);
    for (const QString &name : used) {
        if (!derivedFacts().contains(name) && !extractedFacts().contains(name) &&
            !m_parts.contains(name))
            fault(where, QStringLiteral("unknown fact \"%1\"").arg(name));
    }
}

QRegularExpression ToolchainTable::readPattern(const QString &where, const QString &pattern)
{
    const QRegularExpression expression(pattern, QRegularExpression::CaseInsensitiveOption);
    if (pattern.isEmpty() || !expression.isValid())
        fault(where, QStringLiteral("bad pattern \"%1\"").arg(pattern));
    const QStringList groups = expression.namedCaptureGroups();
    for (const QString &group : groups) {
        if (!group.isEmpty() && !extractedFacts().contains(group))
            fault(where, QStringLiteral("unknown fact \"%1\"").arg(group));
    }
    return expression;
}

MessageTest ToolchainTable::readTest(const QString &where, const QJsonObject &object)
{
    checkKeys(where, object,
              {QStringLiteral("tool"), QStringLiteral("words"), QStringLiteral("patterns"),
               QStringLiteral("all"), QStringLiteral("unless"), QStringLiteral("files"),
               QStringLiteral("mentions"), QStringLiteral("notes"), QStringLiteral("needs")});
    const auto list = [&object](const char *key) {
        return toList(object.value(QLatin1String(key)));
    };
    MessageTest test;
    const QString tool = object.value(QLatin1String("tool")).toString();
    test.tool = toolNamed(tool);
    if (!tool.isEmpty() && !test.tool)
        fault(where, QStringLiteral("unknown tool \"%1\"").arg(tool));
    test.words = list("words");
    const QStringList patterns = list("patterns");
    for (const QString &pattern : patterns)
        test.patterns << readPattern(where, pattern);
    test.all = list("all");
    test.unless = list("unless");
    test.files = list("files");
    test.mentions = list("mentions");
    test.notes = list("notes");
    test.needs = list("needs");
    checkNames(where, QLatin1Char('{') + test.needs.join(QLatin1String("}{")) + QLatin1Char('}'));
    return test;
}

MessageForm ToolchainTable::readForm(const QString &where, const QJsonObject &object)
{
    checkKeys(where, object,
              {QStringLiteral("text"), QStringLiteral("needs"), QStringLiteral("mentions")});
    MessageForm form;
    form.text = object.value(QLatin1String("text")).toString();
    form.needs = toList(object.value(QLatin1String("needs")));
    form.mentions = toList(object.value(QLatin1String("mentions")));
    if (form.text.isEmpty())
        fault(where, QStringLiteral("a form without text"));
    const QStringList used = placeholders(form.text);
    for (const QString &name : used) {
        if (!m_parts.contains(name))
            form.needs << name;
    }
    checkNames(where, QLatin1Char('{') + form.needs.join(QLatin1String("}{")) + QLatin1Char('}'));
    return form;
}

void ToolchainTable::readRow(const QJsonObject &object)
{
    MessageRow row;
    row.id = object.value(QLatin1String("id")).toString();
    row.isWeak = object.value(QLatin1String("weak")).toBool();
    row.isLoose = object.value(QLatin1String("loose")).toBool();
    checkKeys(row.id, object,
              {QStringLiteral("id"), QStringLiteral("weak"), QStringLiteral("loose"),
               QStringLiteral("tests"), QStringLiteral("forms")});
    const QJsonArray tests = object.value(QLatin1String("tests")).toArray();
    for (const QJsonValue &test : tests)
        row.tests << readTest(row.id, test.toObject());
    const QJsonArray forms = object.value(QLatin1String("forms")).toArray();
    for (const QJsonValue &form : forms)
        row.forms << readForm(row.id, form.toObject());
    if (row.tests.isEmpty())
        fault(row.id, QStringLiteral("a row without tests"));
    if (!row.forms.isEmpty() &&
        !(row.forms.last().needs.isEmpty() && row.forms.last().mentions.isEmpty()))
        fault(row.id, QStringLiteral("the last form must always be usable"));
    m_rows << row;
}

void ToolchainTable::gatherLoose()
{
    QStringList alternatives;
    for (const MessageRow &row : qAsConst(m_rows)) {
        for (const MessageTest &test : row.isLoose ? row.tests : QList<MessageTest>()) {
            for (const QString &word : test.words)
                alternatives << QRegularExpression::escape(word);
            for (const QRegularExpression &pattern : test.patterns)
                alternatives << pattern.pattern();
        }
    }
    m_loose = QRegularExpression(alternatives.join(QLatin1Char('|')),
                                 QRegularExpression::CaseInsensitiveOption);
}

const MessageRow *ToolchainTable::rowOf(const MessageToTest &subject,
                                        const MessageFacts &facts) const
{
    const bool isUnclear = subject.message.severity == ToolMessage::Severity::Unclear;
    for (const MessageRow &row : m_rows) {
        if (isUnclear && !row.isLoose)
            continue;
        for (const MessageTest &test : row.tests) {
            if (test.matches(subject, facts))
                return &row;
        }
    }
    return nullptr;
}

const MessageForm *ToolchainTable::formOf(const MessageRow &row, const MessageToTest &subject,
                                          const MessageFacts &facts)
{
    const auto form =
        std::find_if(row.forms.begin(), row.forms.end(), [&](const MessageForm &candidate) {
            return candidate.isUsable(subject, facts);
        });
    return form == row.forms.end() ? nullptr : &*form;
}

void ToolchainTable::addParts(MessageFacts &facts) const
{
    for (auto part = m_parts.cbegin(); part != m_parts.cend(); ++part) {
        for (const QString &text : part.value()) {
            if (knowsAll(facts, placeholders(text))) {
                facts.insert(part.key(), filled(text, facts));
                break;
            }
        }
    }
}

QString ToolchainTable::filled(const QString &text, const MessageFacts &facts)
{
    QString result;
    int copied = 0;
    QRegularExpressionMatchIterator matches = placeholder().globalMatch(text);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        result += text.midRef(copied, match.capturedStart() - copied);
        result += facts.value(match.captured(1));
        copied = match.capturedEnd();
    }
    return result + text.midRef(copied);
}
