#include "sdk/store/SafeName.h"

#include <QDir>
#include <QFileInfo>

namespace {

bool harmful(QChar c)
{
    const char16_t code = c.unicode();
    return code < 0x20 || code == 0x7f || (code >= 0x80 && code < 0xa0) || code == u'/' || code == u'\\'
        || c.category() == QChar::Other_Format || c.category() == QChar::Separator_Line
        || c.category() == QChar::Separator_Paragraph;
}

} // namespace

QString SafeName::component(const QString& name)
{
    QString safe;
    safe.reserve(name.size());
    for (const QChar c : name)
        safe.append(harmful(c) ? QChar(u'_') : c);
    safe = safe.trimmed();
    if (safe.isEmpty() || safe == QLatin1String(".") || safe == QLatin1String(".."))
        safe = QStringLiteral("Untitled");
    while (safe.toUtf8().size() > 255)
        safe.chop(1);
    return safe;
}

QStringList SafeName::relativePath(const QString& path)
{
    QStringList parts;
    for (const QString& part : path.split(QLatin1Char('/'), Qt::SkipEmptyParts)) {
        if (part == QLatin1String("."))
            continue;
        parts.append(component(part));
    }
    return parts;
}

bool SafeName::staysUnder(const QString& root, const QString& path)
{
    const QString canonicalRoot = QFileInfo(root).canonicalFilePath();
    if (canonicalRoot.isEmpty())
        return false;
    // Resolve the deepest part that exists; what is below it is made by us.
    QString existing = QDir::cleanPath(path);
    QString rest;
    while (!existing.isEmpty() && !QFileInfo::exists(existing)) {
        const QFileInfo info(existing);
        rest = info.fileName() + (rest.isEmpty() ? QString() : QLatin1Char('/') + rest);
        existing = info.path();
    }
    QString resolved = QFileInfo(existing).canonicalFilePath();
    if (resolved.isEmpty())
        return false;
    if (!rest.isEmpty())
        resolved += QLatin1Char('/') + rest;
    resolved = QDir::cleanPath(resolved);
    return resolved.startsWith(canonicalRoot + QLatin1Char('/')) && !resolved.contains(QLatin1String("/../"))
        && !resolved.endsWith(QLatin1String("/.."));
}

QString SafeName::numbered(const QString& name, int number)
{
    const int dot = name.lastIndexOf(QLatin1Char('.'));
    const bool hasExtension = dot > 0;
    const QString stem = hasExtension ? name.left(dot) : name;
    const QString extension = hasExtension ? name.mid(dot) : QString();
    return QStringLiteral("%1 (%2)%3").arg(stem).arg(number).arg(extension);
}
