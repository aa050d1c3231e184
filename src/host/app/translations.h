// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

class QCoreApplication;

namespace Zarnoveld {

// Loads Qt's own Dutch catalogue (file dialogs, context menus, command-line help) into app,
// whatever the user's locale: the program is Dutch throughout. False when the catalogue is not
// installed (Debian package qt6-translations-l10n); Qt's English texts then remain.
bool installDutchTranslations(QCoreApplication *app);

} // namespace Zarnoveld
