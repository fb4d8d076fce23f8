#include "shell/recovery_store.h"

#include "shell/user_folder.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLockFile>
#include <QRegularExpression>
#include <QSaveFile>

#include <algorithm>
#include <optional>

namespace {

constexpr int formatVersion = 1;
// Larger files are none of this store.
constexpr qint64 maxBytes = qint64(256) << 20;
const QLatin1String suffix(".recovery");

QByteArray hashOfBytes(const QByteArray &bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha1).toHex();
}

// One line of JSON, then the text.
QByteArray written(const RecoveredText &content, const QByteArray &text)
{
    const QJsonObject header{
        {QStringLiteral("version"), formatVersion},
        {QStringLiteral("path"), content.path},
        {QStringLiteral("title"), content.title},
        {QStringLiteral("time"), content.time.toString(Qt::ISODateWithMs)},
        {QStringLiteral("baseHash"), QString::fromLatin1(content.baseHash)},
        {QStringLiteral("cursorPosition"), content.cursorPosition},
        {QStringLiteral("textHash"), QString::fromLatin1(hashOfBytes(text))},
    };
    return QJsonDocument(header).toJson(QJsonDocument::Compact) + '\n' + text;
}

// Nothing for bytes that `written` has not made.
std::optional<RecoveredText> read(const QString &path)
{
    QFile file(path);
    if (file.size() > maxBytes || !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray bytes = file.readAll();
    const int headerEnd = bytes.indexOf('\n');
    if (headerEnd < 0)
        return std::nullopt;
    const QJsonObject header = QJsonDocument::fromJson(bytes.left(headerEnd)).object();
    const QByteArray text = bytes.mid(headerEnd + 1);
    const auto textOf = [&](const char *key) { return header[QLatin1String(key)].toString(); };
    if (header[QLatin1String("version")].toInt() != formatVersion ||
        textOf("textHash").toLatin1() != hashOfBytes(text))
        return std::nullopt;
    RecoveredText content;
    content.path = textOf("path");
    content.title = textOf("title");
    // Also behind a zero character.
    content.text =
        QString::fromUtf8(bytes.constData() + headerEnd + 1, bytes.size() - headerEnd - 1);
    content.time = QDateTime::fromString(textOf("time"), Qt::ISODateWithMs);
    content.baseHash = textOf("baseHash").toLatin1();
    content.cursorPosition =
        qBound(0, header[QLatin1String("cursorPosition")].toInt(), content.text.size());
    return content;
}

} // namespace

RecoveryStore::RecoveryStore(const QString &folder, QObject *parent)
    : QObject(parent), m_folder(folder)
{}

RecoveryStore::~RecoveryStore()
{
    for (Held &held : m_held) {
        held.lock.reset();
        QDir().rmdir(held.path); // only when nothing is in it
    }
}

QString RecoveryStore::defaultFolder()
{
    return userDataFolder() + QStringLiteral("/recovery");
}

QByteArray RecoveryStore::hashOf(const QString &file)
{
    QFile read(file);
    if (!QFileInfo(file).isFile() || !read.open(QIODevice::ReadOnly))
        return QByteArray();
    QCryptographicHash hash(QCryptographicHash::Sha1);
    return hash.addData(&read) ? hash.result().toHex() : QByteArray();
}

bool RecoveryStore::isHeld(const QString &folder) const
{
    return std::any_of(m_held.begin(), m_held.end(),
                       [&](const Held &held) { return held.path == folder; });
}

bool RecoveryStore::hold(const QString &folder)
{
    auto lock = std::make_unique<QLockFile>(folder + QStringLiteral("/lock"));
    // The system's own lock on the file decides at once. What the file says may be broken after a
    // power cut, and the machine may have another name since.
    lock->setStaleLockTime(1);
    if (!lock->tryLock())
        return false;
    m_held.push_back({folder, std::move(lock)});
    return true;
}

// The folder of this process's number may have been left by an earlier process.
bool RecoveryStore::openOwnFolder()
{
    if (!m_own.isEmpty())
        return true;
    const QString number = QString::number(QCoreApplication::applicationPid());
    for (int attempt = 1; attempt < 100; ++attempt) {
        const QString name =
            attempt == 1 ? number : number + QLatin1Char('-') + QString::number(attempt);
        const QString folder = m_folder + QLatin1Char('/') + name;
        if (QFileInfo::exists(folder))
            continue;
        if (!QDir().mkpath(folder) || !hold(folder))
            return false;
        // The texts may be nobody else's business.
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        m_own = folder;
        return true;
    }
    return false;
}

QString RecoveryStore::fileOf(const QString &id) const
{
    return m_own + QLatin1Char('/') + QString::fromLatin1(hashOfBytes(id.toUtf8())) + suffix;
}

bool RecoveryStore::fail()
{
    if (!m_hasFailed) {
        m_hasFailed = true;
        emit writeFailed(QStringLiteral("未保存的内容无法备份到：%1。请及时保存文件。")
                             .arg(QDir::toNativeSeparators(m_folder)));
    }
    return false;
}

bool RecoveryStore::note(const QString &id, const RecoveredText &content)
{
    const QByteArray text = content.text.toUtf8();
    const QByteArray textHash = hashOfBytes(text);
    Note note = m_notes.value(id);
    if (note.textHash == textHash && note.path == content.path)
        return true;
    // The file as it is when its text begins to differ from it.
    if (note.baseHash.isEmpty() || (!note.textHash.isEmpty() && note.path != content.path))
        note.baseHash = hashOf(content.path);
    if (!openOwnFolder())
        return fail();
    RecoveredText kept = content;
    kept.time = QDateTime::currentDateTime();
    kept.baseHash = note.baseHash;
    QSaveFile file(fileOf(id));
    if (!file.open(QIODevice::WriteOnly) || file.write(written(kept, text)) < 0 || !file.commit())
        return fail();
    m_hasFailed = false;
    note.path = content.path;
    note.textHash = textHash;
    m_notes.insert(id, note);
    return true;
}

void RecoveryStore::forget(const QString &id)
{
    if (m_notes.remove(id))
        QFile::remove(fileOf(id));
}

void RecoveryStore::keepOnly(const QStringList &ids)
{
    const QStringList noted = m_notes.keys();
    for (const QString &id : noted) {
        if (!ids.contains(id))
            forget(id);
    }
}

QList<RecoveryEntry> RecoveryStore::pending()
{
    static const QRegularExpression form(QStringLiteral("^[0-9]+(-[0-9]+)?$"));
    const QStringList names = QDir(m_folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &name : names) {
        const QString folder = m_folder + QLatin1Char('/') + name;
        if (form.match(name).hasMatch() && !isHeld(folder))
            hold(folder);
    }
    QList<RecoveryEntry> entries;
    for (const Held &held : m_held) {
        if (held.path == m_own)
            continue;
        const QStringList files = QDir(held.path).entryList({QLatin1Char('*') + suffix});
        for (const QString &name : files) {
            const QString file = held.path + QLatin1Char('/') + name;
            if (const std::optional<RecoveredText> content = read(file))
                entries << RecoveryEntry{file, *content};
        }
    }
    std::sort(entries.begin(), entries.end(), [](const RecoveryEntry &a, const RecoveryEntry &b) {
        return a.content.time > b.content.time;
    });
    return entries;
}

void RecoveryStore::adopt(const QString &id, const RecoveryEntry &entry)
{
    forget(id);
    m_notes.insert(id, {entry.content.path, QByteArray(), entry.content.baseHash});
    if (note(id, entry.content))
        discard(entry);
}

void RecoveryStore::discard(const RecoveryEntry &entry)
{
    QFile::remove(entry.file);
}

RecoveryTimer::RecoveryTimer(RecoveryStore &store, ChangedTexts changedTexts, QObject *parent)
    : QObject(parent), m_store(store), m_changedTexts(std::move(changedTexts))
{
    connect(&m_timer, &QTimer::timeout, this, &RecoveryTimer::run);
    m_timer.start(intervalMs);
}

void RecoveryTimer::run()
{
    const QHash<QString, RecoveredText> texts = m_changedTexts();
    for (auto text = texts.begin(); text != texts.end(); ++text)
        m_store.note(text.key(), text.value());
    m_store.keepOnly(texts.keys());
}
