#include "sdk/remote/PendingSignOuts.h"

#include <QEventLoop>
#include <QNetworkReply>
#include <QPointer>
#include <QTimer>

namespace {

QList<QPointer<QNetworkReply>>& pending()
{
    static QList<QPointer<QNetworkReply>> replies;
    return replies;
}

bool anyRunning()
{
    pending().removeIf([](const QPointer<QNetworkReply>& reply) { return !reply || reply->isFinished(); });
    return !pending().isEmpty();
}

} // namespace

void PendingSignOuts::add(QNetworkReply* reply)
{
    if (reply)
        pending().append(reply);
}

void PendingSignOuts::waitForAll(std::chrono::milliseconds limit)
{
    if (!anyRunning())
        return;
    QEventLoop loop;
    QTimer::singleShot(limit, &loop, &QEventLoop::quit);
    for (const QPointer<QNetworkReply>& reply : std::as_const(pending()))
        QObject::connect(reply, &QNetworkReply::finished, &loop, [&loop] {
            if (!anyRunning())
                loop.quit();
        });
    loop.exec(QEventLoop::ExcludeUserInputEvents);
}
