// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// The program's application object: a host error that comes out of an event (the pension screen
// and its list have no error trap of their own) is logged and shown as an error report, and the
// program goes on.

#include "e2esupport.h"
#include "errorlog.h"
#include "usersim.h"

#include <QFile>
#include <QTest>

using namespace TestSupport;

namespace {

const QEvent::Type kFailing = QEvent::Type(QEvent::User + 17);

// Stands in for a control whose event handler runs into a failing host.
class Failing : public QObject
{
public:
    int handled = 0;

    bool event(QEvent *event) override
    {
        if (event->type() != kFailing)
            return QObject::event(event);
        ++handled;
        throw VandrelApplication::HostError(VandrelApplication::HostErrorCode::StoreFailed,
                                            QStringLiteral("Het dossierbestand weigerde de wijziging."),
                                            QStringLiteral("Zarnoveld"));
    }
};

} // namespace

class TestGuard : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hostErrorOutOfAnEventIsReportedAndTheProgramGoesOn()
    {
        E2e::Sandbox sandbox;
        QVERIFY(sandbox.isValid());
        MessageRecorder messages;
        Failing control;
        control.setObjectName(QStringLiteral("LstPensioenen"));

        QEvent sent(kFailing);
        QCOMPARE(QCoreApplication::sendEvent(&control, &sent), false);
        QCoreApplication::postEvent(&control, new QEvent(kFailing));
        QCoreApplication::processEvents();

        QCOMPARE(control.handled, 2);
        QCOMPARE(messages.count(), 2);
        QCOMPARE(messages.lastTitle(), QStringLiteral("Zarnoveld - foutmelding"));
        QVERIFY(messages.lastText().contains(QStringLiteral("Er is een fout opgetreden.")));
        QVERIFY(messages.lastText().contains(QStringLiteral("Het dossierbestand weigerde de wijziging.")));
        QFile log(sandbox.logFile());
        QVERIFY(log.open(QIODevice::ReadOnly));
        const QString logged = QString::fromUtf8(log.readAll());
        QCOMPARE(logged.count(QStringLiteral("Het dossierbestand weigerde de wijziging.")), 2);
        QVERIFY(logged.contains(QStringLiteral("LstPensioenen")));
    }
};

int main(int argc, char **argv)
{
    Zarnoveld::GuardedApplication application(argc, argv);
    TestGuard test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_e2e_guard.moc"
