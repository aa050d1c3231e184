// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "pensionscreen.h"

#include "componentloader.h"
#include "errorlog.h"

#include <QEvent>
#include <QLabel>
#include <QMetaObject>
#include <QScrollArea>
#include <QVBoxLayout>

namespace Zarnoveld {

namespace {
const QString kProgId = QStringLiteral("VandrelPensioen.PensMain");
}

PensionScreen::PensionScreen(QWidget *parent)
    : QWidget(parent)
    , m_scroll(new QScrollArea(this))
    , m_problem(new QLabel(this))
{
    setObjectName(QStringLiteral("pensionScreen"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_scroll->setObjectName(QStringLiteral("scrPensioenen"));
    m_problem->setObjectName(QStringLiteral("lblProbleem"));
    m_problem->setWordWrap(true);
    m_problem->hide();
    layout->addWidget(m_problem);
    // The control is never squeezed below the size it asks for: a small window scrolls instead.
    // Where the window is larger, the control gets the room (see fitControl).
    m_scroll->setWidgetResizable(false);
    m_scroll->setFrameShape(QFrame::NoFrame);
    // A click on a scroll bar must only scroll. A scroll area takes the focus on a click by
    // default, which made the field being edited lose it: its check ran, its message came back
    // and the click never reached the scroll bar. Scrolling by keyboard stays with the fields.
    m_scroll->setFocusPolicy(Qt::NoFocus);
    m_scroll->viewport()->installEventFilter(this);
    layout->addWidget(m_scroll);
}

PensionScreen::~PensionScreen()
{
    release();
}

bool PensionScreen::ensureControl(QString *error)
{
    if (m_control)
        return true;
    QString reason;
    QWidget *control = VandrelPensioen::ComponentLoader::create(kProgId, nullptr, &reason);
    if (!control) {
        m_problem->setText(QStringLiteral("Het pensioenscherm kan niet worden getoond. %1").arg(reason));
        m_problem->show();
        if (error)
            *error = reason;
        return false;
    }
    m_problem->hide();
    m_control = control;
    m_scroll->setWidget(control);
    // The control lays its panels out itself and never resizes itself when one of them grows,
    // appears or disappears (a first scheme added to an empty list shows both data panels); the
    // scroll area would then cut it off at the size it had when it was empty.
    for (QObject *child : control->children())
        if (child->isWidgetType())
            child->installEventFilter(this);
    fitControl();
    return true;
}

bool PensionScreen::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_scroll->viewport()) {
        if (event->type() == QEvent::Resize)
            fitControl();
        return QWidget::eventFilter(watched, event);
    }
    switch (event->type()) {
    case QEvent::Resize:
    case QEvent::Move:
    case QEvent::Show:
    case QEvent::Hide:
        if (m_control && watched->parent() == m_control.data())
            fitControl();
        break;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

// The control gets the whole visible area, but never less than it needs: its minimum size when
// it states one, otherwise the size it asks for. A control that lays its list out over the height
// it is given then shows as many schemes as fit.
void PensionScreen::fitControl()
{
    if (!m_control)
        return;
    const QSize minimum = m_control->minimumSizeHint();
    const QSize needed = minimum.isValid() ? minimum.expandedTo(m_control->minimumSize()) : m_control->sizeHint();
    const QSize wanted = needed.expandedTo(m_scroll->viewport()->size()).boundedTo(m_control->maximumSize());
    if (m_control->size() != wanted)
        m_control->resize(wanted);
}

// The pension screen has no error trap of its own: a host error in it comes out of the call, and
// is logged and shown here like every other error report.
bool PensionScreen::guarded(const char *procedure, const std::function<void()> &call)
{
    try {
        call();
        return true;
    } catch (const VandrelApplication::HostError &error) {
        const VandrelApplication::ErrorRecord record =
            ErrorLog::recordFor(error, QString::fromLatin1(procedure), QStringLiteral("Pensioenscherm"));
        ErrorLog::append(record);
        ErrorLog::show(this, record);
        return false;
    }
}

void PensionScreen::setApplication(const VandrelApplication::ApplicationPtr &application)
{
    if (!m_control)
        return;
    guarded("SetApplication", [&] {
        QMetaObject::invokeMethod(m_control, "SetApplication", Qt::DirectConnection,
                                  Q_ARG(VandrelApplication::ApplicationPtr, application));
    });
    fitControl();
}

bool PensionScreen::canLeave()
{
    if (!m_control)
        return true;
    bool cancel = false;
    // A check that broke off on a host error lets the user go: every accepted edit is already
    // stored, and a screen that cannot finish its check would otherwise never let the user out.
    guarded("Validation", [&] {
        QMetaObject::invokeMethod(m_control, "Validation", Qt::DirectConnection, Q_ARG(bool &, cancel),
                                  Q_ARG(qint32, 0));
    });
    return !cancel;
}

void PensionScreen::release()
{
    if (!m_control)
        return;
    QWidget *control = m_scroll->takeWidget();
    m_control = nullptr;
    delete control;
}

} // namespace Zarnoveld
