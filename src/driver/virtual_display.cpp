#include "driver/virtual_display.h"

#include "driver/run_messages.h"

#include <QStandardPaths>

VirtualDisplay::~VirtualDisplay()
{
    if (m_server.state() == QProcess::NotRunning)
        return;
    m_server.terminate();
    if (!m_server.waitForFinished(1000)) {
        m_server.kill();
        m_server.waitForFinished(1000);
    }
}

void VirtualDisplay::begin()
{
    const QString program = QStandardPaths::findExecutable(QStringLiteral("Xvfb"));
    if (program.isEmpty() || m_server.state() != QProcess::NotRunning)
        return;
    m_server.setStandardInputFile(QProcess::nullDevice());
    m_server.setStandardErrorFile(QProcess::nullDevice());
    // The server picks a free number and prints it once it takes connections.
    m_server.start(program, {QStringLiteral("-displayfd"), QStringLiteral("1"),
                             QStringLiteral("-screen"), QStringLiteral("0"),
                             QStringLiteral("1280x1024x24"), QStringLiteral("-nolisten"),
                             QStringLiteral("tcp"), QStringLiteral("-noreset")});
}

QString VirtualDisplay::start()
{
    begin();
    if (m_server.program().isEmpty())
        return RunMessage::text(RunMessage::noDisplay);
    QByteArray number;
    while (!number.contains('\n')) {
        if (!m_server.waitForReadyRead(15000))
            return RunMessage::text(RunMessage::displayFailed).arg(m_server.errorString());
        number += m_server.readAllStandardOutput();
    }
    m_name = QLatin1Char(':') + QString::fromLatin1(number.trimmed());
    return QString();
}
