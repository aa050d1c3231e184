// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "sqlsupport.h"

#include "dialect.h"
#include "hosterror.h"

#include <QSqlError>
#include <QSqlQuery>

namespace Zarnoveld::detail {

void fail(qint32 code, const QString &text)
{
    throw VandrelApplication::HostError(code, text, QStringLiteral("Zarnoveld"));
}

void execOrThrow(QSqlDatabase &db, const QString &sql)
{
    QSqlQuery q(db);
    if (!q.exec(sql))
        fail(VandrelApplication::HostErrorCode::StoreFailed,
             QStringLiteral("Het dossier kon niet worden bijgewerkt: %1").arg(q.lastError().text()));
}

bool hasTable(QSqlDatabase &db, const QString &name)
{
    QSqlQuery q(db);
    q.prepare(Dialect::of(db).tableExists);
    q.addBindValue(name);
    return q.exec() && q.next();
}

} // namespace Zarnoveld::detail
