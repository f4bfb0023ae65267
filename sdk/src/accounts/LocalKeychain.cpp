#include "sdk/accounts/LocalKeychain.h"

#include "sdk/accounts/AccountsLog.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <qt6keychain/keychain.h>

#include <atomic>

namespace {

const QString serviceName = QStringLiteral("Veluria");
const QString passwordKey = QStringLiteral("password");

// False when the keyring could not be asked at all.
bool runToEnd(QKeychain::Job& job)
{
    job.setAutoDelete(false);
    job.setKey(passwordKey);
    if (!QCoreApplication::instance()) {
        qCWarning(lcAccounts, "Keychain: no application object, the keyring is not asked");
        return false;
    }
    QEventLoop loop;
    QObject::connect(&job, &QKeychain::Job::finished, &loop, &QEventLoop::quit);
    job.start();
    loop.exec(QEventLoop::ExcludeUserInputEvents);
    return true;
}

// Without a keyring every call fails alike; that is said once, not at every
// call.
void reportFailure(const QKeychain::Job& job, const char* action)
{
    static std::atomic_bool told{false};
    if (job.error() == QKeychain::OtherError || job.error() == QKeychain::NoBackendAvailable) {
        if (!told.exchange(true))
            qCInfo(lcAccounts, "Keychain: no keychain here (%s); the password is not kept",
                   qUtf8Printable(job.errorString()));
        return;
    }
    qCWarning(lcAccounts, "Keychain: %s failed: %s", action, qUtf8Printable(job.errorString()));
}

} // namespace

QString LocalKeychain::loadPassword()
{
    QKeychain::ReadPasswordJob job(serviceName);
    if (!runToEnd(job))
        return {};
    if (job.error() == QKeychain::NoError)
        return job.textData().isNull() ? QStringLiteral("") : job.textData();
    if (job.error() != QKeychain::EntryNotFound)
        reportFailure(job, "reading the password");
    return {};
}

void LocalKeychain::savePassword(const QString& password)
{
    QKeychain::WritePasswordJob job(serviceName);
    job.setTextData(password.isNull() ? QStringLiteral("") : password);
    if (runToEnd(job) && job.error() != QKeychain::NoError)
        reportFailure(job, "storing the password");
}

void LocalKeychain::deletePassword()
{
    QKeychain::DeletePasswordJob job(serviceName);
    if (runToEnd(job) && job.error() != QKeychain::NoError && job.error() != QKeychain::EntryNotFound)
        reportFailure(job, "deleting the password");
}
