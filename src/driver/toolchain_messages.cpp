#include "driver/toolchain_messages.h"

#include "driver/pointed_code.h"

#include <QRegularExpression>

namespace {

// Quotation marks of every tool as "'", without what the tool adds for people who read C++.
QString plainText(const QString &text)
{
    static const QRegularExpression aka(
        QStringLiteral("\\s*(?:\\{aka '?[^'{}]*'?\\}|\\(aka '[^']*'\\))"));
    static const QRegularExpression guess(QStringLiteral("[;,] did you mean .*$"));
    static const QRegularExpression marks(QStringLiteral("[‘’“”「」`]"));
    QString result = text;
    return result.replace(marks, QStringLiteral("'")).remove(aka).remove(guess);
}

// What the table's patterns find in a text, still in the words of C++.
MessageFacts extracted(const QString &text)
{
    MessageFacts facts;
    for (const QRegularExpression &pattern : ToolchainTable::instance().extract) {
        const QRegularExpressionMatch match = pattern.match(text);
        if (!match.hasMatch())
            continue;
        const QStringList groups = pattern.namedCaptureGroups();
        for (const QString &group : groups) {
            const QString found = group.isEmpty() ? QString() : match.captured(group).trimmed();
            if (!found.isEmpty() && !facts.contains(group))
                facts.insert(group, found);
        }
    }
    return facts;
}

// How the functions that came into question were passed over.
struct Candidates
{
    explicit Candidates(const QStringList &notes)
    {
        static const QRegularExpression byCount(
            QStringLiteral("candidate expects \\d+|requires .*arguments?.* (?:was|were) provided"));
        static const QRegularExpression byType(
            QStringLiteral("no known conversion|cannot convert argument|substitution failed|"
                           "template ignored|expects an [lr]value"));
        for (const QString &note : notes) {
            if (note.contains(byCount))
                ++ofOtherCount;
            else if (note.contains(byType))
                ++ofOtherType;
        }
    }

    int ofOtherCount = 0;
    int ofOtherType = 0;
};

// Finds the facts of one message.
class FactFinder
{
public:
    FactFinder(const ToolMessage &message, const MessagePlace &place, const QString &text,
               const QString &notes)
        : m_message(message),
          m_place(place),
          m_text(text),
          m_notes(notes),
          m_code(place.generatedLine, place.column)
    {}

    MessageFacts find();

private:
    void noteCandidates();
    void nameCall();
    void nameTypes();
    void nameThings();
    KnownName takeName(const QString &cppName);
    QString possibleFunction() const;
    void set(const char *fact, const QString &value)
    {
        if (!value.isEmpty())
            m_facts.insert(QLatin1String(fact), value);
    }
    QString fact(const char *name) const { return m_facts.value(QLatin1String(name)); }

    const ToolMessage &m_message;
    const MessagePlace &m_place;
    const QString &m_text;
    const QString &m_notes;
    const PointedCode m_code;
    MessageFacts m_facts;
};

MessageFacts FactFinder::find()
{
    if (m_place.line > 0) {
        set("placed", QStringLiteral("1"));
        set("lineNumber", QString::number(m_place.line));
    }
    noteCandidates();
    nameCall();
    nameTypes();
    nameThings();
    set("possible", possibleFunction());
    ToolchainTable::instance().addParts(m_facts);
    return m_facts;
}

// Notes on several candidates contradict each other in all but the number of arguments given.
void FactFinder::noteCandidates()
{
    const Candidates candidates(m_message.notes);
    const bool isCount = candidates.ofOtherCount > 0 && candidates.ofOtherType == 0;
    if (isCount)
        set("countMismatch", QStringLiteral("1"));
    if (candidates.ofOtherCount == 0 && candidates.ofOtherType == 1)
        set("oneConversion", QStringLiteral("1"));
    const bool isOfUse = isCount || candidates.ofOtherType <= 1;
    const MessageFacts raw = extracted(isOfUse ? m_text + QLatin1Char('\n') + m_notes : m_text);
    for (auto fact = raw.cbegin(); fact != raw.cend(); ++fact)
        m_facts.insert(fact.key(), fact.value());
}

// Some messages do not tell whose argument they are about, or what was called.
void FactFinder::nameCall()
{
    static const QRegularExpression ofAnArgument(QStringLiteral(
        "^(?:could not convert|invalid conversion|invalid initialization of reference|cannot bind)"
        "|^cannot convert '[^']+' to '[^']+'$"));
    static const QRegularExpression ofACall(QStringLiteral(
        "not a function or function pointer|provide a call operator|no match for call"));
    if (m_place.isCaller) {
        // What is told of arguments is told of a function that the user knows nothing of.
        for (const char *inner : {"argument", "given", "countMismatch"})
            m_facts.remove(QLatin1String(inner));
        set("function", m_code.callee());
    } else if (fact("function").isEmpty() && m_text.contains(ofAnArgument)) {
        const PointedCode::Argument argument = m_code.argument();
        set("function", argument.function);
        if (argument.number > 0)
            set("argument", QString::number(argument.number));
    } else if (fact("function").isEmpty() && m_text.contains(ofACall)) {
        set("function", m_code.callee());
    }
}

void FactFinder::nameTypes()
{
    const ToolchainNames &names = ToolchainNames::instance();
    for (const char *type : {"from", "to", "left", "right"}) {
        const QString word = names.typeWord(m_facts.take(QLatin1String(type)), m_place.user);
        set(type, word);
    }
    if (fact("from") == fact("to"))
        m_facts.remove(QStringLiteral("from"));
    const QString sign = m_facts.take(QStringLiteral("operator"));
    set("operator", ToolchainTable::instance().operators.value(sign));
    if (fact("given") == QLatin1String("no"))
        set("given", QStringLiteral("0"));
}

// The first name that means something to the user, and what it is.
void FactFinder::nameThings()
{
    static const QRegularExpression quoted(QStringLiteral("(?<![A-Za-z])'([^']+)'|\"([^\"]+)\""));
    const QString name = m_facts.take(QStringLiteral("name"));
    const QString function = m_facts.take(QStringLiteral("function"));
    const QString symbol = m_facts.take(QStringLiteral("symbol"));
    takeName(name);
    set("function", takeName(function).name);
    takeName(symbol);
    if (!name.isEmpty() || !function.isEmpty() || !symbol.isEmpty())
        return;
    QRegularExpressionMatchIterator matches = quoted.globalMatch(m_text);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        takeName(match.captured(match.lastCapturedIndex()));
    }
}

KnownName FactFinder::takeName(const QString &cppName)
{
    const KnownName known = ToolchainNames::instance().find(cppName, m_place.user);
    if (fact("command").isEmpty() && fact("name").isEmpty()) {
        set("command", known.command);
        set("name", known.name);
        set("constant", known.constant);
    }
    if (known.internal)
        set("internal", QStringLiteral("1"));
    return known;
}

// A function of the user's or a command that the message shows being called.
QString FactFinder::possibleFunction() const
{
    static const QRegularExpression call(QStringLiteral("([A-Za-z_][A-Za-z0-9_]*)\\("));
    QRegularExpressionMatchIterator matches = call.globalMatch(m_text);
    while (matches.hasNext()) {
        const KnownName known =
            ToolchainNames::instance().find(matches.next().captured(1), m_place.user);
        if (!known.command.isEmpty() || !known.name.isEmpty())
            return known.command.isEmpty() ? known.name : known.command;
    }
    return QString();
}

} // namespace

MessageText wordMessage(const ToolMessage &message, const MessagePlace &place)
{
    QString text =
        message.code.isEmpty() ? message.text : message.code + QLatin1String(": ") + message.text;
    text = plainText(text);
    const QString notes = plainText(message.notes.join(QLatin1Char('\n')));
    // Not every tool names the operator that it points at.
    const QString sign =
        place.isCaller ? QString() : PointedCode(place.generatedLine, place.column).sign();
    if (!sign.isEmpty() && !text.contains(QLatin1String("'operator")))
        text += QLatin1String(", operator ") + sign;
    const ToolchainTable &table = ToolchainTable::instance();
    const MessageToTest subject{message, text, notes, place.generatedLine};
    const MessageFacts facts = FactFinder(message, place, text, notes).find();
    const MessageRow *row = table.rowOf(subject, facts);
    if (!row)
        return {};
    const MessageForm *form = ToolchainTable::formOf(*row, subject, facts);
    if (!form)
        return {};
    const bool isGeneral = row->forms.size() > 1 && form == &row->forms.last();
    return {ToolchainTable::filled(form->text, facts), row->isWeak || isGeneral};
}

QString symbolOf(const ToolMessage &message)
{
    const MessageFacts facts = extracted(plainText(message.text));
    const QString symbol = facts.value(QStringLiteral("symbol"));
    return ToolchainNames::identifierOf(symbol.isEmpty() ? facts.value(QStringLiteral("name"))
                                                         : symbol);
}
