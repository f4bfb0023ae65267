#pragma once

#include <QDBusConnection>
#include <QObject>

class QDBusVariant;

// Whether the desktop is dark: the freedesktop appearance portal's
// "color-scheme" where there is one, otherwise the lightness of the
// application palette's window colour. Changes are followed as they happen.
class VLRDesktopAppearance : public QObject
{
    Q_OBJECT

public:
    explicit VLRDesktopAppearance(const QDBusConnection& connection = QDBusConnection::sessionBus(),
                                  QObject* parent = nullptr);

    bool isDark() const { return m_dark; }

signals:
    void darkModeChanged(bool dark);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private slots:
    void settingChanged(const QString& settingsNamespace, const QString& key, const QDBusVariant& value);

private:
    void readPortal();
    void setDark(bool dark);
    static bool paletteIsDark();

    QDBusConnection m_connection;
    bool m_dark = false;
    bool m_portalAnswers = false;
};
