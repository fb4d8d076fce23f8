// WindowState: where the main window lies and how its docks are laid out.
#pragma once

class FramelessMainWindow;
class QMainWindow;
class SettingsStore;

// The store must outlive it and is to be saved by the caller.
class WindowState
{
public:
    // `dockLayoutVersion` is raised whenever docks or tool bars come, go or move: what was saved
    // with another version is of no use then.
    WindowState(SettingsStore &store, int dockLayoutVersion)
        : m_store(store), m_dockLayoutVersion(dockLayoutVersion)
    {}

    void save(const FramelessMainWindow &frame, const QMainWindow &window);
    // To be called when all docks and tool bars are made. Without a valid geometry the frame only
    // gets its last size. Tells whether docks and tool bars lie as they did.
    bool restore(FramelessMainWindow &frame, QMainWindow &window) const;

private:
    SettingsStore &m_store;
    int m_dockLayoutVersion;
};
