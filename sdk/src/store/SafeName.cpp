#include "sdk/store/SafeName.h"

#include <QDir>
#include <QFileInfo>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <utility>

namespace {

bool harmful(QChar c)
{
    const char16_t code = c.unicode();
    return code < 0x20 || code == 0x7f || (code >= 0x80 && code < 0xa0) || code == u'/' || code == u'\\'
        || c.category() == QChar::Other_Format || c.category() == QChar::Separator_Line
        || c.category() == QChar::Separator_Paragraph;
}

qsizetype utf8Size(QStringView text)
{
    return text.toUtf8().size();
}

// The longest start of the text that fits in the bytes, ending between two
// characters as a reader sees them (an emoji with its modifiers is one).
QString cutToBytes(const QString& text, qsizetype bytes)
{
    if (utf8Size(text) <= bytes)
        return text;
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, text);
    qsizetype fits = 0;
    for (qsizetype at = characters.toNextBoundary(); at > 0; at = characters.toNextBoundary()) {
        if (utf8Size(QStringView(text).left(at)) > bytes)
            break;
        fits = at;
    }
    return text.left(fits);
}

// A name's stem and its extension (".pdf"); a leading dot is part of the
// stem, and an extension too long to be one is not split off.
std::pair<QString, QString> splitExtension(const QString& name)
{
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    if (dot <= 0 || utf8Size(QStringView(name).mid(dot)) > 32)
        return {name, QString()};
    return {name.left(dot), name.mid(dot)};
}

// The stem is cut so that stem, tail and extension fit in the longest name.
QString fitted(const QString& stem, const QString& tail, const QString& extension)
{
    const qsizetype room = SafeName::longestName() - utf8Size(tail) - utf8Size(extension);
    return cutToBytes(stem, std::max<qsizetype>(room, 1)) + tail + extension;
}

} // namespace

qsizetype SafeName::longestName()
{
    return maxNameBytes - utf8Size(hiddenPartial(QString()));
}

QString SafeName::hiddenPartial(const QString& name)
{
    return QLatin1Char('.') + name + QStringLiteral(".veluria-part");
}

QString SafeName::component(const QString& name)
{
    QString safe;
    safe.reserve(name.size());
    for (const QChar c : name)
        safe.append(harmful(c) ? QChar(u'_') : c);
    safe = safe.trimmed();
    if (safe.isEmpty() || safe == QLatin1String(".") || safe == QLatin1String(".."))
        safe = QStringLiteral("Untitled");
    if (utf8Size(safe) <= longestName())
        return safe;
    const auto [stem, extension] = splitExtension(safe);
    return fitted(stem, QString(), extension);
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
    const auto [stem, extension] = splitExtension(name);
    return fitted(stem, QStringLiteral(" (%1)").arg(number), extension);
}

QString SafeName::tagged(const QString& name, const QString& tag)
{
    return fitted(name, QStringLiteral(" (%1)").arg(tag), QString());
}
