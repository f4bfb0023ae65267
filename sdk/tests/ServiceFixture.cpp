#include "ServiceFixture.h"

#include "sdk/accounts/Sodium.h"
#include "sdk/base/Clock.h"

#include "service/VLRInit.h"
#include "service/VLRUtils.h"

#include <QCoreApplication>
#include <QFile>
#include <QThread>

#include <sodium.h>
#include <sys/stat.h>

void ChangeRecorder::observeValueForKeyPath(const QString& keyPath, VLRObject* object, const vlr::KeyValueChange&,
                                            void*)
{
    m_changes.append(Change{keyPath, object, QThread::currentThread() == QCoreApplication::instance()->thread()});
}

ChangeRecorder::~ChangeRecorder()
{
    for (const auto& [object, keyPath] : m_watched)
        object->removeObserver(this, keyPath, this);
}

void ChangeRecorder::watch(VLRObject& object, const QStringList& keyPaths)
{
    for (const QString& keyPath : keyPaths) {
        object.addObserver(this, keyPath, vlr::KeyValueObservingOptionNew, this);
        m_watched.append({&object, keyPath});
    }
}

int ChangeRecorder::count(const QString& keyPath, const VLRObject* object) const
{
    return int(std::count_if(m_changes.begin(), m_changes.end(), [&](const Change& change) {
        return change.keyPath == keyPath && (!object || change.object == object);
    }));
}

bool ChangeRecorder::allOnGuiThread() const
{
    return std::all_of(m_changes.begin(), m_changes.end(), [](const Change& change) { return change.onGuiThread; });
}

void RecordingDelegate::workspace(const VLRWorkspacePtr& workspace, const VLRPublicationList& publications)
{
    announcements.append({workspace, publications});
}

void ServiceFixture::SetUp()
{
    ASSERT_TRUE(m_data.isValid());
    ASSERT_TRUE(m_home.isValid());
    m_previousHome = qgetenv("HOME");
    qputenv("HOME", m_home.path().toLocal8Bit());
    // Installed software and menu entries go under the data home.
    m_previousDataHome = qgetenv("XDG_DATA_HOME");
    qputenv("XDG_DATA_HOME", (m_home.path() + QStringLiteral("/.local/share")).toLocal8Bit());
    library().utils().setDatabaseLocation(QUrl::fromLocalFile(databaseFolder()));
    QString failure;
    m_database = Database::open(databaseFolder(), &failure);
    ASSERT_NE(m_database, nullptr) << failure.toStdString();
}

void ServiceFixture::TearDown()
{
    for (const VLRUserSessionPtr& session : m_sessions)
        session->logoutWithCompletionHandler(nullptr);
    m_sessions.clear();
    // Ends what the library still runs (sign-in thread, retired workers)
    // before the folders go.
    library().init().shutdown();
    QCoreApplication::processEvents();
    m_database.reset();
    qputenv("HOME", m_previousHome);
    qputenv("XDG_DATA_HOME", m_previousDataHome);
}

QString ServiceFixture::addUser(const QString& email, const QString& password, const QString& firstName)
{
    QString failure;
    const QString id =
        AccountStore(*m_database).add(email, firstName, QStringLiteral("Lee"), password, false, &failure);
    EXPECT_FALSE(id.isNull()) << failure.toStdString();
    return id;
}

QString ServiceFixture::addWorkspace(const QString& name, const QString& ownerId, qint64 updatedAt)
{
    const QString id = WorkspaceStore(*m_database).create(name, ownerId, updatedAt ? updatedAt : Clock::nowMs());
    EXPECT_FALSE(id.isNull());
    return id;
}

ServiceFixture::SignInOutcome ServiceFixture::signIn(const QString& email, const QString& password,
                                                     const QString& apiKey)
{
    auto outcome = std::make_shared<SignInOutcome>();
    library().createUserSessionWithLoginCredentials(
        VLRLoginCredentials(email, password), apiKey, true,
        [outcome](const VLRUserSessionPtr& session, const VLRLoginVerifierPtr& verifier,
                  const vlr::OptionalError& error) {
            outcome->session = session;
            outcome->syncingListsAtAnswer = session && session->syncingLists();
            outcome->hasWorkspacesAtAnswer = session && session->hasWorkspaces();
            outcome->verifier = verifier;
            outcome->error = error;
            outcome->onGuiThread =
                outcome->onGuiThread && QThread::currentThread() == QCoreApplication::instance()->thread();
            ++outcome->calls;
        });
    EXPECT_TRUE(waitUntil([&] { return outcome->calls > 0; }));
    // A second answer would come right behind the first.
    QCoreApplication::processEvents();
    if (outcome->session)
        m_sessions.push_back(outcome->session);
    return *outcome;
}

std::shared_ptr<LocalUserSession> ServiceFixture::signedIn(const QString& email, const QString& password)
{
    const SignInOutcome outcome = signIn(email, password);
    auto session = std::dynamic_pointer_cast<LocalUserSession>(outcome.session);
    EXPECT_NE(session, nullptr) << (outcome.error ? outcome.error->localizedDescription.toStdString() : "");
    if (session) {
        EXPECT_TRUE(waitUntil([&] { return !session->syncingLists(); }));
    }
    return session;
}

bool ServiceFixture::waitUntil(const std::function<bool()>& condition, int timeoutMs)
{
    for (int waited = 0; waited < timeoutMs; waited += 5) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        if (condition())
            return true;
        QThread::msleep(5);
    }
    return condition();
}

QByteArray ServiceFixture::randomBytes(qint64 size)
{
    Sodium::initialise();
    QByteArray bytes(size, Qt::Uninitialized);
    randombytes_buf(bytes.data(), size_t(size));
    return bytes;
}

QString ServiceFixture::writeFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_EQ(file.write(content), content.size());
    return path;
}

QByteArray ServiceFixture::readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

unsigned ServiceFixture::modeOf(const QString& path)
{
    struct stat info;
    return ::stat(QFile::encodeName(path).constData(), &info) == 0 ? info.st_mode & 0777 : 0;
}
