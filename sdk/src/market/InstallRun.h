#pragma once

#include "service/VLRError.h"

#include <QString>

#include <functional>

class Database;

// One download and installation of an installer's revision for a user on
// this machine, run away from the GUI: the package is copied out of the
// content store into a partial file under the applications folder (kept
// when the run is stopped, so that the next run goes on from there),
// checked against its SHA-256, installed (Installation), and the install
// recorded for this machine. The package is removed afterwards.
class InstallRun
{
public:
    enum class Phase { Download, Install };

    struct Job
    {
        QString userId;
        QString installerId;
        QString revisionId;
    };

    InstallRun(Job job, Database& database, std::function<bool()> shouldStop,
               std::function<void(Phase phase, double fraction)> progress);

    // No error on success; the cancellation error when it was stopped.
    vlr::OptionalError run();

    // The partial package of a revision.
    static QString packagePath(const QString& revisionId);
    // The installer's name as a menu shows it: a package extension dropped.
    static QString shownName(const QString& name);

private:
    Job m_job;
    Database& m_database;
    std::function<bool()> m_shouldStop;
    std::function<void(Phase, double)> m_progress;
};
