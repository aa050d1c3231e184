// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// zarnoveld pensioenoverzicht CASE FILE --deelnemer aanvrager|partner [--proef]: the register
// overview import without a window. Prints the preview; exit 0 applied (or, with --proef, would
// be), 1 refused (a limit, a missing partner), 2 a file that cannot be read or bad arguments.

namespace Zarnoveld::OverviewCommand {

int main(int argc, char **argv);

} // namespace Zarnoveld::OverviewCommand
