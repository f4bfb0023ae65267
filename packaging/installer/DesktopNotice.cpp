#include "installer/DesktopNotice.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QVariantMap>

#include <cstdio>

void DesktopNotice::show(const QString& title, const QString& text)
{
    std::fprintf(stderr, "%s: %s\n", qUtf8Printable(title), qUtf8Printable(text));
    QDBusMessage message = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("/org/freedesktop/Notifications"),
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("Notify"));
    // The body is markup on many servers: the text goes as plain text.
    message << QStringLiteral("Veluria") << 0u << QStringLiteral("veluria") << title << text.toHtmlEscaped()
            << QStringList() << QVariantMap() << -1;
    QDBusConnection::sessionBus().call(message, QDBus::Block, 3000);
}
