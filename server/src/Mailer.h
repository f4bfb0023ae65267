#pragma once

#include <QString>

// Mail to the users (confirmation and reset links). Handed to the command
// of server.ini's [mail] command= (e.g. /usr/sbin/sendmail -t, which reads
// the recipients from the message); without one, each message is written
// as a file (0600) to the outbox folder beside the store, for whoever runs
// the server to deliver or read.
class Mailer
{
public:
    Mailer(const QString& command, const QString& from, const QString& outbox);

    // The message leaves without waiting for the command; false when it
    // could not even be handed over.
    bool send(const QString& to, const QString& subject, const QString& text) const;

private:
    QByteArray compose(const QString& to, const QString& subject, const QString& text) const;

    QString m_command;
    QString m_from;
    QString m_outbox;
};
