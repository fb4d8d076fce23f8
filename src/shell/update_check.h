// UpdateCheck: asks whether there is a newer version.
#pragma once

#include <QNetworkAccessManager>
#include <QObject>
#include <QString>
#include <QUrl>

class QNetworkReply;

// Whether `other` is newer than `current`: numbers with dots between, a leading "v" and what stands
// behind the numbers do not count. False for a text without a number.
bool isNewerVersion(const QString &other, const QString &current);

// The address of ":/shell/update.json"; empty where the product has none.
QUrl updateAddress();

// The address answers with JSON: "version", and where it likes "url" and "notes".
class UpdateCheck : public QObject
{
    Q_OBJECT

public:
    // An empty address: none is set, and no check ever asks the network.
    explicit UpdateCheck(const QUrl &address, QObject *parent = nullptr);

    // Answers with exactly one of the signals. While a check runs, another one is not begun.
    void check();

signals:
    void newerFound(QString version, QUrl page, QString notes);
    void upToDate(QString version);
    // `message` in Chinese.
    void failed(QString message);

private:
    void read(QNetworkReply *reply);

    QUrl m_address;
    QNetworkAccessManager m_network;
    bool m_isChecking = false;
};
