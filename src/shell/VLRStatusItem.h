#pragma once

#include <QObject>
#include <QPointer>

class QMenu;
class QSystemTrayIcon;
class QTimer;
class StatusItemImageView;
class SystemTrayWatcher;
class VLRDesktopAppearance;

// The client's place in the system tray. Its view decides the picture; this
// shows it as the tray icon, only when it changes, so that the view's ticks at
// rest cost the tray nothing. The tray icon is made when a tray is there,
// also when the panel comes up after the client, whether the tray is a
// StatusNotifierItem host or an XEmbed one. A click acts as a press on
// the view; the icon's menu opens the popover first, for desktops that show
// the menu on any click.
class VLRStatusItem : public QObject
{
    Q_OBJECT

public:
    explicit VLRStatusItem(QObject* parent = nullptr);
    ~VLRStatusItem() override;

    StatusItemImageView* view() const { return m_view; }
    // The view's picture becomes the tray icon; its press goes to its delegate.
    void setView(StatusItemImageView* view);
    QSystemTrayIcon* trayIcon() const { return m_trayIcon; }
    // The tray icon's menu: open the popover, quit.
    QMenu* menu() const { return m_menu; }

signals:
    void quitRequested();
    // The icon's place on the screen changed, where the tray tells it.
    void moved(const QRectF& frame);

private:
    void createTrayIconIfPossible(const QString& kind);
    void pressView();
    void followTrayIcon();

    QPointer<StatusItemImageView> m_view;
    QSystemTrayIcon* m_trayIcon = nullptr;
    QMenu* m_menu = nullptr;
    SystemTrayWatcher* m_trays = nullptr;
    QTimer* m_placeWatch = nullptr;
    VLRDesktopAppearance* m_appearance = nullptr;
};
