// The dialog of settings: what it writes, tells and leaves alone.
#include "shell/settings_dialog.h"

#include "editor/color_schemes.h"
#include "settings/settings_store.h"
#include "shell/color_button.h"

#include "test_files.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QStackedWidget>
#include <QTemporaryDir>

class SettingsDialogTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void showsWhatIsStored();
    void writesWhatIsChanged_data();
    void writesWhatIsChanged();
    void opensAndClosesWithoutATrace_data();
    void opensAndClosesWithoutATrace();
    void cancelChangesNothing();
    void invalidStaysOut_data();
    void invalidStaysOut();
    void vanishedPictureDoesNotHinder();
    void schemeSetsAllColors();
    void tellsOnlyWhatChanged();
    void failureToWriteIsShown();
    void opensOnItsPage();

private:
    QByteArray ini() const { return TestFiles::readFile(m_path); }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
    std::unique_ptr<SettingsStore> m_store;
    std::unique_ptr<SettingsDialog> m_dialog;
};

namespace {

void press(const QWidget &window, const QString &text)
{
    for (QAbstractButton *button : window.findChildren<QAbstractButton *>()) {
        if (button->text() == text)
            return button->click();
    }
    QFAIL(qPrintable("no button " + text));
}

// As the user would: the widget of the key `name` shows `value` then.
void enter(const QWidget &window, const QString &name, const QVariant &value)
{
    auto *widget = window.findChild<QWidget *>(name);
    QVERIFY2(widget, qPrintable(name));
    if (auto *check = qobject_cast<QCheckBox *>(widget))
        check->setChecked(value.toBool());
    else if (auto *number = qobject_cast<QSpinBox *>(widget))
        number->setValue(value.toInt());
    else if (auto *slider = qobject_cast<QSlider *>(widget))
        slider->setValue(value.toInt());
    else if (auto *edit = qobject_cast<QLineEdit *>(widget))
        edit->setText(value.toString());
    else if (auto *box = qobject_cast<QComboBox *>(widget))
        box->isEditable() ? box->setEditText(value.toString())
                          : box->setCurrentText(value.toString());
}

QString errorIn(const QWidget &window)
{
    const auto *label = window.findChild<QLabel *>("settingsError");
    return label->isHidden() ? QString() : label->text();
}

} // namespace

void SettingsDialogTest::init()
{
    m_dialog.reset();
    m_store.reset();
    m_folder = std::make_unique<QTemporaryDir>();
    m_path = m_folder->path() + "/vlide.ini";
    m_store = std::make_unique<SettingsStore>(m_path);
    m_dialog = std::make_unique<SettingsDialog>(*m_store);
}

void SettingsDialogTest::showsWhatIsStored()
{
    m_store->set(Setting::Editor::fontFamily, "Not Installed Here");
    m_store->set(Setting::Editor::tabWidth, 7);
    m_store->set(Setting::Editor::fuzzyMatch, true);
    m_store->set(Setting::Compiler::defaultCompiler, "MinGW");
    m_store->set(Setting::Compiler::toolchainErrorMode, 2);
    m_store->set(Setting::Color::Comment, "#123456");
    const SettingsDialog dialog(*m_store);
    QCOMPARE(dialog.findChild<QComboBox *>("fontFamily")->currentText(),
             QStringLiteral("Not Installed Here"));
    QCOMPARE(dialog.findChild<QSpinBox *>("tabWidth")->value(), 7);
    QVERIFY(dialog.findChild<QCheckBox *>("fuzzyMatch")->isChecked());
    QCOMPARE(dialog.findChild<QComboBox *>("defaultCompiler")->currentText(),
             QStringLiteral("MinGW"));
    QCOMPARE(dialog.findChild<QComboBox *>("toolchainErrorMode")->currentIndex(), 2);
    QCOMPARE(dialog.findChild<ColorButton *>("comment")->color(), QColor("#123456"));
}

void SettingsDialogTest::writesWhatIsChanged_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QByteArray>("line");
    const auto add = [](const char *name, const QVariant &value, const char *line) {
        QTest::addRow("%s", name) << name << value << QByteArray(line);
    };
    add("fontFamily", "DejaVu Sans Mono", "fontFamily=DejaVu Sans Mono");
    add("fontSize", 15, "fontSize=15");
    add("tabWidth", 2, "tabWidth=2");
    add("fuzzyMatch", true, "fuzzyMatch=true");
    add("generateEventComments", true, "generateEventComments=true");
    add("editorBackgroundOpacity", 65, "editorBackgroundOpacity=65");
    add("defaultCompiler", "MinGW", "defaultCompiler=MinGW");
    add("defaultArch", QStringLiteral("x86 (32位)"), "defaultArch=x86");
    add("buildConfig", "Debug", "buildConfig=debug");
    add("staticLink", true, "staticLink=true");
    add("chineseError", false, "chineseError=false");
    add("showWarnings", false, "showWarnings=false");
    add("toolchainErrorMode", QStringLiteral("始终中文说明"), "toolchainErrorMode=1");
    add("outputFontSize", 9, "outputFontSize=9");
    add("autoSaveEnabled", true, "autoSaveEnabled=true");
    add("autoSaveInterval", 5, "autoSaveInterval=30");
    add("logErrorsToFile", false, "logErrorsToFile=false");
    add("defaultPath", "/srv/new", "defaultPath=/srv/new");
}

void SettingsDialogTest::writesWhatIsChanged()
{
    QFETCH(QString, name);
    QFETCH(QVariant, value);
    QFETCH(QByteArray, line);
    QSignalSpy changed(m_dialog.get(), &SettingsDialog::settingsChanged);
    enter(*m_dialog, name, value);
    press(*m_dialog, QStringLiteral("应用"));
    QCOMPARE(errorIn(*m_dialog), QString());
    QCOMPARE(changed.size(), 1);
    // Its group, and nothing else.
    const QList<QByteArray> lines = ini().trimmed().split('\n');
    QCOMPARE(lines.size(), 2);
    QCOMPARE(lines.at(1), line);
}

void SettingsDialogTest::opensAndClosesWithoutATrace_data()
{
    QTest::addColumn<QString>("button");
    for (const QString &button : {QStringLiteral("确定"), QStringLiteral("取消")})
        QTest::addRow("%s", qPrintable(button)) << button;
}

void SettingsDialogTest::opensAndClosesWithoutATrace()
{
    QFETCH(QString, button);
    QSignalSpy finished(m_dialog.get(), &QDialog::finished);
    QSignalSpy previews(m_dialog.get(), &SettingsDialog::editorBackgroundLivePreview);
    press(*m_dialog, button);
    QCOMPARE(finished.size(), 1);
    QVERIFY(previews.isEmpty());
    QVERIFY(!QFile::exists(m_path));
}

void SettingsDialogTest::cancelChangesNothing()
{
    QSignalSpy previews(m_dialog.get(), &SettingsDialog::editorBackgroundLivePreview);
    QSignalSpy changed(m_dialog.get(), &SettingsDialog::settingsChanged);
    enter(*m_dialog, "editorBackgroundImage", "/x.png");
    enter(*m_dialog, "editorBackgroundOpacity", 80);
    QCOMPARE(previews.last(), (QList<QVariant>{"/x.png", 80}));
    m_dialog->findChild<QListWidget *>()->setCurrentRow(3);
    press(*m_dialog, QStringLiteral("取消"));
    QCOMPARE(previews.last(), (QList<QVariant>{"", 40}));
    QVERIFY(changed.isEmpty());
    QVERIFY(m_store->save());
    QVERIFY(!QFile::exists(m_path));
}

void SettingsDialogTest::invalidStaysOut_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("value");
    QTest::addRow("relative folder") << "defaultPath"
                                     << "projects";
    QTest::addRow("no picture") << "editorBackgroundImage"
                                << QCoreApplication::applicationFilePath();
    QTest::addRow("missing picture") << "editorBackgroundImage"
                                     << "/no/such.png";
}

void SettingsDialogTest::invalidStaysOut()
{
    QFETCH(QString, name);
    QFETCH(QString, value);
    QSignalSpy finished(m_dialog.get(), &QDialog::finished);
    enter(*m_dialog, "tabWidth", 2);
    enter(*m_dialog, name, value);
    press(*m_dialog, QStringLiteral("确定"));
    QVERIFY(!errorIn(*m_dialog).isEmpty());
    QVERIFY(finished.isEmpty());
    QCOMPARE(m_store->get(Setting::Editor::tabWidth), 4);
    enter(*m_dialog, name, QString());
    press(*m_dialog, QStringLiteral("确定"));
    QCOMPARE(finished.size(), 1);
    QCOMPARE(m_store->get(Setting::Editor::tabWidth), 2);
}

void SettingsDialogTest::vanishedPictureDoesNotHinder()
{
    m_store->set(Setting::Editor::backgroundImage, "/gone.png");
    SettingsDialog dialog(*m_store);
    enter(dialog, "tabWidth", 2);
    press(dialog, QStringLiteral("确定"));
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(m_store->get(Setting::Editor::backgroundImage), QStringLiteral("/gone.png"));
}

void SettingsDialogTest::schemeSetsAllColors()
{
    QSignalSpy themes(m_dialog.get(), &SettingsDialog::themeChanged);
    QSignalSpy colors(m_dialog.get(), &SettingsDialog::colorsChanged);
    m_dialog->showPage(SettingsDialog::Page::Colors);
    auto *schemes =
        m_dialog->findChild<QStackedWidget *>()->currentWidget()->findChild<QListWidget *>();
    QCOMPARE(schemes->count(), 20);
    const QString name = QStringLiteral("One Light");
    schemes->setCurrentItem(schemes->findItems(name, Qt::MatchExactly).value(0));
    press(*m_dialog, QStringLiteral("应用"));
    QCOMPARE(themes.size(), 1);
    QCOMPARE(themes.last().first().toString(), name);
    const SyntaxColors expected = findColorScheme(name)->colors;
    QCOMPARE(colors.last().first().value<SyntaxColors>(), expected);
    const SettingsStore read(m_path);
    QCOMPARE(SyntaxColors::stored(read), expected);
    QCOMPARE(read.get(Setting::Editor::colorScheme), name);
    QCOMPARE(read.get(Setting::Editor::defaultColorScheme), QStringLiteral("VS Code 暗色"));

    press(*m_dialog, QStringLiteral("启动时使用此方案"));
    auto *button = m_dialog->findChild<ColorButton *>("keyword");
    button->setColor("#010203");
    emit button->colorChosen("#010203");
    press(*m_dialog, QStringLiteral("确定"));
    QCOMPARE(m_store->get(Setting::Editor::defaultColorScheme), name);
    QCOMPARE(m_store->get(Setting::Color::Keyword), QStringLiteral("#010203"));
    QCOMPARE(themes.size(), 1);
    QCOMPARE(colors.size(), 2);
}

void SettingsDialogTest::tellsOnlyWhatChanged()
{
    QSignalSpy fonts(m_dialog.get(), &SettingsDialog::fontChanged);
    QSignalSpy outputFonts(m_dialog.get(), &SettingsDialog::compilerOutputFontChanged);
    QSignalSpy colors(m_dialog.get(), &SettingsDialog::colorsChanged);
    enter(*m_dialog, "fontSize", 20);
    press(*m_dialog, QStringLiteral("应用"));
    QCOMPARE(fonts.size(), 1);
    QCOMPARE(fonts.last().first().value<QFont>().pointSize(), 20);
    enter(*m_dialog, "outputFontFamily", "DejaVu Serif");
    press(*m_dialog, QStringLiteral("应用"));
    QCOMPARE(fonts.size(), 1);
    QCOMPARE(outputFonts.size(), 1);
    QCOMPARE(outputFonts.last().first().value<QFont>().family(), QStringLiteral("DejaVu Serif"));
    QVERIFY(colors.isEmpty());
}

void SettingsDialogTest::failureToWriteIsShown()
{
    QVERIFY(QDir().mkpath(m_path)); // a folder where the file should be
    QSignalSpy finished(m_dialog.get(), &QDialog::finished);
    enter(*m_dialog, "tabWidth", 2);
    press(*m_dialog, QStringLiteral("确定"));
    QVERIFY(errorIn(*m_dialog).contains(QStringLiteral("无法写入")));
    QVERIFY(finished.isEmpty());
    press(*m_dialog, QStringLiteral("取消"));
    QCOMPARE(finished.size(), 1);
}

void SettingsDialogTest::opensOnItsPage()
{
    const auto *names = m_dialog->findChild<QListWidget *>("settingsPages");
    const auto *pages = m_dialog->findChild<QStackedWidget *>();
    for (int i = 0; i < names->count(); ++i) {
        m_dialog->showPage(SettingsDialog::Page(i));
        QCOMPARE(names->currentRow(), i);
        QCOMPARE(pages->currentIndex(), i);
    }
    QCOMPARE(names->count(), 4);
}

QTEST_MAIN(SettingsDialogTest)
#include "settings_dialog_test.moc"
