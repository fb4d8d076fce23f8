#include "shell/file_search.h"

#include "shell/text_file.h"

#include <QThread>

namespace {

constexpr int portionSize = 200;

// Runs on the search's own thread.
class Worker
{
public:
    using Report = std::function<void(const QList<FileHit> &hits)>;

    Worker(TextSearch search, QString replacement, std::atomic_bool &isCancelled, Report report)
        : m_search(std::move(search)),
          m_replacement(std::move(replacement)),
          m_isCancelled(isCancelled),
          m_report(std::move(report))
    {}

    SearchSummary run(const QList<SearchFile> &files)
    {
        for (const SearchFile &file : files) {
            if (m_isCancelled || m_summary.hitLimit || !m_summary.error.isEmpty())
                break;
            search(file);
        }
        flush();
        m_summary.wasCancelled = m_isCancelled;
        return m_summary;
    }

private:
    void search(const SearchFile &file)
    {
        QString text;
        if (file.liveText) {
            text = *file.liveText;
        } else {
            const ReadText read = TextFile::readExactly(file.path);
            if (!read.succeeded()) {
                m_summary.skipped << file.name;
                return;
            }
            text = read.text;
        }
        const int before = m_summary.hits;
        const auto take = [this](const FileHit &hit) {
            m_summary.hitLimit = m_summary.hits == FileSearch::maxHits;
            if (m_isCancelled || m_summary.hitLimit)
                return false;
            ++m_summary.hits;
            m_portion << hit;
            if (m_portion.size() == portionSize)
                flush();
            return true;
        };
        m_summary.error = searchText(file, text, m_search, m_replacement, take);
        m_summary.filesWithHits += m_summary.hits > before ? 1 : 0;
    }

    void flush()
    {
        if (!m_portion.isEmpty())
            m_report(m_portion);
        m_portion.clear();
    }

    TextSearch m_search;
    QString m_replacement;
    std::atomic_bool &m_isCancelled;
    Report m_report;
    SearchSummary m_summary;
    QList<FileHit> m_portion;
};

} // namespace

QString SearchSummary::text() const
{
    QString text = hits == 0
                       ? QStringLiteral("没有找到")
                       : QStringLiteral("在 %2 个文件中找到 %1 处").arg(hits).arg(filesWithHits);
    if (hitLimit)
        text += QStringLiteral("，还有更多没有列出");
    if (!error.isEmpty())
        text += QStringLiteral("，") + error;
    if (wasCancelled)
        text += QStringLiteral("，查找被取消");
    if (!skipped.isEmpty())
        text += QStringLiteral("，跳过 %1 个不是文本或打不开的文件").arg(skipped.size());
    return text;
}

FileSearch::FileSearch(QObject *parent) : QObject(parent) {}

FileSearch::~FileSearch()
{
    abandon();
}

void FileSearch::abandon()
{
    ++m_number;
    if (!m_thread)
        return;
    *m_isCancelled = true;
    m_thread->wait();
    m_thread.reset();
}

void FileSearch::cancel()
{
    if (m_thread)
        *m_isCancelled = true;
}

QString FileSearch::start(const QList<SearchFile> &files, const SearchQuery &query)
{
    if (query.text.isEmpty())
        return QStringLiteral("请输入要查找的内容。");
    const TextSearch search(query.text, query.options);
    if (!search.error().isEmpty())
        return search.error();
    abandon();
    m_isCancelled = std::make_shared<std::atomic_bool>(false);
    // Called on the worker's thread; this object waits for that before it ends.
    const auto post = [this, number = m_number](auto action) {
        QMetaObject::invokeMethod(
            this,
            [this, number, action] {
                if (number == m_number)
                    action();
            },
            Qt::QueuedConnection);
    };
    const auto work = [this, post, files, search, with = query.replacement,
                       isCancelled = m_isCancelled] {
        const auto report = [this, post](const QList<FileHit> &hits) {
            post([this, hits] { emit hitsFound(hits); });
        };
        const SearchSummary summary = Worker(search, with, *isCancelled, report).run(files);
        post([this, summary] {
            m_thread->wait();
            m_thread.reset();
            emit finished(summary);
        });
    };
    m_thread.reset(QThread::create(work));
    m_thread->start();
    return QString();
}
