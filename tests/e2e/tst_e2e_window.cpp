// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// The zarnoveld window itself: the error report a control hands to the host, and the window size
// kept between sessions.

#include "e2esupport.h"
#include "errorlog.h"
#include "mainwindow.h"
#include "usersim.h"

#include <QFile>
#include <QSettings>
#include <QTest>

using namespace E2e;
using namespace TestSupport;
using Zarnoveld::MainWindow;

class TestE2eWindow : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Sandbox> m_sandbox;

private Q_SLOTS:
    void initTestCase()
    {
        m_sandbox = std::make_unique<Sandbox>();
        QVERIFY(m_sandbox->isValid());
    }

    void reportedErrorIsShownAndLogged()
    {
        QCOMPARE(Zarnoveld::ErrorLog::path(), m_sandbox->logFile());
        QFile::remove(m_sandbox->logFile());
        MessageRecorder messages;
        MainWindow window;
        QString error;
        QVERIFY2(window.openCase(example(QStringLiteral("single.json")), &error), qPrintable(error));
        QVERIFY(showActive(&window));

        // What a control's error routine hands over when a procedure fails.
        VandrelApplication::ErrorRecord record;
        record.Procedure = QStringLiteral("TxtUitvoerder_Validation");
        record.Title = window.currentCase()->Title();
        record.Component = QStringLiteral("PensUitv");
        record.Product = QStringLiteral("Zarnoveld");
        record.Subject = QStringLiteral("Pensioenuitvoerder");
        record.Message = QStringLiteral("Er is een fout opgetreden.");
        record.Number = QStringLiteral("1004");
        record.Description = QStringLiteral("De schijf is vol.");
        record.Source = QStringLiteral("Zarnoveld.Store");
        window.currentCase()->ReportError(record);

        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastTitle(), QStringLiteral("Zarnoveld - foutmelding"));
        QCOMPARE(messages.last().icon, MessageBox::Icon::Critical);
        QCOMPARE(messages.last().buttons, MessageBox::Buttons::Ok);
        QCOMPARE(messages.lastText(), QStringLiteral("Er is een fout opgetreden.\n"
                                                     "Programma: Zarnoveld\n"
                                                     "Onderdeel: PensUitv\n"
                                                     "Product: Zarnoveld\n"
                                                     "Onderwerp: Pensioenuitvoerder\n"
                                                     "Procedure: TxtUitvoerder_Validation\n"
                                                     "Foutnummer: 1004\n"
                                                     "Omschrijving: De schijf is vol.\n"
                                                     "Bron: Zarnoveld.Store"));

        QFile log(m_sandbox->logFile());
        QVERIFY(log.open(QIODevice::ReadOnly | QIODevice::Text));
        const QStringList lines = QString::fromUtf8(log.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), 1);
        // One line per report: a time stamp, then the whole record.
        QVERIFY(QDateTime::fromString(lines.first().section(QLatin1Char(' '), 0, 0), Qt::ISODate).isValid());
        QCOMPARE(lines.first().section(QLatin1Char(' '), 1),
                 QStringLiteral("Er is een fout opgetreden. | Programma: Zarnoveld | Onderdeel: PensUitv | "
                                "Product: Zarnoveld | Onderwerp: Pensioenuitvoerder | "
                                "Procedure: TxtUitvoerder_Validation | Foutnummer: 1004 | "
                                "Omschrijving: De schijf is vol. | Bron: Zarnoveld.Store"));
        QVERIFY(window.close());
    }

    void windowKeepsItsSize()
    {
        QSettings().clear();
        QSize firstSize;
        {
            MainWindow window;
            firstSize = window.size();
            QVERIFY(showActive(&window));
            window.resize(1010, 707);
            QTRY_COMPARE(window.size(), QSize(1010, 707));
            QVERIFY(window.close());
        }
        QVERIFY(firstSize != QSize(1010, 707));
        MainWindow again;
        QCOMPARE(again.size(), QSize(1010, 707));
        QVERIFY(showActive(&again));
        QCOMPARE(again.size(), QSize(1010, 707));
        QVERIFY(again.close());
    }
};

QTEST_MAIN(TestE2eWindow)
#include "tst_e2e_window.moc"
