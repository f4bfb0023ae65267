#include "HeadlessChromium.h"

#include <QProcess>
#include <QStandardPaths>

HeadlessChromium::HeadlessChromium()
{
    for (const QString& name : {QStringLiteral("chromium"), QStringLiteral("chromium-browser")})
        if (m_program.isEmpty())
            m_program = QStandardPaths::findExecutable(name);
    if (m_program.isEmpty())
        m_missing = QStringLiteral("Chromium is not installed (apt-get install chromium): the web pages are not "
                                   "tested in a browser.");
}

QString HeadlessChromium::run(const QStringList& arguments, bool* ok)
{
    // The test server's certificate is self-signed and only on loopback.
    const QStringList common{QStringLiteral("--headless"),
                             QStringLiteral("--no-sandbox"),
                             QStringLiteral("--disable-gpu"),
                             QStringLiteral("--no-first-run"),
                             QStringLiteral("--disable-extensions"),
                             QStringLiteral("--ignore-certificate-errors"),
                             QStringLiteral("--user-data-dir=%1/%2").arg(m_profiles.path()).arg(++m_runs)};
    QProcess process;
    process.start(m_program, common + arguments);
    *ok = process.waitForFinished(30000) && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    if (!*ok)
        qWarning("chromium failed: %s", process.readAllStandardError().right(2000).constData());
    return QString::fromUtf8(process.readAllStandardOutput());
}

QString HeadlessChromium::dumpDom(const QString& url)
{
    bool ok = false;
    const QString dom = run({QStringLiteral("--dump-dom"), url}, &ok);
    return ok ? dom : QString();
}

bool HeadlessChromium::screenshot(const QString& url, const QString& pngPath, int width, int height)
{
    bool ok = false;
    run({QStringLiteral("--hide-scrollbars"), QStringLiteral("--window-size=%1,%2").arg(width).arg(height),
         QStringLiteral("--screenshot=") + pngPath, url},
        &ok);
    return ok;
}
