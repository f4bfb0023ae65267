#include "platform/VLRDefaultsValueCodec.h"

#include <QByteArray>
#include <QDataStream>
#include <QDateTime>
#include <QIODevice>

namespace {

const QString boolTag = QStringLiteral("bool");
const QString intTag = QStringLiteral("int");
const QString longLongTag = QStringLiteral("longlong");
const QString doubleTag = QStringLiteral("double");
const QString stringTag = QStringLiteral("string");
const QString dateTag = QStringLiteral("date");
const QString variantTag = QStringLiteral("variant");

QString tagged(const QString& tag, const QString& text)
{
    return tag + QLatin1Char(':') + text;
}

// ISO 8601 with milliseconds and the offset from UTC, so that the instant
// survives whatever time zone reads it back.
QString encodeDate(const QDateTime& date)
{
    if (!date.isValid())
        return QString();
    return date.toOffsetFromUtc(date.offsetFromUtc()).toString(Qt::ISODateWithMs);
}

QString encodeVariant(const QVariant& value)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_6_0);
    stream << value;
    return QString::fromLatin1(bytes.toBase64());
}

QVariant decodeVariant(const QString& text)
{
    const QByteArray bytes = QByteArray::fromBase64(text.toLatin1());
    QDataStream stream(bytes);
    stream.setVersion(QDataStream::Qt_6_0);
    QVariant value;
    stream >> value;
    return stream.status() == QDataStream::Ok ? value : QVariant();
}

} // namespace

QString VLRDefaultsValueCodec::encode(const QVariant& value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
        return tagged(boolTag, value.toBool() ? QStringLiteral("true") : QStringLiteral("false"));
    case QMetaType::Int:
        return tagged(intTag, QString::number(value.toInt()));
    case QMetaType::LongLong:
        return tagged(longLongTag, QString::number(value.toLongLong()));
    case QMetaType::Double:
        return tagged(doubleTag, QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest));
    case QMetaType::QString:
        return tagged(stringTag, value.toString());
    case QMetaType::QDateTime:
        return tagged(dateTag, encodeDate(value.toDateTime()));
    default:
        return tagged(variantTag, encodeVariant(value));
    }
}

QVariant VLRDefaultsValueCodec::decode(const QVariant& stored)
{
    if (stored.typeId() != QMetaType::QString)
        return stored;
    const QString text = stored.toString();
    const qsizetype colon = text.indexOf(QLatin1Char(':'));
    if (colon < 0)
        return stored;
    const QString tag = text.left(colon);
    const QString body = text.mid(colon + 1);

    if (tag == boolTag && (body == QLatin1String("true") || body == QLatin1String("false")))
        return QVariant(body == QLatin1String("true"));
    bool ok = false;
    if (tag == intTag) {
        const int number = body.toInt(&ok);
        return ok ? QVariant(number) : stored;
    }
    if (tag == longLongTag) {
        const qlonglong number = body.toLongLong(&ok);
        return ok ? QVariant(number) : stored;
    }
    if (tag == doubleTag) {
        const double number = body.toDouble(&ok);
        return ok ? QVariant(number) : stored;
    }
    if (tag == stringTag)
        return QVariant(body.isNull() ? QStringLiteral("") : body);
    if (tag == dateTag)
        return QVariant(QDateTime::fromString(body, Qt::ISODateWithMs).toLocalTime());
    if (tag == variantTag)
        return decodeVariant(body);
    return stored;
}
