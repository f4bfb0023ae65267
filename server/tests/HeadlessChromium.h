#pragma once

#include <QString>
#include <QTemporaryDir>

// Debian's chromium, headless, each run with a fresh profile: what a page
// shows after its scripts (none) and redirects, and a picture of it.
class HeadlessChromium
{
public:
    HeadlessChromium();

    // Empty when chromium can be run; otherwise why not.
    QString missing() const { return m_missing; }
    QString program() const { return m_program; }

    // The page's DOM as chromium serialises it, after redirects.
    QString dumpDom(const QString& url);
    // Writes a PNG of the page; false when chromium failed.
    bool screenshot(const QString& url, const QString& pngPath, int width = 900, int height = 760);

private:
    QString run(const QStringList& arguments, bool* ok);

    QString m_program;
    QString m_missing;
    QTemporaryDir m_profiles;
    int m_runs = 0;
};
