#pragma once

#include <QDBusAbstractAdaptor>
#include <QStringList>

class ClientInstance;

// The script commands of the running client on the session bus, beside the
// desktop's application interface on the same object. A command that fails
// answers with a D-Bus error that carries its number and text.
class ScriptingAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.veluria.Veluria.Scripting")

public:
    explicit ScriptingAdaptor(ClientInstance* instance);

public slots:
    void ToggleEnvironmentPopUp();
    void ShowFileDrop();
    void TogglePopover();
    // An absolute path or a file: URL of a folder.
    void SetDownloadLocation(const QString& folder);
    void SkipOpeningPopover();
    // Absolute paths or file: URLs of existing files.
    void DragDrop(const QStringList& files);

private:
    ClientInstance* m_instance;
};
