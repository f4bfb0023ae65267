#pragma once

#include <QString>

// What an administrative command answers: the text that veluria-admin
// prints for it, or why it failed, as the local tool words it.
struct AdminOutcome
{
    int status = 200;
    QString output;
    QString failure;

    static AdminOutcome printed(const QString& output) { return {200, output, {}}; }
    static AdminOutcome done() { return {200, {}, {}}; }
    static AdminOutcome failed(const QString& reason) { return {422, {}, reason}; }
    // The command line doesn't fit the command; the tool shows its usage.
    static AdminOutcome usage()
    {
        return {400, {}, QStringLiteral("The command's arguments are not as its usage says.")};
    }
    static AdminOutcome databaseFailed()
    {
        return {500, {}, QStringLiteral("the server's database failed; nothing was changed")};
    }
};
