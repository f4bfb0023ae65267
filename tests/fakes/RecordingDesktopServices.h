#pragma once

#include "platform/VLRDesktopServices.h"

#include <QList>
#include <QStringList>

// Desktop services that open nothing: they keep every URL and file asked
// for, in order, and answer as the test says (true unless told otherwise).
class RecordingDesktopServices : public VLRDesktopServices
{
public:
    bool openURL(const QUrl& url) override;
    bool openFile(const QString& path) override;

    const QList<QUrl>& openedURLs() const { return m_openedURLs; }
    const QStringList& openedFiles() const { return m_openedFiles; }
    void clear();

    void setAnswer(bool answer) { m_answer = answer; }

private:
    QList<QUrl> m_openedURLs;
    QStringList m_openedFiles;
    bool m_answer = true;
};
