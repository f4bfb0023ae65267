#include "workspaces/FileDropViewController.h"

#include "app/AppFlavor.h"
#include "app/VLRColors.h"
#include "app/VLRText.h"
#include "platform/VLRDesktopServices.h"
#include "platform/VLRNotificationScheduling.h"
#include "service/VLREnvironment.h"
#include "service/VLRServiceLibrary.h"
#include "service/VLRWorkspace.h"
#include "widgets/PageStyle.h"
#include "widgets/TextFieldEditing.h"
#include "widgets/VLRButton.h"
#include "widgets/VLRFonts.h"
#include "widgets/VLRImageCatalogue.h"
#include "widgets/VLRLayoutConstraints.h"
#include "widgets/VLRTextView.h"
#include "widgets/VLRView.h"
#include "widgets/VLRViewAdditions.h"
#include "workspaces/AddFilesPanel.h"
#include "workspaces/FileDropViewControllerDelegate.h"
#include "workspaces/FileInfoViewController.h"
#include "workspaces/VisibleText.h"

#include <QComboBox>
#include <QFileDialog>
#include <QFileIconProvider>
#include <QFrame>
#include <QGraphicsOpacityEffect>
#include <QLabel>
#include <QLineEdit>
#include <QParallelAnimationGroup>
#include <QPropertyAnimation>
#include <QVBoxLayout>

namespace {

// Where the elements stand. The add-file button and the file info hang from
// the panel's top, the workspace row from the top divider, the send button
// from the panel's bottom; each pair is (no file or publish, files or create).
constexpr int AddFileButtonSize = 72;
constexpr int AddFileButtonTopCentered = 44;
constexpr int AddFileButtonTopRaised = 20;
constexpr int FileInfoHeightCentered = 26;
constexpr int FileInfoHeightRaised = 50;
constexpr int FileInfoGap = 8;
constexpr int FileInfoMargin = 40;
constexpr int Margin = 20;
constexpr int TopDividerTop = 166;
constexpr int LabelHeight = 16;
constexpr int PopUpHeight = 21;
constexpr int NameFieldHeight = 24;
constexpr int BottomDividerBelowTopDivider = 70;
constexpr int ButtonWidth = 128;
constexpr int ButtonHeight = 30;
constexpr int ResendButtonTop = 318;

struct ModeConstants
{
    int labelTop;
    int popUpTop;
    int nameFieldTop;
    int buttonBottom;
};
constexpr ModeConstants PublishMode{19, 37, 37, 25};
constexpr ModeConstants CreateMode{10, 28, 49, 168};

VLRLayoutConstraint constraint(QWidget* item, VLRLayoutAttribute attribute, QWidget* to, VLRLayoutAttribute toAttribute,
                               qreal constant)
{
    return VLRLayoutConstraint{item, attribute, to, toAttribute, constant};
}

VLRLayoutConstraint fixed(QWidget* item, VLRLayoutAttribute attribute, qreal constant)
{
    return VLRLayoutConstraint{item, attribute, nullptr, VLRLayoutAttributeNotAnAttribute, constant};
}

void setAlpha(QWidget* view, qreal alpha)
{
    vlr_opacityEffect(view)->setOpacity(alpha);
}

QPropertyAnimation* fade(QWidget* view, qreal to, int milliseconds)
{
    auto* animation = new QPropertyAnimation(vlr_opacityEffect(view), "opacity");
    animation->setDuration(milliseconds);
    animation->setEndValue(to);
    return animation;
}

QPropertyAnimation* move(QWidget* view, const QRect& from, const QRect& to, int milliseconds)
{
    auto* animation = new QPropertyAnimation(view, "geometry");
    animation->setDuration(milliseconds);
    animation->setStartValue(from);
    animation->setEndValue(to);
    animation->setEasingCurve(QEasingCurve::InOutQuad);
    return animation;
}

QFrame* makeDivider(QWidget* parent)
{
    auto* divider = new QFrame(parent);
    divider->setFrameShape(QFrame::NoFrame);
    divider->setAutoFillBackground(true);
    QPalette palette = divider->palette();
    palette.setColor(QPalette::Window, VLRColors::grey(206));
    divider->setPalette(palette);
    return divider;
}

QLabel* makeLabel(const QString& text, QWidget* parent)
{
    auto* label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    label->setFont(VLRFonts::muli(12, QFont::DemiBold));
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, VLRColors::textColor());
    label->setPalette(palette);
    return label;
}

QString colourName(const QColor& colour)
{
    return colour.name(QColor::HexRgb);
}

void setImages(VLRButton* button, const QString& defaultImage, const QString& activeImage)
{
    button->setDefaultImage(VLRImageCatalogue::imageNamed(defaultImage));
    button->setMouseOverImage(VLRImageCatalogue::imageNamed(activeImage));
    button->setClickedImage(VLRImageCatalogue::imageNamed(activeImage));
}

// Stops an animation that a newer one replaces; its end is not run.
void stop(QPointer<QParallelAnimationGroup>& animation)
{
    if (animation) {
        animation->stop();
        animation->deleteLater();
    }
    animation = nullptr;
}

} // namespace

FileDropViewController::FileDropViewController(const ClientServices& services, QObject* parent)
    : QObject(parent)
    , m_services(services)
{ }

FileDropViewController::~FileDropViewController()
{
    m_delegate = nullptr;
    stop(m_fileStateAnimation);
    stop(m_modeAnimation);
    if (m_openPanel)
        m_openPanel->disconnect(this);
    delete m_view;
}

QWidget* FileDropViewController::view()
{
    if (!m_view)
        loadView();
    return m_view;
}

qreal FileDropViewController::alphaOf(QWidget* element)
{
    auto* effect = element ? qobject_cast<QGraphicsOpacityEffect*>(element->graphicsEffect()) : nullptr;
    return effect ? effect->opacity() : 1.0;
}

bool FileDropViewController::archiveMode()
{
    return AppFlavor::supportsArchiveMode();
}

void FileDropViewController::loadView()
{
    m_view = new VLRView;
    m_view->setBackgroundColor(VLRColors::grey(233));
    m_view->setBorderColor(VLRColors::grey(151));
    m_view->setBorderCornerRadius(0);
    m_view->setBorderWidth(1);
    m_creatingWorkspace = true;

    // The whole panel takes drops; its fields must not take the paths of
    // dropped files as text.
    m_dropAreaView = m_view;
    m_dropAreaView->setDropTarget(true);
    m_dropAreaView->setDelegate(this);

    m_addFileButton = new VLRButton(m_view);
    m_addFileButton->setCursor(Qt::PointingHandCursor);
    m_addFileButton->setToolTip(vlr::localized("Add files"));
    m_addFileButton->setAccessibleName(vlr::localized("Add files"));
    setImages(m_addFileButton, QStringLiteral("file_drop_drop_target_inactive"),
              QStringLiteral("file_drop_drop_target_active"));
    connect(m_addFileButton, &QAbstractButton::clicked, this, &FileDropViewController::addFile);

    m_fileInfoViewController = new FileInfoViewController(this);
    m_fileInfoView = new VLRView(m_view);
    m_fileInfoView->setBorderWidth(0);
    auto* host = new QVBoxLayout(m_fileInfoView);
    host->setContentsMargins(0, 0, 0, 0);
    host->addWidget(m_fileInfoViewController->view());

    m_topDivider = makeDivider(m_view);
    m_workspaceLabel = makeLabel(vlr::localized("Workspace"), m_view);

    // Made before the popup, so that the popup covers it while it hides.
    m_newWorkspaceNameField = PageStyle::makeTextField(vlr::localized("Name of the new workspace"), m_view);
    m_newWorkspaceNameField->setFixedHeight(NameFieldHeight);
    m_newWorkspaceNameField->setFont(VLRFonts::muli(12));
    m_newWorkspaceNameField->setAcceptDrops(false);
    m_newWorkspaceNameField->setAccessibleName(vlr::localized("Name of the new workspace"));
    connect(new TextFieldEditing(m_newWorkspaceNameField), &TextFieldEditing::didBeginEditing, this,
            [](QLineEdit* field) {
                if (PageStyle::backgroundColor(field) != QColor(Qt::white))
                    PageStyle::setBackgroundColor(field, Qt::white);
            });
    connect(m_newWorkspaceNameField, &QLineEdit::returnPressed, this, &FileDropViewController::buttonClicked);

    m_workspacePopUp = new QComboBox(m_view);
    m_workspacePopUp->setFont(VLRFonts::muli(12));
    m_workspacePopUp->setAcceptDrops(false);
    m_workspacePopUp->setAccessibleName(vlr::localized("Workspace"));
    // The popup's own picture, its arrows kept at their size at the right.
    m_workspacePopUp->setStyleSheet(
        QStringLiteral("QComboBox { border-image: url(%4) 1 26 1 4; border-width: 1px 26px 1px 4px; "
                       "padding-left: 5px; color: %1; }"
                       "QComboBox::drop-down { border: none; width: 0px; }"
                       "QComboBox QAbstractItemView { background: white; color: %1; border: 1px solid %2; "
                       "selection-background-color: %3; selection-color: white; }")
            .arg(colourName(VLRColors::textColor()), colourName(VLRColors::grey(151)),
                 colourName(AppFlavor::mainAppColor()),
                 VLRImageCatalogue::resourcePathForName(QStringLiteral("file_drop_workspace_popup"))));
    connect(m_workspacePopUp, &QComboBox::activated, this, &FileDropViewController::workspaceSelectionChanged);

    m_bottomDivider = makeDivider(m_view);
    m_commentLabel = makeLabel(vlr::localized("Comment"), m_view);
    m_commentView = new VLRTextView(m_view);
    m_commentView->setFont(VLRFonts::muli(12));
    m_commentView->setAcceptRichText(false);
    m_commentView->setAcceptDrops(false);
    m_commentView->setAccessibleName(vlr::localized("Comment"));
    m_commentView->setPlaceholderText(vlr::localized("Say something about these files"));
    m_commentView->setStyleSheet(QStringLiteral("QTextEdit { background: white; color: %1; border: 1px solid %2; }")
                                     .arg(colourName(VLRColors::textColor()), colourName(VLRColors::grey(206))));

    m_button = new VLRButton(m_view);
    m_button->setCursor(Qt::PointingHandCursor);
    connect(m_button, &QAbstractButton::clicked, this, &FileDropViewController::buttonClicked);

    m_emailConfirmView = new QLabel(m_view);
    m_emailConfirmView->setAlignment(Qt::AlignCenter);
    m_emailConfirmView->setAutoFillBackground(true);
    QPalette confirmPalette = m_emailConfirmView->palette();
    confirmPalette.setColor(QPalette::Window, VLRColors::grey(233));
    m_emailConfirmView->setPalette(confirmPalette);
    m_emailConfirmView->hide();
    m_resendConfirmButton = new VLRButton(m_view);
    m_resendConfirmButton->setCursor(Qt::PointingHandCursor);
    m_resendConfirmButton->setAccessibleName(vlr::localized("Resend the confirmation e-mail"));
    m_resendConfirmButton->setDefaultImage(VLRImageCatalogue::imageNamed(QStringLiteral("resend_confirmation")));
    m_resendConfirmButton->hide();
    connect(m_resendConfirmButton, &QAbstractButton::clicked, this, &FileDropViewController::resendButtonClicked);

    QWidget* panel = m_view;
    for (QWidget* element : QList<QWidget*>{m_addFileButton, m_fileInfoView, m_topDivider, m_workspaceLabel,
                                            m_workspacePopUp, m_newWorkspaceNameField, m_bottomDivider, m_commentLabel,
                                            m_commentView, m_button, m_emailConfirmView, m_resendConfirmButton})
        vlr_setTranslatesAutoresizingMaskIntoConstraints(element, false);
    auto across = [panel](QWidget* element, int margin) {
        vlr_addConstraint(panel,
                          constraint(element, VLRLayoutAttributeLeading, panel, VLRLayoutAttributeLeading, margin));
        vlr_addConstraint(panel,
                          constraint(element, VLRLayoutAttributeTrailing, panel, VLRLayoutAttributeTrailing, -margin));
    };
    auto centred = [panel](QWidget* element, int width, int height) {
        vlr_addConstraint(panel, constraint(element, VLRLayoutAttributeCenterX, panel, VLRLayoutAttributeCenterX, 0));
        vlr_addConstraint(panel, fixed(element, VLRLayoutAttributeWidth, width));
        vlr_addConstraint(panel, fixed(element, VLRLayoutAttributeHeight, height));
    };
    centred(m_addFileButton, AddFileButtonSize, AddFileButtonSize);
    vlr_addConstraint(
        panel,
        constraint(m_addFileButton, VLRLayoutAttributeTop, panel, VLRLayoutAttributeTop, AddFileButtonTopCentered));
    across(m_fileInfoView, FileInfoMargin);
    vlr_addConstraint(
        panel,
        constraint(m_fileInfoView, VLRLayoutAttributeTop, m_addFileButton, VLRLayoutAttributeBottom, FileInfoGap));
    vlr_addConstraint(panel, fixed(m_fileInfoView, VLRLayoutAttributeHeight, FileInfoHeightCentered));
    across(m_topDivider, Margin);
    vlr_addConstraint(panel,
                      constraint(m_topDivider, VLRLayoutAttributeTop, panel, VLRLayoutAttributeTop, TopDividerTop));
    vlr_addConstraint(panel, fixed(m_topDivider, VLRLayoutAttributeHeight, 1));
    across(m_workspaceLabel, Margin);
    vlr_addConstraint(panel, fixed(m_workspaceLabel, VLRLayoutAttributeHeight, LabelHeight));
    across(m_workspacePopUp, Margin);
    vlr_addConstraint(panel, fixed(m_workspacePopUp, VLRLayoutAttributeHeight, PopUpHeight));
    across(m_newWorkspaceNameField, Margin);
    vlr_addConstraint(panel, fixed(m_newWorkspaceNameField, VLRLayoutAttributeHeight, NameFieldHeight));
    across(m_bottomDivider, Margin);
    vlr_addConstraint(panel,
                      constraint(m_bottomDivider, VLRLayoutAttributeTop, m_topDivider, VLRLayoutAttributeBottom,
                                 BottomDividerBelowTopDivider));
    vlr_addConstraint(panel, fixed(m_bottomDivider, VLRLayoutAttributeHeight, 1));
    across(m_commentLabel, Margin);
    vlr_addConstraint(panel,
                      constraint(m_commentLabel, VLRLayoutAttributeTop, m_bottomDivider, VLRLayoutAttributeBottom, 10));
    vlr_addConstraint(panel, fixed(m_commentLabel, VLRLayoutAttributeHeight, LabelHeight));
    across(m_commentView, Margin);
    vlr_addConstraint(panel,
                      constraint(m_commentView, VLRLayoutAttributeTop, m_commentLabel, VLRLayoutAttributeBottom, 6));
    vlr_addConstraint(panel,
                      constraint(m_commentView, VLRLayoutAttributeBottom, panel, VLRLayoutAttributeBottom,
                                 -(PublishMode.buttonBottom + ButtonHeight + 14)));
    centred(m_button, ButtonWidth, ButtonHeight);
    across(m_emailConfirmView, 1);
    vlr_addConstraint(panel, constraint(m_emailConfirmView, VLRLayoutAttributeTop, panel, VLRLayoutAttributeTop, 1));
    vlr_addConstraint(panel,
                      constraint(m_emailConfirmView, VLRLayoutAttributeBottom, panel, VLRLayoutAttributeBottom, -1));
    centred(m_resendConfirmButton, 224, 28);
    vlr_addConstraint(
        panel, constraint(m_resendConfirmButton, VLRLayoutAttributeTop, panel, VLRLayoutAttributeTop, ResendButtonTop));
    setConstraintsForCreateMode(m_creatingWorkspace);
    m_emailConfirmView->raise();
    m_resendConfirmButton->raise();

    refreshButtonState();
    moveAddFileButtonToCenter(true, false);
    moveElementsForCreateMode(m_creatingWorkspace, false);
    updateState();
}

void FileDropViewController::refreshButtonState()
{
    if (!m_button)
        return;
    if (m_creatingWorkspace) {
        setImages(m_button, QStringLiteral("file_drop_create_inactive"), QStringLiteral("file_drop_create_active"));
        m_button->setAccessibleName(vlr::localized("Create workspace"));
    } else if (archiveMode()) {
        setImages(m_button, QStringLiteral("file_drop_archive_inactive"), QStringLiteral("file_drop_archive_active"));
        m_button->setAccessibleName(vlr::localized("Archive"));
    } else {
        setImages(m_button, QStringLiteral("file_drop_publish_inactive"), QStringLiteral("file_drop_publish_active"));
        m_button->setAccessibleName(vlr::localized("Publish"));
    }
}

void FileDropViewController::buttonClicked()
{
    if (m_creatingWorkspace)
        createWorkspace();
    else
        publish();
}

void FileDropViewController::enableControls(bool enabled)
{
    view();
    m_button->setEnabled(enabled);
    m_workspacePopUp->setEnabled(enabled);
    m_newWorkspaceNameField->setEnabled(enabled);
    m_commentView->setEnabled(enabled);
}

void FileDropViewController::notify(const QString& title, const QString& text)
{
    if (m_services.notifications)
        m_services.notifications->vlr_scheduledNotificationWithTitle(title, text);
}

void FileDropViewController::publish()
{
    view();
    const QString comment = m_commentView->toPlainText();
    if ((!m_filesToUpload || m_filesToUpload->isEmpty()) && comment.isEmpty())
        return;
    enableControls(false);
    const qsizetype index = m_workspacePopUp->currentIndex();
    // An index beyond the workspaces (the create item restored in publish
    // mode) names none: the delegate then does nothing and the form stays
    // disabled, as it does for any request that names no workspace.
    const VLRWorkspacePtr workspace = index >= 0 && index < m_workspaces.size() ? m_workspaces.at(index) : nullptr;
    if (!m_delegate)
        return;
    QPointer<FileDropViewController> self(this);
    m_delegate->fileDropViewControllerUploadedFiles(
        this, m_filesToUpload, workspace, comment, true, [self, workspace](const vlr::OptionalError& error) {
            if (!self)
                return;
            self->enableControls(true);
            if (!error) {
                self->clearFields();
            } else if (error->domain == vlr::VLRFrameworkErrorDomain && error->code == 23) {
                self->notify(error->userInfo.value(vlr::NSLocalizedDescriptionKey).toString(),
                             error->userInfo.value(vlr::NSLocalizedFailureReasonErrorKey).toString());
            } else {
                self->notify(vlr::format(vlr::localized("Error publishing to \"%@\""),
                                         workspace ? workspace->name() : QString()),
                             error->localizedDescription);
            }
        });
}

void FileDropViewController::createWorkspace()
{
    view();
    const QString name = m_newWorkspaceNameField->text();
    enableControls(false);
    const QString trimmed = name.trimmed();
    if (trimmed.isEmpty()) {
        enableControls(true);
        m_newWorkspaceNameField->clear();
        PageStyle::setBackgroundColor(m_newWorkspaceNameField, AppFlavor::errorColor());
        return;
    }
    if (!m_delegate)
        return;
    QPointer<FileDropViewController> self(this);
    m_delegate->fileDropViewControllerCreatedWorkspaceNamed(
        this, trimmed, m_filesToUpload, m_commentView->toPlainText(),
        [self, name, trimmed](const vlr::OptionalError& error) {
            if (!self)
                return;
            self->enableControls(true);
            if (error) {
                self->notify(vlr::format(vlr::localized("Error creating workspace \"%@\""), name),
                             error->localizedDescription);
                return;
            }
            // Files and a comment wait for the publish the user gives next.
            if (self->m_filesToUpload && !self->m_filesToUpload->isEmpty())
                self->m_newWorkspaceNameField->clear();
            else
                self->clearFields();
            const int index = self->m_workspacePopUp->findData(trimmed);
            if (index >= 0)
                self->m_workspacePopUp->setCurrentIndex(index);
            self->workspaceSelectionChanged();
        });
}

void FileDropViewController::updateWorkspaces(const VLRWorkspaceList& workspaces)
{
    view();
    m_workspaces = workspaces;
    m_workspacePopUp->clear();
    for (const VLRWorkspacePtr& workspace : workspaces) {
        const QString name = workspace ? workspace->name() : QString();
        m_workspacePopUp->addItem(VisibleText::oneLine(name), name.isNull() ? QStringLiteral("") : name);
    }
    m_workspacePopUp->addItem(CreateWorkspaceItemTitle);
    const int count = m_workspacePopUp->count();
    if (count < 2)
        setCreatingWorkspace(true);
    else
        setCreatingWorkspace(m_workspacePopUp->currentIndex() == count - 1);
    // Restored by place: a reordered list shows another workspace there.
    if (m_selectedWorkspaceIndex != 0 && m_selectedWorkspaceIndex < count)
        m_workspacePopUp->setCurrentIndex(int(m_selectedWorkspaceIndex));
}

void FileDropViewController::workspaceSelectionChanged()
{
    view();
    setCreatingWorkspace(m_workspacePopUp->currentIndex() == m_workspacePopUp->count() - 1);
    setSelectedWorkspaceIndex(m_workspacePopUp->currentIndex());
}

void FileDropViewController::selectWorkspace(const VLRWorkspacePtr& workspace)
{
    view();
    const qsizetype index = m_workspaces.indexOf(workspace);
    if (workspace && index >= 0)
        m_workspacePopUp->setCurrentIndex(int(index));
}

void FileDropViewController::setCreatingWorkspace(bool creatingWorkspace)
{
    const bool changed = creatingWorkspace != m_creatingWorkspace;
    m_creatingWorkspace = creatingWorkspace;
    refreshButtonState();
    moveElementsForCreateMode(creatingWorkspace, changed);
}

void FileDropViewController::clearFields()
{
    view();
    m_newWorkspaceNameField->clear();
    m_commentView->clear();
    setFilesToUpload(std::nullopt);
}

void FileDropViewController::setFilesToUpload(const std::optional<QStringList>& files)
{
    view();
    m_filesToUpload = files;
    const bool chosen = files && !files->isEmpty();
    if (chosen) {
        m_addFileButton->setMouseOverStyle(VLRMouseOverStyleBackground);
        m_addFileButton->setClickStyle(VLRClickStyleBackground);
        const QIcon icon = QFileIconProvider().icon(QFileInfo(files->first()));
        const QPixmap picture = icon.pixmap(QSize(AddFileButtonSize, AddFileButtonSize), m_view->devicePixelRatioF());
        if (!picture.isNull())
            m_addFileButton->setDefaultImage(picture);
        m_fileInfoViewController->setFilePaths(files);
    } else {
        m_addFileButton->setDefaultImage(
            VLRImageCatalogue::imageNamed(QStringLiteral("file_drop_drop_target_inactive")));
        m_addFileButton->setMouseOverStyle(VLRMouseOverStyleImage);
        m_addFileButton->setClickStyle(VLRClickStyleImage);
        m_fileInfoViewController->setFilePaths(std::nullopt);
    }
    moveAddFileButtonToCenter(!chosen, true);
}

void FileDropViewController::viewDidReceiveDroppedFiles(VLRView*, const QStringList& files)
{
    setFilesToUpload(files);
}

void FileDropViewController::addFile()
{
    view();
    if (m_openPanel)
        return;
    // The popover steps aside while the panel is up.
    auto* panel = new AddFilesPanel(vlr::localized("Choose a file to add to a workspace"));
    m_openPanel = panel;
    if (m_delegate)
        m_delegate->fileDropViewControllerWantsPopUpToggled(this);
    connect(panel, &QFileDialog::finished, this, [this, panel](int result) {
        if (result == QDialog::Accepted && !panel->chosenPaths().isEmpty())
            setFilesToUpload(panel->chosenPaths());
        if (m_delegate)
            m_delegate->fileDropViewControllerWantsPopUpToggled(this);
    });
    panel->open();
}

void FileDropViewController::resendButtonClicked()
{
    if (!m_services.library || !m_services.desktop)
        return;
    m_services.desktop->openURL(QUrl(vlr::format(QStringLiteral("https://%@/users/resend_email_confirm"),
                                                 m_services.library->environment().appHostname())));
}

void FileDropViewController::updateState()
{
    view();
    qint64 state = 0;
    if (m_delegate && m_delegate->fileDropViewControllerEmailNeedsConfirmation())
        state = 1;
    else if (m_delegate && m_delegate->fileDropViewControllerLoading())
        state = 2;
    if (state == m_state)
        return;
    m_state = state;
    switch (state) {
    case 0:
        // The resend button is left as it stands.
        m_emailConfirmView->clear();
        m_emailConfirmView->hide();
        break;
    case 1:
        m_emailConfirmView->setPixmap(VLRImageCatalogue::imageNamed(QStringLiteral("file_drop_needs_confirm.pdf")));
        m_emailConfirmView->show();
        m_resendConfirmButton->show();
        break;
    default:
        m_emailConfirmView->setPixmap(VLRImageCatalogue::imageNamed(QStringLiteral("file_drop_loading.pdf")));
        m_emailConfirmView->show();
        m_resendConfirmButton->hide();
        break;
    }
}

void FileDropViewController::moveAddFileButtonToCenter(bool center, bool animate)
{
    stop(m_fileStateAnimation);
    const QRect buttonFrom = m_addFileButton->geometry();
    const QRect infoFrom = m_fileInfoView->geometry();
    QWidget* panel = m_view;
    vlr_removeConstraintWithFirstItemFirstAttributeSecondItemSecondAttribute(
        panel, m_addFileButton, VLRLayoutAttributeTop, panel, VLRLayoutAttributeTop);
    vlr_addConstraint(panel,
                      constraint(m_addFileButton, VLRLayoutAttributeTop, panel, VLRLayoutAttributeTop,
                                 center ? AddFileButtonTopCentered : AddFileButtonTopRaised));
    vlr_removeConstraintWithFirstItemFirstAttributeSecondItemSecondAttribute(
        panel, m_fileInfoView, VLRLayoutAttributeHeight, nullptr, VLRLayoutAttributeNotAnAttribute);
    vlr_addConstraint(
        panel, fixed(m_fileInfoView, VLRLayoutAttributeHeight, center ? FileInfoHeightCentered : FileInfoHeightRaised));
    const qreal alpha = center ? 0 : 1;
    if (!animate) {
        setAlpha(m_fileInfoView, alpha);
        return;
    }
    setAlpha(m_fileInfoView, 1 - alpha);
    const QRect buttonTo = m_addFileButton->geometry();
    const QRect infoTo = m_fileInfoView->geometry();
    m_addFileButton->setGeometry(buttonFrom);
    m_fileInfoView->setGeometry(infoFrom);
    m_fileStateAnimation = new QParallelAnimationGroup(this);
    m_fileStateAnimation->addAnimation(move(m_addFileButton, buttonFrom, buttonTo, FileStateAnimationMilliseconds));
    m_fileStateAnimation->addAnimation(move(m_fileInfoView, infoFrom, infoTo, FileStateAnimationMilliseconds));
    m_fileStateAnimation->addAnimation(fade(m_fileInfoView, alpha, FileStateAnimationMilliseconds));
    // The page may have been resized during the move, shown for the first
    // time with files handed to it while hidden: the move ends where the
    // constraints place the elements now.
    connect(m_fileStateAnimation, &QAbstractAnimation::finished, this, [this] {
        if (VLRLayoutConstraints* constraints = VLRLayoutConstraints::constraintsOfView(m_view))
            constraints->layout();
    });
    m_fileStateAnimation->start(QAbstractAnimation::DeleteWhenStopped);
}

QList<QWidget*> FileDropViewController::commentElements() const
{
    return {m_commentLabel, m_commentView, m_bottomDivider};
}

void FileDropViewController::setCommentElementsAlpha(qreal alpha)
{
    // Folded away, the comment takes no clicks either.
    for (QWidget* element : commentElements()) {
        setAlpha(element, alpha);
        element->setVisible(alpha > 0);
    }
}

void FileDropViewController::setConstraintsForCreateMode(bool create)
{
    const ModeConstants& mode = create ? CreateMode : PublishMode;
    QWidget* panel = m_view;
    const struct
    {
        QWidget* element;
        VLRLayoutAttribute attribute;
        QWidget* to;
        VLRLayoutAttribute toAttribute;
        int constant;
    } placements[] = {
        {m_workspaceLabel, VLRLayoutAttributeTop, m_topDivider, VLRLayoutAttributeBottom, mode.labelTop},
        {m_workspacePopUp, VLRLayoutAttributeTop, m_topDivider, VLRLayoutAttributeBottom, mode.popUpTop},
        {m_newWorkspaceNameField, VLRLayoutAttributeTop, m_topDivider, VLRLayoutAttributeBottom, mode.nameFieldTop},
        {m_button, VLRLayoutAttributeBottom, panel, VLRLayoutAttributeBottom, -mode.buttonBottom},
    };
    for (const auto& placement : placements) {
        vlr_removeConstraintWithFirstItemFirstAttributeSecondItemSecondAttribute(
            panel, placement.element, placement.attribute, placement.to, placement.toAttribute);
        vlr_addConstraint(panel,
                          constraint(placement.element, placement.attribute, placement.to, placement.toAttribute,
                                     placement.constant));
    }
}

void FileDropViewController::moveElementsForCreateMode(bool create, bool animate)
{
    stop(m_modeAnimation);
    if (create)
        m_newWorkspaceNameField->show();
    else
        m_newWorkspaceNameField->clearFocus();
    const qreal alpha = create ? 0 : 1;

    if (!animate) {
        setConstraintsForCreateMode(create);
        setCommentElementsAlpha(alpha);
    } else {
        // The constraints give the end of the move; the elements set off
        // from where they stand and the constraints are laid again at the end.
        const QList<QWidget*> moving{m_workspaceLabel, m_workspacePopUp, m_newWorkspaceNameField, m_button};
        QList<QRect> from;
        for (QWidget* element : moving)
            from.append(element->geometry());
        setConstraintsForCreateMode(create);
        m_modeAnimation = new QParallelAnimationGroup(this);
        for (qsizetype i = 0; i < moving.size(); ++i) {
            const QRect to = moving[i]->geometry();
            moving[i]->setGeometry(from[i]);
            m_modeAnimation->addAnimation(move(moving[i], from[i], to, ModeAnimationMilliseconds));
        }
        for (QWidget* element : commentElements()) {
            element->setVisible(true);
            m_modeAnimation->addAnimation(fade(element, alpha, ModeAnimationMilliseconds));
        }
        connect(m_modeAnimation, &QAbstractAnimation::finished, this, [this, create, alpha] {
            setConstraintsForCreateMode(create);
            setCommentElementsAlpha(alpha);
        });
        m_modeAnimation->start(QAbstractAnimation::DeleteWhenStopped);
    }

    if (create) {
        m_newWorkspaceNameField->selectAll();
        m_newWorkspaceNameField->setFocus();
    } else {
        m_newWorkspaceNameField->hide();
    }
}
