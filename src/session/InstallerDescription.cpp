#include "session/InstallerDescription.h"

#include "app/VLRText.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

QString problemOf(const QJsonObject& object)
{
    const QJsonValue name = object.value(QStringLiteral("name"));
    if (!name.isString() || name.toString().trimmed().isEmpty())
        return vlr::localized("it has no \"name\"");
    if (object.contains(QStringLiteral("file_urls"))) {
        const QJsonValue paths = object.value(QStringLiteral("file_urls"));
        if (!paths.isArray())
            return vlr::localized("\"file_urls\" is not a list of paths");
        for (const QJsonValue& path : paths.toArray())
            if (!path.isString())
                return vlr::localized("\"file_urls\" is not a list of paths");
    }
    if (object.contains(QStringLiteral("silent_install"))) {
        const QJsonValue silent = object.value(QStringLiteral("silent_install"));
        if (!silent.isDouble() && !silent.isBool())
            return vlr::localized("\"silent_install\" is not a number");
    }
    if (object.contains(QStringLiteral("image_url")) && !object.value(QStringLiteral("image_url")).isString())
        return vlr::localized("\"image_url\" is not an address");
    return {};
}

} // namespace

QVariantMap InstallerDescription::dictionaryFromJSON(const QByteArray& json, vlr::OptionalError* error)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    QString problem;
    if (parseError.error != QJsonParseError::NoError)
        problem = parseError.errorString();
    else if (!document.isObject())
        problem = vlr::localized("it is not a JSON object");
    else
        problem = problemOf(document.object());
    if (problem.isEmpty())
        return document.object().toVariantMap();
    if (error)
        *error = vlr::makeError(vlr::VLRFrameworkErrorDomain, MalformedDescriptionError,
                                vlr::format(vlr::localized("The installer description can't be used: %@"), problem));
    return {};
}
