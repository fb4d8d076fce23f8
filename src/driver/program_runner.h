// ProgramRunner: starts a built program, passes on what it prints, and ends it with all its
// children.
#pragma once

#include <QObject>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

// One running program. Lives on one thread with an event loop.
class ProgramRunner : public QObject
{
    Q_OBJECT

public:
    enum class Channels
    {
        Captured,  // output arrives by `outputReady`, input goes by `writeInput`
        Inherited, // the program shares the channels of this process
    };
    // Told what takes time ahead of the start, such as setting up the run environment.
    using Progress = std::function<void(const QString &message)>;

    explicit ProgramRunner(QObject *parent = nullptr);
    // Ends the program.
    ~ProgramRunner() override;

    // To be called ahead of a build whose program is to be started: what takes time goes on beside
    // the build.
    void warmUp();
    // Starts `executable` in `folder`. Empty on success, else a Chinese sentence.
    QString start(const QString &executable, const QStringList &arguments, const QString &folder,
                  Channels channels, const Progress &progress = {});
    // A line for the standard input of a program with captured channels, as UTF-8; without one that
    // runs nothing happens.
    void writeInput(const QString &line);
    bool isRunning() const;
    qint64 processId() const;
    // Of the ended program; -1 when it was killed or has crashed. A host without Windows passes the
    // low eight bits only.
    int exitCode() const { return m_exitCode; }
    // Ends the program and every process it started, at once. `finished` is emitted.
    void stop();

signals:
    // As it is printed; both channels.
    void outputReady(const QString &text);
    void finished(int exitCode);

private:
    void readOutput();
    void onFinished();

    class Launch;
    std::unique_ptr<Launch> m_launch;
    QProcess m_process;
    QByteArray m_partial; // bytes of a character whose rest has not come yet
    int m_exitCode = -1;
    bool m_inherited = false;
    bool m_stopped = false;
};
