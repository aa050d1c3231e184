// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "hostmodel.h"

namespace VandrelApplication {

bool isFilled(const QDate &date)
{
    // Compared as a day number: the check service asks this hundreds of times per validation,
    // and working out the year is calendar arithmetic each time.
    static const qint64 lastUnfilled = QDate(1900, 12, 31).toJulianDay();
    return date.isValid() && date.toJulianDay() > lastUnfilled;
}

// Out-of-line destructors anchor each interface's vtable in this library.
Application::~Application() = default;
Parameters::~Parameters() = default;
Dossier::~Dossier() = default;
Aanvrager::~Aanvrager() = default;
Dienstverband::~Dienstverband() = default;
ScenarioRegel::~ScenarioRegel() = default;
Scenario::~Scenario() = default;
OuderdomRegel::~OuderdomRegel() = default;
AoUitkering::~AoUitkering() = default;
AoUitkeringOwner::~AoUitkeringOwner() = default;

} // namespace VandrelApplication
