// Renews the initials in the table of pinyin readings, with the readings that ICU knows:
// make_pinyin_initials resources/editor/pinyin_initials.json
//
// Run by hand when the corrections below change; what else the file holds stays.
#include <QCoreApplication>
#include <QFile>
#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include <unicode/translit.h>

#include <cstdio>
#include <memory>

namespace {

// Where names of commands read a character otherwise than the dictionary's first reading.
const QHash<char16_t, char> corrections{
    {u'弹', 't'}, // 弹出
    {u'校', 'j'}, // 校验
};

int fail(const QString &reason)
{
    std::fprintf(stderr, "%s\n", qPrintable(reason));
    return 1;
}

// One string of characters for each letter; characters without a reading are left out.
QJsonObject initials(const icu::Transliterator &toLatin)
{
    QHash<char, QString> characters;
    for (char16_t code = 0x4E00; code <= 0x9FFF; ++code) {
        icu::UnicodeString reading(code);
        toLatin.transliterate(reading);
        const char16_t first = reading.charAt(0);
        if (first >= 'a' && first <= 'z')
            characters[corrections.value(code, char(first))].append(QChar(code));
    }
    QJsonObject result;
    for (auto letter = characters.begin(); letter != characters.end(); ++letter)
        result.insert(QString(QLatin1Char(letter.key())), letter.value());
    return result;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    if (app.arguments().size() != 2)
        return fail(QStringLiteral("usage: make_pinyin_initials TABLE.json"));
    const QString path = app.arguments().at(1);
    QFile old(path);
    if (!old.open(QIODevice::ReadOnly))
        return fail(path + QStringLiteral(": ") + old.errorString());
    QJsonObject table = QJsonDocument::fromJson(old.readAll()).object();

    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::Transliterator> toLatin(icu::Transliterator::createInstance(
        "Han-Latin; NFD; [:M:] Remove; Lower", UTRANS_FORWARD, status));
    if (U_FAILURE(status))
        return fail(QString::fromLatin1(u_errorName(status)));
    table.insert(QStringLiteral("initials"), initials(*toLatin));

    QSaveFile file(path);
    const QByteArray bytes = QJsonDocument(table).toJson();
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        return fail(path + QStringLiteral(": ") + file.errorString());
    return 0;
}
