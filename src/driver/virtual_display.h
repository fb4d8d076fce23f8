// A virtual X server for programs that run where no display is.
#pragma once

#include <QProcess>
#include <QString>

// Lives as long as this object.
class VirtualDisplay
{
public:
    ~VirtualDisplay();

    // Has the server come up while something else is done.
    void begin();
    // Waits until it takes connections. Empty on success, else a Chinese sentence.
    QString start();
    // ":99" and the like; empty when none was started.
    const QString &name() const { return m_name; }

private:
    QProcess m_server;
    QString m_name;
};
