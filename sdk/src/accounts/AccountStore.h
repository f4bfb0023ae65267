#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

class Database;

// The accounts of the local service.
class AccountStore
{
public:
    struct Account
    {
        QString id;
        QString email;
        QString firstName;
        QString lastName;
        QString passwordHash;
        qint64 passwordVersion = 0;
        bool needsConfirmation = false;
        QByteArray totpSecret;
        qint64 totpLastStep = 0;
        QByteArray avatar;
        qint64 downloadCacheSize = 0;
    };

    explicit AccountStore(Database& database);

    std::optional<Account> findByEmail(const QString& email);
    std::optional<Account> findById(const QString& id);
    // The new account's identifier, or a null string with the reason.
    QString add(const QString& email, const QString& firstName, const QString& lastName, const QString& password,
                bool needsConfirmation, QString* failure);
    bool confirm(const QString& id);
    // A new password also makes every session of the account hear of it.
    bool setPassword(const QString& id, const QString& password);
    bool setSecondFactor(const QString& id, const QByteArray& secret);
    bool setAvatar(const QString& id, const QByteArray& image);
    // Takes the step of a code that was just accepted; false when it, or a
    // later one, has been used already (a code is good once).
    bool useCodeStep(const QString& id, qint64 step);
    bool setDownloadCacheSize(const QString& id, qint64 bytes);
    // The password version alone, for sessions that watch it; -1 when the
    // account is gone.
    qint64 passwordVersion(const QString& id);

private:
    std::optional<Account> findOne(const char* sql, const QString& key);

    Database& m_database;
};
