#pragma once

#include <QList>
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

template <typename T>
LogArgument toLogArgument(const T& value)
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
        return value.isEmpty() ? QStringLiteral("(null)") : value.toString();
    else if constexpr (std::is_convertible_v<T, QString>)
        return QString(value).isNull() ? QStringLiteral("(null)") : QString(value);
    else
        return QVariant::fromValue(value).toString();
}

// Expands the format with the arguments in order; unknown conversions and
// missing arguments are written as they stand rather than read from nowhere.
QString formatLogMessage(const char* format, const QList<LogArgument>& arguments);

// Where the lines go besides stderr. The file defaults to Veluria/Logs/veluria.log
// under the user's data location; an empty path writes no file.
void setLogFilePath(const QString& path);
QString logFilePath();

// A test or a tool may listen to every line (level, tag, message).
using LogObserver = std::function<void(int level, const QString& tag, const QString& message)>;
void setLogObserver(LogObserver observer);

void writeLogLine(int level, const QString& tag, const QString& message);

} // namespace vlr

// The library's log function: level 4 for ordinary lines, 5 for errors.
template <typename... Args>
void VLRLogFormat(int level, const QString& tag, const char* format, const Args&... args)
{
    vlr::writeLogLine(level, tag, vlr::formatLogMessage(format, {vlr::toLogArgument(args)...}));
}
