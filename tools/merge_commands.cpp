// Merges the command record files into the one catalogue that the program embeds.
//
// Usage: merge_commands OUTPUT [--components MEMBERS.json EVENTS.json] INPUT.json...
// Each input is a JSON array of the records of one top category. The records of window components
// come from the generator's tables of their members and events. What is wrong with a file ends the
// build with the file's name.
#include "component_records.h"

#include <QCoreApplication>
#include <QFile>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QSet>
#include <QTextStream>

namespace {

const char *const kTexts[] = {"name", "category", "description", "syntax", "returnType", "example"};

QString text(const QJsonObject &record, const char *key)
{
    return record.value(QLatin1String(key)).toString();
}

// The first thing that a complete record has and this one lacks; empty when nothing is missing.
QString missingPart(const QJsonObject &record)
{
    for (const char *key : kTexts) {
        if (text(record, key).trimmed().isEmpty())
            return QString::fromLatin1(key);
    }
    if (!record.value(QLatin1String("parameters")).isArray())
        return QStringLiteral("parameters");
    // What the example prints, or that it cannot run without a person.
    const bool attended = record.value(QLatin1String("unattended")) == QJsonValue(false);
    return record.value(QLatin1String("output")).isString() != attended ? QString()
                                                                        : QStringLiteral("output");
}

// Collects the records of all files. Every function returns what is wrong, empty for nothing.
class Merger
{
public:
    QString addFile(const QString &path)
    {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            return QStringLiteral("cannot be read");
        QJsonParseError error{};
        const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
        if (!document.isArray()) {
            return QStringLiteral("no JSON array, offset %1: %2")
                .arg(QString::number(error.offset), error.errorString());
        }
        QString category;
        const QJsonArray records = document.array();
        for (const QJsonValue &value : records) {
            const QJsonObject record = value.toObject();
            QString problem = addRecord(record);
            if (problem.isEmpty())
                problem = checkCategory(record, path, category);
            if (!problem.isEmpty())
                return problem;
        }
        return QString();
    }

    QString addComponents(const QString &membersPath, const QString &eventsPath)
    {
        const auto table = [](const QString &path) {
            QFile file(path);
            return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object()
                                                  : QJsonObject();
        };
        const QJsonObject members = table(membersPath);
        const QJsonObject events = table(eventsPath);
        if (members.isEmpty() || events.isEmpty())
            return QStringLiteral("no JSON object");
        const QJsonArray records = componentRecords(members, events);
        for (const QJsonValue &value : records) {
            const QString problem = addRecord(value.toObject());
            if (!problem.isEmpty())
                return problem;
        }
        return QString();
    }

    QString addRecord(const QJsonObject &record)
    {
        const QString name = text(record, "name");
        const QString missing = missingPart(record);
        if (!missing.isEmpty())
            return QStringLiteral("a record lacks its %1: %2").arg(missing, name);
        // A component's property and event may have the same name.
        const bool isMember = !text(record, "memberOf").isEmpty();
        const QString identity = isMember ? name + text(record, "type") : name;
        if (m_names.contains(identity))
            return QStringLiteral("recorded twice: ") + name;
        m_names.insert(identity);
        m_commands.append(record);
        return QString();
    }

    QJsonObject catalogue() const
    {
        return {{QStringLiteral("version"), QStringLiteral("1.0.0")},
                {QStringLiteral("description"), QStringLiteral("Vorel 内置命令")},
                {QStringLiteral("commands"), m_commands}};
    }

private:
    // `category` is the top category of the file's records so far.
    QString checkCategory(const QJsonObject &record, const QString &path, QString &category)
    {
        const QString top = text(record, "category").section(QLatin1Char('/'), 0, 0);
        if (!category.isEmpty() && top != category)
            return QStringLiteral("holds two top categories: %1 and %2").arg(category, top);
        category = top;
        const QString other = m_fileOfCategory.value(top, path);
        if (other != path)
            return QStringLiteral("the category %1 stands in %2 too").arg(top, other);
        m_fileOfCategory.insert(top, path);
        return QString();
    }

    QJsonArray m_commands;
    QSet<QString> m_names;
    QHash<QString, QString> m_fileOfCategory;
};

int fail(const QString &message)
{
    QTextStream stream(stderr);
    stream.setCodec("UTF-8");
    stream << "merge_commands: " << message << '\n';
    return 1;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const bool withComponents = arguments.value(2) == QLatin1String("--components");
    if (arguments.size() < (withComponents ? 5 : 2))
        return fail(QStringLiteral("usage: merge_commands OUTPUT [--components MEMBERS.json "
                                   "EVENTS.json] INPUT.json..."));

    Merger merger;
    if (withComponents) {
        const QString problem = merger.addComponents(arguments.at(3), arguments.at(4));
        if (!problem.isEmpty())
            return fail(
                QStringLiteral("%1, %2: %3").arg(arguments.at(3), arguments.at(4), problem));
    }
    for (const QString &path : arguments.mid(withComponents ? 5 : 2)) {
        const QString problem = merger.addFile(path);
        if (!problem.isEmpty())
            return fail(path + QLatin1String(": ") + problem);
    }
    QSaveFile output(arguments.at(1));
    if (!output.open(QIODevice::WriteOnly))
        return fail(arguments.at(1) + QStringLiteral(": cannot be written"));
    output.write(QJsonDocument(merger.catalogue()).toJson(QJsonDocument::Compact));
    return output.commit() ? 0 : fail(arguments.at(1) + QStringLiteral(": cannot be written"));
}
