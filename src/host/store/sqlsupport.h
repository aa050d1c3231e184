// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// What every part of the store says the same way: a refusal as HostError from "Zarnoveld", a
// statement that must succeed, and whether a case has a table.

#include <QSqlDatabase>
#include <QString>

namespace Zarnoveld::detail {

// Throws HostError(code, text) with this program as its source.
[[noreturn]] void fail(qint32 code, const QString &text);
// Runs sql; a failure throws HostError(StoreFailed) with the driver's reason.
void execOrThrow(QSqlDatabase &db, const QString &sql);
// Whether the case on db has a table of that name (in the dialect of db).
bool hasTable(QSqlDatabase &db, const QString &name);

} // namespace Zarnoveld::detail
