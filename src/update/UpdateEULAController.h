#pragma once

#include <QDialog>
#include <QPlainTextEdit>
#include <QPointer>

// The terms of a new version, to be agreed to before it is installed:
// "Agree" ends the dialog with code 0, "Disagree", Escape and the window's
// close button with code 1.
class UpdateEULAController : public QDialog
{
    Q_OBJECT

public:
    static constexpr int AgreeCode = 0;
    static constexpr int DisagreeCode = 1;

    explicit UpdateEULAController(const QString& eula, QWidget* parent = nullptr);

    const QString& eula() const { return m_eula; }
    QPlainTextEdit* textView() const { return m_textView; }

    void onAgree();
    void onDisagree();
    void reject() override;

private:
    void loadWindow();
    void windowDidLoad();

    QString m_eula;
    QPointer<QPlainTextEdit> m_textView;
};
