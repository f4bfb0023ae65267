#include "AdminCommandLine.h"

#include <QHash>
#include <QJsonArray>

namespace {

struct Shape
{
    int arguments = 0;
    QStringList values;
    QStringList flags;
    // Options that may be given more than once.
    QStringList lists;
    QList<int> fileArguments;
    QStringList fileOptions;
};

const QHash<QString, Shape>& shapes()
{
    static const QHash<QString, Shape> table{
        {QStringLiteral("add-user"),
         {2, {QStringLiteral("first"), QStringLiteral("last")}, {QStringLiteral("unconfirmed")}, {}, {}, {}}},
        {QStringLiteral("confirm"), {1, {}, {}, {}, {}, {}}},
        {QStringLiteral("avatar"), {2, {}, {}, {}, {1}, {}}},
        {QStringLiteral("passwd"), {2, {}, {}, {}, {}, {}}},
        {QStringLiteral("enable-2fa"), {1, {}, {}, {}, {}, {}}},
        {QStringLiteral("add-workspace"), {2, {}, {}, {}, {}, {}}},
        {QStringLiteral("add-member"), {2, {}, {QStringLiteral("owner")}, {}, {}, {}}},
        {QStringLiteral("publish"), {3, {QStringLiteral("text")}, {}, {}, {2}, {}}},
        {QStringLiteral("comment"), {3, {}, {}, {}, {}, {}}},
        {QStringLiteral("link"), {2, {QStringLiteral("revision")}, {}, {}, {}, {}}},
        {QStringLiteral("workspaces"), {1, {}, {}, {}, {}, {}}},
        {QStringLiteral("add-vendor"), {1, {}, {}, {}, {}, {}}},
        {QStringLiteral("add-product"),
         {1, {QStringLiteral("vendor"), QStringLiteral("image")}, {}, {}, {}, {QStringLiteral("image")}}},
        {QStringLiteral("add-installer"),
         {1,
          {QStringLiteral("description"), QStringLiteral("platform"), QStringLiteral("image")},
          {},
          {QStringLiteral("product")},
          {},
          {QStringLiteral("image")}}},
        {QStringLiteral("publish-installer"), {2, {QStringLiteral("version")}, {}, {}, {1}, {}}},
        {QStringLiteral("grant-purchase"),
         {2,
          {QStringLiteral("renews"), QStringLiteral("card-expires"), QStringLiteral("payment"),
           QStringLiteral("manage-url")},
          {QStringLiteral("canceled")},
          {},
          {},
          {}}},
        {QStringLiteral("installers"), {1, {}, {}, {}, {}, {}}},
        {QStringLiteral("demo"), {0, {}, {}, {}, {}, {}}},
    };
    return table;
}

} // namespace

QString AdminCommandLine::takeOption(QStringList& arguments, const QString& option)
{
    const qsizetype at = arguments.indexOf(option);
    if (at < 0 || at + 1 >= arguments.size())
        return {};
    const QString value = arguments.at(at + 1);
    arguments.remove(at, 2);
    return value;
}

bool AdminCommandLine::knows(const QString& command)
{
    return shapes().contains(command);
}

std::optional<AdminCommandLine::Parsed> AdminCommandLine::parse(const QString& command, QStringList arguments)
{
    const auto shape = shapes().constFind(command);
    if (shape == shapes().cend())
        return std::nullopt;
    Parsed parsed;
    for (const QString& name : shape->values)
        if (const QString value = takeOption(arguments, QStringLiteral("--") + name); !value.isNull())
            parsed.options.insert(name, value);
    for (const QString& name : shape->lists) {
        QJsonArray values;
        for (QString value; !(value = takeOption(arguments, QStringLiteral("--") + name)).isNull();)
            values.append(value);
        if (!values.isEmpty())
            parsed.options.insert(name, values);
    }
    for (const QString& name : shape->flags)
        if (arguments.removeAll(QStringLiteral("--") + name) > 0)
            parsed.options.insert(name, true);
    if (arguments.size() != shape->arguments)
        return std::nullopt;
    parsed.arguments = arguments;
    for (const int index : shape->fileArguments)
        parsed.files.insert(QString::number(index), arguments.at(index));
    for (const QString& name : shape->fileOptions)
        if (parsed.options.contains(name))
            parsed.files.insert(name, parsed.options.value(name).toString());
    return parsed;
}
