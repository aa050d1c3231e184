// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "hostmodel.h"

#include <QPointer>
#include <QWidget>

#include <functional>

class QLabel;
class QScrollArea;

namespace Zarnoveld {

// The pension screen: hosts the registered VandrelPensioen.PensMain control exactly as any host
// would, by name through the component registry, and talks to it only through its public members.
class PensionScreen : public QWidget
{
    Q_OBJECT

public:
    explicit PensionScreen(QWidget *parent = nullptr);
    ~PensionScreen() override;

    // Creates the control on first use; false with a Dutch reason when it cannot be created.
    bool ensureControl(QString *error);
    // Hands the case to the control (the control reloads itself from it).
    void setApplication(const VandrelApplication::ApplicationPtr &application);
    // Asks the control to check everything; true when the user may leave the screen.
    bool canLeave();
    // Ends the control (it then removes the schemes marked for removal).
    void release();

    QWidget *control() const { return m_control; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void fitControl();
    bool guarded(const char *procedure, const std::function<void()> &call);

    QScrollArea *m_scroll = nullptr;
    QLabel *m_problem = nullptr;
    QPointer<QWidget> m_control;
};

} // namespace Zarnoveld
