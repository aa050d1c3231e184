// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "hostmodel.h"
#include "vandrelapplication_export.h"

#include <QStringList>

namespace VandrelApplication {

/// The suite's global check service. One object per process, created on first use and kept.
/// What it checks and what its arguments mean is decided (and explained) in hostcheck.cpp.
class VANDRELAPPLICATION_EXPORT HostCheck
{
public:
    static HostCheck &instance();  ///< The one service of the process.

    /// Checks the case of Application and keeps the findings for Bevindingen(). soort 1 is the
    /// pension data (other kinds find nothing here); niveau 1 reports errors, 2 and up also
    /// doubtful-but-allowed data; van and tot narrow the dated checks to start dates in that
    /// period, an unfilled bound leaving that side open. Never throws and never changes the case.
    void RunHostCheck(ApplicationPtr &Application, qint32 soort, const QDate &van, qint32 niveau,
                      const QDate &tot);

    /// What the last run found, one Dutch sentence per finding; empty when all is well.
    QStringList Bevindingen() const;
    /// How often RunHostCheck has run in this process (hosts and tests watch it).
    qint32 RunCount() const;

private:
    HostCheck() = default;
    QStringList m_bevindingen;
    qint32 m_runCount = 0;
};

} // namespace VandrelApplication
