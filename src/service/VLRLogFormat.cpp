#include "service/VLRLogFormat.h"

#include <algorithm>
#include <cstdio>

Q_LOGGING_CATEGORY(lcLogFormat, "veluria.sdk", QtInfoMsg)

namespace vlr {
namespace {

QString asText(const LogArgument& argument)
{
    return std::visit(
        [](const auto& value) -> QString {
            using T = std::decay_t<decltype(value)>;
            if constexpr (std::is_same_v<T, QString>)
                return value;
            else
                return QString::number(value);
        },
        argument);
}

template <typename T> QString cFormat(const QByteArray& conversion, T value)
{
    char buffer[128];
    const int n = std::snprintf(buffer, sizeof buffer, conversion.constData(), value);
    return QString::fromLatin1(buffer, std::clamp(n, 0, int(sizeof buffer) - 1));
}

// Formats one numeric conversion with the C library's printf, so that width,
// precision, flags and rounding behave exactly as in C.
QString formatNumber(const QByteArray& flags, char conversion, const LogArgument& argument)
{
    const bool floating = QByteArrayLiteral("fFeEgGaA").contains(conversion);
    if (floating) {
        double value = 0;
        if (auto d = std::get_if<double>(&argument))
            value = *d;
        else if (auto i = std::get_if<qint64>(&argument))
            value = double(*i);
        else if (auto u = std::get_if<quint64>(&argument))
            value = double(*u);
        else
            value = std::get<QString>(argument).toDouble();
        return cFormat("%" + flags + conversion, value);
    }
    const bool isSigned = conversion == 'd' || conversion == 'i';
    if (isSigned) {
        qint64 value = 0;
        if (auto i = std::get_if<qint64>(&argument))
            value = *i;
        else if (auto u = std::get_if<quint64>(&argument))
            value = qint64(*u);
        else if (auto d = std::get_if<double>(&argument))
            value = qint64(*d);
        else
            value = std::get<QString>(argument).toLongLong();
        return cFormat("%" + flags + "ll" + conversion, static_cast<long long>(value));
    }
    quint64 value = 0;
    if (auto u = std::get_if<quint64>(&argument))
        value = *u;
    else if (auto i = std::get_if<qint64>(&argument))
        value = quint64(*i);
    else if (auto d = std::get_if<double>(&argument))
        value = quint64(*d);
    else
        value = std::get<QString>(argument).toULongLong();
    return cFormat("%" + flags + "ll" + conversion, static_cast<unsigned long long>(value));
}

} // namespace

QString formatLogMessage(const char* format, const QList<LogArgument>& arguments)
{
    QString out;
    if (!format)
        return out;
    qsizetype next = 0;
    const QByteArray f(format);
    for (qsizetype i = 0; i < f.size(); ++i) {
        if (f[i] != '%') {
            qsizetype start = i;
            while (i < f.size() && f[i] != '%')
                ++i;
            out += QString::fromUtf8(f.mid(start, i - start));
            --i;
            continue;
        }
        const qsizetype start = i++;
        if (i < f.size() && f[i] == '%') {
            out += QLatin1Char('%');
            continue;
        }
        QByteArray flags;
        while (i < f.size() && QByteArrayLiteral("-+ #0123456789.").contains(f[i]))
            flags += f[i++];
        while (i < f.size() && QByteArrayLiteral("hlqLjzt").contains(f[i]))
            ++i; // length modifiers: the boxed argument already knows its size
        if (i >= f.size()) {
            out += QString::fromUtf8(f.mid(start));
            break;
        }
        const char conversion = f[i];
        const bool known = QByteArrayLiteral("@sdiuxXofFeEgGaAc").contains(conversion);
        if (!known || next >= arguments.size()) {
            out += QString::fromUtf8(f.mid(start, i - start + 1));
            continue;
        }
        const LogArgument& argument = arguments[next++];
        if (conversion == '@' || conversion == 's')
            out += asText(argument);
        else if (conversion == 'c')
            out += QChar(char16_t(std::holds_alternative<QString>(argument) ? 0 : asText(argument).toUInt()));
        else
            out += formatNumber(flags, conversion, argument);
    }
    return out;
}

void writeLogLine(int level, const QString& tag, const QString& message)
{
    const QString line = tag + QStringLiteral(": ") + message;
    if (level <= 3)
        qCDebug(lcLogFormat).noquote() << line;
    else if (level == 4)
        qCInfo(lcLogFormat).noquote() << line;
    else if (level == 5)
        qCWarning(lcLogFormat).noquote() << line;
    else
        qCCritical(lcLogFormat).noquote() << line;
}

} // namespace vlr
