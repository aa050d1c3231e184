// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "messagebox.h"

#include <QPushButton>
#include <QMessageBox>
#include <QPointer>
#include <QWidget>

namespace VandrelControl {

namespace {

MessageBox::Responder &responderSlot()
{
    static MessageBox::Responder responder;
    return responder;
}

QMessageBox::Icon toQt(MessageBox::Icon icon)
{
    switch (icon) {
    case MessageBox::Icon::None:
        return QMessageBox::NoIcon;
    case MessageBox::Icon::Information:
        return QMessageBox::Information;
    case MessageBox::Icon::Exclamation:
        return QMessageBox::Warning;
    case MessageBox::Icon::Critical:
        return QMessageBox::Critical;
    case MessageBox::Icon::Question:
        return QMessageBox::Question;
    }
    return QMessageBox::NoIcon;
}

MessageBox::Answer showReal(QWidget *parent, const MessageBox::Request &request)
{
    QPointer<QWidget> owner = parent;
    QMessageBox box(parent);
    box.setWindowTitle(request.title);
    box.setText(request.text);
    box.setIcon(toQt(request.icon));
    // Our own button texts: the Dutch wording must not depend on a Qt translation being installed.
    MessageBox::Answer answer = MessageBox::Answer::Ok;
    if (request.buttons == MessageBox::Buttons::YesNo) {
        QPushButton *yes = box.addButton(QMessageBox::Yes);
        QPushButton *no = box.addButton(QMessageBox::No);
        yes->setText(QStringLiteral("Ja"));
        no->setText(QStringLiteral("Nee"));
        box.setDefaultButton(QMessageBox::Yes);
        box.setEscapeButton(no);
        box.exec();
        answer = box.clickedButton() == yes ? MessageBox::Answer::Yes : MessageBox::Answer::No;
    } else {
        QPushButton *ok = box.addButton(QMessageBox::Ok);
        ok->setText(QStringLiteral("OK"));
        box.setDefaultButton(QMessageBox::Ok);
        box.setEscapeButton(ok);
        box.exec();
    }
    // The window manager does not always hand activation back to the parent once the box closes.
    if (owner && owner->window()->isVisible())
        owner->window()->activateWindow();
    return answer;
}

} // namespace

void MessageBox::setResponder(Responder responder)
{
    responderSlot() = std::move(responder);
}

bool MessageBox::hasResponder()
{
    return bool(responderSlot());
}

MessageBox::Answer MessageBox::show(QWidget *parent, const Request &request)
{
    // Copied so a responder that replaces itself while answering stays alive until it returns.
    if (Responder responder = responderSlot())
        return responder(request);
    return showReal(parent, request);
}

void MessageBox::ok(QWidget *parent, const QString &text, const QString &title, Icon icon)
{
    show(parent, Request{title, text, icon, Buttons::Ok});
}

bool MessageBox::yesNo(QWidget *parent, const QString &text, const QString &title, Icon icon)
{
    return show(parent, Request{title, text, icon, Buttons::YesNo}) == Answer::Yes;
}

MessageBox::ScopedResponder::ScopedResponder(Responder responder)
    : m_previous(std::exchange(responderSlot(), std::move(responder)))
{
}

MessageBox::ScopedResponder::~ScopedResponder()
{
    responderSlot() = std::move(m_previous);
}

} // namespace VandrelControl
