// Colours from the settings, and the colour schemes.
#include "editor/color_schemes.h"
#include "editor/syntax_colors.h"
#include "settings/settings_store.h"
#include "test_files.h"

#include <QtTest>

#include <cmath>

using Setting::Color;

namespace {

double luminance(const QColor &color)
{
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

// From 1 (the same) to 21 (black on white).
double contrast(const QColor &one, const QColor &other)
{
    const double a = luminance(one) + 0.05;
    const double b = luminance(other) + 0.05;
    return qMax(a, b) / qMin(a, b);
}

} // namespace

class SyntaxColorsTest : public QObject
{
    Q_OBJECT

private slots:
    void readsSettings();
    void listsSchemes();
    void schemeIsReadable_data();
    void schemeIsReadable();
    void schemeOfDefaults();
};

void SyntaxColorsTest::readsSettings()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("vlide.ini"));
    TestFiles::writeFile(path, "[Editor]\ncolor_keyword=#102030\ncolor_string=red\n"
                               "color_number=#12345\ncompletion_color_method=#ABCDEF\n");
    const SyntaxColors colors = SyntaxColors::stored(SettingsStore(path));
    SyntaxColors expected;
    expected[Color::Keyword] = QColor(0x10, 0x20, 0x30);
    expected[Color::CompletionMethod] = QColor(0xab, 0xcd, 0xef);
    QVERIFY(colors == expected);
    QCOMPARE(colors[Color::String], QColor(0xce, 0x91, 0x78));
}

void SyntaxColorsTest::listsSchemes()
{
    QStringList names;
    for (const ColorScheme &scheme : colorSchemes())
        names << scheme.name;
    const QStringList expected{
        QStringLiteral("VS Code 暗色"),
        QStringLiteral("Visual Studio 2017 暗色"),
        QStringLiteral("Visual Studio 2017 亮色"),
        QStringLiteral("Visual Studio 2019 暗色"),
        QStringLiteral("Visual Studio 2019 亮色"),
        QStringLiteral("Visual Studio 2022 暗色"),
        QStringLiteral("Monokai"),
        QStringLiteral("Monokai Pro"),
        QStringLiteral("Dracula"),
        QStringLiteral("One Dark"),
        QStringLiteral("One Light"),
        QStringLiteral("GitHub 亮色"),
        QStringLiteral("GitHub 暗色"),
        QStringLiteral("Solarized 暗色"),
        QStringLiteral("Solarized 亮色"),
        QStringLiteral("Nord"),
        QStringLiteral("Gruvbox 暗色"),
        QStringLiteral("Gruvbox 亮色"),
        QStringLiteral("Material 暗色"),
        QStringLiteral("Ayu 暗色"),
    };
    QCOMPARE(names, expected);
    QVERIFY(!findColorScheme(QStringLiteral("没有")));
}

void SyntaxColorsTest::schemeIsReadable_data()
{
    QTest::addColumn<QString>("path");
    const QDir folder(QStringLiteral(":/editor/schemes"));
    for (const QString &name : folder.entryList())
        QTest::addRow("%s", qPrintable(name)) << folder.filePath(name);
}

// A light scheme on a light ground too; comments and line numbers may be fainter than the text.
void SyntaxColorsTest::schemeIsReadable()
{
    QFETCH(QString, path);
    const QJsonObject object = QJsonDocument::fromJson(TestFiles::readFile(path)).object();
    const QJsonObject values = object.value(QLatin1String("colors")).toObject();
    QCOMPARE(values.size(), Setting::colorCount);
    static const QRegularExpression valid(QStringLiteral("^#[0-9A-F]{6}$"));
    for (const Setting::ColorKey &key : Setting::colors) {
        const QString value = values.value(QLatin1String(key.button)).toString();
        QVERIFY2(valid.match(value).hasMatch(), key.button);
    }

    const ColorScheme *scheme = findColorScheme(object.value(QLatin1String("name")).toString());
    QVERIFY(scheme);
    const SyntaxColors &colors = scheme->colors;
    for (const Color ground : {Color::Background, Color::CurrentLine}) {
        for (const Setting::ColorKey &key : Setting::colors) {
            if (key.color == Color::Background || key.color == Color::CurrentLine)
                continue;
            const double least = key.color == Color::Text ? 4.5 : 3;
            QVERIFY2(contrast(colors[key.color], colors[ground]) >= least, key.button);
        }
    }
}

void SyntaxColorsTest::schemeOfDefaults()
{
    const ColorScheme *scheme =
        findColorScheme(QString::fromUtf8(Setting::Editor::defaultColorScheme.fallback));
    QVERIFY(scheme);
    QVERIFY(scheme->colors == SyntaxColors());
}

QTEST_GUILESS_MAIN(SyntaxColorsTest)
#include "syntax_colors_test.moc"
