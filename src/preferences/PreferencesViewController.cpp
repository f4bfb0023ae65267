#include "preferences/PreferencesViewController.h"

#include "app/VLRColors.h"
#include "app/VLRText.h"
#include "app/VLRUserDefaultsKeys.h"
#include "platform/HelperProgram.h"
#include "platform/VLRDesktopServices.h"
#include "platform/VLRUserDefaults.h"
#include "preferences/PreferencesViewControllerDelegate.h"
#include "service/VLREnvironment.h"
#include "service/VLRServiceLibrary.h"
#include "service/VLRUser.h"
#include "widgets/AvatarImageView.h"
#include "widgets/CheckBoxStyle.h"
#include "widgets/PageStyle.h"
#include "widgets/Stepper.h"
#include "widgets/TextFieldEditing.h"
#include "widgets/VLRButton.h"
#include "widgets/VLRFonts.h"
#include "widgets/VLRImageCatalogue.h"
#include "widgets/VLRLayoutConstraints.h"
#include "widgets/VLRTextField.h"
#include "widgets/VLRView.h"
#include "widgets/VLRViewAdditions.h"

#include <QCheckBox>
#include <QGraphicsOpacityEffect>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QParallelAnimationGroup>
#include <QProcess>
#include <QPropertyAnimation>
#include <QVBoxLayout>

#include <limits>

namespace {

// Told with every change of the shown user's portrait.
int AvatarObservationContext;

constexpr int UserInfoHeight = 96;
constexpr int AvatarSize = 48;
constexpr int AvatarX = 18;
constexpr int DetailsX = 78;
constexpr int DetailsWidth = 150;
constexpr int ButtonWidth = 104;
constexpr int ButtonHeight = 26;
constexpr int ButtonMargin = 20;
constexpr int EmailHeight = 20;
constexpr qint64 StepperMaximumMegabytes = 1000000;
constexpr qint64 StepperIncrementMegabytes = 100;

void setImages(VLRButton* button, const QString& defaultImage, const QString& activeImage)
{
    if (!button)
        return;
    button->setDefaultImage(VLRImageCatalogue::imageNamed(defaultImage));
    button->setMouseOverImage(VLRImageCatalogue::imageNamed(activeImage));
    button->setClickedImage(VLRImageCatalogue::imageNamed(activeImage));
}

VLRButton* makeImageButton(QWidget* parent, const QString& accessibleName)
{
    auto* button = new VLRButton(parent);
    button->setFixedSize(ButtonWidth, ButtonHeight);
    button->setCursor(Qt::PointingHandCursor);
    button->setAccessibleName(accessibleName);
    return button;
}

QCheckBox* makeCheckBox(QWidget* parent, QStyle* style)
{
    auto* box = new QCheckBox(parent);
    box->setStyle(style);
    box->setFont(VLRFonts::muli(12));
    box->setCursor(Qt::PointingHandCursor);
    return box;
}

// A thin line across the page between its parts.
QWidget* makeSeparator(QWidget* parent)
{
    auto* separator = new QWidget(parent);
    separator->setFixedHeight(1);
    separator->setAutoFillBackground(true);
    QPalette palette = separator->palette();
    palette.setColor(QPalette::Window, VLRColors::grey(206));
    separator->setPalette(palette);
    return separator;
}

// A field's whole number as the user typed it: white space, a sign, then the
// digits up to the first other character; no digits at all read as 0, and a
// number too large for the type reads as its limit.
qint64 integerValue(const QString& text)
{
    qsizetype index = 0;
    while (index < text.size() && text.at(index).isSpace())
        ++index;
    bool negative = false;
    if (index < text.size() && (text.at(index) == QLatin1Char('-') || text.at(index) == QLatin1Char('+'))) {
        negative = text.at(index) == QLatin1Char('-');
        ++index;
    }
    qint64 value = 0;
    for (; index < text.size() && text.at(index).isDigit(); ++index) {
        const int digit = text.at(index).digitValue();
        if (value > (std::numeric_limits<qint64>::max() - digit) / 10)
            return negative ? std::numeric_limits<qint64>::min() : std::numeric_limits<qint64>::max();
        value = value * 10 + digit;
    }
    return negative ? -value : value;
}

VLRLayoutConstraint constraint(QWidget* firstItem, VLRLayoutAttribute firstAttribute, QWidget* secondItem,
                               VLRLayoutAttribute secondAttribute, qreal constant)
{
    return VLRLayoutConstraint{firstItem, firstAttribute, secondItem, secondAttribute, constant};
}

} // namespace

PreferencesViewController::PreferencesViewController(const ClientServices& services, QObject* parent)
    : QObject(parent)
    , m_services(services)
{ }

PreferencesViewController::~PreferencesViewController()
{
    if (m_user)
        m_user->removeObserver(this, VLRUser::Key::avatar, &AvatarObservationContext);
    m_user.reset();
    m_delegate = nullptr;
    if (m_userInfoAnimation)
        m_userInfoAnimation->stop();
    delete m_view;
}

QWidget* PreferencesViewController::view()
{
    if (!m_view)
        loadView();
    return m_view;
}

QWidget* PreferencesViewController::makeUserInfoView()
{
    auto* userInfo = new QWidget(m_view);
    userInfo->setFixedHeight(UserInfoHeight);

    m_avatarView = new AvatarImageView(userInfo);
    m_avatarView->setGeometry(AvatarX, (UserInfoHeight - AvatarSize) / 2, AvatarSize, AvatarSize);

    m_nameField = new VLRTextField(userInfo);
    VLRAttributedString name;
    name.font = VLRFonts::muli(15, QFont::DemiBold);
    name.foregroundColor = VLRColors::textColor();
    name.lineBreakMode = Qt::ElideRight;
    m_nameField->setAttributedStringValue(name);
    m_nameField->setFrame(QRectF(DetailsX, m_avatarView->y() + 6, DetailsWidth, 22));

    m_emailField = new VLRTextField(userInfo);
    VLRAttributedString email;
    email.font = VLRFonts::muli(12);
    email.foregroundColor = VLRColors::grey(151);
    email.lineBreakMode = Qt::ElideMiddle;
    m_emailField->setAttributedStringValue(email);
    m_emailField->setFrame(QRectF(DetailsX, 0, DetailsWidth, EmailHeight));

    m_loginLogoutButton = makeImageButton(userInfo, vlr::localized("Log in or out"));

    // The e-mail line sits at the avatar's foot under a name; the button
    // stands at the right, level with the avatar.
    vlr_setTranslatesAutoresizingMaskIntoConstraints(m_emailField, false);
    vlr_setTranslatesAutoresizingMaskIntoConstraints(m_loginLogoutButton, false);
    vlr_addConstraint(userInfo,
                      constraint(m_emailField, VLRLayoutAttributeBottom, m_avatarView, VLRLayoutAttributeBottom, -4));
    vlr_addConstraint(
        userInfo, constraint(m_loginLogoutButton, VLRLayoutAttributeCenterY, userInfo, VLRLayoutAttributeCenterY, 0));
    vlr_addConstraint(userInfo,
                      constraint(m_loginLogoutButton, VLRLayoutAttributeTrailing, userInfo, VLRLayoutAttributeTrailing,
                                 -ButtonMargin));
    return userInfo;
}

QWidget* PreferencesViewController::makeControlsView()
{
    auto* controls = new QWidget(m_view);
    // Kept by the page, which outlives the boxes that use it.
    auto* style = new CheckBoxStyle();
    style->setParent(m_view);
    m_showNotificationsCheckBox = makeCheckBox(controls, style);
    m_launchAtStartupCheckBox = makeCheckBox(controls, style);
    m_autoOpenCheckBox = makeCheckBox(controls, style);
    m_downloadCacheSizeCheckBox = makeCheckBox(controls, style);
    m_showNotificationsCheckBox->setText(vlr::localized("Show notifications"));
    m_launchAtStartupCheckBox->setText(vlr::localized("Launch Veluria at startup"));
    m_autoOpenCheckBox->setText(vlr::localized("Automatically open assets after downloading"));
    m_downloadCacheSizeCheckBox->setText(vlr::localized("Limit download cache size to:"));

    m_downloadCacheSizeField = PageStyle::makeTextField(QString(), controls);
    m_downloadCacheSizeField->setFixedSize(60, ButtonHeight);
    m_downloadCacheSizeField->setFont(VLRFonts::muli(12));
    m_downloadCacheSizeField->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_downloadCacheSizeStepper = new Stepper(controls);
    m_downloadCacheSizeStepper->setFixedSize(m_downloadCacheSizeStepper->sizeHint());
    m_downloadCacheSizeStepper->setBounds(MinimumDownloadCacheMegabytes, StepperMaximumMegabytes);
    m_downloadCacheSizeStepper->setIncrement(StepperIncrementMegabytes);
    auto* unit = new QLabel(vlr::localized("MB"), controls);
    unit->setTextFormat(Qt::PlainText);
    unit->setFont(VLRFonts::muli(12));
    QPalette unitPalette = unit->palette();
    unitPalette.setColor(QPalette::WindowText, VLRColors::textColor());
    unit->setPalette(unitPalette);

    auto* cacheRow = new QHBoxLayout();
    cacheRow->setSpacing(4);
    cacheRow->addWidget(m_downloadCacheSizeCheckBox);
    cacheRow->addWidget(m_downloadCacheSizeField);
    cacheRow->addWidget(m_downloadCacheSizeStepper);
    cacheRow->addWidget(unit);
    cacheRow->addStretch(1);

    auto* layout = new QVBoxLayout(controls);
    layout->setContentsMargins(ButtonMargin, 18, ButtonMargin, 0);
    layout->setSpacing(14);
    layout->addWidget(m_showNotificationsCheckBox);
    layout->addWidget(m_launchAtStartupCheckBox);
    layout->addWidget(m_autoOpenCheckBox);
    layout->addLayout(cacheRow);

    connect(m_showNotificationsCheckBox, &QCheckBox::clicked, this,
            [this] { showNotifications(m_showNotificationsCheckBox); });
    connect(m_launchAtStartupCheckBox, &QCheckBox::clicked, this,
            [this] { launchVeluriaAtStartup(m_launchAtStartupCheckBox); });
    connect(m_autoOpenCheckBox, &QCheckBox::clicked, this, [this] { autoOpenAssets(m_autoOpenCheckBox); });
    connect(m_downloadCacheSizeCheckBox, &QCheckBox::clicked, this,
            [this] { limitDownloadCacheSize(m_downloadCacheSizeCheckBox); });
    connect(m_downloadCacheSizeStepper, &Stepper::clicked, this,
            [this] { downloadCacheSizeStepper(m_downloadCacheSizeStepper); });
    auto* editing = new TextFieldEditing(m_downloadCacheSizeField);
    connect(editing, &TextFieldEditing::didChange, this, &PreferencesViewController::controlTextDidChange);
    connect(editing, &TextFieldEditing::didEndEditing, this, &PreferencesViewController::controlTextDidEndEditing);
    return controls;
}

QWidget* PreferencesViewController::makeButtonsRow()
{
    auto* row = new QWidget(m_view);
    m_uninstallButton = makeImageButton(row, vlr::localized("Uninstall"));
    m_helpButton = makeImageButton(row, vlr::localized("Help"));
    m_quitButton = makeImageButton(row, vlr::localized("Quit"));
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addStretch(1);
    layout->addWidget(m_uninstallButton);
    layout->addStretch(1);
    layout->addWidget(m_helpButton);
    layout->addStretch(1);
    layout->addWidget(m_quitButton);
    layout->addStretch(1);
    connect(m_uninstallButton, &VLRButton::clicked, this, &PreferencesViewController::uninstall);
    connect(m_helpButton, &VLRButton::clicked, this, &PreferencesViewController::help);
    connect(m_quitButton, &VLRButton::clicked, this, &PreferencesViewController::quit);
    return row;
}

void PreferencesViewController::loadView()
{
    m_view = new VLRView();
    PageStyle::applyPageLook(m_view);

    m_userInfoView = makeUserInfoView();
    QWidget* separator = makeSeparator(m_view);
    m_controlsView = makeControlsView();
    QWidget* buttons = makeButtonsRow();
    m_versionLabel = new VLRTextField(m_view);
    VLRAttributedString version;
    version.font = VLRFonts::muli(11);
    version.foregroundColor = VLRColors::grey(151);
    version.alignment = Qt::AlignHCenter;
    m_versionLabel->setAttributedStringValue(version);

    auto* layout = new QVBoxLayout(m_view);
    layout->setContentsMargins(1, 1, 1, 14);
    layout->setSpacing(0);
    layout->addWidget(m_userInfoView);
    layout->addWidget(separator);
    layout->addWidget(m_controlsView);
    layout->addStretch(1);
    layout->addWidget(makeSeparator(m_view));
    layout->addSpacing(16);
    layout->addWidget(buttons);
    layout->addSpacing(14);
    layout->addWidget(m_versionLabel);
    connect(m_loginLogoutButton, &VLRButton::clicked, this, &PreferencesViewController::logInOrOut);

    for (QCheckBox* box : {m_showNotificationsCheckBox.data(), m_launchAtStartupCheckBox.data(),
                           m_autoOpenCheckBox.data(), m_downloadCacheSizeCheckBox.data()}) {
        QPalette palette = box->palette();
        palette.setColor(QPalette::WindowText, VLRColors::textColor());
        box->setPalette(palette);
    }

    setLoggedIn(false);
    showUserInfo(false);
    updateLoginLogoutButton();

    setImages(m_uninstallButton, QStringLiteral("preferences_uninstall_inactive"),
              QStringLiteral("preferences_uninstall_mouseover"));
    setImages(m_helpButton, QStringLiteral("preferences_help_inactive"), QStringLiteral("preferences_help_active"));
    setImages(m_quitButton, QStringLiteral("preferences_quit_inactive"), QStringLiteral("preferences_quit_active"));

    m_avatarView->setCornerRadius(m_avatarView->width() / 2.0);

    // Only a click puts the cursor in the cache field.
    m_downloadCacheSizeField->setFocusPolicy(Qt::ClickFocus);

    m_versionLabel->setStringValue(
        vlr::format(vlr::localized("Version: %@"), m_services.library->environment().appVersion()));

    restoreStateFromUserDefaults();
}

void PreferencesViewController::restoreStateFromUserDefaults()
{
    VLRUserDefaults* defaults = m_services.defaults;
    m_showNotificationsCheckBox->setChecked(defaults->boolForKey(VLRUserDefaultsKeyShowNotifications));
    m_launchAtStartupCheckBox->setChecked(m_delegate && m_delegate->willVeluriaLaunchAtStartup());
    m_autoOpenCheckBox->setChecked(defaults->boolForKey(VLRUserDefaultsKeyAutoOpenAssets));
    // Unusable until the session tells its cache size; the stored limit flag
    // is applied then.
    m_downloadCacheSizeCheckBox->setEnabled(false);
    enableDownloadCacheUI(false);
}

void PreferencesViewController::setLoggedIn(bool loggedIn)
{
    m_loggedIn = loggedIn;
    updateLoginLogoutButton();
}

void PreferencesViewController::updateLoginLogoutButton()
{
    if (m_loggedIn)
        setImages(m_loginLogoutButton, QStringLiteral("preferences_log_out_inactive"),
                  QStringLiteral("preferences_log_out_active"));
    else
        setImages(m_loginLogoutButton, QStringLiteral("preferences_log_in_inactive"),
                  QStringLiteral("preferences_log_in_active"));
}

void PreferencesViewController::logInOrOut()
{
    if (!m_delegate)
        return;
    if (m_loggedIn)
        m_delegate->preferencesViewControllerWantsLogOut(this);
    else
        m_delegate->preferencesViewControllerWantsLogIn(this);
}

void PreferencesViewController::showNotifications(QCheckBox* sender)
{
    m_services.defaults->setBool(sender && sender->isChecked(), VLRUserDefaultsKeyShowNotifications);
}

void PreferencesViewController::autoOpenAssets(QCheckBox* sender)
{
    m_services.defaults->setBool(sender && sender->isChecked(), VLRUserDefaultsKeyAutoOpenAssets);
}

void PreferencesViewController::launchVeluriaAtStartup(QCheckBox* sender)
{
    // The box shows what the login items hold afterwards, whatever the click
    // made of it and whether the change went through.
    if (!m_delegate)
        return;
    const bool launches = m_delegate->willVeluriaLaunchAtStartup();
    m_delegate->preferencesViewControllerWantsVeluriaLaunchedAtStartup(this, !launches);
    const bool launchesNow = m_delegate->willVeluriaLaunchAtStartup();
    if (sender)
        sender->setChecked(launchesNow);
}

void PreferencesViewController::limitDownloadCacheSize(QCheckBox* sender)
{
    // The session keeps its limit: unticking changes neither it nor the size
    // shown.
    const bool limit = sender && sender->isChecked();
    enableDownloadCacheUI(limit);
    m_services.defaults->setBool(limit, VLRUserDefaultsKeyLimitDownloadCacheSize);
}

void PreferencesViewController::updateDownloadCacheSize(qint64 bytes)
{
    updateDownloadCacheSizeFields(bytes);
    if (m_downloadCacheSizeCheckBox)
        m_downloadCacheSizeCheckBox->setEnabled(true);
    VLRUserDefaults* defaults = m_services.defaults;
    enableDownloadCacheUI(defaults->boolForKey(VLRUserDefaultsKeyLimitDownloadCacheSize));
}

void PreferencesViewController::updateDownloadCacheSizeFields(qint64 bytes)
{
    const qint64 megabytes = qint64(double(bytes) / BytesPerMegabyte);
    if (m_downloadCacheSizeField)
        m_downloadCacheSizeField->setText(QString::number(megabytes));
    if (m_downloadCacheSizeStepper)
        m_downloadCacheSizeStepper->setIntegerValue(megabytes);
}

void PreferencesViewController::enableDownloadCacheUI(bool enabled)
{
    if (m_downloadCacheSizeCheckBox)
        m_downloadCacheSizeCheckBox->setChecked(enabled);
    if (m_downloadCacheSizeField)
        m_downloadCacheSizeField->setEnabled(enabled);
    if (m_downloadCacheSizeStepper)
        m_downloadCacheSizeStepper->setEnabled(enabled);
}

void PreferencesViewController::downloadCacheSizeStepper(Stepper* sender)
{
    if (!sender)
        return;
    if (m_downloadCacheSizeField)
        m_downloadCacheSizeField->setText(QString::number(sender->integerValue()));
    storeDownloadCacheSize();
}

void PreferencesViewController::controlTextDidChange(QLineEdit* field)
{
    if (!field || field != m_downloadCacheSizeField || !m_downloadCacheSizeStepper)
        return;
    // A number on its way to being typed leaves the stepper alone until it
    // is a valid size.
    const qint64 value = integerValue(field->text());
    if (quint64(value) >= MinimumDownloadCacheMegabytes)
        m_downloadCacheSizeStepper->setIntegerValue(value);
}

void PreferencesViewController::controlTextDidEndEditing(QLineEdit* field)
{
    if (!field || field != m_downloadCacheSizeField || !m_downloadCacheSizeStepper)
        return;
    // The stepper holds the last valid value: typed text below the floor, or
    // no number at all, falls back to it.
    const qint64 megabytes = m_downloadCacheSizeStepper->integerValue();
    const qint64 bytes = quint64(megabytes) < MinimumDownloadCacheMegabytes
        ? MinimumDownloadCacheSize
        : qint64(double(megabytes) * BytesPerMegabyte);
    updateDownloadCacheSizeFields(bytes);
    storeDownloadCacheSize();
}

void PreferencesViewController::storeDownloadCacheSize()
{
    if (!m_downloadCacheSizeStepper || !m_delegate)
        return;
    const qint64 bytes = qint64(double(m_downloadCacheSizeStepper->integerValue()) * BytesPerMegabyte);
    m_delegate->preferencesViewControllerDidSetDownloadCacheSize(this, bytes);
}

void PreferencesViewController::updateWithUser(const VLRUserPtr& user)
{
    if (m_user)
        m_user->removeObserver(this, VLRUser::Key::avatar, &AvatarObservationContext);
    m_user = user;
    showUserInfo(bool(user));

    if (user) {
        user->addObserver(this, VLRUser::Key::avatar, vlr::KeyValueObservingOptionNone, &AvatarObservationContext);
        const QString& first = user->firstName();
        const QString& last = user->lastName();
        VLRAttributedString email = m_emailField ? m_emailField->attributedStringValue() : VLRAttributedString();
        if (first.isEmpty() && last.isEmpty()) {
            setConstraintsForNoName(true);
            if (m_nameField)
                m_nameField->hide();
            email.font = VLRFonts::muli(13);
        } else {
            setConstraintsForNoName(false);
            if (m_nameField) {
                m_nameField->show();
                m_nameField->setStringValue(!first.isEmpty() && !last.isEmpty()
                                                ? vlr::format(QStringLiteral("%@ %@"), first, last)
                                                : (first.isEmpty() ? last : first));
            }
            email.font = VLRFonts::muli(12);
        }
        email.string = user->email();
        if (m_emailField)
            m_emailField->setAttributedStringValue(email);
    } else {
        if (m_nameField)
            m_nameField->setStringValue(QString(""));
        if (m_emailField)
            m_emailField->setStringValue(QString(""));
    }
    updateAvatar();
}

void PreferencesViewController::observeValueForKeyPath(const QString&, VLRObject*, const vlr::KeyValueChange&,
                                                       void* context)
{
    if (context == &AvatarObservationContext)
        updateAvatar();
}

void PreferencesViewController::updateAvatar()
{
    if (!m_avatarView)
        return;
    const QImage avatar = m_user ? m_user->avatar() : QImage();
    m_avatarView->setImage(avatar.isNull() ? VLRImageCatalogue::imageNamed(QStringLiteral("blankAvatar"))
                                           : QPixmap::fromImage(avatar));
}

void PreferencesViewController::setConstraintsForNoName(bool noName)
{
    if (!m_userInfoView || !m_emailField || !m_avatarView)
        return;
    vlr_removeConstraintWithFirstItemFirstAttributeSecondItemSecondAttribute(
        m_userInfoView, m_emailField, VLRLayoutAttributeBottom, m_avatarView, VLRLayoutAttributeBottom);
    vlr_removeConstraintWithFirstItemFirstAttributeSecondItemSecondAttribute(
        m_userInfoView, m_emailField, VLRLayoutAttributeCenterY, m_avatarView, VLRLayoutAttributeCenterY);
    if (noName)
        vlr_addConstraint(
            m_userInfoView,
            constraint(m_emailField, VLRLayoutAttributeCenterY, m_avatarView, VLRLayoutAttributeCenterY, -3));
    else
        vlr_addConstraint(
            m_userInfoView,
            constraint(m_emailField, VLRLayoutAttributeBottom, m_avatarView, VLRLayoutAttributeBottom, -4));
}

void PreferencesViewController::showUserInfo(bool show)
{
    if (!m_userInfoView || !m_loginLogoutButton)
        return;
    QWidget* info = m_userInfoView;
    VLRButton* button = m_loginLogoutButton;
    const QPoint start = button->pos();

    qreal targetX = 0;
    if (show) {
        if (vlr_removeConstraintWithFirstItemFirstAttributeSecondItemSecondAttribute(
                info, button, VLRLayoutAttributeCenterX, info, VLRLayoutAttributeCenterX))
            vlr_addConstraint(
                info, constraint(button, VLRLayoutAttributeTrailing, info, VLRLayoutAttributeTrailing, -ButtonMargin));
        targetX = info->width() - button->width() - ButtonMargin;
    } else {
        if (vlr_removeConstraintWithFirstItemFirstAttributeSecondItemSecondAttribute(
                info, button, VLRLayoutAttributeTrailing, info, VLRLayoutAttributeTrailing))
            vlr_addConstraint(info, constraint(button, VLRLayoutAttributeCenterX, info, VLRLayoutAttributeCenterX, 0));
        targetX = info->width() / 2.0 - button->width() / 2.0;
    }

    // The new constraint has placed the button already; it slides there from
    // where it stood.
    button->move(start);
    if (m_userInfoAnimation)
        m_userInfoAnimation->stop();
    auto* group = new QParallelAnimationGroup(this);
    auto* slide = new QPropertyAnimation(button, "pos", group);
    slide->setDuration(UserInfoAnimationMilliseconds);
    slide->setEndValue(QPoint(qRound(targetX), start.y()));
    group->addAnimation(slide);
    const qreal alpha = show ? 1.0 : 0.0;
    for (QWidget* detail : {static_cast<QWidget*>(m_avatarView), static_cast<QWidget*>(m_nameField),
                            static_cast<QWidget*>(m_emailField)}) {
        if (!detail)
            continue;
        auto* fade = new QPropertyAnimation(vlr_opacityEffect(detail), "opacity", group);
        fade->setDuration(UserInfoAnimationMilliseconds);
        fade->setEndValue(alpha);
        group->addAnimation(fade);
    }
    // Wherever the view was resized meanwhile, the button ends where its
    // constraints put it.
    QPointer<QWidget> infoView(info);
    connect(group, &QAbstractAnimation::finished, this, [infoView] {
        if (VLRLayoutConstraints* constraints = VLRLayoutConstraints::constraintsOfView(infoView))
            constraints->layout();
    });
    m_userInfoAnimation = group;
    group->start(QAbstractAnimation::DeleteWhenStopped);
}

void PreferencesViewController::uninstall()
{
    // The uninstaller is a program of its own; this client goes on running
    // and nothing is said when it is missing.
    const QString uninstaller = HelperProgram::executablePath(UninstallerExecutableName);
    if (!uninstaller.isNull())
        QProcess::startDetached(uninstaller, {});
}

void PreferencesViewController::help()
{
    if (m_delegate)
        m_delegate->preferencesViewControllerWantsHelp(this);
}

void PreferencesViewController::quit()
{
    if (m_delegate)
        m_delegate->preferencesViewControllerWantsQuit(this);
}
