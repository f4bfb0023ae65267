#pragma once

#include <QMetaType>
#include <QString>
#include <QVariantMap>

#include <optional>

namespace vlr {

// A failure reported by the service library: what a handler gets instead of a
// result. "No error" is an empty std::optional<Error>, never an Error.
struct Error
{
    QString domain;
    qint64 code = 0;
    QString localizedDescription;
    QVariantMap userInfo;

    // The user's own cancellation, which is never reported as a failure.
    bool isCancellation() const;

    bool operator==(const Error&) const = default;
};

using OptionalError = std::optional<Error>;

inline const QString VLRWebErrorDomain = QStringLiteral("VLRWebErrorDomain");
inline const QString VLRFrameworkErrorDomain = QStringLiteral("VLRFrameworkErrorDomain");
inline const QString NSCocoaErrorDomain = QStringLiteral("NSCocoaErrorDomain");
inline const QString VLRAppleScriptDomain = QStringLiteral("VLRAppleScriptDomain");
inline const QString NSLocalizedDescriptionKey = QStringLiteral("NSLocalizedDescription");
inline const QString NSLocalizedFailureReasonErrorKey = QStringLiteral("NSLocalizedFailureReason");

constexpr qint64 NSUserCancelledError = 3072;

// Sign-in failures that the client tells apart by code.
enum LoginErrorCode : qint64 {
    WrongCredentialsError = 2, // any domain
    UnsupportedVersionError = 6, // VLRWebErrorDomain
};

// An error with the description also under NSLocalizedDescriptionKey, as
// errors made by hand carry it.
Error makeError(const QString& domain, qint64 code, const QString& description, QVariantMap userInfo = {});

} // namespace vlr

Q_DECLARE_METATYPE(vlr::Error)
