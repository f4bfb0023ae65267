#include "shell/ClientInstance.h"

#include "service/VLRLogFormat.h"
#include "session/MainViewController.h"
#include "shell/AppDelegate.h"
#include "shell/ApplicationAdaptor.h"
#include "shell/LaunchArguments.h"
#include "shell/ShellLog.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>

namespace {

const QString Tag = QStringLiteral("SDKClient");
// Long enough for a client busy starting up or asking for its keyring.
constexpr int HandOverTimeoutMilliseconds = 30000;

} // namespace

ClientInstance::ClientInstance(const QDBusConnection& bus, QObject* parent)
    : QObject(parent)
    , m_bus(bus)
{
    new ApplicationAdaptor(this);
}

ClientInstance::~ClientInstance()
{
    if (!m_registered)
        return;
    m_bus.unregisterService(ServiceName);
    m_bus.unregisterObject(ObjectPath);
}

ClientInstance::Claim ClientInstance::claim()
{
    if (!m_bus.isConnected())
        return NoSessionBus;
    if (!m_bus.registerObject(ObjectPath, this, QDBusConnection::ExportAdaptors))
        return NameTaken;
    if (!m_bus.registerService(ServiceName)) {
        m_bus.unregisterObject(ObjectPath);
        return m_bus.isConnected() ? NameTaken : NoSessionBus;
    }
    m_registered = true;
    qCDebug(lcShell, "This client serves the session bus name");
    return ClaimedName;
}

void ClientInstance::activate()
{
    MainViewController* main = m_appDelegate ? m_appDelegate->mainViewController() : nullptr;
    if (!main)
        return;
    Popover* popover = main->popover();
    if (popover && !popover->isShown())
        main->togglePopover();
}

void ClientInstance::open(const QStringList& uris)
{
    // Each goes as it came, in order; while one runs the next is dropped, and
    // while nobody is signed in only the last waits.
    for (const QString& uri : uris)
        if (m_appDelegate)
            m_appDelegate->downloadUrl(uri);
}

int ClientInstance::handOverToRunningClient(const QDBusConnection& bus, const LaunchArguments& arguments)
{
    // A start at login finds the client already there: nothing to do.
    if (arguments.links().isEmpty() && arguments.launchedAsLoginItem())
        return 0;
    QDBusMessage call = arguments.links().isEmpty()
        ? QDBusMessage::createMethodCall(ServiceName, ObjectPath, ApplicationInterface, QStringLiteral("Activate"))
        : QDBusMessage::createMethodCall(ServiceName, ObjectPath, ApplicationInterface, QStringLiteral("Open"));
    if (!arguments.links().isEmpty())
        call << arguments.links();
    call << QVariantMap();
    const QDBusMessage reply = bus.call(call, QDBus::Block, HandOverTimeoutMilliseconds);
    if (reply.type() == QDBusMessage::ReplyMessage)
        return 0;
    VLRLogFormat(5, Tag, "Error: the running Veluria could not be reached: %@", reply.errorMessage());
    return 1;
}
