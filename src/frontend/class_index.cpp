// The hashes behind class_index.h.
#include "frontend/class_index.h"

#include <algorithm>

namespace {

// ASCII and the common Chinese characters have only one form.
bool isPlain(QChar c)
{
    return c.unicode() < 128 || (c.unicode() >= 0x4E00 && c.unicode() <= 0x9FFF);
}

void keepFirst(QHash<QString, QString> *keys, const QString &form, const QString &key)
{
    const auto found = keys->find(form);
    if (found == keys->end())
        keys->insert(form, key);
    else if (key < *found)
        *found = key;
}

} // namespace

QString normalizedName(const QString &name)
{
    if (std::all_of(name.cbegin(), name.cend(), isPlain))
        return name;
    return name.normalized(QString::NormalizationForm_KC);
}

void ClassIndex::add(const QString &key, const QString &cppName)
{
    keepFirst(&m_byName, normalizedName(key), key);
    keepFirst(&m_byCppName, cppName, key);
}

void ClassIndex::clear()
{
    m_byName.clear();
    m_byCppName.clear();
    m_members.clear();
}

QString ClassIndex::keyOfName(const QString &name) const
{
    return m_byName.value(normalizedName(name));
}

QString ClassIndex::keyOfCppName(const QString &cppName) const
{
    return m_byCppName.value(cppName);
}

QHash<QString, QString> ClassIndex::normalizedToKey(const QStringList &keys)
{
    QHash<QString, QString> result;
    for (const QString &key : keys) {
        const QString form = normalizedName(key);
        if (!result.contains(form))
            result.insert(form, key);
    }
    return result;
}
