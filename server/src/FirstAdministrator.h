#pragma once

#include <QString>

// veluria-server --init: the first administrator of a new installation,
// asked for at the terminal (or read from standard input: the e-mail
// address on one line, the password on the next). Refused once any
// administrator exists; further ones are made with --administrator.
class FirstAdministrator
{
public:
    // The new administrator's address, or a null string with the reason.
    static QString make(QString* failure);
};
