#include "update/UpdateAlertController.h"

#include "app/VLRText.h"
#include "update/ReleaseNotesView.h"
#include "widgets/PageStyle.h"
#include "widgets/VLRFonts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

UpdateAlertController::UpdateAlertController(const QString& titleText, const QString& descriptionText,
                                             const QString& okButtonText, const QString& cancelButtonText,
                                             const QString& releaseNotesHTML, VLRDesktopServices* desktop,
                                             QWidget* parent)
    : QDialog(parent)
    , m_descriptionText(descriptionText)
    , m_okButtonText(okButtonText)
    , m_cancelButtonText(cancelButtonText)
    , m_titleText(titleText)
    , m_releaseNotesHTML(releaseNotesHTML)
{
    loadWindow(desktop);
    windowDidLoad();
}

void UpdateAlertController::loadWindow(VLRDesktopServices* desktop)
{
    setWindowTitle(vlr::localized("Software Update"));
    setObjectName(QStringLiteral("UpdateAlert"));

    m_appIcon = PageStyle::makeMark(this);
    m_appIcon->setAccessibleName(QStringLiteral("Veluria"));
    // What the service wrote is plain text here, never markup.
    auto* title = new QLabel(m_titleText, this);
    title->setTextFormat(Qt::PlainText);
    title->setFont(VLRFonts::muli(14, QFont::Bold));
    title->setWordWrap(true);
    auto* description = new QLabel(m_descriptionText, this);
    description->setTextFormat(Qt::PlainText);
    description->setFont(VLRFonts::muli(12));
    description->setWordWrap(true);
    auto* notesHeading = new QLabel(vlr::localized("Release Notes:"), this);
    notesHeading->setFont(VLRFonts::muli(12, QFont::Bold));

    m_releaseNotesView = new ReleaseNotesView(desktop, this);
    m_releaseNotesView->setAccessibleName(vlr::localized("Release Notes:"));
    m_releaseNotesView->setMinimumSize(440, 220);
    m_releaseNotesView->document()->setDefaultFont(VLRFonts::muli(12));

    m_remindButton = new QPushButton(this);
    m_installButton = new QPushButton(this);
    m_installButton->setDefault(true);
    for (QPushButton* button : {m_remindButton.data(), m_installButton.data()})
        button->setFont(VLRFonts::muli(12));
    connect(m_remindButton, &QPushButton::clicked, this, &UpdateAlertController::remindMeLater);
    connect(m_installButton, &QPushButton::clicked, this, &UpdateAlertController::installUpdate);

    auto* texts = new QVBoxLayout;
    texts->addWidget(title);
    texts->addWidget(description);
    texts->addSpacing(8);
    texts->addWidget(notesHeading);
    texts->addWidget(m_releaseNotesView, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(m_remindButton);
    buttons->addWidget(m_installButton);
    texts->addLayout(buttons);

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(20, 20, 20, 16);
    layout->setSpacing(16);
    layout->addWidget(m_appIcon, 0, Qt::AlignTop);
    layout->addLayout(texts, 1);
    resize(600, 420);
}

void UpdateAlertController::windowDidLoad()
{
    m_remindButton->setText(m_cancelButtonText);
    m_installButton->setText(m_okButtonText);
    m_releaseNotesView->setHtml(m_releaseNotesHTML);
}

void UpdateAlertController::remindMeLater()
{
    done(RemindCode);
}

void UpdateAlertController::installUpdate()
{
    done(InstallCode);
}

// Escape or the window's close button never installs anything.
void UpdateAlertController::reject()
{
    remindMeLater();
}
