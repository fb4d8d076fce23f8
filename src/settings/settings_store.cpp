#include "settings/settings_store.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

bool isIn(const QString &value, const char *choices)
{
    return QString::fromUtf8(choices).split(QLatin1Char(';')).contains(value);
}

bool isValid(const Key<int> &key, int value)
{
    return value >= key.min && value <= key.max;
}

bool isValid(const Key<QString> &key, const QString &value)
{
    return !key.choices || isIn(value, key.choices);
}

bool isColor(const QString &text)
{
    if (text.size() != 7 || text.at(0) != QLatin1Char('#'))
        return false;
    for (int i = 1; i < text.size(); ++i) {
        const ushort c = text.at(i).unicode();
        if (!((c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F')))
            return false;
    }
    return true;
}

// What the file can hold as plain text.
bool isPlain(const QVariant &value)
{
    switch (static_cast<QMetaType::Type>(value.type())) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::QString:
    case QMetaType::QStringList:
    case QMetaType::QByteArray:
        return true;
    default:
        return false;
    }
}

} // namespace

SettingsStore::SettingsStore(const QString &path) : m_path(path)
{
    if (SettingsFile::inspect(m_path) == SettingsFile::State::Unfit) {
        m_isBroken = true;
        return;
    }
    open();
    // The status is known only when all groups have been read.
    m_ini->allKeys();
    m_isBroken = m_ini->status() == QSettings::FormatError;
}

void SettingsStore::open()
{
    m_ini = std::make_unique<QSettings>(m_path, QSettings::IniFormat);
    m_ini->setIniCodec("UTF-8");
}

QString SettingsStore::fullName(const char *group, const char *name)
{
    return *group ? QLatin1String(group) + QLatin1Char('/') + QLatin1String(name)
                  : QString(QLatin1String(name));
}

QVariant SettingsStore::value(const char *group, const char *name) const
{
    return m_ini ? m_ini->value(fullName(group, name)) : QVariant();
}

bool SettingsStore::get(const Key<bool> &key) const
{
    const QString text = value(key.group, key.name).toString().toLower();
    if (text == QLatin1String("true") || text == QLatin1String("1"))
        return true;
    if (text == QLatin1String("false") || text == QLatin1String("0"))
        return false;
    return key.fallback;
}

int SettingsStore::get(const Key<int> &key) const
{
    bool isNumber = false;
    const int number = value(key.group, key.name).toString().toInt(&isNumber);
    return isNumber && isValid(key, number) ? number : key.fallback;
}

QString SettingsStore::get(const Key<QString> &key) const
{
    const QVariant stored = value(key.group, key.name);
    if (stored.type() == QVariant::String && isValid(key, stored.toString()))
        return stored.toString();
    if (key.like)
        return get(*key.like);
    return key.computed ? key.computed() : QString::fromUtf8(key.fallback);
}

QByteArray SettingsStore::get(const Key<QByteArray> &key) const
{
    const QVariant stored = value(key.group, key.name);
    return stored.type() == QVariant::ByteArray ? stored.toByteArray() : QByteArray();
}

QStringList SettingsStore::get(const Key<QStringList> &key) const
{
    // A list of one is stored as a text.
    const QVariant stored = value(key.group, key.name);
    const bool isList = stored.type() == QVariant::StringList || stored.type() == QVariant::String;
    return isList ? stored.toStringList() : QStringList();
}

QString SettingsStore::get(Setting::Color color) const
{
    const Setting::ColorKey &key = Setting::colorKey(color);
    const QVariant stored = value("Editor", key.name);
    const QString text = stored.type() == QVariant::String ? stored.toString() : QString();
    return isColor(text) ? text : QString::fromLatin1(key.fallback);
}

bool SettingsStore::set(const Key<bool> &key, bool value)
{
    write(fullName(key.group, key.name), value);
    return true;
}

bool SettingsStore::set(const Key<int> &key, int value)
{
    if (!isValid(key, value))
        return false;
    write(fullName(key.group, key.name), value);
    return true;
}

bool SettingsStore::set(const Key<QString> &key, const QString &value)
{
    if (!isValid(key, value))
        return false;
    write(fullName(key.group, key.name), value);
    return true;
}

bool SettingsStore::set(const Key<QByteArray> &key, const QByteArray &value)
{
    write(fullName(key.group, key.name), value);
    return true;
}

bool SettingsStore::set(const Key<QStringList> &key, const QStringList &value)
{
    // The file has no form of its own for an empty list.
    if (value.isEmpty())
        remove(fullName(key.group, key.name));
    else
        write(fullName(key.group, key.name), value);
    return true;
}

bool SettingsStore::set(Setting::Color color, const QString &value)
{
    if (!isColor(value))
        return false;
    write(fullName("Editor", Setting::colorKey(color).name), value);
    return true;
}

void SettingsStore::reset(Setting::Color color)
{
    remove(fullName("Editor", Setting::colorKey(color).name));
}

void SettingsStore::write(const QString &name, const QVariant &value)
{
    setBrokenFileAside();
    m_hasUnsaved = true;
    if (!m_isBroken)
        m_ini->setValue(name, value);
}

void SettingsStore::remove(const QString &name)
{
    if (!m_ini || !m_ini->contains(name))
        return;
    setBrokenFileAside();
    m_hasUnsaved = true;
    if (!m_isBroken)
        m_ini->remove(name);
}

// What could be read of the file goes on into the new one. A file that can't be moved stays broken,
// and is never written.
void SettingsStore::setBrokenFileAside()
{
    if (!m_isBroken || (!m_ini && !QFileInfo(m_path).isFile()))
        return;
    QMap<QString, QVariant> kept;
    if (m_ini) {
        for (const QString &name : m_ini->allKeys())
            kept.insert(name, m_ini->value(name));
    }
    const QString backup = m_path + QStringLiteral(".bak");
    QFile::remove(backup);
    if (!QFile::rename(m_path, backup))
        return;
    m_isBroken = false;
    m_ini.reset();
    open();
    for (auto it = kept.cbegin(); it != kept.cend(); ++it)
        m_ini->setValue(it.key(), it.value());
}

bool SettingsStore::save(QString *error)
{
    if (!m_hasUnsaved)
        return true;
    if (!m_isBroken) {
        QDir().mkpath(QFileInfo(m_path).path());
        // A failure sticks to its object; the values are shared with the next one.
        if (m_ini->status() == QSettings::AccessError)
            open();
        m_ini->sync();
        if (m_ini->status() != QSettings::AccessError) {
            m_hasUnsaved = false;
            return true;
        }
    }
    if (error)
        *error = QStringLiteral("设置无法写入：%1").arg(QDir::toNativeSeparators(m_path));
    return false;
}

int SettingsStore::importOldStores()
{
    if (QFileInfo::exists(m_path))
        return 0;
    int count = 0;
    for (const char *application : {"VorelDesk", "VorelDesk Skin"}) {
        QSettings old(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Vorel Studio"),
                      QLatin1String(application));
        old.setFallbacksEnabled(false);
        // On other systems than Windows this store is a file too.
        if (SettingsFile::inspect(old.fileName()) == SettingsFile::State::Unfit)
            continue;
        for (const QString &name : old.allKeys()) {
            const QVariant value = old.value(name);
            if (!isPlain(value))
                continue;
            write(name, value);
            ++count;
        }
    }
    return count;
}
