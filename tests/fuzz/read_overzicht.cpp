// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// The pension register's overview reader on arbitrary bytes, JSON and XML alike (the seeds hold
// both): a file is read whole or refused with a Dutch message naming it, never a crash. What is
// read maps onto a case without any exception but HostError, and importing the same overview a
// second time has nothing left to change.

#include "fuzzsupport.h"
#include "hostapplication.h"
#include "importplan.h"

#include <QCoreApplication>

using namespace VandrelPensioen::Overzicht;
using VandrelApplication::HostError;

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    static QCoreApplication app(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    const ReadResult read = readOverview(bytes, QStringLiteral("fuzz.json"));
    const QString shown = QString::fromUtf8(bytes.left(300));
    Fuzz::require(read.ok() != !read.error.isEmpty(), "either an overview or a message", shown);
    if (!read.ok()) {
        Fuzz::require(read.error.startsWith(QStringLiteral("Het pensioenoverzicht fuzz.json")),
                      "a refusal names the file", read.error);
        return 0;
    }
    Fuzz::require(read.overview->statusCode == QLatin1String("000"), "only status 000 is accepted", shown);

    auto app = Zarnoveld::HostApplication::createInMemory();
    const QDate today(2026, 11, 24);
    try {
        const ImportPlan plan = planImport(*read.overview, *app, 1, today);
        Fuzz::require(!previewText(plan).isEmpty(), "a plan has a preview", shown);
        if (!plan.refusal.isEmpty())
            return 0;
        applyPlan(plan, *app);
        const ImportPlan again = planImport(*read.overview, *app, 1, today);
        // Schemes without an identifier cannot be recognised, so they come again by design.
        for (const PlannedScheme &s : again.schemes)
            Fuzz::require(s.values.schemeId.isEmpty() || s.status == PlanStatus::Unchanged,
                          "a second import changes nothing", previewText(again));
    } catch (const HostError &) {
    }
    return 0;
}
