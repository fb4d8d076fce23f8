// The Wine prefix of VorelDesk's own, in which built programs run on a host without Windows.
#pragma once

#include <QProcessEnvironment>
#include <QString>

#include <functional>

class WinePrefix
{
public:
    using Progress = std::function<void(const QString &message)>;

    WinePrefix();

    // $VOREL_WINEPREFIX, else a folder among the user's data.
    const QString &folder() const { return m_folder; }
    // The loader itself, not a script around it; empty when wine is not installed.
    const QString &loader() const { return m_loader; }
    // What every process in the prefix gets.
    QProcessEnvironment environment() const;

    // Creates the prefix if it is not there yet. Several processes may do so at once. Empty on
    // success, else a Chinese sentence.
    QString ensureExists(const Progress &progress) const;
    // Starts the server and wine's own services, unless they run, on the display in `environment`:
    // the desktop stays with the display that the first of them sees.
    void wakeServer(const QProcessEnvironment &environment) const;

    // Whether 32-bit programs can run.
    static bool runs32Bit();
    // Whether the file is a 32-bit Windows program.
    static bool is32Bit(const QString &executable);
    // Whether a process belongs to wine itself and outlives the programs.
    static bool isSystemProcess(const QByteArray &commandLine);

private:
    QString create(const Progress &progress) const;
    QString setFonts() const;
    QString runWithoutDisplay(const QString &program, const QStringList &arguments,
                              int timeoutMs) const;

    QString m_folder;
    QString m_loader;
    QString m_server;
};
