// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vandrelapplication_export.h"

#include <QString>

namespace VandrelApplication {

/// The record a control fills when a procedure fails unexpectedly and hands to
/// Application::ReportError. Procedure is written when a procedure starts; the other eight are
/// filled by the error routine, in the order they are declared here.
class VANDRELAPPLICATION_EXPORT ErrorRecord
{
public:
    QString Procedure;   ///< name of the procedure that was running
    QString Title;       ///< title of the running application
    QString Component;   ///< the component, e.g. "PensGeg"
    QString Product;     ///< always "Zarnoveld"
    QString Subject;     ///< the control's subject, e.g. "Pensioen"
    QString Message;     ///< "Er is een fout opgetreden."
    QString Number;      ///< the error number as text
    QString Description; ///< the error's description
    QString Source;      ///< where the error came from

    void clear();  ///< Empties every field.
    /// One readable block, used by hosts for their log and dialog.
    QString toText() const;
};

} // namespace VandrelApplication
