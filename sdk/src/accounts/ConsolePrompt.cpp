#include "sdk/accounts/ConsolePrompt.h"

#include <cstdio>
#include <string>

#include <termios.h>
#include <unistd.h>

bool ConsolePrompt::interactive()
{
    return ::isatty(STDIN_FILENO) == 1;
}

QString ConsolePrompt::line(const QString& question, bool secret)
{
    const bool person = interactive();
    termios saved{};
    const bool hidden = person && secret && ::tcgetattr(STDIN_FILENO, &saved) == 0;
    if (person) {
        std::fputs(question.toLocal8Bit().constData(), stderr);
        std::fflush(stderr);
    }
    if (hidden) {
        termios quiet = saved;
        quiet.c_lflag &= ~tcflag_t(ECHO);
        ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &quiet);
    }
    std::string text;
    bool ended = true;
    for (int c; (c = std::fgetc(stdin)) != EOF;) {
        ended = false;
        if (c == '\n')
            break;
        text.push_back(char(c));
    }
    if (hidden) {
        ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &saved);
        std::fputc('\n', stderr);
    }
    if (!text.empty() && text.back() == '\r')
        text.pop_back();
    if (ended && text.empty())
        return {};
    return QString::fromLocal8Bit(text.data(), qsizetype(text.size()));
}
