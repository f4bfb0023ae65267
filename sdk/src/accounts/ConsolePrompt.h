#pragma once

#include <QString>

// What a person types at a terminal, or one line of standard input when
// that is no terminal (a script, a pipe). A secret is never echoed.
class ConsolePrompt
{
public:
    static bool interactive();
    // The question goes to standard error, and only to a person. A null
    // string at the end of the input.
    static QString line(const QString& question, bool secret);
};
