#include "service/VLRLogHandler.h"

#include "service/VLRLogFile.h"
#include "service/VLRLogFormat.h"

#include <QDateTime>
#include <QStandardPaths>

#include <cstdio>
#include <memory>
#include <mutex>

namespace {

struct HandlerState
{
    std::mutex mutex;
    bool pathChosen = false;
    QString path;
    std::unique_ptr<VLRLogFile> file;
    vlr::LogObserver observer;
};

HandlerState& state()
{
    static HandlerState s;
    return s;
}

// Set while this thread is inside the handler: a message raised by the
// writing itself goes to stderr alone instead of waiting for the lock.
thread_local bool handling = false;

QString defaultLogFilePath()
{
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return data.isEmpty() ? QString() : data + QStringLiteral("/Veluria/Logs/veluria.log");
}

int levelOf(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return 3;
    case QtInfoMsg:
        return 4;
    case QtWarningMsg:
        return 5;
    case QtCriticalMsg:
        return 6;
    case QtFatalMsg:
        return 7;
    }
    return 5;
}

// The source shown before the message, and the message without it.
std::pair<QString, QString> sourceAndMessage(const QMessageLogContext& context, const QString& message)
{
    const char* category = context.category ? context.category : "default";
    if (qstrcmp(category, lcLogFormat().categoryName()) == 0) {
        const qsizetype colon = message.indexOf(QLatin1String(": "));
        if (colon >= 0)
            return {message.left(colon), message.mid(colon + 2)};
    }
    return {QString::fromUtf8(category), message};
}

void handleMessage(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    const QByteArray line = VLRLogHandler::format(type, context, message);
    if (handling) {
        std::fwrite(line.constData(), 1, size_t(line.size()), stderr);
        return;
    }
    handling = true;
    vlr::LogObserver observer;
    {
        HandlerState& s = state();
        std::lock_guard lock(s.mutex);
        std::fwrite(line.constData(), 1, size_t(line.size()), stderr);
        if (!s.pathChosen) {
            s.path = defaultLogFilePath();
            s.pathChosen = true;
        }
        if (!s.path.isEmpty()) {
            if (!s.file)
                s.file = std::make_unique<VLRLogFile>(s.path);
            s.file->append(line);
        }
        observer = s.observer;
    }
    if (observer) {
        const auto [source, text] = sourceAndMessage(context, message);
        observer(levelOf(type), source, text);
    }
    handling = false;
}

} // namespace

void VLRLogHandler::install()
{
    static std::once_flag once;
    std::call_once(once, [] { qInstallMessageHandler(handleMessage); });
}

QString VLRLogHandler::escaped(const QString& text)
{
    QString out;
    out.reserve(text.size());
    for (const QChar c : text) {
        const char16_t u = c.unicode();
        if (u == '\n')
            out += QLatin1String("\\n");
        else if (u == '\r')
            out += QLatin1String("\\r");
        else if (u == '\t')
            out += QLatin1String("\\t");
        else if (u < 0x20 || (u >= 0x7f && u <= 0x9f))
            out += QStringLiteral("\\x%1").arg(uint(u), 2, 16, QLatin1Char('0'));
        else if (u == 0x2028 || u == 0x2029)
            out += QStringLiteral("\\u%1").arg(uint(u), 4, 16, QLatin1Char('0'));
        else
            out += c;
    }
    return out;
}

QByteArray VLRLogHandler::format(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    const auto [source, text] = sourceAndMessage(context, message);
    return QStringLiteral("%1 [%2] %3: %4\n")
        .arg(QDateTime::currentDateTime().toString(Qt::ISODateWithMs))
        .arg(levelOf(type))
        .arg(escaped(source), escaped(text))
        .toUtf8();
}

namespace vlr {

void setLogFilePath(const QString& path)
{
    HandlerState& s = state();
    std::lock_guard lock(s.mutex);
    s.file.reset();
    s.path = path;
    s.pathChosen = true;
}

QString logFilePath()
{
    HandlerState& s = state();
    std::lock_guard lock(s.mutex);
    return s.pathChosen ? s.path : defaultLogFilePath();
}

void setLogObserver(LogObserver observer)
{
    if (observer)
        VLRLogHandler::install();
    HandlerState& s = state();
    std::lock_guard lock(s.mutex);
    s.observer = std::move(observer);
}

} // namespace vlr
