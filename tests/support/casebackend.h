// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// Where a host test keeps its cases: case files in a temporary folder, or (ZARNOVELD_TEST_BACKEND
// = postgresql) cases in the throwaway PostgreSQL cluster the test command started
// (ZARNOVELD_TEST_CLUSTER, see scripts/pgcluster). One test source covers both back ends.

#include "hosterror.h"

#include <QSqlDatabase>
#include <QString>
#include <QTemporaryDir>

namespace TestSupport {

// The HostError a call throws; number 0 when it throws none.
template <typename Body>
VandrelApplication::HostError hostErrorOf(Body &&body)
{
    try {
        body();
    } catch (const VandrelApplication::HostError &e) {
        return e;
    }
    return VandrelApplication::HostError(0, QString());
}

// Stops ("pause") or starts again ("resume") the cluster's server, as an office's server going
// down and coming back.
void serverAction(const char *action);

// Whether this run keeps its cases on the server.
bool onServer();
// Why the server half cannot run here (no PostgreSQL, no cluster); empty when it can. The text
// starts with "PostgreSQL-server niet beschikbaar", which CTest reports as a skip.
QString serverMissing();
// The cluster's database address, without a case; sets PGPASSWORD for this process (and the
// programs it starts) the way an office would. Empty when there is no server.
QString serverUrl();
// A new, empty database in the cluster, for a run that must not meet another run's cases; its
// address, or empty when there is no server.
QString freshDatabase();
// A new, unused case address: a file in dir, or a case with a name unique to this run.
QString newCase(const QTemporaryDir &dir, const QString &stem);
// Whether a case is at address (a file, or a name in the server's catalogue).
bool caseExists(const QString &address);
// A second, independent connection to the case's tables, as another program would have: the
// file itself, or the server with the case's own schema on the search path. Named `connection`.
QSqlDatabase openRaw(const QString &address, const QString &connection);
// Removes a case that is not open (a file and what SQLite keeps beside it, or a case with its
// schema on the server), so that the next import of the same document starts afresh.
void removeCase(const QString &address);
// The name an adviser knows that case by (the file name, or the name on the server).
QString caseNameOf(const QString &address);

} // namespace TestSupport

// For a test's initTestCase: a run on the server without a server is skipped, with the reason.
#define SKIP_WITHOUT_SERVER()                                                                      \
    do {                                                                                           \
        if (TestSupport::onServer() && !TestSupport::serverMissing().isEmpty())                    \
            QSKIP(qPrintable(TestSupport::serverMissing()));                                       \
    } while (false)

// For a test of what only a case file has (its bytes, its lock file, its folder).
#define ONLY_FOR_CASE_FILES()                                                                      \
    do {                                                                                           \
        if (TestSupport::onServer())                                                               \
            QSKIP("Alleen voor dossierbestanden: dit gaat over het bestand zelf.");                \
    } while (false)
