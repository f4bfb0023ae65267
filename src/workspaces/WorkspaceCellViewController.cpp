#include "workspaces/WorkspaceCellViewController.h"

#include "app/AppFlavor.h"
#include "app/VLRColors.h"
#include "app/VLRText.h"
#include "service/VLRWorkspace.h"
#include "service/VLRWorkspaceUser.h"
#include "widgets/VLRAvatar.h"
#include "widgets/VLRFonts.h"
#include "widgets/VLRImageCatalogue.h"
#include "workspaces/VisibleText.h"
#include "workspaces/WorkspaceCellViewControllerDelegate.h"

#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLocale>
#include <QRegularExpression>

namespace {

// Told when the record's member list changes, and when a member's picture does.
int WorkspaceUsersContext;
int AvatarContext;

constexpr int OwnerAvatarSize = 48;
constexpr int MemberAvatarHeight = 26;

// A medium date and a short time, in the order of the user's locale: the
// locale's long date without the weekday and with short month names.
QString mediumDateTime(const QDateTime& moment)
{
    const QLocale locale;
    static const QString format = [&locale] {
        QString date = locale.dateFormat(QLocale::LongFormat);
        date.remove(QRegularExpression(QStringLiteral("d{4}[,.]?\\s*")));
        date.replace(QStringLiteral("MMMM"), QStringLiteral("MMM"));
        QString time = locale.timeFormat(QLocale::ShortFormat);
        time.remove(QRegularExpression(QStringLiteral("[:.]ss")));
        return date.trimmed() + QLatin1Char(' ') + time;
    }();
    return locale.toString(moment.toLocalTime(), format);
}

VLRTextField* makeField(QWidget* parent, const QFont& font)
{
    auto* field = new VLRTextField(parent);
    VLRAttributedString value;
    value.font = font;
    value.foregroundColor = VLRColors::textColor();
    value.lineBreakMode = Qt::ElideRight;
    field->setAttributedStringValue(value);
    field->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    return field;
}

} // namespace

WorkspaceCellViewController::WorkspaceCellViewController(const VLRWorkspacePtr& workspace)
    : m_workspace(workspace)
{
    if (!m_workspace)
        return;
    m_workspace->addObserver(this, VLRWorkspace::Key::workspaceUsers, vlr::KeyValueObservingOptionNone,
                             &WorkspaceUsersContext);
    m_workspaceUsers = m_workspace->workspaceUsers();
    observeAvatars(true);
}

WorkspaceCellViewController::~WorkspaceCellViewController()
{
    if (m_workspace)
        m_workspace->removeObserver(this, VLRWorkspace::Key::workspaceUsers, &WorkspaceUsersContext);
    observeAvatars(false);
    m_delegate = nullptr;
}

void WorkspaceCellViewController::observeAvatars(bool observe)
{
    for (const VLRWorkspaceUserPtr& user : std::as_const(m_workspaceUsers)) {
        if (!user)
            continue;
        if (observe)
            user->addObserver(this, VLRWorkspaceUser::Key::avatar, vlr::KeyValueObservingOptionNone, &AvatarContext);
        else
            user->removeObserver(this, VLRWorkspaceUser::Key::avatar, &AvatarContext);
    }
}

QWidget* WorkspaceCellViewController::loadView()
{
    VLRView* root = makeRootView();
    m_cellButton = new VLRButton(root);
    m_cellButton->setCursor(Qt::PointingHandCursor);
    m_cellButton->setAccessibleName(vlr::localized("Open workspace"));
    m_cellButton->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    connect(m_cellButton, &QAbstractButton::clicked, this, &WorkspaceCellViewController::cellClicked);

    // Over the button lies the drop target that holds the card: it takes the
    // drops and hands every click on the card to the button, while the
    // member pictures still show their names under the pointer.
    m_dropView = new VLRView(root);
    m_dropView->setBorderWidth(0);
    m_dropView->setDropTarget(true);
    m_dropView->setDelegate(this);

    m_backgroundBorderView = new VLRView(m_dropView);
    m_backgroundBorderView->setBackgroundColor(VLRColors::grey(206));
    m_backgroundBorderView->setBorderWidth(0);
    m_backgroundView = new VLRView(m_backgroundBorderView);
    m_backgroundView->setBackgroundColor(Qt::white);
    m_backgroundView->setBorderWidth(0);
    auto* border = new QHBoxLayout(m_backgroundBorderView);
    border->setContentsMargins(1, 1, 1, 1);
    border->addWidget(m_backgroundView);

    m_ownerAvatarView = new AvatarImageView(m_backgroundView);
    m_ownerAvatarView->setFixedSize(OwnerAvatarSize, OwnerAvatarSize);
    m_ownerAvatarView->setCornerRadius(OwnerAvatarSize / 2.0);
    m_nameLabel = makeField(m_backgroundView, VLRFonts::muli(14, QFont::Bold));
    m_createdLabel = makeField(m_backgroundView, VLRFonts::muli(11));
    m_createdLabel->setStringValue(vlr::localized("Last updated"));
    m_createdLabel->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_dateLabel = makeField(m_backgroundView, VLRFonts::muli(11));
    m_avatarListView = new VLRAvatarListView(m_backgroundView);
    m_avatarListView->setFixedHeight(MemberAvatarHeight);

    auto* dateRow = new QHBoxLayout;
    dateRow->setSpacing(4);
    dateRow->addWidget(m_createdLabel);
    dateRow->addWidget(m_dateLabel, 1);
    auto* card = new QGridLayout(m_backgroundView);
    card->setContentsMargins(14, 12, 14, 12);
    card->setHorizontalSpacing(14);
    card->setVerticalSpacing(4);
    card->addWidget(m_ownerAvatarView, 0, 0, 3, 1, Qt::AlignTop);
    card->addWidget(m_nameLabel, 0, 1);
    card->addLayout(dateRow, 1, 1);
    card->addWidget(m_avatarListView, 2, 1);
    card->setColumnStretch(1, 1);
    card->setRowStretch(2, 1);

    auto* dropArea = new QHBoxLayout(m_dropView);
    dropArea->setContentsMargins(10, 0, 10, 0);
    dropArea->addWidget(m_backgroundBorderView);
    auto* cell = new QGridLayout(root);
    cell->setContentsMargins(0, 0, 0, 0);
    cell->addWidget(m_cellButton, 0, 0);
    cell->addWidget(m_dropView, 0, 0);
    m_dropView->setClickThroughViews({m_cellButton});
    root->trackMouseWithOwner(this);

    updateAvatars();
    updateLabels();
    return root;
}

void WorkspaceCellViewController::updateLabels()
{
    if (!m_nameLabel)
        return;
    const QString name = m_workspace ? m_workspace->name() : QString();
    const QDateTime updatedAt = m_workspace ? m_workspace->updatedAt() : QDateTime();
    m_nameLabel->setStringValue(VisibleText::oneLine(name));
    m_dateLabel->setStringValue(updatedAt.isValid() ? mediumDateTime(updatedAt) : QStringLiteral(""));
    const QColor colour = m_mousedOver ? AppFlavor::mainAppColor() : VLRColors::textColor();
    for (VLRTextField* label : {m_nameLabel.data(), m_createdLabel.data(), m_dateLabel.data()})
        label->setTextColor(colour);
}

void WorkspaceCellViewController::updateAvatars()
{
    if (!m_avatarListView || !m_workspace)
        return;
    QList<VLRAvatar> avatars;
    for (const VLRWorkspaceUserPtr& user : m_workspace->workspaceUsers()) {
        if (!user)
            continue;
        const QPixmap picture = user->avatar().isNull() ? VLRImageCatalogue::imageNamed(QStringLiteral("blankAvatar"))
                                                        : QPixmap::fromImage(user->avatar());
        if (user->role() == VLRWorkspaceUser::OwnerRole)
            m_ownerAvatarView->setImage(picture);
        else
            avatars.append(
                VLRAvatar(picture, vlr::format(QStringLiteral("%@ %@"), user->firstName(), user->lastName())));
    }
    m_avatarListView->setAvatars(avatars);
    m_avatarListView->update();
    m_ownerAvatarView->update();
}

void WorkspaceCellViewController::observeValueForKeyPath(const QString&, VLRObject*, const vlr::KeyValueChange&,
                                                         void* context)
{
    if (context == &WorkspaceUsersContext) {
        observeAvatars(false);
        m_workspaceUsers = m_workspace ? m_workspace->workspaceUsers() : VLRWorkspaceUserList();
        observeAvatars(true);
        updateAvatars();
    } else if (context == &AvatarContext) {
        updateAvatars();
    }
}

void WorkspaceCellViewController::cellClicked()
{
    // The browser first; the delegate then closes the popover.
    if (m_workspace)
        m_workspace->openInBrowser(AppFlavor::defaultWorkspaceURLIsAssets());
    if (m_delegate)
        m_delegate->workspaceCellViewControllerWasClicked(this);
}

void WorkspaceCellViewController::mouseEntered()
{
    m_mousedOver = true;
    updateLabels();
}

void WorkspaceCellViewController::mouseExited()
{
    m_mousedOver = false;
    updateLabels();
}

bool WorkspaceCellViewController::event(QEvent* event)
{
    // The root view's tracking reports here.
    if (event->type() == QEvent::Enter)
        mouseEntered();
    else if (event->type() == QEvent::Leave)
        mouseExited();
    return RowViewController::event(event);
}

void WorkspaceCellViewController::viewDidReceiveDroppedFiles(VLRView*, const QStringList& files)
{
    // The pointer is still over the card, but the drag is done with it.
    mouseExited();
    if (m_delegate)
        m_delegate->workspaceCellViewControllerDidReceiveFiles(this, files);
}
