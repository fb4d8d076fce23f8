#include "shell/auto_save.h"

#include "settings/settings_store.h"

namespace {

constexpr int minSeconds = 30;
constexpr int maxSeconds = 3600;

} // namespace

AutoSave::AutoSave(const SettingsStore &store, QObject *parent) : QObject(parent), m_store(store)
{
    connect(&m_timer, &QTimer::timeout, this, &AutoSave::due);
    updateAutoSaveTimer();
}

void AutoSave::updateAutoSaveTimer()
{
    const int seconds =
        m_store.get(Setting::General::autoSaveEnabled)
            ? qBound(minSeconds, m_store.get(Setting::General::autoSaveInterval), maxSeconds)
            : 0;
    if (seconds == intervalSeconds())
        return;
    m_timer.stop();
    if (seconds > 0)
        m_timer.start(seconds * 1000);
}
