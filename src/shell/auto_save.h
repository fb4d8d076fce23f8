// AutoSave: says when it is time to save all.
#pragma once

#include <QObject>
#include <QTimer>

class SettingsStore;

// Reads `General/autoSaveEnabled` and `General/autoSaveInterval` of the store, which must outlive
// it. Never more often than every 30 seconds, never more seldom than every hour.
class AutoSave : public QObject
{
    Q_OBJECT

public:
    explicit AutoSave(const SettingsStore &store, QObject *parent = nullptr);

    // 0: switched off.
    int intervalSeconds() const { return m_timer.isActive() ? m_timer.interval() / 1000 : 0; }

public slots:
    // To be called when the settings have changed. The time starts anew only if they differ.
    void updateAutoSaveTimer();

signals:
    void due();

private:
    const SettingsStore &m_store;
    QTimer m_timer;
};
