#pragma once

#include <QHash>
#include <QString>

// One HTML template of the web pages (a resource under :/web/), with
// {{name}} placeholders. A value given with set() is text and is escaped;
// one given with setHtml() is markup that the server made itself. Values
// are put in one pass, so a member's text that looks like a placeholder
// stays text.
class WebTemplate
{
public:
    explicit WebTemplate(const QString& name);

    WebTemplate& set(const QString& key, const QString& text);
    WebTemplate& setHtml(const QString& key, const QString& html);
    QString render() const;

private:
    QString m_source;
    QHash<QString, QString> m_values;
};
