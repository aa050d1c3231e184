// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "errortrap.h"

#include "messagebox.h"

#include <QGuiApplication>

namespace VandrelPensioen {

namespace {
const QString kProduct = QStringLiteral("Zarnoveld");
const QString kMessage = QStringLiteral("Er is een fout opgetreden.");
}

ErrorTrap::ErrorTrap(QString component, QString subject)
    : m_component(std::move(component))
    , m_subject(std::move(subject))
{
}

void ErrorTrap::setApplication(const VandrelApplication::ApplicationPtr &application)
{
    m_application = application;
}

void ErrorTrap::setReporter(Reporter reporter)
{
    m_reporter = std::move(reporter);
}

void ErrorTrap::reportCurrentException() noexcept
{
    try {
        throw;
    } catch (const VandrelApplication::HostError &e) {
        report(QString::number(e.number()), e.description(), e.source());
    } catch (const std::exception &e) {
        report(QStringLiteral("-1"), QString::fromLocal8Bit(e.what()), m_component);
    } catch (...) {
        report(QStringLiteral("-1"), QStringLiteral("Onbekende fout"), m_component);
    }
}

void ErrorTrap::report(const QString &number, const QString &description,
                       const QString &source) noexcept
{
    try {
        // A procedure may have set the hourglass; the user must get the normal pointer back.
        while (QGuiApplication::overrideCursor())
            QGuiApplication::restoreOverrideCursor();

        m_record.Title = m_application ? m_application->Title() : QString();
        m_record.Component = m_component;
        m_record.Product = kProduct;
        m_record.Subject = m_subject;
        m_record.Message = kMessage;
        m_record.Number = number;
        m_record.Description = description;
        m_record.Source = source;

        if (m_reporter)
            m_reporter(m_record);
        else if (m_application)
            m_application->ReportError(m_record);
        else
            VandrelControl::MessageBox::ok(nullptr, m_record.toText(), kProduct,
                                           VandrelControl::MessageBox::Icon::Critical);
    } catch (...) {
        // Reporting must never take the control down with it.
    }
}

} // namespace VandrelPensioen
