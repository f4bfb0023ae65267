#pragma once

#include <QDialog>
#include <QLabel>
#include <QPointer>
#include <QPushButton>

#include "update/ReleaseNotesView.h"
class VLRDesktopServices;

// The dialog that offers a new version: a head line, a line under it, the
// release notes, and two buttons. "Install" ends it with code 0, the other
// button, Escape and the window's close button with code 1.
class UpdateAlertController : public QDialog
{
    Q_OBJECT

public:
    static constexpr int InstallCode = 0;
    static constexpr int RemindCode = 1;

    UpdateAlertController(const QString& titleText, const QString& descriptionText, const QString& okButtonText,
                          const QString& cancelButtonText, const QString& releaseNotesHTML, VLRDesktopServices* desktop,
                          QWidget* parent = nullptr);

    const QString& descriptionText() const { return m_descriptionText; }
    const QString& okButtonText() const { return m_okButtonText; }
    const QString& cancelButtonText() const { return m_cancelButtonText; }
    const QString& titleText() const { return m_titleText; }
    const QString& releaseNotesHTML() const { return m_releaseNotesHTML; }

    QLabel* appIcon() const { return m_appIcon; }
    ReleaseNotesView* releaseNotesView() const { return m_releaseNotesView; }
    QPushButton* installButton() const { return m_installButton; }
    QPushButton* remindButton() const { return m_remindButton; }

    void remindMeLater();
    void installUpdate();
    void reject() override;

private:
    void loadWindow(VLRDesktopServices* desktop);
    void windowDidLoad();

    QString m_descriptionText;
    QString m_okButtonText;
    QString m_cancelButtonText;
    QString m_titleText;
    QString m_releaseNotesHTML;
    QPointer<QLabel> m_appIcon;
    QPointer<ReleaseNotesView> m_releaseNotesView;
    QPointer<QPushButton> m_installButton;
    QPointer<QPushButton> m_remindButton;
};
