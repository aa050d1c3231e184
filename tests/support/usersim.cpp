// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "usersim.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFile>
#include <QJsonDocument>
#include <QLabel>
#include <QLineEdit>

namespace TestSupport {

MessageRecorder::MessageRecorder()
    : m_scope(new MessageBox::ScopedResponder(
          [this](const MessageBox::Request &request) { return respond(request); }))
{
}

MessageRecorder::~MessageRecorder()
{
    delete m_scope;
}

void MessageRecorder::answerNext(MessageBox::Answer answer)
{
    m_queue.push_back(answer);
}

void MessageRecorder::setDefaultQuestionAnswer(MessageBox::Answer answer)
{
    m_questionDefault = answer;
}

MessageBox::Request MessageRecorder::last() const
{
    return m_requests.isEmpty() ? MessageBox::Request{} : m_requests.last();
}

MessageBox::Answer MessageRecorder::respond(const MessageBox::Request &request)
{
    m_requests.append(request);
    if (!m_queue.empty()) {
        const auto answer = m_queue.front();
        m_queue.pop_front();
        return answer;
    }
    return request.buttons == MessageBox::Buttons::YesNo ? m_questionDefault : MessageBox::Answer::Ok;
}

bool showActive(QWidget *window)
{
    window->show();
    QApplication::setActiveWindow(window);
    window->activateWindow();
    return QTest::qWaitForWindowActive(window);
}

void typeInto(QWidget *field, const QString &text)
{
    field->setFocus(Qt::MouseFocusReason);
    QApplication::processEvents();
    if (auto *edit = qobject_cast<QLineEdit *>(field))
        edit->selectAll();
    if (!text.isEmpty())
        QTest::keyClicks(field, text);
    else
        QTest::keyClick(field, Qt::Key_Delete);
}

void pressTab(QWidget *field)
{
    QTest::keyClick(field, Qt::Key_Tab);
}

void pressShiftTab(QWidget *field)
{
    QTest::keyClick(field, Qt::Key_Backtab, Qt::ShiftModifier);
}

void pressEnter(QWidget *field)
{
    QTest::keyClick(field, Qt::Key_Return);
}

void enter(QWidget *field, const QString &text)
{
    typeInto(field, text);
    pressTab(field);
}

void click(QWidget *widget)
{
    QTest::mouseClick(widget, Qt::LeftButton, Qt::NoModifier, widget->rect().center());
}

QJsonObject exampleCase(const char *name)
{
    QFile file(QStringLiteral(VANDREL_SOURCE_DIR "/examples/") + QLatin1String(name));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QJsonDocument::fromJson(file.readAll()).object();
}

void checkLayoutAndGrab(QWidget *dialog, const QString &path)
{
    dialog->resize(dialog->sizeHint().expandedTo(dialog->minimumSizeHint()));
    QApplication::processEvents();
    const auto children = dialog->findChildren<QWidget *>();
    for (QWidget *child : children) {
        if (!child->isVisible() || !child->parentWidget() || child->objectName().startsWith(QLatin1String("qt_")))
            continue;
        QVERIFY2(child->parentWidget()->rect().contains(child->geometry()), qPrintable(child->objectName()));
        if (qobject_cast<QLabel *>(child) || qobject_cast<QAbstractButton *>(child))
            QVERIFY2(child->width() >= child->sizeHint().width(), qPrintable(child->objectName()));
    }
    QVERIFY(dialog->grab().save(path));
}

} // namespace TestSupport
