#include "WebTemplate.h"

#include <QFile>

WebTemplate::WebTemplate(const QString& name)
{
    QFile file(QStringLiteral(":/web/%1.html").arg(name));
    if (file.open(QIODevice::ReadOnly))
        m_source = QString::fromUtf8(file.readAll());
    else
        qWarning("The web template %s is missing.", qPrintable(name));
}

WebTemplate& WebTemplate::set(const QString& key, const QString& text)
{
    m_values.insert(key, text.toHtmlEscaped());
    return *this;
}

WebTemplate& WebTemplate::setHtml(const QString& key, const QString& html)
{
    m_values.insert(key, html);
    return *this;
}

QString WebTemplate::render() const
{
    QString out;
    out.reserve(m_source.size());
    qsizetype from = 0;
    while (true) {
        const qsizetype open = m_source.indexOf(QLatin1String("{{"), from);
        const qsizetype close = open < 0 ? -1 : m_source.indexOf(QLatin1String("}}"), open + 2);
        if (close < 0) {
            out += QStringView(m_source).mid(from);
            return out;
        }
        out += QStringView(m_source).mid(from, open - from);
        out += m_values.value(m_source.mid(open + 2, close - open - 2).trimmed());
        from = close + 2;
    }
}
