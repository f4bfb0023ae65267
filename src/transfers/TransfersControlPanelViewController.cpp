#include "transfers/TransfersControlPanelViewController.h"

#include "app/ByteCountFormatter.h"
#include "app/VLRColors.h"
#include "app/VLRText.h"
#include "service/VLRException.h"
#include "transfers/TransfersControlPanelDelegate.h"
#include "widgets/VLRFonts.h"
#include "widgets/VLRImageCatalogue.h"

#include <QHBoxLayout>

namespace {

constexpr int SideMargin = 12;
constexpr int PauseAllButtonSize = 20;

void setImages(VLRButton* button, const QString& defaultImage, const QString& overImage, const QString& clickedImage)
{
    button->setDefaultImage(VLRImageCatalogue::imageNamed(defaultImage));
    button->setMouseOverImage(VLRImageCatalogue::imageNamed(overImage));
    button->setClickedImage(VLRImageCatalogue::imageNamed(clickedImage));
}

} // namespace

TransfersControlPanelViewController::TransfersControlPanelViewController(QObject* parent)
    : QObject(parent)
{ }

TransfersControlPanelViewController::~TransfersControlPanelViewController()
{
    m_delegate = nullptr;
    delete m_view;
}

QWidget* TransfersControlPanelViewController::view()
{
    if (!m_view)
        loadView();
    return m_view;
}

void TransfersControlPanelViewController::loadView()
{
    m_view = new VLRView;
    m_view->setBackgroundColor(VLRColors::grey(233));
    m_view->setBorderColor(VLRColors::grey(151));
    m_view->setBorderCornerRadius(0);
    m_view->setBorderWidth(1);
    m_view->setFixedHeight(Height);
    auto* layout = new QHBoxLayout(m_view);
    layout->setContentsMargins(SideMargin, 0, SideMargin, 0);

    m_speedTimeLeftLabel = new QLabel(m_view);
    m_speedTimeLeftLabel->setTextFormat(Qt::PlainText);
    m_speedTimeLeftLabel->setFont(VLRFonts::muli(12));
    QPalette palette = m_speedTimeLeftLabel->palette();
    palette.setColor(QPalette::WindowText, VLRColors::grey(151));
    m_speedTimeLeftLabel->setPalette(palette);
    layout->addWidget(m_speedTimeLeftLabel, 1);

    m_pauseResumeAllButton = new VLRButton(m_view);
    m_pauseResumeAllButton->setFixedSize(PauseAllButtonSize, PauseAllButtonSize);
    m_pauseResumeAllButton->setCursor(Qt::PointingHandCursor);
    m_pauseResumeAllButton->setAccessibleName(vlr::localized("Pause All"));
    connect(m_pauseResumeAllButton, &VLRButton::clicked, this, &TransfersControlPanelViewController::pauseResumeAll);
    layout->addWidget(m_pauseResumeAllButton);

    m_clearCompletedButton = new VLRButton(m_view);
    VLRAttributedString title;
    title.string = vlr::localized("Clear Completed");
    title.font = VLRFonts::muli(12);
    title.alignment = Qt::AlignCenter;
    m_clearCompletedButton->setAttributedTitle(title);
    m_clearCompletedButton->setTextColor(VLRColors::grey(151));
    m_clearCompletedButton->setMouseOverTextColor(VLRColors::mainAppColor());
    m_clearCompletedButton->setCursor(Qt::PointingHandCursor);
    m_clearCompletedButton->setMinimumHeight(Height - 2);
    m_clearCompletedButton->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(m_clearCompletedButton, &VLRButton::clicked, this, &TransfersControlPanelViewController::clearCompleted);
    layout->addWidget(m_clearCompletedButton);

    setBytesTimeLeftLabel();
    applyMode();
    setTransfersPaused(false);
}

void TransfersControlPanelViewController::setActiveTransfersMode(bool active)
{
    m_activeTransfersMode = active;
    applyMode();
}

void TransfersControlPanelViewController::applyMode()
{
    if (!m_view)
        return;
    m_speedTimeLeftLabel->setVisible(m_activeTransfersMode);
    m_pauseResumeAllButton->setVisible(m_activeTransfersMode);
    m_clearCompletedButton->setVisible(!m_activeTransfersMode);
}

void TransfersControlPanelViewController::setTransfersPaused(bool paused)
{
    m_transfersPaused = paused;
    setPauseResumeAllButton();
}

void TransfersControlPanelViewController::setPauseResumeAllButton()
{
    if (!m_pauseResumeAllButton)
        return;
    if (m_transfersPaused) {
        const QString resume = QStringLiteral("queue_button_resumeall_active");
        setImages(m_pauseResumeAllButton, resume, resume, resume);
        m_pauseResumeAllButton->setAccessibleName(vlr::localized("Resume All"));
    } else {
        setImages(m_pauseResumeAllButton, QStringLiteral("queue_button_pauseall_inactive"),
                  QStringLiteral("queue_button_pauseall_active"), QStringLiteral("queue_button_pauseall_active"));
        m_pauseResumeAllButton->setAccessibleName(vlr::localized("Pause All"));
    }
}

void TransfersControlPanelViewController::setTransferSpeed(double speed)
{
    m_transferSpeed = speed;
    setBytesTimeLeftLabel();
}

void TransfersControlPanelViewController::setSecondsLeft(uint64_t seconds)
{
    m_secondsLeft = seconds;
    setBytesTimeLeftLabel();
}

void TransfersControlPanelViewController::setBytesTimeLeftLabel()
{
    if (m_speedTimeLeftLabel)
        m_speedTimeLeftLabel->setText(ByteCountFormatter::speedTimeLeftText(m_transferSpeed, m_secondsLeft));
}

void TransfersControlPanelViewController::showClearCompletedButton(bool show)
{
    if (m_activeTransfersMode)
        throw vlr::Exception(QStringLiteral("Wrong mode"),
                             QStringLiteral("The control panel must not be in active transfers mode to show the "
                                            "'Clear Completed' button. Set activeTransfersMode to NO."));
    view();
    m_clearCompletedButton->setVisible(show);
}

void TransfersControlPanelViewController::pauseResumeAll()
{
    if (!m_delegate)
        return;
    if (m_transfersPaused)
        m_delegate->transfersControlPanelDidResumeAll(this);
    else
        m_delegate->transfersControlPanelDidPauseAll(this);
}

void TransfersControlPanelViewController::clearCompleted()
{
    if (m_delegate)
        m_delegate->transfersControlPanelDidClearAll(this);
}
