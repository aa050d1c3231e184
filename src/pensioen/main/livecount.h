// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// How many PensMain objects live in this process; the class factory answers DllCanUnloadNow
// from it.

namespace VandrelPensioen::LiveCount {

int pensMainObjects();

} // namespace VandrelPensioen::LiveCount
