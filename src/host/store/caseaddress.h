// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// A case's address is what the model is handed to open it: a file path for a case on this PC,
// or, for a case in the office's database, the server's address with the case's name after a
// '#': postgresql://user@host:port/dbname#Case name (the name percent-encoded as a URL fragment).
// A password never travels in an address: it would show in the process list and in logs. The
// connection takes it where PostgreSQL's own tools do: PGPASSWORD or ~/.pgpass.

#include <QString>

namespace Zarnoveld::CaseAddress {

// The parts of a server address.
struct Server
{
    QString host;        // empty: the local socket
    int port = 5432;
    QString user;        // empty: the login name, as PostgreSQL's own tools do
    QString database;
    QString options;     // libpq connection options from the address's query, ';'-separated
    QString caseName;    // empty when the address names only the database
    QString display() const;   // "kantoor op 127.0.0.1:5433", no user and no password
};

// Whether the address is on a server (postgresql:// or postgres://).
bool isServer(const QString &address);
// Reads a server address; throws HostError (Dutch) for one this program cannot use: another
// scheme, no database, a password, an option it does not pass on.
Server parse(const QString &address);
// The address of case `name` in database `databaseUrl`; throws HostError for an unusable URL or
// a name no adviser could type (empty, over 200 characters, control characters).
QString ofCase(const QString &databaseUrl, const QString &name);
// The longest case name on a server.
inline constexpr int MaxNameLength = 200;

} // namespace Zarnoveld::CaseAddress
