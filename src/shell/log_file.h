// The log of Qt's messages.
#pragma once

#include <QFile>
#include <QMutex>
#include <QString>
#include <QStringList>

// Receives the messages of qDebug, qWarning and the like from any thread while it lives, writes
// them to a file and to standard error. At most one lives at a time. The log goes on behind what
// the file holds; a file that grew too large becomes "<file>.1" and a new one is begun.
class LogFile
{
public:
    static constexpr qint64 defaultMaxBytes = qint64(4) * 1024 * 1024;

    // Uses the first of `paths` that can be opened, and says on standard error when that is not the
    // first. Where none can, messages go to standard error only.
    explicit LogFile(const QStringList &paths = defaultPaths(), qint64 maxBytes = defaultMaxBytes);
    ~LogFile();
    LogFile(const LogFile &) = delete;
    LogFile &operator=(const LogFile &) = delete;

    // "VorelDesk_debug.log" in the program's folder, then in the user's data folder.
    static QStringList defaultPaths();

    // Empty when no file could be opened.
    QString path() const { return m_file.fileName(); }

    // A line as it stands, without its end.
    void write(const QString &line);

private:
    static void handle(QtMsgType type, const QMessageLogContext &context, const QString &message);
    void openFirst(const QStringList &paths);
    bool open(const QString &path);
    void append(const QByteArray &line);
    void startAnew();

    static QMutex s_mutex; // guards s_active and its file
    static LogFile *s_active;

    QFile m_file;
    qint64 m_maxBytes;
    QtMessageHandler m_previousHandler = nullptr;
};

// A warning of Qt must not end the program, whatever QT_FATAL_WARNINGS says. To be called before
// the first message.
void keepWarningsHarmless();
