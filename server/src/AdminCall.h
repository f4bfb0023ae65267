#pragma once

#include <QJsonObject>
#include <QStringList>

class BlobStore;

// One administrative command as an administrator sent it: the positional
// arguments of its command line, its options ("--first Ann" as "first":
// "Ann", a flag as true, a repeated option as an array), and the files it
// names, uploaded beforehand and referred to by SHA-256 under the argument's
// index ("2") or the option's name ("image").
struct AdminCall
{
    QStringList arguments;
    QJsonObject options;
    QJsonObject files;
    // The keys of files that are folders, sent as the tar stream of their files.
    QStringList folders;
    QString administratorId;
    // The server's host name as the administrator reached it.
    QString host;
    const BlobStore* store = nullptr;

    // The option's value; empty when it was not given.
    QString option(const QString& name) const;
    // Every value of an option that may be given more than once.
    QStringList values(const QString& name) const;
    bool flag(const QString& name) const;
    // The stored content of a named file, or an empty path when it was not
    // uploaded.
    QString file(const QString& key) const;
};
