#pragma once

#include <QObject>
#include <QPointer>

class QMenu;
class QSystemTrayIcon;
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
    // Reads the icon's place from the tray, where the tray tells it (trays
    // that embed the icon do), and moves the view there. Nothing polls it:
    // it is read when the tray shows the icon, at each click or menu, and
    // before the popover opens by itself.
    void followTrayIcon();

signals:
    void quitRequested();
    // The icon's place on the screen changed, where the tray tells it.
    void moved(const QRectF& frame);

private:
    void createTrayIconIfPossible(const QString& kind);
    void pressView();

    QPointer<StatusItemImageView> m_view;
    QSystemTrayIcon* m_trayIcon = nullptr;
    QMenu* m_menu = nullptr;
    SystemTrayWatcher* m_trays = nullptr;
    VLRDesktopAppearance* m_appearance = nullptr;
};
