// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// Driving forms as a user does: type into a field, press Tab or Enter, click, and answer message
// boxes through the MessageBox responder. Every helper fails the running test (QTest) when the
// thing it needs is not there.

#include "messagebox.h"

#include <QJsonObject>
#include <QList>
#include <QObject>
#include <QString>
#include <QTest>
#include <QWidget>

#include <deque>

namespace TestSupport {

using VandrelControl::MessageBox;

// Records every message the code under test shows and answers it: with the queued answers first,
// then OK for OK-boxes and Yes for questions (or what setDefaultAnswer says).
class MessageRecorder
{
public:
    MessageRecorder();
    ~MessageRecorder();
    MessageRecorder(const MessageRecorder &) = delete;
    MessageRecorder &operator=(const MessageRecorder &) = delete;

    void answerNext(MessageBox::Answer answer);
    void setDefaultQuestionAnswer(MessageBox::Answer answer);

    int count() const { return int(m_requests.size()); }
    const QList<MessageBox::Request> &requests() const { return m_requests; }
    // The last request; an empty one when nothing was shown.
    MessageBox::Request last() const;
    QString lastText() const { return last().text; }
    QString lastTitle() const { return last().title; }
    void clear() { m_requests.clear(); }

private:
    MessageBox::Answer respond(const MessageBox::Request &request);

    QList<MessageBox::Request> m_requests;
    std::deque<MessageBox::Answer> m_queue;
    MessageBox::Answer m_questionDefault = MessageBox::Answer::Yes;
    MessageBox::ScopedResponder *m_scope = nullptr;
};

// Shows the window, makes it active and waits until it is (offscreen platform included).
bool showActive(QWidget *window);

// Finds a descendant by object name and type; fails the test when there is none.
template <typename T>
T *find(QObject *root, const QString &name)
{
    T *child = root ? root->findChild<T *>(name) : nullptr;
    if (!child)
        QTest::qFail(qPrintable(QStringLiteral("no %1 named %2").arg(
                         QString::fromLatin1(T::staticMetaObject.className()), name)),
                     __FILE__, __LINE__);
    return child;
}

// Gives the field the focus as a mouse click would, selects its text and types over it.
void typeInto(QWidget *field, const QString &text);
// Tab / Shift+Tab / Enter out of the focused field.
void pressTab(QWidget *field);
void pressShiftTab(QWidget *field);
void pressEnter(QWidget *field);
// Types the text and presses Tab: the usual way a user enters a value.
void enter(QWidget *field, const QString &text);
// A left click in the middle of the widget (buttons, check boxes, option buttons).
void click(QWidget *widget);

// A dialog at its preferred size: every visible control lies inside its parent and shows its whole
// caption; the picture is saved to path for a person to look at.
void checkLayoutAndGrab(QWidget *dialog, const QString &path);

// A bundled example case (examples/NAME) as its JSON document; empty when it cannot be read.
QJsonObject exampleCase(const char *name);

} // namespace TestSupport
