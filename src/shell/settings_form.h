// The pages of the settings dialog, and SettingsForm: a page made from a table of rows.
#pragma once

#include "settings/setting_keys.h"

#include <QHash>
#include <QStringList>
#include <QVariant>
#include <QVector>
#include <QWidget>

#include <functional>
#include <variant>

class QFormLayout;
class SettingsStore;

class SettingsPage : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

    virtual void load(const SettingsStore &store) = 0;
    // Why the page cannot be saved: a Chinese sentence; empty if it can.
    virtual QString error() const { return QString(); }
    // Only what differs from the store, so that defaults stay defaults.
    virtual void save(SettingsStore &store) const = 0;

signals:
    // By the user, not by `load`.
    void edited();
};

// What a row edits, and how.
namespace SettingRows {

struct Heading
{};
struct Check
{
    const Key<bool> *key;
};
struct Number
{
    const Key<int> *key;
    int min;
    int max;
    const char *unit;
};
struct Percent
{
    const Key<int> *key;
};
struct FontFamily
{
    const Key<QString> *key;
    QString whenEmpty; // the family that an empty setting means
};
// One of the key's choices, under other names.
struct Choice
{
    const Key<QString> *key;
    QStringList names;
};
// A number from 0 that stands for a name.
struct Index
{
    const Key<int> *key;
    QStringList names;
};
struct Folder
{
    const Key<QString> *key;
};
struct Picture
{
    const Key<QString> *key;
};

} // namespace SettingRows

struct SettingRow
{
    QString label; // of a check box: its text
    std::variant<SettingRows::Heading, SettingRows::Check, SettingRows::Number,
                 SettingRows::Percent, SettingRows::FontFamily, SettingRows::Choice,
                 SettingRows::Index, SettingRows::Folder, SettingRows::Picture>
        editor;
    bool isForWindows = false; // shown elsewhere too, but not to be changed
};

class SettingsForm : public SettingsPage
{
    Q_OBJECT

public:
    explicit SettingsForm(const QVector<SettingRow> &rows, QWidget *parent = nullptr);

    void load(const SettingsStore &store) override;
    QString error() const override;
    void save(SettingsStore &store) const override;

    // What the row of `key` shows now.
    template <typename T>
    T value(const Key<T> &key) const
    {
        return m_values.value(&key)().template value<T>();
    }

private:
    struct Field
    {
        std::function<void(const SettingsStore &)> load;
        std::function<void(SettingsStore &)> save;
    };

    QWidget *make(const QString &label, const SettingRows::Heading &row);
    QWidget *make(const QString &label, const SettingRows::Check &row);
    QWidget *make(const QString &label, const SettingRows::Number &row);
    QWidget *make(const QString &label, const SettingRows::Percent &row);
    QWidget *make(const QString &label, const SettingRows::FontFamily &row);
    QWidget *make(const QString &label, const SettingRows::Choice &row);
    QWidget *make(const QString &label, const SettingRows::Index &row);
    QWidget *make(const QString &label, const SettingRows::Folder &row);
    QWidget *make(const QString &label, const SettingRows::Picture &row);
    QWidget *makePath(const QString &label, const Key<QString> &key, bool isFolder);
    // `get` reads the widget, `set` fills it.
    template <typename T>
    void addField(const Key<T> &key, std::function<T()> get, std::function<void(T)> set);
    void tellEdited();

    QVector<Field> m_fields;
    QHash<const void *, std::function<QVariant()>> m_values; // by key
    QVector<std::function<QString()>> m_checks;
    bool m_isLoading = false;
};
