// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "casecore.h"
#include "hostapplication.h"

namespace Zarnoveld {

class HostApplication::Private
{
public:
    std::shared_ptr<detail::CaseCore> core;
    QString title = QStringLiteral("Zarnoveld");
    QList<VandrelApplication::ErrorRecord> errors;
    std::function<void(const VandrelApplication::ErrorRecord &)> handler;
    bool readOnly = false;
};

namespace detail {
// A dossier with only an applicant, as every new case starts.
std::shared_ptr<DossierNode> newDossierTree(CaseCore &core);
}

} // namespace Zarnoveld
