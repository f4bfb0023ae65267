#pragma once

#include "shell/AppDelegate.h"

#include <QDBusConnection>
#include <QObject>
#include <QPointer>
#include <QStringList>

class LaunchArguments;

// One client a desktop session: whoever owns the client's name on the session
// bus is the running client. It offers the desktop's application interface,
// through which a later start hands over its links (each goes to the download
// request handler, as a link opened anywhere on the desktop does) or, without
// links, brings the popover forward.
class ClientInstance : public QObject
{
    Q_OBJECT

public:
    static inline const QString ServiceName = QStringLiteral("com.veluria.Veluria");
    static inline const QString ObjectPath = QStringLiteral("/com/veluria/Veluria");
    static inline const QString ApplicationInterface = QStringLiteral("org.freedesktop.Application");

    enum Claim {
        // This process is the running client.
        ClaimedName,
        // Another process is.
        NameTaken,
        // There is no session bus: this process runs alone and can't be
        // reached by later starts.
        NoSessionBus,
    };

    explicit ClientInstance(const QDBusConnection& bus = QDBusConnection::sessionBus(), QObject* parent = nullptr);
    ~ClientInstance() override;

    // Offers the interface, then takes the name, so that whoever finds the
    // name finds the interface too.
    Claim claim();

    // Where the requests go; without one they are dropped.
    void setAppDelegate(AppDelegate* delegate) { m_appDelegate = delegate; }

    // What the bus asks of the running client.
    void activate();
    void open(const QStringList& uris);

    // A later start: hands its links to the running client, or asks it to
    // come forward when there are none and the start was not the one at
    // login. The process's exit code: 0 when the running client took it, 1
    // when it could not be reached, with the reason logged.
    static int handOverToRunningClient(const QDBusConnection& bus, const LaunchArguments& arguments);

private:
    QDBusConnection m_bus;
    bool m_registered = false;
    QPointer<AppDelegate> m_appDelegate;
};
