#pragma once

#include <QHash>
#include <QImage>
#include <QList>
#include <QObject>
#include <QUrl>

#include <functional>

class QNetworkAccessManager;

// Pictures named by a web address (an installer's image_url), fetched on
// the GUI thread once each and kept for the session. An address that can't
// be fetched, more than 8 MiB, or no picture leaves its installer without
// one; it is not asked for again.
class WebPictures : public QObject
{
    Q_OBJECT

public:
    using Arrived = std::function<void(const QImage& picture)>;

    explicit WebPictures(QObject* parent = nullptr);

    // http and https addresses are fetched; anything else is not ours to open.
    static bool fetches(const QUrl& url);
    // Calls back with the picture once it is there, at once when it is.
    void want(const QUrl& url, const Arrived& arrived);

private:
    void fetch(const QUrl& url);

    QNetworkAccessManager* m_network = nullptr;
    QHash<QUrl, QImage> m_fetched;
    QHash<QUrl, QList<Arrived>> m_waiting;
};
