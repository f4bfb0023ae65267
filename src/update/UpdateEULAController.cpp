#include "update/UpdateEULAController.h"

#include "app/VLRText.h"
#include "widgets/VLRFonts.h"

#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

UpdateEULAController::UpdateEULAController(const QString& eula, QWidget* parent)
    : QDialog(parent)
    , m_eula(eula)
{
    loadWindow();
    windowDidLoad();
}

void UpdateEULAController::loadWindow()
{
    setWindowTitle(vlr::localized("Terms of Service"));
    setObjectName(QStringLiteral("UpdateEULA"));

    m_textView = new QPlainTextEdit(this);
    m_textView->setReadOnly(true);
    m_textView->setFont(VLRFonts::muli(12));
    m_textView->setAccessibleName(vlr::localized("Terms of Service"));

    auto* disagree = new QPushButton(vlr::localized("Disagree"), this);
    auto* agree = new QPushButton(vlr::localized("Agree"), this);
    agree->setDefault(true);
    connect(disagree, &QPushButton::clicked, this, &UpdateEULAController::onDisagree);
    connect(agree, &QPushButton::clicked, this, &UpdateEULAController::onAgree);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(disagree);
    buttons->addWidget(agree);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 20, 20, 16);
    layout->addWidget(m_textView, 1);
    layout->addLayout(buttons);
    resize(560, 420);
}

void UpdateEULAController::windowDidLoad()
{
    m_textView->setPlainText(m_eula);
}

void UpdateEULAController::onAgree()
{
    done(AgreeCode);
}

void UpdateEULAController::onDisagree()
{
    done(DisagreeCode);
}

// Closing the terms is disagreeing with them.
void UpdateEULAController::reject()
{
    onDisagree();
}
