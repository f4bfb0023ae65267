#include "platform/VLRDesktopAppearance.h"

#include <QApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QPalette>

namespace {

const QString PortalService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString PortalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString SettingsInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString AppearanceNamespace = QStringLiteral("org.freedesktop.appearance");
const QString ColorSchemeKey = QStringLiteral("color-scheme");
constexpr uint PreferDark = 1;

// The portal wraps the value in one or two variants, depending on its age.
uint unwrap(QVariant value)
{
    while (value.canConvert<QDBusVariant>() && value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value.toUInt();
}

} // namespace

VLRDesktopAppearance::VLRDesktopAppearance(const QDBusConnection& connection, QObject* parent)
    : QObject(parent)
    , m_connection(connection)
    , m_dark(paletteIsDark())
{
    if (qApp)
        qApp->installEventFilter(this);
    if (m_connection.isConnected()) {
        m_connection.connect(PortalService, PortalPath, SettingsInterface, QStringLiteral("SettingChanged"), this,
                             SLOT(settingChanged(QString, QString, QDBusVariant)));
        readPortal();
    }
}

void VLRDesktopAppearance::readPortal()
{
    QDBusMessage read =
        QDBusMessage::createMethodCall(PortalService, PortalPath, SettingsInterface, QStringLiteral("Read"));
    read << AppearanceNamespace << ColorSchemeKey;
    auto* watcher = new QDBusPendingCallWatcher(m_connection.asyncCall(read), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* call) {
        call->deleteLater();
        const QDBusPendingReply<QVariant> reply = *call;
        // No portal, or one without the setting: the palette decides.
        if (reply.isError())
            return;
        m_portalAnswers = true;
        setDark(unwrap(reply.value()) == PreferDark);
    });
}

void VLRDesktopAppearance::settingChanged(const QString& settingsNamespace, const QString& key,
                                          const QDBusVariant& value)
{
    if (settingsNamespace != AppearanceNamespace || key != ColorSchemeKey)
        return;
    m_portalAnswers = true;
    setDark(unwrap(value.variant()) == PreferDark);
}

bool VLRDesktopAppearance::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange && !m_portalAnswers)
        setDark(paletteIsDark());
    return QObject::eventFilter(watched, event);
}

void VLRDesktopAppearance::setDark(bool dark)
{
    if (dark == m_dark)
        return;
    m_dark = dark;
    emit darkModeChanged(dark);
}

bool VLRDesktopAppearance::paletteIsDark()
{
    return QApplication::palette().color(QPalette::Window).lightness() < 128;
}
