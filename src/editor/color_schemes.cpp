#include "editor/color_schemes.h"

#include "catalog/json_table.h"
#include "settings/settings_store.h"

#include <QDir>
#include <QJsonObject>
#include <QMap>

#include <algorithm>

namespace {

SyntaxColors readColors(const QJsonObject &object)
{
    SyntaxColors colors;
    for (const Setting::ColorKey &key : Setting::colors) {
        const QColor color(object.value(QLatin1String(key.button)).toString());
        if (color.isValid())
            colors[key.color] = color;
    }
    return colors;
}

QList<ColorScheme> readSchemes()
{
    QMultiMap<int, ColorScheme> schemes;
    const QDir folder(QStringLiteral(":/editor/schemes"));
    const QStringList names = folder.entryList({QStringLiteral("*.json")}, QDir::Files, QDir::Name);
    for (const QString &fileName : names) {
        const QJsonObject object = jsonTable(folder.filePath(fileName)).object();
        const QString name = object.value(QLatin1String("name")).toString();
        if (name.isEmpty()) {
            qWarning("%s is no colour scheme", qPrintable(fileName));
            continue;
        }
        schemes.insert(object.value(QLatin1String("position")).toInt(),
                       {name, readColors(object.value(QLatin1String("colors")).toObject())});
    }
    return schemes.values();
}

} // namespace

const QList<ColorScheme> &colorSchemes()
{
    static const QList<ColorScheme> schemes = readSchemes();
    return schemes;
}

const ColorScheme *findColorScheme(const QString &name)
{
    const QList<ColorScheme> &schemes = colorSchemes();
    const auto found = std::find_if(schemes.cbegin(), schemes.cend(),
                                    [&name](const ColorScheme &s) { return s.name == name; });
    return found == schemes.cend() ? nullptr : &*found;
}

void useColorScheme(SettingsStore &store, const ColorScheme &scheme)
{
    store.set(Setting::Editor::colorScheme, scheme.name);
    for (const Setting::ColorKey &key : Setting::colors)
        store.set(key.color, scheme.colors[key.color].name());
}

void useDefaultColorScheme(SettingsStore &store)
{
    const QString wanted = store.get(Setting::Editor::defaultColorScheme);
    const ColorScheme *scheme =
        wanted == store.get(Setting::Editor::colorScheme) ? nullptr : findColorScheme(wanted);
    if (scheme)
        useColorScheme(store, *scheme);
}
