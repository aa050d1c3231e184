// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "hostmodel.h"
#include "vandrelpensioen_export.h"

#include <QColor>
#include <QWidget>

#include <memory>

namespace VandrelPensioen {

/// The pension screen: the one control a host places. Public members in their dispatch order.
///
/// A host creates it, hands it the application with SetApplication() and calls
/// Validation(Cancel, 0) before the user leaves the screen; see \ref writing_a_host.
class VANDRELPENSIOEN_EXPORT PensMain : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QColor BackColor READ BackColor WRITE setBackColor)

public:
    explicit PensMain(QWidget *parent = nullptr);  ///< An empty screen; nothing is shown until SetApplication().
    /// Removes the schemes marked RemoveOnClose (once, also when the application quits first).
    ~PensMain() override;

    /// Shows the case of Application: fills the scheme list of both participants and selects
    /// the first scheme. The list has no error trap: a HostError the host throws while the list
    /// reads the case leaves this call, and the host catches it.
    Q_INVOKABLE void SetApplication(const VandrelApplication::ApplicationPtr &Application);
    /// Checks the shown scheme as leaving the screen does: the list, the scheme and the
    /// commitments panel in turn, each telling the user in a message box what to correct and
    /// setting Cancel. When all pass and ControleNr is 0, the suite's check service runs over the
    /// whole case (HostCheck, kind 1, errors only) and the host reads its findings from
    /// HostCheck::Bevindingen(). Nothing is checked while no scheme is shown. The scheme and
    /// commitments panels trap host errors and hand them to Application::ReportError; one raised
    /// in the list or by the screen itself leaves this call as HostError, and the host catches it.
    Q_INVOKABLE void Validation(bool &Cancel, qint32 ControleNr);
    QColor BackColor() const;                 ///< Background colour of the screen and its panels.
    void setBackColor(const QColor &colour);  ///< Sets BackColor() on the screen and every panel.

    /// The scheme the two data panels show (0, 0 when none); for hosts that report on it.
    qint16 shownAanvrager() const;
    qint16 shownPensioen() const;  ///< See shownAanvrager().

protected:
    bool event(QEvent *event) override;              ///< Lays the panels out when Qt asks for it (first show, layout requests).

private:
    /// Removes the schemes marked RemoveOnClose; runs once, at quit or destruction.
    void terminateNow();

    class Private;
    std::unique_ptr<Private> d;
};

} // namespace VandrelPensioen

