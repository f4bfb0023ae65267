#include "fakes/RecordingDesktopServices.h"

bool RecordingDesktopServices::openURL(const QUrl& url)
{
    m_openedURLs.append(url);
    return m_answer;
}

bool RecordingDesktopServices::openFile(const QString& path)
{
    m_openedFiles.append(path);
    return m_answer;
}

void RecordingDesktopServices::clear()
{
    m_openedURLs.clear();
    m_openedFiles.clear();
}
