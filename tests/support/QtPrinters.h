#pragma once

// Lets test failures show Qt values as text. Included into every test file by
// the build.

#include <QDebug>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVariant>

#include <ostream>

inline void PrintTo(const QString& value, std::ostream* out)
{
    *out << '"' << value.toStdString() << '"';
}

inline void PrintTo(const QStringList& value, std::ostream* out)
{
    *out << '[' << value.join(QStringLiteral("; ")).toStdString() << ']';
}

inline void PrintTo(const QUrl& value, std::ostream* out)
{
    *out << value.toString().toStdString();
}

inline void PrintTo(const QVariant& value, std::ostream* out)
{
    QString text;
    QDebug(&text) << value;
    *out << text.toStdString();
}
