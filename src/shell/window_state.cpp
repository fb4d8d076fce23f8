#include "shell/window_state.h"

#include "settings/settings_store.h"
#include "shell/frameless_main_window.h"

#include <QMainWindow>

namespace Keys = Setting::MainWindow;

void WindowState::save(const FramelessMainWindow &frame, const QMainWindow &window)
{
    m_store.set(Keys::geometry, frame.saveGeometry());
    m_store.set(Keys::state, window.saveState());
    m_store.set(Keys::dockLayoutVersion, m_dockLayoutVersion);
    const QSize size = frame.normalGeometry().size();
    m_store.set(Keys::windowWidth, size.width());
    m_store.set(Keys::windowHeight, size.height());
}

bool WindowState::restore(FramelessMainWindow &frame, QMainWindow &window) const
{
    frame.resize(m_store.get(Keys::windowWidth), m_store.get(Keys::windowHeight));
    const QByteArray geometry = m_store.get(Keys::geometry);
    if (!geometry.isEmpty() && !frame.restoreFrame(geometry))
        qWarning("Invalid geometry data detected, it is ignored");
    return m_store.get(Keys::dockLayoutVersion) == m_dockLayoutVersion &&
           window.restoreState(m_store.get(Keys::state));
}
