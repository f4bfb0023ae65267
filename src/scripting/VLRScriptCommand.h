#pragma once

#include <QString>
#include <QVariant>

class MainViewController;
class ScriptableApplication;

// One command a script sent to the running client, with its direct
// parameter. A command gives nothing back; a failure is told by an error
// number and text that the command sets for the script. A command whose
// target is absent does nothing and fails nothing.
class VLRScriptCommand
{
public:
    VLRScriptCommand(ScriptableApplication* application, const QVariant& directParameter = QVariant());
    virtual ~VLRScriptCommand() = default;

    virtual void performDefaultImplementation() = 0;

    // An invalid variant stands for no parameter.
    const QVariant& directParameter() const { return m_directParameter; }

    void setScriptErrorNumber(int number) { m_scriptErrorNumber = number; }
    void setScriptErrorString(const QString& text) { m_scriptErrorString = text; }
    // 0 when the command succeeded.
    int scriptErrorNumber() const { return m_scriptErrorNumber; }
    const QString& scriptErrorString() const { return m_scriptErrorString; }

protected:
    ScriptableApplication* application() const { return m_application; }
    MainViewController* mainViewController() const;

private:
    ScriptableApplication* m_application;
    QVariant m_directParameter;
    int m_scriptErrorNumber = 0;
    QString m_scriptErrorString;
};
