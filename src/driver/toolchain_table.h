// The table of what tools say and what the user is told instead, read from
// ":/driver/toolchain_messages.json".
#pragma once

#include "driver/toolchain_output.h"

#include <QByteArray>
#include <QHash>
#include <QJsonObject>
#include <QList>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <optional>

// What is known about one message, by the names that the table uses: "command", "from", ... A fact
// that is not known is not there.
using MessageFacts = QHash<QString, QString>;

// A message with all that the tests of the table look at.
struct MessageToTest
{
    const ToolMessage &message;
    QString text;    // code and text, every kind of quotation mark as "'"
    QString notes;   // one a line
    QString context; // the generated line that the message is about
};

// Holds when everything that it names is there: one of the `words` or `patterns` (if there are
// any), all of `all`, one of `files`, one of `mentions` in text or context, one of `notes` in the
// notes, all facts in `needs`; and none of `unless`. Case counts for nothing in words and patterns.
struct MessageTest
{
    bool matches(const MessageToTest &subject, const MessageFacts &facts) const;

    std::optional<ToolMessage::Tool> tool;
    QStringList words;
    QList<QRegularExpression> patterns;
    QStringList all;
    QStringList unless;
    QStringList files;
    QStringList mentions;
    QStringList notes;
    QStringList needs;
};

// One wording; usable when all facts in `needs` and all that its text names are known, and one of
// `mentions` is in text or context.
struct MessageForm
{
    bool isUsable(const MessageToTest &subject, const MessageFacts &facts) const;

    QString text;
    QStringList needs;
    QStringList mentions;
};

// Messages of one meaning. Without forms they are passed over.
struct MessageRow
{
    QString id;
    QList<MessageTest> tests;
    QList<MessageForm> forms;
    bool isWeak = false;  // tells little; as does the last of several forms
    bool isLoose = false; // recognised in lines that do not look like a tool's message
};

class ToolchainTable
{
public:
    // The embedded table.
    static const ToolchainTable &instance();
    explicit ToolchainTable(const QByteArray &json);

    // Whether a line of no known form may mean anything at all; quick.
    bool mayBeLoose(const QString &line) const { return line.contains(m_loose); }
    // The first row that fits; null only for what is `Unclear`.
    const MessageRow *rowOf(const MessageToTest &subject, const MessageFacts &facts) const;
    // The first usable form of the row; null for a row without forms.
    static const MessageForm *formOf(const MessageRow &row, const MessageToTest &subject,
                                     const MessageFacts &facts);
    // Adds the parts, pieces of text that many forms share. A part whose facts are not known is
    // empty.
    void addParts(MessageFacts &facts) const;
    // `text` with each "{name}" replaced by that fact.
    static QString filled(const QString &text, const MessageFacts &facts);

    // What is wrong with the table's text, a line each; empty for the embedded one.
    const QStringList &faults() const { return m_faults; }

    QString warning;
    QString more;                      // "{count}" messages were left out
    QHash<QString, QString> functions; // C++ function to command
    QHash<QString, QString> names;     // C++ name to the user's word
    QHash<QString, QString> types;     // C++ type to type word, beside the generator's
    QHash<QString, QString> operators; // sign to description
    QStringList internalPrefixes;
    QList<QRegularExpression> extract; // named groups are facts

private:
    void readRow(const QJsonObject &object);
    void gatherLoose();
    MessageTest readTest(const QString &where, const QJsonObject &object);
    MessageForm readForm(const QString &where, const QJsonObject &object);
    QRegularExpression readPattern(const QString &where, const QString &pattern);
    void checkKeys(const QString &where, const QJsonObject &object, const QStringList &known);
    void checkNames(const QString &where, const QString &text);
    void fault(const QString &where, const QString &what);

    QList<MessageRow> m_rows;
    QRegularExpression m_loose; // a word or pattern of the loose rows
    QHash<QString, QStringList> m_parts;
    QStringList m_faults;
};
