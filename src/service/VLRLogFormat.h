#pragma once

#include <QList>
#include <QLoggingCategory>
#include <QString>
#include <QUrl>
#include <QVariant>

#include <functional>
#include <type_traits>
#include <variant>

namespace vlr {

// One argument of a log line, boxed so that a printf-style format can take Qt
// values safely: %@ takes anything, %d/%u/%x integers, %f/%g numbers, %s text.
using LogArgument = std::variant<qint64, quint64, double, QString>;

template <typename T> LogArgument toLogArgument(const T& value)
{
    if constexpr (std::is_same_v<T, bool>)
        return static_cast<qint64>(value);
    else if constexpr (std::is_integral_v<T> && std::is_signed_v<T>)
        return static_cast<qint64>(value);
    else if constexpr (std::is_integral_v<T>)
        return static_cast<quint64>(value);
    else if constexpr (std::is_enum_v<T>)
        return static_cast<qint64>(value);
    else if constexpr (std::is_floating_point_v<T>)
        return static_cast<double>(value);
    else if constexpr (std::is_convertible_v<T, const char*>)
        return value ? QString::fromUtf8(value) : QStringLiteral("(null)");
    else if constexpr (std::is_same_v<T, QUrl>)
        return value.isEmpty() ? QStringLiteral("(null)") : value.toString(QUrl::RemovePassword);
    else if constexpr (std::is_convertible_v<T, QString>)
        return QString(value).isNull() ? QStringLiteral("(null)") : QString(value);
    else
        return QVariant::fromValue(value).toString();
}

// Expands the format with the arguments in order; unknown conversions and
// missing arguments are written as they stand rather than read from nowhere.
QString formatLogMessage(const char* format, const QList<LogArgument>& arguments);

// Hands one line to the logging category of VLRLogFormat as "tag: message":
// level 3 and below as debug, 4 info, 5 warning, 6 and above critical.
void writeLogLine(int level, const QString& tag, const QString& message);

} // namespace vlr

// The category of every VLRLogFormat line, "veluria.sdk": on from info up.
Q_DECLARE_LOGGING_CATEGORY(lcLogFormat)

// The library's log function: level 4 for ordinary lines, 5 for errors. The
// line goes through Qt's logging, so VLRLogHandler writes it with its tag.
template <typename... Args> void VLRLogFormat(int level, const QString& tag, const char* format, const Args&... args)
{
    vlr::writeLogLine(level, tag, vlr::formatLogMessage(format, {vlr::toLogArgument(args)...}));
}
