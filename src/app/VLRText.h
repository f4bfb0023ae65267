#pragma once

#include <QCoreApplication>
#include <QString>

namespace vlr {

// A text for the user: looked up in the installed translations with the
// English text as its key, in the context "vlr"; the English text itself when
// none has it. Call it as `vlr::localized("literal")`: the build extracts
// such calls as lupdate reads `vlr::tr("literal")`, whose context is the
// namespace's name.
inline QString localized(const char* english)
{
    return QCoreApplication::translate("vlr", english);
}

// Fills each %@ of the format, in order, with the next argument. Arguments
// are inserted as they stand: a %@ inside an argument is never filled.
QString format(const QString& format, const QStringList& arguments);

template <typename... Args> QString format(const QString& text, const Args&... args)
{
    return format(text, QStringList{QString(args)...});
}

} // namespace vlr
