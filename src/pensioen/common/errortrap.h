// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "errorrecord.h"
#include "hostmodel.h"

#include <QString>

#include <exception>
#include <functional>

namespace VandrelPensioen {

// The error trap every control and dialog runs its procedures under. A procedure writes its name
// when it starts; when its body throws, the trap does what the suite's error routine does
// (default cursor, record created once and reused, eight fields filled, handed to the reporter)
// and the procedure ends normally. Nothing that was already written to the host is rolled back.
class ErrorTrap
{
public:
    using Reporter = std::function<void(VandrelApplication::ErrorRecord &)>;

    // component: the control's name ("PensGeg"); subject: its subject text ("Pensioen").
    ErrorTrap(QString component, QString subject);

    void setApplication(const VandrelApplication::ApplicationPtr &application);
    // Dialogs that show their own error box install a reporter; the default hands the record to
    // Application::ReportError (or shows it when no Application is known yet).
    void setReporter(Reporter reporter);

    // Runs body under the procedure's name. Returns false when it ended in an error.
    template <typename Body>
    bool run(const char *procedure, Body &&body) noexcept
    {
        const QString previous = m_record.Procedure;
        m_record.Procedure = QString::fromLatin1(procedure);
        bool ok = true;
        try {
            body();
        } catch (...) {
            ok = false;
            reportCurrentException();
        }
        // A nested procedure must not leave its name behind for its caller's later failure.
        m_record.Procedure = previous.isEmpty() ? m_record.Procedure : previous;
        return ok;
    }

    const VandrelApplication::ErrorRecord &record() const { return m_record; }
    const QString &component() const { return m_component; }
    const QString &subject() const { return m_subject; }

private:
    void reportCurrentException() noexcept;
    void report(const QString &number, const QString &description, const QString &source) noexcept;

    QString m_component;
    QString m_subject;
    VandrelApplication::ApplicationPtr m_application;
    Reporter m_reporter;
    VandrelApplication::ErrorRecord m_record;
};

} // namespace VandrelPensioen
