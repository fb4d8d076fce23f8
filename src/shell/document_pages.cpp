#include "shell/document_pages.h"

#include <QDir>
#include <QFile>

namespace {

DocumentPage readPage(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QString text = QString::fromUtf8(file.readAll());
    QString title = text.section(QLatin1Char('\n'), 0, 0);
    while (title.startsWith(QLatin1Char('#')))
        title.remove(0, 1);
    return {title.trimmed(), text};
}

} // namespace

QVector<DocumentPage> helpPages()
{
    QVector<DocumentPage> pages;
    const QDir folder(QStringLiteral(":/shell/help"));
    for (const QString &name : folder.entryList({QStringLiteral("*.md")}, QDir::Files, QDir::Name))
        pages.append(readPage(folder.filePath(name)));
    return pages;
}

DocumentPage changelogPage()
{
    return readPage(QStringLiteral(":/shell/changelog.md"));
}
