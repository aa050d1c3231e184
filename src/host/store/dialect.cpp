// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "dialect.h"

namespace Zarnoveld::detail {

namespace {

QString sqliteColumn(Kind kind)
{
    switch (kind) {
    case Kind::Double:
    case Kind::Float: return QStringLiteral("REAL");
    case Kind::Date:
    case Kind::Text: return QStringLiteral("TEXT");
    default: return QStringLiteral("INTEGER");
    }
}

QString postgresColumn(Kind kind)
{
    switch (kind) {
    case Kind::Double:
    case Kind::Float: return QStringLiteral("DOUBLE PRECISION");
    case Kind::Date:
    case Kind::Text: return QStringLiteral("TEXT");
    default: return QStringLiteral("INTEGER");
    }
}

QString sqliteName(const QString &field)
{
    return QLatin1Char('"') + field + QLatin1Char('"');
}

QString postgresName(const QString &field)
{
    return QLatin1Char('"') + field.toLower() + QLatin1Char('"');
}

} // namespace

const Dialect &Dialect::of(const QSqlDatabase &db)
{
    static const Dialect sqlite{
        QStringLiteral("INTEGER"), sqliteColumn, sqliteName, QStringLiteral("BEGIN IMMEDIATE"), true,
        QStringLiteral("SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = ?"),
    };
    static const Dialect postgres{
        QStringLiteral("BIGINT"), postgresColumn, postgresName, QStringLiteral("BEGIN"), false,
        QStringLiteral("SELECT 1 FROM information_schema.tables WHERE table_schema = current_schema() "
                       "AND table_name = ?"),
    };
    return db.driverName() == QStringLiteral("QPSQL") ? postgres : sqlite;
}

} // namespace Zarnoveld::detail
