#include "hostmodel.h"

namespace VandrelApplication {

bool isFilled(const QDate &date)
{
    return date.isValid() && date.year() > 1900;
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
