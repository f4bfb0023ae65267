#include "marketplace/InstallerViewController.h"

#include "app/AppFlavor.h"
#include "app/VLRColors.h"
#include "app/VLRText.h"
#include "marketplace/InstallerViewControllerDelegate.h"
#include "marketplace/RowLayout.h"
#include "platform/VLRNotificationScheduling.h"
#include "service/VLRInstaller.h"
#include "service/VLRProduct.h"
#include "service/VLRRevision.h"
#include "service/VLRVendor.h"
#include "widgets/VLRFonts.h"
#include "widgets/VLRImageCatalogue.h"
#include "widgets/VLRViewAdditions.h"

#include <QEvent>

namespace {

// Tokens of the row's observations, told apart by identity.
char installedVersionContext;
char installerImageContext;
char productImageContext;
char finishedContext;
char errorContext;
char fractionCompletedContext;

// The top of the text block: eight points higher when the latest version
// takes a line of its own.
constexpr qreal NameTopWithLatest = 19;
constexpr qreal NameTopWithoutLatest = 27;

// The name less its last extension, as a file name reads: "Tool.app" is
// "Tool", while ".profile" and "Tool" stay as they are.
QString stringByDeletingPathExtension(const QString& name)
{
    const qsizetype component = name.lastIndexOf(u'/') + 1;
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot > component ? name.left(dot) : name;
}

} // namespace

InstallerViewController::InstallerViewController(const VLRInstallerPtr& installer,
                                                 VLRNotificationScheduling* notifications)
    : m_installer(installer)
    , m_notifications(notifications)
{
    if (!m_installer)
        return;
    m_installer->addObserver(this, VLRInstaller::Key::installedVersionString, vlr::KeyValueObservingOptionNone,
                             &installedVersionContext);
    m_installer->addObserver(this, VLRInstaller::Key::image, vlr::KeyValueObservingOptionNone, &installerImageContext);
    m_observedProduct = m_installer->firstProduct();
    if (m_observedProduct)
        m_observedProduct->addObserver(this, VLRProduct::Key::image, vlr::KeyValueObservingOptionNone,
                                       &productImageContext);
}

InstallerViewController::~InstallerViewController()
{
    m_delegate = nullptr;
    if (m_installer) {
        m_installer->removeObserver(this, VLRInstaller::Key::installedVersionString, &installedVersionContext);
        m_installer->removeObserver(this, VLRInstaller::Key::image, &installerImageContext);
    }
    if (m_observedProduct)
        m_observedProduct->removeObserver(this, VLRProduct::Key::image, &productImageContext);
    if (m_operation) {
        removeOperationObservers();
        m_operation.reset();
    }
}

QWidget* InstallerViewController::loadView()
{
    VLRView* root = makeRootView();
    RowLayout layout(root);
    m_backgroundBorder = layout.card(VLRColors::grey(206));
    m_backgroundView = layout.cardFace(m_backgroundBorder);
    m_iconView = new VLRImageView(root);
    layout.placeIcon(m_iconView);

    m_nameField = layout.textField(VLRFonts::muli(13, QFont::DemiBold), VLRColors::textColor());
    m_manufacturerField = layout.textField(VLRFonts::muli(11), VLRColors::grey(151));
    m_versionField = layout.textField(VLRFonts::muli(11), VLRColors::grey(151));
    m_latestVersionField = layout.textField(VLRFonts::muli(11), AppFlavor::mainAppColor());
    m_progressField = layout.textField(VLRFonts::muli(12), VLRColors::grey(151), Qt::AlignHCenter);
    layout.stackTexts({m_nameField, m_manufacturerField, m_versionField, m_latestVersionField}, NameTopWithoutLatest);

    m_installButton = new VLRButton(root);
    connect(m_installButton, &QAbstractButton::clicked, this, &InstallerViewController::onInstallButton);
    layout.placeAction(m_installButton, VLRImageCatalogue::naturalSize(QStringLiteral("marketplace_install_inactive")),
                       0);
    layout.placeAction(m_progressField, QSize(88, 18), -11);
    m_cancelButton = new VLRButton(root);
    const QPixmap cancelActive = VLRImageCatalogue::imageNamed(QStringLiteral("queue_button_cancel_active"));
    m_cancelButton->setDefaultImage(VLRImageCatalogue::imageNamed(QStringLiteral("queue_button_cancel_inactive")));
    m_cancelButton->setMouseOverImage(cancelActive);
    m_cancelButton->setClickedImage(cancelActive);
    connect(m_cancelButton, &QAbstractButton::clicked, this, &InstallerViewController::onCancelButton);
    layout.placeAction(m_cancelButton, VLRImageCatalogue::naturalSize(QStringLiteral("queue_button_cancel_inactive")),
                       13);

    const QString name = m_installer ? m_installer->name() : QString();
    const QString shownName = name.isNull() ? QStringLiteral("-") : stringByDeletingPathExtension(name);
    m_nameField->setStringValue(shownName);
    m_nameField->setToolTip(shownName);
    const VLRProductPtr product = m_installer ? m_installer->firstProduct() : nullptr;
    if (product && product->vendor())
        m_manufacturerField->setStringValue(product->vendor()->name());

    root->trackMouseWithOwner(this);
    return root;
}

void InstallerViewController::viewDidLoad()
{
    updateVersionFields();
    updateInstallerIcon();
    updateProgressField();
    setInstallUpdateButton();
}

void InstallerViewController::setIsUpdate(bool isUpdate)
{
    m_isUpdate = isUpdate;
    setInstallUpdateButton();
    updateVersionFields();
}

void InstallerViewController::setIsUpToDate(bool isUpToDate)
{
    m_isUpToDate = isUpToDate;
    setInstallUpdateButton();
    updateVersionFields();
}

void InstallerViewController::onInstallButton()
{
    if (m_delegate)
        m_delegate->installerViewControllerNeedsInstallation(this);
}

void InstallerViewController::onCancelButton()
{
    if (m_operation)
        m_operation->cancel();
}

void InstallerViewController::mouseEntered()
{
    m_mousedOver = true;
    updateProgressField();
}

void InstallerViewController::mouseExited()
{
    m_mousedOver = false;
    updateProgressField();
}

bool InstallerViewController::event(QEvent* event)
{
    if (event->type() == QEvent::Enter)
        mouseEntered();
    else if (event->type() == QEvent::Leave)
        mouseExited();
    return RowViewController::event(event);
}

void InstallerViewController::monitorProgress(const VLRInstallerOperationPtr& operation)
{
    if (m_operation)
        return;
    m_operation = operation;
    if (m_operation && !m_operation->error()) {
        m_operation->addObserver(this, VLRProgressReporting::Key::finished, vlr::KeyValueObservingOptionNone,
                                 &finishedContext);
        m_operation->addObserver(this, VLRProgressReporting::Key::error, vlr::KeyValueObservingOptionNone,
                                 &errorContext);
        m_operation->addObserver(this, VLRProgressReporting::Key::fractionCompleted, vlr::KeyValueObservingOptionNone,
                                 &fractionCompletedContext);
        updateProgressField();
        return;
    }
    // Told as installing whichever step failed: the words are the program's.
    notify(QStringLiteral("Error installing"),
           m_operation && m_operation->error() ? m_operation->error()->localizedDescription : QString(""));
    m_operation.reset();
}

void InstallerViewController::observeValueForKeyPath(const QString&, VLRObject*, const vlr::KeyValueChange&,
                                                     void* context)
{
    if (context == &installedVersionContext)
        updateVersionFields();
    else if (context == &installerImageContext || context == &productImageContext)
        updateInstallerIcon();
    else if (context == &fractionCompletedContext)
        updateProgressField();
    else if ((context == &finishedContext || context == &errorContext) && m_operation)
        operationDidEnd();
}

void InstallerViewController::operationDidEnd()
{
    // From here on this operation can cause nothing more.
    removeOperationObservers();
    const VLRInstallerOperationPtr operation = m_operation;
    if (const vlr::OptionalError& error = operation->error()) {
        if (!error->isCancellation())
            notify(QStringLiteral("Error downloading"), error->localizedDescription);
    } else if (operation->isFinished()) {
        notify(vlr::localized("Installation complete!"),
               vlr::format(vlr::localized("%@ has been successfully installed."),
                           stringByDeletingPathExtension(m_installer ? m_installer->name() : QString())));
    }
    m_operation.reset();
    updateProgressField();
}

void InstallerViewController::removeOperationObservers()
{
    m_operation->removeObserver(this, VLRProgressReporting::Key::finished, &finishedContext);
    m_operation->removeObserver(this, VLRProgressReporting::Key::error, &errorContext);
    m_operation->removeObserver(this, VLRProgressReporting::Key::fractionCompleted, &fractionCompletedContext);
}

void InstallerViewController::notify(const QString& title, const QString& text)
{
    if (m_notifications)
        m_notifications->vlr_scheduledNotificationWithTitle(title, text);
}

void InstallerViewController::updateVersionFields()
{
    if (!isViewLoaded() || !m_installer)
        return;
    const VLRRevisionPtr& revision = m_installer->currentRevision();
    const QString latest =
        revision && !revision->versionDisplay().isNull() ? revision->versionDisplay() : QStringLiteral("0.0");
    const QString& installed = m_installer->installedVersionString();
    const bool showLatest = !installed.isNull() && m_isUpdate;
    m_versionField->setStringValue(vlr::format(vlr::localized("Version: %@"), installed.isNull() ? latest : installed));
    if (showLatest)
        m_latestVersionField->setStringValue(vlr::format(vlr::localized("Latest: %@"), latest));
    m_latestVersionField->setHidden(!showLatest);
    setConstraintsToShowLatestVersion(showLatest);
}

void InstallerViewController::setConstraintsToShowLatestVersion(bool showLatest)
{
    QWidget* root = view();
    vlr_removeConstraintWithFirstItemFirstAttributeSecondItemSecondAttribute(root, m_nameField, VLRLayoutAttributeTop,
                                                                             root, VLRLayoutAttributeTop);
    vlr_addConstraint(root,
                      VLRLayoutConstraint{m_nameField.data(), VLRLayoutAttributeTop, root, VLRLayoutAttributeTop,
                                          showLatest ? NameTopWithLatest : NameTopWithoutLatest});
}

void InstallerViewController::updateInstallerIcon()
{
    if (!isViewLoaded() || !m_installer)
        return;
    const VLRProductPtr& product = m_installer->firstProduct();
    if (!m_installer->image().isNull())
        m_iconView->setImage(QPixmap::fromImage(m_installer->image()));
    else if (product && !product->image().isNull() && m_installer->imageURL().isEmpty())
        m_iconView->setImage(QPixmap::fromImage(product->image()));
    // Vendors may come late, together with the pictures.
    if (product && product->vendor() && !product->vendor()->name().isNull())
        m_manufacturerField->setStringValue(product->vendor()->name());
}

void InstallerViewController::setInstallUpdateButton()
{
    if (!isViewLoaded())
        return;
    if (m_isUpToDate) {
        m_installButton->setMouseOverImage(QPixmap());
        m_installButton->hide();
        return;
    }
    const QString base = m_isUpdate ? QStringLiteral("marketplace_update") : QStringLiteral("marketplace_install");
    const QPixmap mouseOver = VLRImageCatalogue::imageNamed(base + QStringLiteral("_mouseover"));
    m_installButton->setDefaultImage(VLRImageCatalogue::imageNamed(base + QStringLiteral("_inactive")));
    m_installButton->setMouseOverImage(mouseOver);
    m_installButton->setClickedImage(mouseOver);
    m_installButton->setHidden(m_operation || !m_mousedOver);
}

void InstallerViewController::updateProgressField()
{
    if (!isViewLoaded())
        return;
    if (!m_operation) {
        m_progressField->hide();
        m_installButton->setHidden(m_isUpToDate || !m_mousedOver);
        m_cancelButton->hide();
        return;
    }
    m_progressField->show();
    m_installButton->hide();
    // The phases are read afresh at each refresh, in this order; the four
    // texts are the program's own, never translated.
    const VLRInstallerOperationPtr download = m_installer ? m_installer->downloadOperation() : nullptr;
    if (m_installer && m_installer->installOperation()) {
        m_progressField->setStringValue(QStringLiteral("INSTALLING"));
        m_cancelButton->hide();
    } else if (m_operation->isCancelled()) {
        m_progressField->setStringValue(QStringLiteral("CANCELING"));
        m_cancelButton->hide();
    } else if (download && download->fractionCompleted() > 0) {
        m_progressField->setStringValue(QString::asprintf("%.f%%", download->fractionCompleted() * 100));
        m_cancelButton->setHidden(!m_mousedOver);
    } else {
        m_progressField->setStringValue(QStringLiteral("QUEUED"));
        m_cancelButton->setHidden(!m_mousedOver);
    }
}
