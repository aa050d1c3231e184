// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// The report from the zarnoveld window: "Bestand > Exporteren als PDF..." and "Bestand >
// Afdrukken..." driven as a user does, the dialogs answered the way a user would.

#include "e2esupport.h"
#include "mainwindow.h"
#include "pdftext.h"
#include "pensionscreen.h"
#include "textbox.h"
#include "usersim.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QPrintDialog>
#include <QPrinter>
#include <QTest>
#include <QTimer>

#include <sys/stat.h>

using namespace E2e;
using namespace TestSupport;
using Zarnoveld::MainWindow;

namespace {

mode_t modeOf(const QString &path)
{
    struct stat st {};
    return ::stat(QFile::encodeName(path).constData(), &st) == 0 ? (st.st_mode & 07777) : mode_t(-1);
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Runs handle on the modal dialog of type T once it is up (the static dialogs run their own loop).
template <typename T>
void whenModal(const std::function<void(T *)> &handle, bool *seen)
{
    auto *poll = new QTimer;
    poll->setInterval(20);
    QObject::connect(poll, &QTimer::timeout, poll, [poll, handle, seen] {
        if (T *dialog = qobject_cast<T *>(QApplication::activeModalWidget())) {
            poll->stop();
            poll->deleteLater();
            *seen = true;
            handle(dialog);
        }
    });
    poll->start();
    QTimer::singleShot(20000, poll, [poll] { poll->deleteLater(); });
}

} // namespace

class TestRapportWindow : public QObject
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

    void exportAsPdfFromTheMenuWritesAPrivateReport()
    {
        MessageRecorder messages;
        MainWindow window;
        QVERIFY(openShown(window, example(QStringLiteral("sample-couple.json"))));
        QAction *action = find<QAction>(&window, QStringLiteral("actExporterenPdf"));
        QCOMPARE(action->text().remove(QLatin1Char('&')), QStringLiteral("Exporteren als PDF..."));

        const QString target = m_sandbox->path(QStringLiteral("venster"));   // no suffix typed
        bool seen = false;
        whenModal<QFileDialog>([&](QFileDialog *dialog) {
            // The full name in place of the suggested one, then "Opslaan".
            if (auto *name = dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit")))
                name->setText(target);
            QMetaObject::invokeMethod(dialog, "accept");
        }, &seen);
        action->trigger();
        QVERIFY(seen);
        const QString pdf = target + QStringLiteral(".pdf");
        QVERIFY2(QFileInfo::exists(pdf), qPrintable(messages.lastText() + QDir(m_sandbox->path(QString())).entryList().join(QLatin1Char(' '))));
        QCOMPARE(messages.count(), 0);
        QCOMPARE(modeOf(pdf), mode_t(0600));
        const QString text = PdfText::squeezed(PdfText::text(pdf));
        QVERIFY(text.contains(QStringLiteral("Ria van den Berg-Smit")));
        QVERIFY(text.contains(QStringLiteral("Bevindingen van de controle")));
        // The header names the case file the user has open.
        QVERIFY(text.contains(QStringLiteral("dossier sample-couple")));
        QVERIFY(window.close());
    }

    void anExistingPdfIsReplacedOnlyAfterYes()
    {
        MessageRecorder messages;
        MainWindow window;
        QVERIFY(openShown(window, example(QStringLiteral("single.json"))));
        const QString pdf = m_sandbox->path(QStringLiteral("bestaat.pdf"));
        QFile file(pdf);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("vorige versie");
        file.close();

        messages.answerNext(MessageBox::Answer::No);
        QVERIFY(!window.exportPdfTo(pdf));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.last().buttons, MessageBox::Buttons::YesNo);
        QVERIFY(messages.lastText().contains(QStringLiteral("bestaat al")));
        QCOMPARE(contentOf(pdf), QByteArray("vorige versie"));

        messages.clear();
        messages.answerNext(MessageBox::Answer::Yes);
        QVERIFY(window.exportPdfTo(pdf));
        QCOMPARE(messages.count(), 1);
        QVERIFY(contentOf(pdf).startsWith("%PDF"));
        QCOMPARE(modeOf(pdf), mode_t(0600));
        QVERIFY(window.close());
    }

    void aLinkAsTargetIsRefusedWithAMessage()
    {
        MessageRecorder messages;
        MainWindow window;
        QString error;
        QVERIFY2(window.openCase(example(QStringLiteral("single.json")), &error), qPrintable(error));
        const QString victim = m_sandbox->path(QStringLiteral("van-een-ander"));
        QFile file(victim);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("blijft");
        file.close();
        const QString link = m_sandbox->path(QStringLiteral("koppeling.pdf"));
        QVERIFY(QFile::link(victim, link));
        QVERIFY(!window.exportPdfTo(link));
        QCOMPARE(messages.count(), 1);
        QVERIFY2(messages.lastText().contains(QStringLiteral("symbolische koppeling")), qPrintable(messages.lastText()));
        QCOMPARE(contentOf(victim), QByteArray("blijft"));

        // The open case file itself is no place for its report, whatever the user answers.
        messages.clear();
        const QString caseFile = window.currentCase()->filePath();
        const QByteArray before = contentOf(caseFile);
        QVERIFY(!before.isEmpty());
        QVERIFY(!window.exportPdfTo(caseFile));
        QCOMPARE(messages.count(), 1);
        QVERIFY2(messages.lastText().contains(QStringLiteral("het dossier zelf")), qPrintable(messages.lastText()));
        QCOMPARE(contentOf(caseFile), before);
        QVERIFY(window.close());
    }

    void aProviderStillBeingTypedIsOnTheExportedPaper()
    {
        MessageRecorder messages;
        MainWindow window;
        QWidget *control = openOnPensions(window, example(QStringLiteral("single.json")));
        QVERIFY(control);
        // Typed, not yet left: exporting first lets the pension screen accept it.
        typeInto(find<VandrelControl::TextBox>(control, QStringLiteral("txtUitvoerder")), QStringLiteral("Zwitserleven"));
        const QString pdf = m_sandbox->path(QStringLiteral("bijgewerkt.pdf"));
        QVERIFY(window.exportPdfTo(pdf));
        QVERIFY2(PdfText::text(pdf).contains(QStringLiteral("Regeling 1: Zwitserleven")), qPrintable(messages.lastText()));
        QVERIFY(window.close());
    }

    void aRefusedValueStillBeingTypedStopsTheExport()
    {
        MessageRecorder messages;
        MainWindow window;
        QWidget *control = openOnPensions(window, example(QStringLiteral("single.json")));
        QVERIFY(control);
        auto *grondslag = find<VandrelControl::TextBox>(control, QStringLiteral("TxtGrondslag"));
        const double stored = window.currentCase()->Get_Dossier()->Get_Aanvrager(1)->Get_Pensioen(1)->Grondslag();
        typeInto(grondslag, QStringLiteral("9999999"));
        const QString pdf = m_sandbox->path(QStringLiteral("geweigerd.pdf"));
        QVERIFY(!window.exportPdfTo(pdf));
        QVERIFY(messages.count() >= 1);
        QVERIFY2(messages.lastText().contains(QStringLiteral("Pensioengrondslag")), qPrintable(messages.lastText()));
        QVERIFY(!QFileInfo::exists(pdf));
        QCOMPARE(window.currentCase()->Get_Dossier()->Get_Aanvrager(1)->Get_Pensioen(1)->Grondslag(), stored);
        QVERIFY(grondslag->hasFocus());
        // Put right, the export goes ahead.
        typeInto(grondslag, QString::number(qRound(stored)));
        QVERIFY(window.exportPdfTo(pdf));
        QVERIFY(QFileInfo::exists(pdf));
        QVERIFY(window.close());
    }

    void ctrlPOpensThePrintDialogAndCancelPrintsNothing()
    {
        MessageRecorder messages;
        MainWindow window;
        QVERIFY(openShown(window, example(QStringLiteral("single.json"))));
        QAction *action = find<QAction>(&window, QStringLiteral("actAfdrukken"));
        QCOMPARE(action->text().remove(QLatin1Char('&')), QStringLiteral("Afdrukken..."));
        QCOMPARE(action->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_P));

        bool seen = false;
        whenModal<QPrintDialog>([](QPrintDialog *dialog) { dialog->reject(); }, &seen);
        QTest::keyClick(&window, Qt::Key_P, Qt::ControlModifier);
        QTRY_VERIFY(seen);
        QCOMPARE(messages.count(), 0);
        QVERIFY(window.close());
    }

    void printingToAFileFromThePrintDialogGivesTheReport()
    {
        MessageRecorder messages;
        MainWindow window;
        QVERIFY(openShown(window, example(QStringLiteral("sample-couple.json"))));
        const QString pdf = m_sandbox->path(QStringLiteral("afdruk.pdf"));
        bool seen = false;
        whenModal<QPrintDialog>([&](QPrintDialog *dialog) {
            // What choosing "print to file" and typing a name leaves in the printer.
            dialog->printer()->setOutputFormat(QPrinter::PdfFormat);
            dialog->printer()->setOutputFileName(pdf);
            dialog->done(QDialog::Accepted);
        }, &seen);
        find<QAction>(&window, QStringLiteral("actAfdrukken"))->trigger();
        QVERIFY(seen);
        QCOMPARE(messages.count(), 0);
        QVERIFY(QFileInfo::exists(pdf));
        const int pages = PdfText::pageCount(pdf);
        QVERIFY(pages >= 2);
        QVERIFY(PdfText::pageSize(pdf).contains(QStringLiteral("(A4)")));
        const QString text = PdfText::squeezed(PdfText::text(pdf));
        QVERIFY2(text.contains(QStringLiteral("pagina %1 van %1").arg(pages)), qPrintable(text.right(200)));
        QVERIFY(window.close());
    }
};

QTEST_MAIN(TestRapportWindow)
#include "tst_rapportwindow.moc"
