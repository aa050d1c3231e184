// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "registerlink.h"

namespace VandrelApplication {

// Anchors the vtable here, so dynamic_cast finds the interface across library boundaries.
RegisterLink::~RegisterLink() = default;

} // namespace VandrelApplication
