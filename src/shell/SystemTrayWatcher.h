#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>

#include <cstdint>

class QDBusMessage;
class QDBusServiceWatcher;
struct xcb_connection_t;

// Tells whether a system tray is there to take the client's icon, by either
// road: a StatusNotifierItem host (registered with the watcher on the session
// bus) or, on X11, an XEmbed tray (the owner of the selection
// _NET_SYSTEM_TRAY_S<n>, which announces itself with a MANAGER message to the
// root window). A tray that starts after the client, as at login, is noticed
// when it comes: trayArrived() follows. Asking settles nothing in Qt, which chooses the kind
// of tray icon once, the first time it is asked: ask here first.
class SystemTrayWatcher : public QObject, public QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    static inline const QString StatusNotifierWatcher = QStringLiteral("org.kde.StatusNotifierWatcher");

    explicit SystemTrayWatcher(QObject* parent = nullptr);
    ~SystemTrayWatcher() override;

    // Asked once at the start, when the answer is needed before going on.
    bool statusNotifierHostIsThere() const;
    bool xembedTrayIsThere() const;

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

signals:
    // How it came: "StatusNotifierItem" or "XEmbed".
    void trayArrived(const QString& kind);

private Q_SLOTS:
    void statusNotifierHostRegistered();

private:
    void watchXembedTrays();
    static QDBusMessage isHostRegisteredQuestion();
    static bool saysHostIsRegistered(const QDBusMessage& reply);

    QDBusServiceWatcher* m_statusNotifierWatcher = nullptr;
    xcb_connection_t* m_connection = nullptr;
    std::uint32_t m_root = 0;
    std::uint32_t m_managerAtom = 0;
    std::uint32_t m_selectionAtom = 0;
};
