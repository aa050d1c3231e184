// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// The pension screen and its dialogs as the user sees them with the font this machine has: every
// caption must be readable in full, no field may lie over another, and the list's headers must
// show their whole caption. Each screen is also written out as a picture for a visual check.

#include "frmaouitkering.h"
#include "frmpensioenspec.h"
#include "frmspecificatiescenario.h"
#include "hostapplication.h"
#include "penslist.h"
#include "pensmain.h"
#include "usersim.h"
#include "wrapcheckbox.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScopeGuard>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>
#include <QStyleOptionButton>
#include <QTest>
#include <QTreeWidget>

using namespace VandrelApplication;
using namespace VandrelPensioen;
using namespace TestSupport;

namespace {

std::shared_ptr<Zarnoveld::HostApplication> sampleCase()
{
    return Zarnoveld::HostApplication::importJson(exampleCase("sample-couple.json"));
}

// The text as drawn: a single & marks the mnemonic and takes no room.
QString shownText(QString text)
{
    text.replace(QStringLiteral("&&"), QStringLiteral("\x01"));
    text.remove(QLatin1Char('&'));
    text.replace(QLatin1Char('\x01'), QLatin1Char('&'));
    return text;
}

QString describe(const QWidget *w)
{
    return QStringLiteral("%1 (%2)").arg(w->objectName(), QString::fromLatin1(w->metaObject()->className()));
}

bool isShown(const QWidget *w, const QWidget *window)
{
    return w->isVisibleTo(window) && w->width() > 0 && w->height() > 0;
}

// Room a caption gets inside its widget, in the way the style lays the widget out.
int roomFor(QWidget *w)
{
    QStyle *style = w->style();
    if (auto *label = qobject_cast<QLabel *>(w))
        return label->contentsRect().width() - 2 * label->margin() - qMax(0, label->indent());
    if (qobject_cast<QCheckBox *>(w) || qobject_cast<QRadioButton *>(w)) {
        QStyleOptionButton opt;
        opt.initFrom(w);
        opt.text = static_cast<QAbstractButton *>(w)->text();
        const bool check = qobject_cast<QCheckBox *>(w) != nullptr;
        return style->subElementRect(check ? QStyle::SE_CheckBoxContents
                                           : QStyle::SE_RadioButtonContents,
                                     &opt, w)
            .width();
    }
    if (auto *button = qobject_cast<QPushButton *>(w)) {
        QStyleOptionButton opt;
        opt.initFrom(w);
        opt.text = button->text();
        int room = style->subElementRect(QStyle::SE_PushButtonContents, &opt, w).width()
            - 2 * style->pixelMetric(QStyle::PM_ButtonMargin, &opt, w) / 2;
        if (!button->icon().isNull())
            room -= button->iconSize().width() + 4;
        return room;
    }
    if (auto *box = qobject_cast<QGroupBox *>(w)) {
        // The title sits on the frame, indented from both ends.
        return box->width() - 2 * style->pixelMetric(QStyle::PM_LayoutLeftMargin, nullptr, w);
    }
    return w->width();
}

QString captionOf(QWidget *w)
{
    if (auto *label = qobject_cast<QLabel *>(w))
        return label->textFormat() == Qt::RichText ? QString() : label->text();
    if (auto *button = qobject_cast<QAbstractButton *>(w))
        return shownText(button->text());
    if (auto *box = qobject_cast<QGroupBox *>(w))
        return shownText(box->title());
    return {};
}

bool isCaptioned(const QWidget *w)
{
    return qobject_cast<const QLabel *>(w) || qobject_cast<const QCheckBox *>(w)
        || qobject_cast<const QRadioButton *>(w) || qobject_cast<const QGroupBox *>(w)
        || qobject_cast<const QPushButton *>(w);
}

bool isInput(const QWidget *w)
{
    return qobject_cast<const QLineEdit *>(w) || qobject_cast<const QComboBox *>(w)
        || qobject_cast<const QAbstractButton *>(w) || qobject_cast<const QAbstractSpinBox *>(w)
        || qobject_cast<const QTreeWidget *>(w) || qobject_cast<const QLabel *>(w);
}

// Every fault a user would see on the window as it is now; empty when it is clean.
QStringList layoutFaults(QWidget *window)
{
    QStringList faults;
    const QList<QWidget *> all = window->findChildren<QWidget *>();
    for (QWidget *w : all) {
        if (!isShown(w, window))
            continue;
        // Nothing may stick out of the widget that holds it: that part is cut off.
        for (QWidget *child = w, *parent = w->parentWidget(); parent && child != window;
             child = parent, parent = parent->parentWidget()) {
            const QRect inParent(w->mapTo(parent, QPoint(0, 0)), w->size());
            if (!parent->rect().contains(inParent)) {
                faults << QStringLiteral("%1 sticks out of %2").arg(describe(w), describe(parent));
                break;
            }
        }
        if (isCaptioned(w)) {
            const QString caption = captionOf(w);
            if (!caption.isEmpty()) {
                const QFontMetrics fm = w->fontMetrics();
                const auto *label = qobject_cast<QLabel *>(w);
                const auto *wrapping = qobject_cast<WrapCheckBox *>(w);
                if (wrapping && wrapping->wrapWidth() > 0) {
                    // A caption that breaks over lines must have the height of all its lines.
                    const QRect need = fm.boundingRect(QRect(0, 0, roomFor(w), 10000),
                                                       Qt::TextWordWrap, caption);
                    if (need.height() > w->height())
                        faults << QStringLiteral("%1 \"%2\" needs %3 px height, has %4")
                                      .arg(describe(w), caption)
                                      .arg(need.height())
                                      .arg(w->height());
                } else if (label && label->wordWrap()) {
                    const QRect need = fm.boundingRect(QRect(0, 0, roomFor(w), 10000),
                                                       int(label->alignment()) | Qt::TextWordWrap,
                                                       caption);
                    if (need.height() > label->contentsRect().height())
                        faults << QStringLiteral("%1 \"%2\" needs %3 px height, has %4")
                                      .arg(describe(w), caption)
                                      .arg(need.height())
                                      .arg(label->contentsRect().height());
                } else {
                    int widest = 0;
                    for (const QString &line : caption.split(QLatin1Char('\n')))
                        widest = qMax(widest, fm.horizontalAdvance(line));
                    if (widest > roomFor(w))
                        faults << QStringLiteral("%1 \"%2\" needs %3 px, has %4")
                                      .arg(describe(w), caption)
                                      .arg(widest)
                                      .arg(roomFor(w));
                    if (!qobject_cast<QGroupBox *>(w) && fm.height() > w->height())
                        faults << QStringLiteral("%1 \"%2\" is %3 px high, text needs %4")
                                      .arg(describe(w), caption)
                                      .arg(w->height())
                                      .arg(fm.height());
                }
            }
        }
    }
    // Fields and captions that share a parent must not lie over one another.
    QList<QWidget *> parents = all;
    parents.append(window);
    for (QWidget *parent : std::as_const(parents)) {
        QList<QWidget *> siblings;
        for (QObject *o : parent->children()) {
            auto *w = qobject_cast<QWidget *>(o);
            if (w && !w->isWindow() && isShown(w, window) && isInput(w)
                && !(qobject_cast<QLabel *>(w) && qobject_cast<QLabel *>(w)->text().isEmpty()))
                siblings << w;
        }
        for (int i = 0; i < siblings.size(); ++i)
            for (int j = i + 1; j < siblings.size(); ++j)
                if (siblings[i]->geometry().intersects(siblings[j]->geometry()))
                    faults << QStringLiteral("%1 overlaps %2")
                                  .arg(describe(siblings[i]), describe(siblings[j]));
    }
    return faults;
}

// Header sections that cut off their caption.
QStringList headerFaults(QTreeWidget *view)
{
    QStringList faults;
    QHeaderView *header = view->header();
    const QFontMetrics fm = header->fontMetrics();
    const int margin = 2 * header->style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, header);
    for (int i = 0; i < view->columnCount(); ++i) {
        const QString caption = view->headerItem()->text(i);
        // A hidden key column has nothing to show.
        if (header->isSectionHidden(i) || caption.isEmpty())
            continue;
        int need = fm.horizontalAdvance(caption) + margin;
        if (header->isSortIndicatorShown() && header->sortIndicatorSection() == i)
            need += header->style()->pixelMetric(QStyle::PM_HeaderMarkSize, nullptr, header) + margin;
        if (header->sectionSize(i) < need)
            faults << QStringLiteral("column \"%1\" is %2 px, caption needs %3")
                          .arg(caption)
                          .arg(header->sectionSize(i))
                          .arg(need);
    }
    // The last section must still lie inside the list, or its caption is cut off at the edge.
    const int used = header->length();
    if (used > view->viewport()->width())
        faults << QStringLiteral("columns take %1 px of a list %2 px wide")
                      .arg(used)
                      .arg(view->viewport()->width());
    return faults;
}

void savePicture(QWidget *window, const QString &name)
{
    window->grab().save(QStringLiteral(VANDREL_BINARY_DIR "/%1.png").arg(name));
}

} // namespace

class TestLayout : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_messages = std::make_unique<MessageRecorder>(); }
    void cleanup() { m_messages.reset(); }

    // Every scheme of the sample case in turn, so each kind of scheme shows its own fields.
    void pensionScreenShowsEveryCaptionInFull()
    {
        auto app = sampleCase();
        QVERIFY(app);
        PensMain main;
        main.SetApplication(app);
        QVERIFY(showActive(&main));
        auto *view = find<QTreeWidget>(&main, QStringLiteral("LstPensioenen"));
        QVERIFY(view->topLevelItemCount() >= 2);

        for (int row = 0; row < view->topLevelItemCount(); ++row) {
            view->setCurrentItem(view->topLevelItem(row));
            QCoreApplication::processEvents();
            QVERIFY2(main.shownPensioen() >= 1, "a scheme of the sample is shown");
            const QStringList faults = layoutFaults(&main) + headerFaults(view);
            savePicture(&main, QStringLiteral("pensmain-%1").arg(row + 1));
            QVERIFY2(faults.isEmpty(),
                     qPrintable(QStringLiteral("row %1:\n").arg(row + 1) + faults.join('\n')));
        }
    }

    // An adviser who set a larger system font still reads every caption in full.
    void largerFontStillFits()
    {
        const QFont original = QApplication::font();
        QFont larger = original;
        larger.setPointSizeF(original.pointSizeF() * 1.25);
        QApplication::setFont(larger);
        const auto restore = qScopeGuard([&] { QApplication::setFont(original); });
        auto app = sampleCase();
        QVERIFY(app);
        PensMain main;
        main.SetApplication(app);
        QVERIFY(showActive(&main));
        auto *view = find<QTreeWidget>(&main, QStringLiteral("LstPensioenen"));
        const QStringList faults = layoutFaults(&main) + headerFaults(view);
        savePicture(&main, QStringLiteral("pensmain-larger-font"));
        QVERIFY2(faults.isEmpty(), qPrintable(faults.join('\n')));
    }

    // From the fifth scheme on three columns are narrowed; their captions must still fit.
    void narrowedColumnsStillShowTheirCaptions()
    {
        auto app = sampleCase();
        QVERIFY(app);
        auto applicant = app->Get_Dossier()->Get_Aanvrager(1);
        while (view_rows(app) < 6)
            applicant->AddPension();
        PensMain main;
        main.SetApplication(app);
        QVERIFY(showActive(&main));
        auto *view = find<QTreeWidget>(&main, QStringLiteral("LstPensioenen"));
        QCOMPARE(view->topLevelItemCount(), 6);
        savePicture(&main, QStringLiteral("pensmain-narrow"));
        const QStringList faults = headerFaults(view);
        QVERIFY2(faults.isEmpty(), qPrintable(faults.join('\n')));
        // The narrowed columns really are the narrow ones, so the check above saw that case.
        QVERIFY(view->columnWidth(0) < view->columnWidth(3) + 2);
    }

    // The list takes the width of the two panels below it, so W grows with the panels.
    void listIsAsWideAsThePanelsBelowIt()
    {
        auto app = sampleCase();
        QVERIFY(app);
        PensMain main;
        main.SetApplication(app);
        QVERIFY(showActive(&main));
        auto *list = find<QWidget>(&main, QStringLiteral("PensioenList"));
        auto *gegevens = find<QWidget>(&main, QStringLiteral("PensioenGegevens"));
        auto *toezegging = find<QWidget>(&main, QStringLiteral("PensioenToezegging"));
        QCOMPARE(list->x(), gegevens->x());
        QCOMPARE(list->geometry().right(), toezegging->geometry().right());
        QVERIFY(!list->geometry().intersects(gegevens->geometry()));
        QVERIFY(!gegevens->geometry().intersects(toezegging->geometry()));
    }

    // A 1920x1080 laptop at 150 % scaling is 1280x720; the host keeps a navigation column and its
    // title and menus, which leaves 1140x640 for the screen. Every scheme of the sample must be
    // usable there in a host that hands the screen all its room, without scrolling.
    void pensionScreenFitsALaptop()
    {
        auto app = sampleCase();
        QVERIFY(app);
        QScrollArea host;
        host.setFrameShape(QFrame::NoFrame);
        host.setWidgetResizable(true);
        auto *main = new PensMain;
        host.setWidget(main);
        main->SetApplication(app);
        host.resize(1140, 640);
        QVERIFY(showActive(&host));
        auto *view = find<QTreeWidget>(main, QStringLiteral("LstPensioenen"));
        QVERIFY(view->topLevelItemCount() >= 2);
        for (int row = 0; row < view->topLevelItemCount(); ++row) {
            view->setCurrentItem(view->topLevelItem(row));
            QCoreApplication::processEvents();
            QVERIFY2(main->shownPensioen() >= 1, "a scheme of the sample is shown");
            const QString where = QStringLiteral("row %1: ").arg(row + 1);
            const QSize least = main->minimumSizeHint();
            // A screen without a minimum lets a host squeeze it until fields lie over one another.
            QVERIFY2(least.isValid(), qPrintable(where + "has no minimum size"));
            const auto least_of = [&](const char *name) {
                const QWidget *w = find<QWidget>(main, QString::fromLatin1(name));
                return QStringLiteral(" %1 %2x%3").arg(QString::fromLatin1(name))
                    .arg(w->minimumSizeHint().width()).arg(w->minimumSizeHint().height());
            };
            QVERIFY2(least.width() <= 1140 && least.height() <= 640,
                     qPrintable(where + QStringLiteral("needs at least %1x%2:")
                                            .arg(least.width())
                                            .arg(least.height())
                                + least_of("PensioenList") + least_of("PensioenGegevens")
                                + least_of("PensioenToezegging")));
            qInfo("scheme %d: the screen needs at least %dx%d", row + 1, least.width(), least.height());
            // A host that places the screen at its preferred size needs no more room either.
            const QSize preferred = main->sizeHint();
            QVERIFY2(preferred.width() <= 1140 && preferred.height() <= 640,
                     qPrintable(where + QStringLiteral("prefers %1x%2").arg(preferred.width()).arg(preferred.height())));
            QVERIFY2(!host.horizontalScrollBar()->isVisible(), qPrintable(where + "scrolls sideways"));
            QVERIFY2(!host.verticalScrollBar()->isVisible(), qPrintable(where + "scrolls up and down"));
            QCOMPARE(main->size(), QSize(1140, 640));
            // The list shows at least its header and a few whole rows.
            QVERIFY2(view->viewport()->height() >= 3 * view->visualItemRect(view->topLevelItem(0)).height(),
                     qPrintable(where + QStringLiteral("list only %1 px high").arg(view->viewport()->height())));
            const QStringList faults = layoutFaults(main) + headerFaults(view);
            if (row == 0)
                savePicture(main, QStringLiteral("pensmain-1140x640"));
            QVERIFY2(faults.isEmpty(), qPrintable(where + "\n" + faults.join('\n')));
        }
    }

    // With 99 schemes the list shows as many rows as the height it is given lets it: more on a
    // taller screen, and the panels below keep their room.
    void longListTakesTheHeightLeftOver()
    {
        auto app = Zarnoveld::HostApplication::importJson(exampleCase("stress-99-in-orde.json"));
        QVERIFY(app);
        PensMain main;
        main.SetApplication(app);
        auto *view = find<QTreeWidget>(&main, QStringLiteral("LstPensioenen"));
        QVERIFY(view->topLevelItemCount() >= 50);
        view->setCurrentItem(view->topLevelItem(0));
        main.resize(1140, 640);
        QVERIFY(showActive(&main));
        main.resize(1140, 640);
        QCoreApplication::processEvents();
        const int rowHeight = view->visualItemRect(view->topLevelItem(0)).height();
        QVERIFY(rowHeight > 0);
        const int shortRows = view->viewport()->height() / rowHeight;
        auto *gegevens = find<QWidget>(&main, QStringLiteral("PensioenGegevens"));
        const int panelHeight = gegevens->height();
        QVERIFY2(gegevens->geometry().bottom() < main.height(), "the data panel is cut off");

        main.resize(1140, 940);
        QCoreApplication::processEvents();
        const int tallRows = view->viewport()->height() / rowHeight;
        QCOMPARE(gegevens->height(), panelHeight);
        // All 300 extra pixels go to the list.
        QVERIFY2(tallRows >= shortRows + 300 / rowHeight - 1,
                 qPrintable(QStringLiteral("%1 rows at 640 px, %2 at 940 px").arg(shortRows).arg(tallRows)));
        QVERIFY(shortRows >= 3);
    }

    // Each dialog opens within a 1280x720 laptop screen and shows everything there.
    void dialogsFitALaptop()
    {
        auto app = sampleCase();
        QVERIFY(app);
        auto pensioen = app->Get_Dossier()->Get_Aanvrager(1)->Get_Pensioen(1);
        auto regel = pensioen->Get_OuderdomRegel(1);
        QVERIFY(regel);
        frmPensioenSpec breakdown;
        breakdown.SetApplication(app, 1, 1);
        frmSpecificatieScenario scenario;
        scenario.Set_Application(app, regel->ScenarioOP(), regel->Dt_IngangOP(), QDate(2070, 1, 1));
        frmAoUitkering ao;
        ao.setApplication(app);
        ao.setPensioen(pensioen);
        ao.Fill_Form();
        for (QDialog *dialog : {static_cast<QDialog *>(&breakdown), static_cast<QDialog *>(&scenario),
                                static_cast<QDialog *>(&ao)}) {
            const QString name = QString::fromLatin1(dialog->metaObject()->className());
            QVERIFY(showActive(dialog));
            const QSize least = dialog->minimumSizeHint();
            QVERIFY2(least.width() <= 1280 && least.height() <= 720, qPrintable(name));
            QVERIFY2(dialog->frameGeometry().width() <= 1280 && dialog->frameGeometry().height() <= 720,
                     qPrintable(QStringLiteral("%1 opens %2x%3").arg(name)
                                    .arg(dialog->frameGeometry().width())
                                    .arg(dialog->frameGeometry().height())));
            qInfo("%s opens at %dx%d", qPrintable(name), dialog->width(), dialog->height());
            QStringList faults = layoutFaults(dialog);
            for (QTreeWidget *view : dialog->findChildren<QTreeWidget *>())
                if (isShown(view, dialog))
                    faults += headerFaults(view);
            savePicture(dialog, QStringLiteral("laptop-") + dialog->objectName());
            dialog->hide();
            QVERIFY2(faults.isEmpty(), qPrintable(name + "\n" + faults.join('\n')));
        }
    }

    void specificatieDialogShowsEveryCaptionInFull()
    {
        auto app = sampleCase();
        QVERIFY(app);
        frmPensioenSpec dialog;
        dialog.SetApplication(app, 1, 1);
        checkDialog(&dialog, QStringLiteral("frmpensioenspec"));
    }

    void scenarioDialogShowsEveryCaptionInFull()
    {
        auto app = sampleCase();
        QVERIFY(app);
        auto pensioen = app->Get_Dossier()->Get_Aanvrager(1)->Get_Pensioen(1);
        QVERIFY(pensioen && pensioen->OuderdomRegelCount() >= 1);
        auto regel = pensioen->Get_OuderdomRegel(1);
        frmSpecificatieScenario dialog;
        dialog.Set_Application(app, regel->ScenarioOP(), regel->Dt_IngangOP(),
                               QDate(2070, 1, 1));
        checkDialog(&dialog, QStringLiteral("frmspecificatiescenario"));
    }

    void disabilityDialogShowsEveryCaptionInFull()
    {
        auto app = sampleCase();
        QVERIFY(app);
        frmAoUitkering dialog;
        dialog.setApplication(app);
        dialog.setPensioen(app->Get_Dossier()->Get_Aanvrager(1)->Get_Pensioen(1));
        dialog.Fill_Form();
        checkDialog(&dialog, QStringLiteral("frmaouitkering"));
    }

private:
    static int view_rows(const std::shared_ptr<Zarnoveld::HostApplication> &app)
    {
        int n = 0;
        for (qint16 anv = 1; auto a = app->Get_Dossier()->Get_Aanvrager(anv); ++anv)
            for (qint16 pen = 1; a->Get_Pensioen(pen); ++pen)
                ++n;
        return n;
    }

    void checkDialog(QDialog *dialog, const QString &name)
    {
        QVERIFY(showActive(dialog));
        QStringList faults = layoutFaults(dialog);
        for (QTreeWidget *view : dialog->findChildren<QTreeWidget *>())
            if (isShown(view, dialog))
                faults += headerFaults(view);
        savePicture(dialog, name);
        dialog->hide();
        QVERIFY2(faults.isEmpty(), qPrintable(faults.join('\n')));
    }

    std::unique_ptr<MessageRecorder> m_messages;
};

QTEST_MAIN(TestLayout)
#include "tst_layout.moc"
