// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// A seeded random user for the robustness tests: picks a visible, enabled control of a window and
// does one thing with it as a person would (type a value that fits the field or one that does
// not, Tab on, click a box, a button, a list row, pick a drop-down entry, answer a question).
// Modal dialogs the library opens with exec() are served by DialogDriver from inside their own
// event loop.

#include "usersim.h"

#include <QObject>
#include <QPointer>
#include <QRandomGenerator>
#include <QSet>
#include <QString>

#include <functional>

class QDialog;
class QWidget;

namespace Robustness {

// The seed from VANDREL_SEED, or the fixed default; tests print it when they fail.
quint32 seedFromEnvironment(quint32 fallback);

class RandomUser
{
public:
    RandomUser(quint32 seed, TestSupport::MessageRecorder &messages);

    // One random action inside window; returns a short description for the failure log.
    QString act(QWidget *window);
    // Buttons whose object name is listed here are never clicked (for instance a dialog's OK,
    // which the driver uses on purpose).
    void setAvoided(QSet<QString> names) { m_avoided = std::move(names); }
    QRandomGenerator &random() { return m_random; }

    // Typing as a person: keys go to the field that has the focus, which is not the one clicked
    // when a check holds the user in another field.
    static void typeText(QWidget *field, const QString &text);
    static void tab();

private:
    QString valueFor(QWidget *field, bool valid);

    QRandomGenerator m_random;
    TestSupport::MessageRecorder &m_messages;
    QSet<QString> m_avoided;
};

// Serves every modal dialog while it runs: up to `actions` random actions, then it is closed
// (close box or, when allowed, the named OK button). Each tick arms its successor before acting,
// so a dialog opened from a dialog is served too.
class DialogDriver : public QObject
{
public:
    using Action = std::function<void(QDialog *)>;
    explicit DialogDriver(Action action, int actions);
    ~DialogDriver() override;

    void setActionsPerDialog(int actions) { m_actions = actions; }
    int dialogsSeen() const { return m_seen.size(); }
    QStringList dialogNames() const;

private:
    void arm();
    void tick();

    Action m_action;
    int m_actions;
    bool m_stopped = false;
    QHash<QDialog *, int> m_done;
    QSet<QString> m_seen;
};

} // namespace Robustness
