// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// The one place where SQLite and PostgreSQL are spelled differently. Everything else the store
// says is the same SQL for both.

#include "casedata.h"

#include <QSqlDatabase>
#include <QString>

namespace Zarnoveld::detail {

struct Dialect
{
    // The type of a record's id and of the columns that point at one. SQLite's INTEGER is 64
    // bits; PostgreSQL's is 32, so there it is BIGINT.
    QString idType;
    // A field's column type. SQLite's REAL is a double; PostgreSQL's is a float, so there
    // doubles are DOUBLE PRECISION (an amount must come back to the cent).
    QString (*columnType)(Kind kind);
    // A field's column name, quoted. SQLite keeps the field's own spelling; PostgreSQL gets it in
    // lower case, the spelling its tools and an office's own queries use without quotes.
    QString (*column)(const QString &field);
    // Starts the one transaction of a change. SQLite takes its write lock at once (IMMEDIATE),
    // so two writers never both get halfway; PostgreSQL locks rows as they are written.
    QString begin;
    // Whether BEGIN, COMMIT and ROLLBACK can be prepared once and reused (SQLite); PostgreSQL
    // prepares only ordinary statements.
    bool preparesControl;
    // Whether a table of that name exists in the case (SQLite: the file; PostgreSQL: the case's
    // own schema, the first on the search path).
    QString tableExists;

    // The dialect of a connection, by its driver.
    static const Dialect &of(const QSqlDatabase &db);
};

} // namespace Zarnoveld::detail
