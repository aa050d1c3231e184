// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// zarnoveld check on a host that fails at one operation after another (every operation a clean
// check performs, in turn): the check never crashes and still reports every scheme; a fault in
// its own reading of the case makes the case unreadable; otherwise at most one scheme comes out
// differently from the clean check, and that scheme failed on the error report of the fault. An
// error raised while the screen loads a scheme must count against that scheme, not against the
// one checked before it (the click that leaves one scheme also loads the next).

#include "check.h"
#include "faultyhost.h"
#include "hostapplication.h"
#include "sanitizer.h"
#include "usersim.h"

#include <QApplication>
#include <QJsonObject>
#include <QTest>

using namespace Zarnoveld;

namespace {

// Under AddressSanitizer every fifth operation is failed, elsewhere every one.
constexpr int kStride = TestSupport::UnderAddressSanitizer ? 5 : 1;

bool sameOutcome(const Check::SchemeResult &a, const Check::SchemeResult &b)
{
    return a.passed == b.passed && a.stop.text == b.stop.text && a.messages.size() == b.messages.size();
}

} // namespace

class TestCheckFaults : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Check::Checker> m_checker;
    QJsonObject m_case;

    std::shared_ptr<Robustness::FaultyHost> freshHost()
    {
        return std::make_shared<Robustness::FaultyHost>(HostApplication::importJson(m_case));
    }

private Q_SLOTS:
    void initTestCase()
    {
        m_case = TestSupport::exampleCase("sample-couple.json");
        QVERIFY(!m_case.isEmpty());
        m_checker = std::make_unique<Check::Checker>();
        QString error;
        QVERIFY2(m_checker->prepare(&error), qPrintable(error));
    }

    void cleanupTestCase() { m_checker.reset(); }

    void everyFaultLandsOnOneScheme()
    {
        const auto cleanHost = freshHost();
        const Check::CaseResult clean = m_checker->checkCase(cleanHost, QStringLiteral("schoon"));
        QVERIFY(clean.passed());
        QCOMPARE(clean.schemes.size(), 6);
        const qint64 operations = cleanHost->plan().count();
        QVERIFY(operations > 100);

        int fired = 0;
        int unreadable = 0;
        int unchanged = 0;
        int attributed = 0;
        for (qint64 n = 1; n <= operations; n += kStride) {
            const auto host = freshHost();
            host->plan().arm(n);
            const Check::CaseResult result = m_checker->checkCase(host, QStringLiteral("fout %1").arg(n));
            if (!host->plan().fired())
                continue;
            ++fired;
            const QString injected = QStringLiteral("Schrijven naar het dossier mislukt (%1).")
                                         .arg(host->plan().firedOperation());
            if (!result.unreadable.isEmpty()) {
                QCOMPARE(result.unreadable, injected);
                QVERIFY(result.schemes.isEmpty());
                ++unreadable;
                continue;
            }
            QCOMPARE(result.schemes.size(), clean.schemes.size());
            QList<int> changed;
            for (int i = 0; i < result.schemes.size(); ++i)
                if (!sameOutcome(result.schemes.at(i), clean.schemes.at(i)))
                    changed.append(i);
            QString detail;
            for (int i : std::as_const(changed))
                detail += QStringLiteral("\n  regeling %1: %2 [%3]").arg(i + 1)
                              .arg(result.schemes.at(i).passed ? QStringLiteral("in orde") : result.schemes.at(i).stop.text)
                              .arg(result.schemes.at(i).messages.size());
            QVERIFY2(changed.size() <= 1, qPrintable(QStringLiteral("fout bij bewerking %1 (%2):%3")
                                                         .arg(n)
                                                         .arg(host->plan().firedOperation(), detail)));
            if (changed.isEmpty()) {
                ++unchanged;   // a fault in the service's own check, or in rebuilding the list
                continue;
            }
            const Check::SchemeResult &scheme = result.schemes.at(changed.first());
            QVERIFY(!scheme.passed);
            bool reported = false;
            for (const Check::Message &message : scheme.messages)
                reported = reported || (message.errorReport && message.text.contains(injected));
            QVERIFY2(reported, qPrintable(QStringLiteral("fout bij bewerking %1: %2").arg(n).arg(scheme.stop.text)));
            ++attributed;
        }
        qInfo().noquote() << QStringLiteral("%1 operations, %2 faults: %3 unreadable, %4 on one scheme, %5 on none")
                                 .arg(operations).arg(fired).arg(unreadable).arg(attributed).arg(unchanged);
        QVERIFY(fired > 0);
        QVERIFY(attributed > 0);
    }

    // The contributions are read only when a scheme is loaded. Failing the second such read fails
    // the load of the second scheme, which happens in the click that leaves the first one.
    void aLoadErrorCountsAgainstTheSchemeLoaded()
    {
        const auto cleanHost = freshHost();
        m_checker->checkCase(cleanHost, QStringLiteral("schoon"));
        const QStringList operations = cleanHost->plan().operations();
        const QString loadOnly = QStringLiteral("Pensioen::BijdrageOP");
        const qint64 first = operations.indexOf(loadOnly);
        const qint64 second = operations.indexOf(loadOnly, first + 1);
        QVERIFY(first >= 0 && second > first);

        const auto host = freshHost();
        host->plan().arm(second + 1);
        const Check::CaseResult result = m_checker->checkCase(host, QStringLiteral("laden"));
        QVERIFY(host->plan().fired());
        QCOMPARE(result.schemes.size(), 6);
        QVERIFY(result.schemes.at(0).passed);
        QVERIFY(!result.schemes.at(1).passed);
        QVERIFY(result.schemes.at(1).stop.errorReport);
        QVERIFY2(result.schemes.at(1).stop.text.contains(QStringLiteral("Fill_FraBijdrage")),
                 qPrintable(result.schemes.at(1).stop.text));
        for (int i = 2; i < 6; ++i)
            QVERIFY(result.schemes.at(i).passed);
    }
};

QTEST_MAIN(TestCheckFaults)
#include "tst_checkfaults.moc"
