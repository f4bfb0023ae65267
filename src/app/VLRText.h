#pragma once

#include <QCoreApplication>
#include <QString>

namespace vlr {

// A text for the user: looked up in the translations with the English text as
// its key.
inline QString localized(const char* english)
{
    return QCoreApplication::translate("Veluria", english);
}

// Fills each %@ of the format, in order, with the next argument. Arguments
// are inserted as they stand: a %@ inside an argument is never filled.
QString format(const QString& format, const QStringList& arguments);

template <typename... Args>
QString format(const QString& text, const Args&... args)
{
    return format(text, QStringList{QString(args)...});
}

} // namespace vlr
