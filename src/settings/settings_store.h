// SettingsStore: reads and writes the settings of setting_keys.h.
#pragma once

#include "settings/setting_keys.h"
#include "settings/settings_file.h"

#include <QSettings>
#include <QString>
#include <QVariant>

#include <memory>

// An INI file in UTF-8. Whatever the file holds, every setting has a valid value: a missing or
// invalid one is read as its default. Keys that nobody here knows stay in the file. A file that is
// broken, even in part, is kept as "<file>.bak" when it is first written. For one thread.
class SettingsStore
{
public:
    explicit SettingsStore(const QString &path = SettingsFile::defaultPath());

    QString path() const { return m_path; }

    bool get(const Key<bool> &key) const;
    int get(const Key<int> &key) const;
    QString get(const Key<QString> &key) const;
    QByteArray get(const Key<QByteArray> &key) const;
    QStringList get(const Key<QStringList> &key) const;
    // "#rrggbb".
    QString get(Setting::Color color) const;

    // False, and nothing changes, for a value out of the setting's range. The file is written by
    // `save`, at the latest when the store is destroyed.
    bool set(const Key<bool> &key, bool value);
    bool set(const Key<int> &key, int value);
    bool set(const Key<QString> &key, const QString &value);
    bool set(const Key<QByteArray> &key, const QByteArray &value);
    bool set(const Key<QStringList> &key, const QStringList &value);
    bool set(Setting::Color color, const QString &value);

    // Back to the default.
    template <typename T>
    void reset(const Key<T> &key)
    {
        remove(fullName(key.group, key.name));
    }
    void reset(Setting::Color color);

    // Writes the file as a whole, so that a failure leaves the old one. On failure `error` receives
    // a Chinese sentence.
    [[nodiscard]] bool save(QString *error = nullptr);

    // Takes over what older versions kept in the system's own store, unless there is a file
    // already. Returns the number of values.
    int importOldStores();

private:
    static QString fullName(const char *group, const char *name);
    QVariant value(const char *group, const char *name) const;
    void write(const QString &name, const QVariant &value);
    void remove(const QString &name);
    void open();
    void setBrokenFileAside();

    QString m_path;
    std::unique_ptr<QSettings> m_ini; // null: the file is not to be read
    bool m_isBroken = false;
    bool m_hasUnsaved = false;
};
