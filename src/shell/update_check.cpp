#include "shell/update_check.h"

#include "catalog/json_table.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkReply>
#include <QVersionNumber>

namespace {

constexpr int kTimeout = 15000; // milliseconds
constexpr qint64 kMaxBytes = 256 * 1024;

QVersionNumber numberOf(QString version)
{
    version = version.trimmed();
    if (version.startsWith(QLatin1Char('v'), Qt::CaseInsensitive))
        version.remove(0, 1);
    return QVersionNumber::fromString(version).normalized();
}

// An address of the web; empty for others.
QUrl webPage(const QString &text)
{
    const QUrl url(text);
    const bool isWeb =
        url.scheme() == QLatin1String("https") || url.scheme() == QLatin1String("http");
    return isWeb ? url : QUrl();
}

} // namespace

bool isNewerVersion(const QString &other, const QString &current)
{
    return numberOf(other) > numberOf(current);
}

QUrl updateAddress()
{
    const QJsonObject values = jsonTable(QStringLiteral(":/shell/update.json")).object();
    return webPage(values.value(QStringLiteral("address")).toString());
}

UpdateCheck::UpdateCheck(const QUrl &address, QObject *parent) : QObject(parent), m_address(address)
{
    m_network.setRedirectPolicy(QNetworkRequest::NoLessSafeRedirectPolicy);
}

void UpdateCheck::check()
{
    if (m_isChecking)
        return;
    if (m_address.isEmpty()) {
        emit failed(QStringLiteral("没有设置更新地址，无法检查更新。"));
        return;
    }
    m_isChecking = true;
    QNetworkRequest request(m_address);
    request.setTransferTimeout(kTimeout);
    QNetworkReply *reply = m_network.get(request);
    connect(reply, &QNetworkReply::downloadProgress, reply, [reply](qint64 received) {
        if (received > kMaxBytes)
            reply->abort();
    });
    connect(reply, &QNetworkReply::finished, this, [this, reply] { read(reply); });
}

void UpdateCheck::read(QNetworkReply *reply)
{
    m_isChecking = false;
    reply->deleteLater();
    if (reply->error() != QNetworkReply::NoError) {
        emit failed(QStringLiteral("无法获取服务器版本信息：请检查网络后再试（%1）。")
                        .arg(reply->errorString()));
        return;
    }
    const QJsonDocument document = QJsonDocument::fromJson(reply->readAll());
    if (!document.isObject()) {
        emit failed(QStringLiteral("服务器返回的数据无效（非 JSON）。"));
        return;
    }
    const QJsonObject answer = document.object();
    const QString version = answer.value(QStringLiteral("version")).toString();
    const QString current = QCoreApplication::applicationVersion();
    if (version.isEmpty())
        emit failed(QStringLiteral("服务器未提供 version 字段。"));
    else if (numberOf(version).isNull())
        emit failed(QStringLiteral("服务器版本号格式无效：%1").arg(version));
    else if (isNewerVersion(version, current))
        emit newerFound(version, webPage(answer.value(QStringLiteral("url")).toString()),
                        answer.value(QStringLiteral("notes")).toString());
    else
        emit upToDate(current);
}
