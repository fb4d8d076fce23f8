// When it is time to save all.
#include "shell/auto_save.h"

#include "settings/settings_store.h"

#include <QTemporaryDir>
#include <QtTest>

class AutoSaveTest : public QObject
{
    Q_OBJECT

private slots:
    void interval_data();
    void interval();
};

void AutoSaveTest::interval_data()
{
    QTest::addColumn<bool>("isEnabled");
    QTest::addColumn<int>("seconds");
    QTest::addColumn<int>("expected");
    QTest::addRow("off") << false << 300 << 0;
    QTest::addRow("on") << true << 300 << 300;
    QTest::addRow("too often") << true << 1 << 30;
    QTest::addRow("shortest") << true << 30 << 30;
    QTest::addRow("longest") << true << 3600 << 3600;
    QTest::addRow("too seldom") << true << 86400 << 3600;
}

void AutoSaveTest::interval()
{
    QFETCH(bool, isEnabled);
    QFETCH(int, seconds);
    const QTemporaryDir folder;
    SettingsStore store(folder.path() + "/a.ini");
    AutoSave autoSave(store);
    QCOMPARE(autoSave.intervalSeconds(), 0);
    store.set(Setting::General::autoSaveEnabled, isEnabled);
    QVERIFY(store.set(Setting::General::autoSaveInterval, seconds));
    autoSave.updateAutoSaveTimer();
    QTEST(autoSave.intervalSeconds(), "expected");
    store.set(Setting::General::autoSaveEnabled, false);
    autoSave.updateAutoSaveTimer();
    QCOMPARE(autoSave.intervalSeconds(), 0);
}

QTEST_GUILESS_MAIN(AutoSaveTest)
#include "auto_save_test.moc"
