#include "shell/ClientInstance.h"

#include "scripting/VLRDragDropCommand.h"
#include "scripting/VLRSetDownloadLocationCommand.h"
#include "scripting/VLRShowFileDropCommand.h"
#include "scripting/VLRSkipOpeningPopoverCommand.h"
#include "scripting/VLRToggleEnvironmentPopUpCommand.h"
#include "scripting/VLRTogglePopoverCommand.h"
#include "service/VLRLogFormat.h"
#include "session/MainViewController.h"
#include "shell/AppDelegate.h"
#include "shell/ApplicationAdaptor.h"
#include "shell/LaunchArguments.h"
#include "shell/ScriptingAdaptor.h"
#include "shell/ShellLog.h"
#include "transfers/TransfersPage.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QFileInfo>
#include <QUrl>

#include <cstdio>
#include <memory>

namespace {

const QString Tag = QStringLiteral("SDKClient");
// Long enough for a client busy starting up or asking for its keyring.
constexpr int HandOverTimeoutMilliseconds = 30000;

const QString InvalidArgsError = QStringLiteral("org.freedesktop.DBus.Error.InvalidArgs");
const QString FileNotFoundError = QStringLiteral("org.freedesktop.DBus.Error.FileNotFound");

// A path or a URL that a script gave for a file or folder on this computer:
// it must say where by itself, since the client's working folder means
// nothing to the caller. An invalid URL for anything else.
QUrl localFileURL(const QString& text)
{
    if (text.startsWith(QLatin1Char('/')))
        return QUrl::fromLocalFile(text);
    const QUrl url(text, QUrl::TolerantMode);
    return url.isLocalFile() && url.toLocalFile().startsWith(QLatin1Char('/')) ? url : QUrl();
}

} // namespace

ClientInstance::ClientInstance(const QDBusConnection& bus, QObject* parent)
    : QObject(parent)
    , m_bus(bus)
{
    new ApplicationAdaptor(this);
    new ScriptingAdaptor(this);
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

void ClientInstance::activateAction(const QString& name)
{
    MainViewController* main = m_appDelegate ? m_appDelegate->mainViewController() : nullptr;
    if (name != ShowTransfersAction) {
        qCWarning(lcShell).noquote() << "No such action:" << name;
        return;
    }
    if (main)
        main->showTransfersTab(TransfersPage::UploadsList, QString());
}

ClientInstance::ScriptResult ClientInstance::performScriptCommand(const QString& method, const QStringList& arguments)
{
    ScriptResult result;
    std::unique_ptr<VLRScriptCommand> command;
    ScriptableApplication* application = m_appDelegate;
    if (method == QLatin1String("ToggleEnvironmentPopUp")) {
        command = std::make_unique<VLRToggleEnvironmentPopUpCommand>(application);
    } else if (method == QLatin1String("ShowFileDrop")) {
        command = std::make_unique<VLRShowFileDropCommand>(application);
    } else if (method == QLatin1String("TogglePopover")) {
        command = std::make_unique<VLRTogglePopoverCommand>(application);
    } else if (method == QLatin1String("SkipOpeningPopover")) {
        command = std::make_unique<VLRSkipOpeningPopoverCommand>(application);
    } else if (method == QLatin1String("SetDownloadLocation")) {
        const QUrl folder = localFileURL(arguments.value(0));
        if (folder.isValid())
            command = std::make_unique<VLRSetDownloadLocationCommand>(application, folder);
        else
            result = {InvalidArgsError,
                      QStringLiteral("Not an absolute path or a file: URL: \"%1\"").arg(arguments.value(0))};
    } else if (method == QLatin1String("DragDrop")) {
        QList<QUrl> files;
        for (const QString& argument : arguments) {
            const QUrl file = localFileURL(argument);
            if (!file.isValid()) {
                result = {InvalidArgsError,
                          QStringLiteral("Not an absolute path or a file: URL: \"%1\"").arg(argument)};
                break;
            }
            if (!QFileInfo::exists(file.toLocalFile())) {
                result = {FileNotFoundError, QStringLiteral("No such file: \"%1\"").arg(file.toLocalFile())};
                break;
            }
            files.append(file);
        }
        if (result.errorName.isNull())
            command = std::make_unique<VLRDragDropCommand>(application, QVariant::fromValue(files));
    }
    if (command) {
        command->performDefaultImplementation();
        if (const int number = command->scriptErrorNumber())
            result = {ScriptErrorPrefix
                          + (number < 0 ? QStringLiteral("CodeMinus%1").arg(-qint64(number))
                                        : QStringLiteral("Code%1").arg(number)),
                      command->scriptErrorString()};
    }
    if (!result.errorName.isNull()) {
        qCWarning(lcShell).noquote() << "Script command" << method << "failed:" << result.errorText;
        if (calledFromDBus())
            sendErrorReply(result.errorName, result.errorText);
    }
    return result;
}

int ClientInstance::handOverToRunningClient(const QDBusConnection& bus, const LaunchArguments& arguments)
{
    // Script commands first, in the order given; a failure ends the start
    // with the command's text.
    for (const LaunchArguments::ScriptCommand& script : arguments.scriptCommands()) {
        QDBusMessage call = QDBusMessage::createMethodCall(ServiceName, ObjectPath, ScriptingInterface, script.method);
        if (script.method == QLatin1String("DragDrop"))
            call << script.arguments;
        else if (!script.arguments.isEmpty())
            call << script.arguments.first();
        const QDBusMessage reply = bus.call(call, QDBus::Block, HandOverTimeoutMilliseconds);
        if (reply.type() != QDBusMessage::ReplyMessage) {
            std::fprintf(stderr, "veluria: %s\n", qUtf8Printable(reply.errorMessage()));
            VLRLogFormat(5, Tag, "Error: the script command %@ failed: %@", script.method, reply.errorMessage());
            return 1;
        }
    }
    for (const QString& action : arguments.actions()) {
        QDBusMessage call = QDBusMessage::createMethodCall(ServiceName, ObjectPath, ApplicationInterface,
                                                           QStringLiteral("ActivateAction"));
        call << action << QVariantList() << QVariantMap();
        const QDBusMessage reply = bus.call(call, QDBus::Block, HandOverTimeoutMilliseconds);
        if (reply.type() != QDBusMessage::ReplyMessage) {
            std::fprintf(stderr, "veluria: %s\n", qUtf8Printable(reply.errorMessage()));
            return 1;
        }
    }
    // A start at login finds the client already there, and a start that
    // only scripts it asks nothing more: nothing to do.
    if (arguments.links().isEmpty()
        && (arguments.launchedAsLoginItem() || !arguments.scriptCommands().isEmpty() || !arguments.actions().isEmpty()))
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
