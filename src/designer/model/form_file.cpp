#include "designer/model/form_file.h"

#include "designer/model/vlwin_document.h"
#include "designer/model/vui_document.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>

namespace {

bool isForeign(const QString &path)
{
    return path.endsWith(QLatin1String(".xml"), Qt::CaseInsensitive);
}

QString messageOf(FormStatus status, const QString &path)
{
    const QString file = QDir::toNativeSeparators(path);
    switch (status) {
    case FormStatus::Done:
    case FormStatus::Broken:
        return {};
    case FormStatus::Missing:
        return QStringLiteral("窗口文件不存在: %1").arg(file);
    case FormStatus::Unreadable:
        return QStringLiteral("无法打开窗口文件: %1").arg(file);
    case FormStatus::TooLarge:
        return QStringLiteral("窗口文件超过 %1 MB: %2")
            .arg(QString::number(largestFormFile / 1024 / 1024), file);
    case FormStatus::Empty:
        return QStringLiteral("窗口文件为空: %1").arg(file);
    case FormStatus::Foreign:
        return QStringLiteral("不是此设计器的窗口文件: %1").arg(file);
    case FormStatus::Blocked:
        return QStringLiteral("窗口文件中有组件，没有用空的设计覆盖: %1").arg(file);
    case FormStatus::Unwritable:
        return QStringLiteral("无法写入窗口文件: %1").arg(file);
    }
    return {};
}

FormReadResult failedRead(FormStatus status, const QString &path)
{
    FormReadResult result;
    result.status = status;
    result.message = messageOf(status, path);
    return result;
}

FormSaveResult failedSave(FormStatus status, const QString &path)
{
    return {status, messageOf(status, path)};
}

// Nothing but blanks, with or without a byte order mark.
bool isBlank(const QByteArray &bytes)
{
    const int start = bytes.startsWith("\xef\xbb\xbf") ? 3 : 0;
    return std::all_of(bytes.begin() + start, bytes.end(),
                       [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; });
}

// All of a file within the limit. Pipes and devices are not opened: they might never end.
FormStatus readWhole(const QString &path, QByteArray &bytes)
{
    const QFileInfo info(path);
    if (!info.exists())
        return FormStatus::Missing;
    QFile file(path);
    if (!info.isFile() || !file.open(QIODevice::ReadOnly))
        return FormStatus::Unreadable;
    if (file.size() > largestFormFile)
        return FormStatus::TooLarge;
    bytes = file.readAll();
    return file.error() == QFileDevice::NoError ? FormStatus::Done : FormStatus::Unreadable;
}

// Written aside and renamed, so that the old copy stays until the new one is whole.
bool replaceByCopy(const QString &source, const QString &target)
{
    QFile in(source);
    QSaveFile out(target);
    if (!in.open(QIODevice::ReadOnly) || !out.open(QIODevice::WriteOnly))
        return false;
    constexpr qint64 step = 1 << 20;
    while (true) {
        const QByteArray part = in.read(step);
        if (part.isEmpty())
            break;
        if (out.write(part) != part.size())
            return false;
    }
    return in.error() == QFileDevice::NoError && out.commit();
}

// Whether something would be lost with that file. One that cannot be read may hold anything.
bool hasContent(const QString &path)
{
    if (QFileInfo(path).size() == 0)
        return false;
    const FormReadResult present = readFormFile(path);
    if (present.status == FormStatus::Empty)
        return false;
    return !present.document || present.document->entryCount() > 0;
}

} // namespace

FormReadResult readFormBytes(const QString &path, const QByteArray &bytes)
{
    if (isForeign(path))
        return failedRead(FormStatus::Foreign, path);
    if (bytes.size() > largestFormFile)
        return failedRead(FormStatus::TooLarge, path);
    if (isBlank(bytes))
        return failedRead(FormStatus::Empty, path);
    FormReadResult result;
    QString fault;
    auto classic = std::make_unique<VuiDocument>();
    const bool named = path.endsWith(QLatin1String(".vlwin"), Qt::CaseInsensitive);
    bool read = named || classic->read(bytes, &fault);
    if (read && (named || classic->isSelfDrawn())) {
        auto selfDrawn = std::make_unique<VlwinDocument>();
        read = selfDrawn->read(bytes, &fault);
        result.document = std::move(selfDrawn);
    } else {
        result.document = std::move(classic);
    }
    if (!read) {
        result.document.reset();
        result.status = FormStatus::Broken;
        result.message =
            QStringLiteral("JSON解析错误 %1: %2").arg(QDir::toNativeSeparators(path), fault);
    }
    return result;
}

FormReadResult readFormFile(const QString &path)
{
    if (isForeign(path))
        return failedRead(FormStatus::Foreign, path);
    QByteArray bytes;
    const FormStatus status = readWhole(path, bytes);
    return status == FormStatus::Done ? readFormBytes(path, bytes) : failedRead(status, path);
}

FormSaveResult saveFormFile(const QString &path, const FormDocument &document)
{
    if (path.isEmpty())
        return failedSave(FormStatus::Unwritable, path);
    if (isForeign(path))
        return failedSave(FormStatus::Foreign, path);
    const QFileInfo info(path);
    QDir().mkpath(info.absolutePath());
    const bool present = info.exists();
    if (present && !info.isFile())
        return failedSave(FormStatus::Unwritable, path);
    // A form is saved even where no copy of the old state can be made.
    if (present && !replaceByCopy(path, path + QLatin1String(".bak")))
        qInfo().noquote() << QStringLiteral("无法备份窗口文件: %1").arg(path);
    if (present && document.entryCount() == 0 && hasContent(path)) {
        qWarning().noquote() << QStringLiteral(
                                    "DesignCanvas::saveToFile blocked empty-components overwrite:")
                             << path;
        return failedSave(FormStatus::Blocked, path);
    }
    const QByteArray bytes = document.toBytes();
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        return failedSave(FormStatus::Unwritable, path);
    return {};
}
