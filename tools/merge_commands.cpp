// Merges the command record files into the one catalogue that the program embeds.
//
// Usage: merge_commands OUTPUT INPUT.json...
// Each input is a JSON array of records. A record without name or category, and a name that two
// records share, end the build with the file's name.
#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QSet>
#include <QTextStream>

namespace {

int fail(const QString &message)
{
    QTextStream(stderr) << "merge_commands: " << message << '\n';
    return 1;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 2)
        return fail(QStringLiteral("usage: merge_commands OUTPUT INPUT.json..."));

    QJsonArray commands;
    QSet<QString> names;
    for (const QString &path : arguments.mid(2)) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            return fail(path + QStringLiteral(": cannot be read"));
        QJsonParseError error{};
        const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
        if (!document.isArray()) {
            return fail(QStringLiteral("%1: no JSON array, offset %2: %3")
                            .arg(path, QString::number(error.offset), error.errorString()));
        }
        const QJsonArray records = document.array();
        for (const QJsonValue &value : records) {
            const QJsonObject record = value.toObject();
            const QString name = record.value(QLatin1String("name")).toString();
            if (name.isEmpty() || record.value(QLatin1String("category")).toString().isEmpty())
                return fail(path + QStringLiteral(": a record lacks name or category: ") + name);
            if (names.contains(name))
                return fail(path + QStringLiteral(": recorded twice: ") + name);
            names.insert(name);
            commands.append(record);
        }
    }

    const QJsonObject catalogue{
        {QStringLiteral("version"), QStringLiteral("1.0.0")},
        {QStringLiteral("description"), QStringLiteral("Vorel 内置命令")},
        {QStringLiteral("commands"), commands},
    };
    QSaveFile output(arguments.at(1));
    if (!output.open(QIODevice::WriteOnly))
        return fail(arguments.at(1) + QStringLiteral(": cannot be written"));
    output.write(QJsonDocument(catalogue).toJson(QJsonDocument::Compact));
    return output.commit() ? 0 : fail(arguments.at(1) + QStringLiteral(": cannot be written"));
}
