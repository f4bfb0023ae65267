#include "service/VLRKeychain.h"

#include "service/VLRLogFormat.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <qt6keychain/keychain.h>

#include <atomic>

// The password lives in the desktop's keyring (Secret Service or KWallet)
// under one fixed service and key. The keyring answers asynchronously; these
// calls wait for the answer in a local event loop, so that the GUI keeps
// running while the keyring works (or asks the user to unlock it).
namespace {

const QString serviceName = QStringLiteral("Veluria");
const QString passwordKey = QStringLiteral("password");

// False when the keyring could not be asked at all.
bool runToEnd(QKeychain::Job& job)
{
    job.setAutoDelete(false);
    job.setKey(passwordKey);
    if (!QCoreApplication::instance()) {
        VLRLogFormat(5, QStringLiteral("VeluriaSDK"), "Keychain: no application object, the keyring is not asked");
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
            VLRLogFormat(4, QStringLiteral("VeluriaSDK"), "Keychain: no keychain here (%@); the password is not kept",
                         job.errorString());
        return;
    }
    VLRLogFormat(5, QStringLiteral("VeluriaSDK"), "Keychain: %s failed: %@", action, job.errorString());
}

} // namespace

QString VLRKeychain::loadPassword()
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

void VLRKeychain::savePassword(const QString& password)
{
    QKeychain::WritePasswordJob job(serviceName);
    job.setTextData(password.isNull() ? QStringLiteral("") : password);
    if (runToEnd(job) && job.error() != QKeychain::NoError)
        reportFailure(job, "storing the password");
}

void VLRKeychain::deletePassword()
{
    QKeychain::DeletePasswordJob job(serviceName);
    if (runToEnd(job) && job.error() != QKeychain::NoError && job.error() != QKeychain::EntryNotFound)
        reportFailure(job, "deleting the password");
}
