#include "Mailer.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QUuid>

namespace {
// A header's value never spans lines: a name or address can't add headers.
QByteArray headerText(const QString& value)
{
    QString flat = value;
    flat.replace(QLatin1Char('\r'), QLatin1Char(' ')).replace(QLatin1Char('\n'), QLatin1Char(' '));
    const QByteArray utf8 = flat.toUtf8();
    for (const char ch : utf8)
        if (uchar(ch) >= 0x80)
            return "=?UTF-8?B?" + utf8.toBase64() + "?=";
    return utf8;
}
} // namespace

Mailer::Mailer(const QString& command, const QString& from, const QString& outbox)
    : m_command(command)
    , m_from(from)
    , m_outbox(outbox)
{ }

QByteArray Mailer::compose(const QString& to, const QString& subject, const QString& text) const
{
    QString body = text;
    body.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    return "From: " + headerText(m_from) + "\r\nTo: " + headerText(to) + "\r\nSubject: " + headerText(subject)
        + "\r\nDate: " + QDateTime::currentDateTimeUtc().toString(Qt::RFC2822Date).toLatin1()
        + "\r\nMIME-Version: 1.0\r\nContent-Type: text/plain; charset=utf-8\r\nContent-Transfer-Encoding: 8bit\r\n\r\n"
        + body.replace(QLatin1Char('\n'), QLatin1String("\r\n")).toUtf8() + "\r\n";
}

bool Mailer::send(const QString& to, const QString& subject, const QString& text) const
{
    const QByteArray message = compose(to, subject, text);
    if (m_command.isEmpty()) {
        if (!QDir().mkpath(m_outbox)
            || !QFile::setPermissions(m_outbox, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner))
            return false;
        QFile file(m_outbox
                   + QStringLiteral("/%1-%2.eml")
                         .arg(QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMddTHHmmsszzz")),
                              QUuid::createUuid().toString(QUuid::WithoutBraces)));
        // Made 0600 before anything is written into it: the links in it sign in.
        if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly)
            || !file.setPermissions(QFile::ReadOwner | QFile::WriteOwner))
            return false;
        return file.write(message) == message.size() && file.flush();
    }
    QStringList arguments = QProcess::splitCommand(m_command);
    if (arguments.isEmpty())
        return false;
    auto* process = new QProcess;
    process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QObject::connect(process, &QProcess::finished, process, [process, to](int code, QProcess::ExitStatus status) {
        if (status != QProcess::NormalExit || code != 0)
            qWarning("The mail command failed for a message to %s.", qPrintable(to));
        process->deleteLater();
    });
    QObject::connect(process, &QProcess::errorOccurred, process, [process](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) {
            qWarning("The mail command can't be started.");
            process->deleteLater();
        }
    });
    const QString program = arguments.takeFirst();
    process->start(program, arguments);
    process->write(message);
    process->closeWriteChannel();
    return true;
}
