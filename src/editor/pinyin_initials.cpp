#include "editor/pinyin_initials.h"

#include "catalog/json_table.h"

#include <QJsonObject>

#include <vector>

namespace {

constexpr ushort firstCharacter = 0x4E00;
constexpr ushort lastCharacter = 0x9FFF;

// How one character may be read.
struct Sounds
{
    char usual = 0;      // 0: it has no initial
    quint32 letters = 0; // a bit for each initial it may have, "a" the lowest
};

bool isLatinLetter(ushort code)
{
    return code >= 'a' && code <= 'z';
}

class SoundTable
{
public:
    // Read from the resource on first use; empty when that is broken.
    static const SoundTable &instance()
    {
        static const SoundTable table;
        return table;
    }

    // Null for a character without an entry.
    const Sounds *find(QChar character) const
    {
        const ushort code = character.unicode();
        if (code < firstCharacter || code > lastCharacter)
            return nullptr;
        const Sounds &sounds = m_sounds[code - firstCharacter];
        return sounds.usual == 0 ? nullptr : &sounds;
    }

private:
    SoundTable() : m_sounds(lastCharacter - firstCharacter + 1)
    {
        const QJsonObject tables =
            jsonTable(QStringLiteral(":/editor/pinyin_initials.json")).object();
        const QJsonObject initials = tables.value(QLatin1String("initials")).toObject();
        for (auto letter = initials.begin(); letter != initials.end(); ++letter) {
            const QString characters = letter.value().toString();
            for (QChar character : characters)
                add(character, letter.key());
        }
        const QJsonObject readings = tables.value(QLatin1String("readings")).toObject();
        for (auto reading = readings.begin(); reading != readings.end(); ++reading)
            add(reading.key().at(0), reading.value().toString());
    }

    // The first of the letters becomes the usual one.
    void add(QChar character, const QString &letters)
    {
        const int index = character.unicode() - firstCharacter;
        if (index < 0 || index >= int(m_sounds.size()) || !isLatinOnly(letters))
            return;
        Sounds &sounds = m_sounds[size_t(index)];
        sounds.usual = letters.at(0).toLatin1();
        for (QChar letter : letters)
            sounds.letters |= 1U << (letter.unicode() - 'a');
    }

    std::vector<Sounds> m_sounds;
};

// What an ASCII letter or digit stands for; null for everything else.
QChar ownInitial(QChar character)
{
    const ushort lower = character.unicode() < 128 ? character.toLower().unicode() : 0;
    return isLatinLetter(lower) || (lower >= '0' && lower <= '9') ? QChar(lower) : QChar();
}

enum class Match
{
    Silent, // the character has no initial
    Other,
    Same,
};

// Compares an initial in lower case with all readings of a character.
Match compare(QChar initial, QChar character)
{
    if (const Sounds *sounds = SoundTable::instance().find(character)) {
        const bool isSame = isLatinLetter(initial.unicode()) &&
                            (sounds->letters >> (initial.unicode() - 'a') & 1U) != 0;
        return isSame ? Match::Same : Match::Other;
    }
    const QChar own = ownInitial(character);
    return own.isNull() ? Match::Silent : own == initial ? Match::Same : Match::Other;
}

bool beginsInitials(const QString &letters, const QString &name)
{
    int met = 0;
    for (QChar character : name) {
        if (met == letters.size())
            break;
        const Match match = compare(letters.at(met), character);
        if (match == Match::Other)
            return false;
        met += match == Match::Same ? 1 : 0;
    }
    return met == letters.size();
}

// Only for names with silent characters.
bool comesInOrder(const QString &letters, const QString &name)
{
    int met = 0;
    bool hasSilent = false;
    for (QChar character : name) {
        const Match match = compare(letters.at(qMin(met, letters.size() - 1)), character);
        hasSilent = hasSilent || match == Match::Silent;
        met += match == Match::Same ? 1 : 0;
    }
    return hasSilent && met >= letters.size();
}

} // namespace

QString toPinyinInitials(const QString &text)
{
    const SoundTable &table = SoundTable::instance();
    QString initials;
    initials.reserve(text.size());
    for (QChar character : text) {
        const Sounds *sounds = table.find(character);
        const QChar initial = sounds ? QLatin1Char(sounds->usual) : ownInitial(character);
        if (!initial.isNull())
            initials.append(initial);
    }
    return initials;
}

bool isLatinOnly(const QString &text)
{
    for (QChar character : text) {
        if (!isLatinLetter(character.toLower().unicode()))
            return false;
    }
    return !text.isEmpty();
}

bool matchesPinyin(const QString &query, const QString &name)
{
    if (query.isEmpty() || name.isEmpty())
        return !name.isEmpty();
    const QString letters = query.toLower();
    return beginsInitials(letters, name) || comesInOrder(letters, name);
}
