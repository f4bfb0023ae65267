#pragma once

#include "sdk/accounts/AccountStore.h"
#include "sdk/base/Database.h"
#include "sdk/local/EmbeddedServiceLibrary.h"
#include "sdk/local/LocalUserSession.h"
#include "sdk/workspaces/WorkspaceStore.h"

#include "service/VLRInit.h"
#include "service/VLRObject.h"
#include "service/VLRUserSessionDelegate.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

// Records every change it hears, and whether it came on the GUI thread. It
// stops observing when it goes: what it watches must outlive it.
// The library under test, as the program makes it.
inline EmbeddedServiceLibrary& library()
{
    static EmbeddedServiceLibrary embedded;
    return embedded;
}

// Records every change it hears, and whether it came on the GUI thread.
class ChangeRecorder : public VLRKeyValueObserver
{
public:
    ~ChangeRecorder() override;
    struct Change
    {
        QString keyPath;
        VLRObject* object;
        bool onGuiThread;
    };

    void observeValueForKeyPath(const QString& keyPath, VLRObject* object, const vlr::KeyValueChange& change,
                                void* context) override;
    void watch(VLRObject& object, const QStringList& keyPaths);
    int count(const QString& keyPath, const VLRObject* object = nullptr) const;
    bool allOnGuiThread() const;

private:
    QList<Change> m_changes;
    QList<QPair<VLRObject*, QString>> m_watched;
};

// The session's delegate, recording what it is told.
class RecordingDelegate : public VLRUserSessionDelegate
{
public:
    void passwordChanged() override { ++passwordChanges; }
    void downstreamProxyUnavailable() override { ++serviceLosses; }
    void currentVersionIsUnsupported() override { }
    void clientKeyExpired() override { }
    void getFolderURLFromUser(const QString&, const QUrl&, const VLRFolderValidationHandler&,
                              const VLRFolderCompletionHandler& completionHandler) override
    {
        completionHandler(QUrl());
    }
    void workspace(const VLRWorkspacePtr& workspace, const VLRPublicationList& publications) override;

    int passwordChanges = 0;
    int serviceLosses = 0;
    QList<QPair<VLRWorkspacePtr, VLRPublicationList>> announcements;
};

// A fresh local service for each test: its database folder and the user's
// home (where ~/Veluria is) in temporary folders, and a connection of the
// test's own to arrange the data.
class ServiceFixture : public ::testing::Test
{
public:
    // Runs the GUI thread's events until the condition holds; false on
    // timeout.
    static bool waitUntil(const std::function<bool()>& condition, int timeoutMs = 20000);
    static QByteArray randomBytes(qint64 size);
    static QString writeFile(const QString& path, const QByteArray& content);
    static QByteArray readFile(const QString& path);
    // The permission bits of a file or folder; 0 when it is not there.
    static unsigned modeOf(const QString& path);

protected:
    void SetUp() override;
    void TearDown() override;

    QString databaseFolder() const { return m_data.path() + QStringLiteral("/Veluria"); }
    QString home() const { return m_home.path(); }
    Database& database() { return *m_database; }

    QString addUser(const QString& email, const QString& password, const QString& firstName = QStringLiteral("Ann"));
    QString addWorkspace(const QString& name, const QString& ownerId, qint64 updatedAt = 0);

    struct SignInOutcome
    {
        VLRUserSessionPtr session;
        VLRLoginVerifierPtr verifier;
        vlr::OptionalError error;
        int calls = 0;
        bool onGuiThread = true;
        // Read inside the handler, where a client binds the session: the lists
        // may finish loading right after it.
        bool syncingListsAtAnswer = false;
        bool hasWorkspacesAtAnswer = false;
    };
    SignInOutcome signIn(const QString& email, const QString& password,
                         const QString& apiKey = QStringLiteral("lumenra-courier-token"));
    // Signs in and waits for the lists; the test fails if that fails.
    std::shared_ptr<LocalUserSession> signedIn(const QString& email, const QString& password);

private:
    QTemporaryDir m_data;
    QTemporaryDir m_home;
    QByteArray m_previousHome;
    QByteArray m_previousDataHome;
    std::unique_ptr<Database> m_database;
    std::vector<VLRUserSessionPtr> m_sessions;
};
