#pragma once

#include "shell/AppDelegate.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>
#include <QPointer>
#include <QStringList>

class LaunchArguments;

// One client a desktop session: whoever owns the client's name on the session
// bus is the running client. It offers the desktop's application interface,
// through which a later start hands over its links (each goes to the download
// request handler, as a link opened anywhere on the desktop does) or, without
// links, brings the popover forward. Scripts drive it through the script
// commands on the same object.
class ClientInstance : public QObject, protected QDBusContext
{
    Q_OBJECT

public:
    static inline const QString ServiceName = QStringLiteral("com.veluria.Veluria");
    static inline const QString ObjectPath = QStringLiteral("/com/veluria/Veluria");
    static inline const QString ApplicationInterface = QStringLiteral("org.freedesktop.Application");
    static inline const QString ScriptingInterface = QStringLiteral("com.veluria.Veluria.Scripting");
    // A failed script command: this name with "Code" and its number behind
    // it ("CodeMinus" for a negative one), and its text as the message.
    static inline const QString ScriptErrorPrefix = QStringLiteral("com.veluria.Veluria.Scripting.Error.");

    // How a script command ended: no name when it succeeded.
    struct ScriptResult
    {
        QString errorName;
        QString errorText;
    };

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
    // One of the desktop entry's actions: ShowTransfersAction opens the
    // popover on the transfers tab; any other name is logged and dropped.
    void activateAction(const QString& name);
    static inline const QString ShowTransfersAction = QStringLiteral("show-transfers");
    // Runs the script command of that name (a method of the scripting
    // interface) with its arguments as text. Called over the bus, a failure
    // is answered as the call's error.
    ScriptResult performScriptCommand(const QString& method, const QStringList& arguments = {});

    // A later start: hands its links to the running client, or asks it to
    // come forward when there are none and the start was not the one at
    // login. The process's exit code: 0 when the running client took it, 1
    // when it could not be reached or a script command failed, with the
    // reason logged.
    static int handOverToRunningClient(const QDBusConnection& bus, const LaunchArguments& arguments);

private:
    QDBusConnection m_bus;
    bool m_registered = false;
    QPointer<AppDelegate> m_appDelegate;
};
