// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "check.h"

#include "caseaddress.h"

#include "commands.h"
#include "errorlog.h"
#include "terminal.h"
#include "componentloader.h"
#include "hostcheck.h"
#include "messagebox.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonParseError>
#include <QMetaObject>
#include <QPointer>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTreeWidget>
#include <QWidget>

#include <algorithm>
#include <functional>
#include <vector>

#include <unistd.h>

namespace Zarnoveld::Check {

using namespace VandrelApplication;
using VandrelControl::MessageBox;

namespace {

const QString kProgId = QStringLiteral("VandrelPensioen.PensMain");

// ---------------------------------------------------------------------------------------------
// The host may only hand the screen an Application and ask it to validate. So the check drives
// the screen as a user would: it validates the scheme shown, clicks the next row of the list when
// that scheme passes, and deletes a scheme that stops the user to get past it. The check works on
// a view of the case, in which
//   - only the participant being checked shows schemes (nothing checks across participants, and
//     the list stays as short as it can be);
//   - "deleting" a scheme deletes nothing: the view gives the scheme after it the number 1 by
//     swapping it with the scheme that had it, so the list's own reload after a delete selects
//     the next scheme without validating the one that failed, and finds every other row as it
//     was. Every scheme stays visible to the checks that look at all schemes of the participant
//     (the employment choice), which do not depend on the order;
//   - deleting the last scheme of a participant moves the view on to the next participant, and
//     after the last one to no schemes at all, which leaves the screen empty for the next case.
// All data objects are the case's own; only the numbering of the scheme lists differs.

class SchemeView;

class ViewAanvrager : public Aanvrager
{
public:
    ViewAanvrager(AanvragerPtr real, SchemeView &view) : m_real(std::move(real)), m_view(view)
    {
        // Nothing in a check adds or removes a real scheme, so the count holds for the view's life.
        while (m_real->Get_Pensioen(qint16(m_count + 1)))
            ++m_count;
        startAt(1);
    }

    qint16 Anv_Id() const override { return m_real->Anv_Id(); }
    QString Naam() const override { return m_real->Naam(); }
    void setNaam(const QString &value) override { m_real->setNaam(value); }
    QDate GeboorteDatum() const override { return m_real->GeboorteDatum(); }
    void setGeboorteDatum(const QDate &value) override { m_real->setGeboorteDatum(value); }
    quint8 Categorie() const override { return m_real->Categorie(); }
    void setCategorie(quint8 value) override { m_real->setCategorie(value); }
    qint16 AowLeeftijd() const override { return m_real->AowLeeftijd(); }
    QDate Dt_EindeInkomen() const override { return m_real->Dt_EindeInkomen(); }
    qint32 AgeOnDate(const QDate &date) const override { return m_real->AgeOnDate(date); }
    DienstverbandPtr Get_Dienstverband(qint16 index) override { return m_real->Get_Dienstverband(index); }
    qint16 AddDienstverband() override { return m_real->AddDienstverband(); }
    void RemoveDienstverband(qint16 index) override { m_real->RemoveDienstverband(index); }

    PensioenPtr Get_Pensioen(qint16 Pen_Id) override;
    // Renumbering under the screen's feet would make the view lie; nothing in a check adds a
    // scheme, so one that tries is reported as an error.
    qint16 AddPension() override
    {
        throw HostError(HostErrorCode::InvalidState,
                        QStringLiteral("Tijdens de controle worden geen pensioenregelingen toegevoegd."),
                        QStringLiteral("zarnoveld check"));
    }
    void RemovePension(qint16 Pen_Id) override;

    qint16 count() const { return m_count; }
    // The real number of the scheme the view numbers Pen_Id, 0 when there is none.
    qint16 realNumber(qint16 Pen_Id) const
    {
        if (Pen_Id < 1 || Pen_Id > m_count)
            return 0;
        return m_order[size_t(Pen_Id - 1)];
    }
    // The view's number of the real scheme `real`, 0 when there is none.
    qint16 viewNumber(qint16 real) const
    {
        const auto at = std::find(m_order.cbegin(), m_order.cend(), real);
        return at == m_order.cend() ? 0 : qint16(at - m_order.cbegin() + 1);
    }
    // Numbers the schemes in their real order turned so that `real` comes first.
    void startAt(qint16 real)
    {
        m_order.resize(size_t(m_count));
        for (qint16 n = 0; n < m_count; ++n)
            m_order[size_t(n)] = qint16((real - 1 + n) % m_count + 1);
    }
    // Gives the real scheme `real` the number 1 by swapping it with the scheme there; every other
    // scheme keeps its number, so the list the screen fills again afterwards changes in two rows.
    void bringToFront(qint16 real)
    {
        if (const qint16 at = viewNumber(real); at > 1)
            std::swap(m_order[0], m_order[size_t(at - 1)]);
    }

private:
    AanvragerPtr m_real;
    SchemeView &m_view;
    qint16 m_count = 0;
    std::vector<qint16> m_order;   // the real number of view number n at n - 1
};

class ViewDossier : public Dossier
{
public:
    explicit ViewDossier(SchemeView &view) : m_view(view) {}

    AanvragerPtr Get_Aanvrager(qint16 Anv_Id) override;
    qint16 AddAanvrager() override { throw refused(); }
    void RemoveAanvrager(qint16) override { throw refused(); }
    qint32 SyncVlaggen() const override;
    void setSyncVlaggen(qint32 value) override;

private:
    static HostError refused()
    {
        return HostError(HostErrorCode::InvalidState,
                         QStringLiteral("Tijdens de controle worden geen deelnemers toegevoegd of verwijderd."),
                         QStringLiteral("zarnoveld check"));
    }

    SchemeView &m_view;
};

class SchemeView : public Application
{
public:
    explicit SchemeView(ApplicationPtr real) : m_real(std::move(real))
    {
        m_dossier = m_real->Get_Dossier();
        for (qint16 n = 1; m_dossier; ++n) {
            AanvragerPtr aanvrager = m_dossier->Get_Aanvrager(n);
            if (!aanvrager)
                break;
            m_aanvragers.push_back(std::make_shared<ViewAanvrager>(aanvrager, *this));
        }
        m_viewDossier = std::make_shared<ViewDossier>(*this);
        m_current = firstWithSchemesFrom(1);
    }

    // A closed view has no case: a control that still holds it (its end-of-life clean-up walks
    // the case and removes schemes) finds nothing to do.
    void close() { m_closed = true; }
    void reopen() { m_closed = false; }

    DossierPtr Get_Dossier() override { return m_closed || !m_dossier ? nullptr : m_viewDossier; }
    ParametersPtr Get_Parameters() override { return m_real->Get_Parameters(); }
    void ReportError(ErrorRecord &record) override
    {
        if (m_onError)
            m_onError(record);
    }
    QString Title() const override { return m_real->Title(); }
    QIcon Icon() const override { return m_real->Icon(); }

    const DossierPtr &realDossier() const { return m_dossier; }
    qint16 participantCount() const { return qint16(m_aanvragers.size()); }
    std::shared_ptr<ViewAanvrager> participant(qint16 Anv_Id) const
    {
        return Anv_Id >= 1 && Anv_Id <= participantCount() ? m_aanvragers[size_t(Anv_Id - 1)] : nullptr;
    }
    // The participant whose schemes the view shows, 0 once every participant is done.
    qint16 current() const { return m_current; }
    // Shows the participant's schemes with its real scheme `real` first.
    void showFrom(qint16 Anv_Id, qint16 real)
    {
        m_current = Anv_Id;
        if (std::shared_ptr<ViewAanvrager> aanvrager = participant(Anv_Id))
            aanvrager->startAt(real);
    }
    // The screen deleted the scheme the view numbers Pen_Id of the current participant: the next
    // one comes first, or after the participant's last, the next participant's first.
    void schemeDone(qint16 Anv_Id, qint16 Pen_Id)
    {
        std::shared_ptr<ViewAanvrager> aanvrager = participant(Anv_Id);
        if (!aanvrager || Anv_Id != m_current)
            return;
        const qint16 real = aanvrager->realNumber(Pen_Id);
        if (real >= aanvrager->count())
            showFrom(firstWithSchemesFrom(qint16(Anv_Id + 1)), 1);
        else
            aanvrager->bringToFront(qint16(real + 1));
    }

    std::function<void(const ErrorRecord &)> m_onError;

private:
    qint16 firstWithSchemesFrom(qint16 Anv_Id) const
    {
        for (qint16 n = Anv_Id; n <= participantCount(); ++n)
            if (participant(n)->count() > 0)
                return n;
        return 0;
    }

    ApplicationPtr m_real;
    DossierPtr m_dossier;
    DossierPtr m_viewDossier;
    std::vector<std::shared_ptr<ViewAanvrager>> m_aanvragers;
    qint16 m_current = 0;
    bool m_closed = false;
};

PensioenPtr ViewAanvrager::Get_Pensioen(qint16 Pen_Id)
{
    if (m_view.current() != Anv_Id())
        return nullptr;
    const qint16 real = realNumber(Pen_Id);
    return real > 0 ? m_real->Get_Pensioen(real) : nullptr;
}

void ViewAanvrager::RemovePension(qint16 Pen_Id)
{
    m_view.schemeDone(Anv_Id(), Pen_Id);
}

AanvragerPtr ViewDossier::Get_Aanvrager(qint16 Anv_Id)
{
    return m_view.participant(Anv_Id);
}

qint32 ViewDossier::SyncVlaggen() const
{
    return m_view.realDossier()->SyncVlaggen();
}

void ViewDossier::setSyncVlaggen(qint32 value)
{
    m_view.realDossier()->setSyncVlaggen(value);
}

QString deelnemer(qint16 anvId)
{
    return anvId == 1 ? QStringLiteral("Aanvrager") : QStringLiteral("Partner");
}

} // namespace

// ---------------------------------------------------------------------------------------------

bool CaseResult::passed() const
{
    if (!unreadable.isEmpty())
        return false;
    for (const SchemeResult &scheme : schemes)
        if (!scheme.passed)
            return false;
    return true;
}

std::shared_ptr<HostApplication> loadInMemory(const QString &path)
{
    // A case in the office's database is read beside whoever works in it, as one snapshot.
    if (const QString address = Commands::caseAddress(path); CaseAddress::isServer(address))
        return HostApplication::importJson(HostApplication::openForReading(address)->exportJson());
    const QFileInfo info(path);
    if (!info.exists())
        throw HostError(HostErrorCode::StoreFailed, QStringLiteral("Het bestand %1 bestaat niet.").arg(path));
    if (!info.isFile() || !info.isReadable())
        throw HostError(HostErrorCode::StoreFailed, QStringLiteral("Het bestand %1 kan niet worden gelezen.").arg(path));

    QJsonObject document;
    if (path.endsWith(QStringLiteral(".json"), Qt::CaseInsensitive)) {
        document = Commands::readJsonCase(path);
    } else {
        // A copy, write-ahead log included, is opened instead of the file itself: opening may
        // migrate or recover it, and a case another program has open must still be checkable.
        QTemporaryDir scratch;
        if (!scratch.isValid())
            throw HostError(HostErrorCode::StoreFailed, QStringLiteral("Er is geen tijdelijke map voor de controle."));
        const QString copy = scratch.filePath(QStringLiteral("controle") + Commands::caseSuffix());
        for (const QString &suffix : {QString(), QStringLiteral("-wal")}) {
            if (QFileInfo::exists(path + suffix) && !QFile::copy(path + suffix, copy + suffix))
                throw HostError(HostErrorCode::StoreFailed, QStringLiteral("Het bestand %1 kan niet worden gelezen.").arg(path));
        }
        try {
            document = HostApplication::openFile(copy)->exportJson();
        } catch (const HostError &e) {
            // The user knows the file by the name they gave, never by the copy's.
            throw HostError(HostErrorCode::StoreFailed, QString(e.description())
                                                            .replace(copy, path)
                                                            .replace(QFileInfo(copy).fileName(), QFileInfo(path).fileName()));
        }
    }
    return HostApplication::importJson(document);
}

// ---------------------------------------------------------------------------------------------

class Checker::Private
{
public:
    bool createControl(QString *error);
    void dropControl();
    bool call(const std::function<void()> &action);
    bool show(const std::shared_ptr<SchemeView> &view);
    int currentRow() const;
    bool checkShown(SchemeView &view, qint16 anvId, qint16 real, SchemeResult &result, bool afterFailure);
    void judge(SchemeResult &result, bool cancel, const QList<Message> &messages);
    static bool isLoadError(const Message &message);
    static QList<Message> loadErrors(const QList<Message> &messages);

    QPointer<QWidget> control;
    QPointer<QTreeWidget> list;          // the control's scheme list, as the user clicks it
    QPointer<QAbstractButton> deleteButton;
    std::shared_ptr<SchemeView> shown;   // the view the control holds
    QList<Message> captured;
    QList<Message> loading;   // what the screen reported while loading the scheme now shown
};

bool Checker::Private::createControl(QString *error)
{
    QString reason;
    QWidget *widget = VandrelPensioen::ComponentLoader::create(kProgId, nullptr, &reason);
    if (!widget) {
        if (error)
            *error = reason;
        return false;
    }
    // Never shown, mapped or painted: the check has no screen. The checks judge what the panels
    // enable and show of their own (isEnabledTo, isVisibleTo), which a window that is not shown
    // keeps exactly; a shown one would also lay out and show every field of both panels each
    // time the screen hides them between two schemes, which cost more than the checks themselves.
    widget->setAttribute(Qt::WA_DontShowOnScreen);
    widget->setUpdatesEnabled(false);
    control = widget;
    list = widget->findChild<QTreeWidget *>(QStringLiteral("LstPensioenen"));
    deleteButton = widget->findChild<QAbstractButton *>(QStringLiteral("cmdVerwijder"));
    if (!list || !deleteButton) {
        if (error)
            *error = QStringLiteral("Het pensioenscherm heeft geen lijst met pensioenregelingen.");
        dropControl();
        return false;
    }
    return true;
}

void Checker::Private::dropControl()
{
    loading.clear();
    if (shown)
        shown->close();
    shown.reset();
    delete control.data();
    control = nullptr;
}

// PensMain and its list have no error trap of their own: a host error in them comes out of the
// call, and a host catches it. The check notes it as the error report a user would have seen and
// says whether the screen got through (false: its state is unknown, so it is not used again).
bool Checker::Private::call(const std::function<void()> &action)
{
    try {
        action();
        return true;
    } catch (const HostError &e) {
        captured.append({QStringLiteral("Zarnoveld"),
                         QStringLiteral("Er is een fout opgetreden. (%1)").arg(e.description()), false, true, {}});
    }
    return false;
}

bool Checker::Private::show(const std::shared_ptr<SchemeView> &view)
{
    captured.clear();
    const bool shownWell = call([&] {
        QMetaObject::invokeMethod(control, "SetApplication", Qt::DirectConnection,
                                  Q_ARG(VandrelApplication::ApplicationPtr, view));
    });
    if (shown && shown != view)
        shown->close();
    shown = view;
    loading = captured;
    captured.clear();
    return shownWell;
}

int Checker::Private::currentRow() const
{
    QTreeWidgetItem *item = list ? list->currentItem() : nullptr;
    return item && item->isSelected() ? list->indexOfTopLevelItem(item) : -1;
}

// Checks the scheme shown and moves the screen past it, as a user leaves a scheme: by clicking the
// next row, for which the screen first runs its full check on the scheme shown (the very check the
// host asks for) and keeps that scheme when the check stops the user; or, for the participant's
// last scheme, on the host's request. A scheme that stops the user, and the participant's last,
// is then deleted from the view (see above), which after the last scheme of the case also leaves
// the screen empty. A refused click costs the screen a rebuilt list, and so does the delete that
// follows; so after a scheme that failed, the next is checked on request first and clicked past
// only when it passes (schemes that fail tend to come together, from one import). False when the
// screen did not follow; the caller then starts afresh.
bool Checker::Private::checkShown(SchemeView &view, qint16 anvId, qint16 real, SchemeResult &result,
                                  bool afterFailure)
{
    const std::shared_ptr<ViewAanvrager> aanvrager = view.participant(anvId);
    const int row = currentRow();
    // The row of the participant's next scheme: after a delete it may stand anywhere in the list.
    const int next = real < aanvrager->count() ? aanvrager->viewNumber(qint16(real + 1)) - 1 : -1;
    bool cancel = false;
    captured.clear();
    const bool nextFollows = next >= 0 && next != row && next < list->topLevelItemCount();
    if (afterFailure || !nextFollows) {
        const bool validated = call([&] {
            QMetaObject::invokeMethod(control, "Validation", Qt::DirectConnection, Q_ARG(bool &, cancel),
                                      Q_ARG(qint32, 0));
        });
        judge(result, cancel, captured);
        if (!validated)
            return false;
        if (!cancel && nextFollows) {
            // It passed, so the check the click runs once more is quiet and lets the screen move on.
            captured.clear();
            const bool clicked = call([&] { list->setCurrentItem(list->topLevelItem(next)); });
            loading = clicked ? loadErrors(captured) : captured;
            return clicked && currentRow() == next;
        }
    } else {
        // A host error out of the click is the scheme's being left: the user saw it on leaving.
        const bool clicked = call([&] { list->setCurrentItem(list->topLevelItem(next)); });
        cancel = currentRow() != next;
        if (clicked && !cancel) {
            // The click checked this scheme and then loaded the next one: an error report of the
            // loading belongs to the next scheme.
            QList<Message> own;
            for (const Message &message : std::as_const(captured))
                if (!isLoadError(message))
                    own.append(message);
            judge(result, false, own);
            loading = loadErrors(captured);
            return true;
        }
        judge(result, cancel, captured);
        if (!clicked || currentRow() != row)
            return false;
    }
    // Nothing is checked on the way: all that the screen says belongs to loading the next scheme.
    captured.clear();
    const bool deleted = call([&] { deleteButton->click(); });
    loading = captured;
    return deleted && (view.current() == 0 ? list->topLevelItemCount() == 0 : currentRow() == 0);
}

// The error reports of loading a scheme among the messages of a click: every report that does not
// come from a check (the screen checks before it loads, in "Validation" and the fields' own
// "..._Validation" procedures).
bool Checker::Private::isLoadError(const Message &message)
{
    return message.errorReport && message.procedure != QLatin1String("Validation")
           && !message.procedure.endsWith(QLatin1String("_Validation"));
}

QList<Message> Checker::Private::loadErrors(const QList<Message> &messages)
{
    QList<Message> errors;
    for (const Message &message : messages)
        if (isLoadError(message))
            errors.append(message);
    return errors;
}

// What the messages of one check mean for its scheme.
void Checker::Private::judge(SchemeResult &result, bool cancel, const QList<Message> &messages)
{
    // What loading the scheme reported comes first, as the user saw it first.
    result.messages = loading + messages;
    loading.clear();
    const Message *errorReport = nullptr;
    const Message *lastBox = nullptr;
    for (const Message &message : std::as_const(result.messages)) {
        if (message.errorReport && !errorReport)
            errorReport = &message;
        if (!message.errorReport && !message.question)
            lastBox = &message;
    }
    // The chain stops at the control that set Cancel, right after its message: the last box
    // shown is the one that stops the user. An error report stops nothing by itself, but the user
    // saw "Er is een fout opgetreden." and the scheme cannot be trusted, so it fails too.
    if (cancel) {
        result.passed = false;
        if (lastBox)
            result.stop = *lastBox;
        else if (errorReport)
            result.stop = *errorReport;
        else
            result.stop = {QString(), QStringLiteral("Het pensioenscherm laat de gebruiker niet verder, zonder melding."), false, false, {}};
    } else if (errorReport) {
        result.passed = false;
        result.stop = *errorReport;
    }
}

Checker::Checker()
    : d(std::make_unique<Private>())
{
}

Checker::~Checker()
{
    d->dropControl();
}

bool Checker::prepare(QString *error)
{
    if (!Commands::ensureRegistered(error))
        return false;
    if (!d->control && !d->createControl(error))
        return false;
    return true;
}

CaseResult Checker::checkCase(const ApplicationPtr &application, const QString &source,
                              const Progress &progress)
{
    CaseResult result;
    result.source = source;

    // The service's findings on the case as stored, before loading the screen fills anything in.
    {
        ApplicationPtr app = application;
        HostCheck::instance().RunHostCheck(app, 1, QDate(), 1, QDate());
        result.hostFindings = HostCheck::instance().Bevindingen();
    }

    // Every message is answered as a user who wants to go on would: OK, and Yes to a question.
    MessageBox::ScopedResponder responder([this](const MessageBox::Request &request) {
        const bool question = request.buttons == MessageBox::Buttons::YesNo;
        d->captured.append({request.title, request.text, question, false, {}});
        return question ? MessageBox::Answer::Yes : MessageBox::Answer::Ok;
    });

    // The check's own reading of the case (what to check, and the names for the report) comes
    // first: a case that cannot even be read is reported as such, not as failing schemes.
    std::shared_ptr<SchemeView> view;
    try {
        view = std::make_shared<SchemeView>(application);
        for (qint16 anvId = 1; anvId <= view->participantCount(); ++anvId) {
            const AanvragerPtr aanvrager = view->realDossier()->Get_Aanvrager(anvId);
            const QString naam = aanvrager->Naam();
            for (qint16 real = 1; real <= view->participant(anvId)->count(); ++real) {
                SchemeResult scheme;
                scheme.anvId = anvId;
                scheme.penId = real;
                scheme.naam = naam;
                const PensioenPtr pensioen = aanvrager->Get_Pensioen(real);
                scheme.uitvoerder = pensioen ? pensioen->Uitvoerder().trimmed() : QString();
                result.schemes.append(scheme);
            }
        }
    } catch (const HostError &e) {
        result.schemes.clear();
        result.unreadable = e.description();
        return result;
    }
    view->m_onError = [this](const ErrorRecord &record) {
        d->captured.append({record.Subject.isEmpty() ? record.Title : record.Subject,
                            QStringLiteral("%1 (%2 in %3: %4)")
                                .arg(record.Message, record.Procedure, record.Component, record.Description),
                            false, true, record.Procedure});
    };
    const int total = int(result.schemes.size());
    int done = 0;

    bool fresh = true;   // the control has yet to be handed the view, turned to the next scheme
    bool afterFailure = false;
    for (SchemeResult &scheme : result.schemes) {
        const qint16 anvId = scheme.anvId;
        const qint16 real = scheme.penId;
        const std::shared_ptr<ViewAanvrager> aanvrager = view->participant(anvId);
        if (fresh) {
            view->showFrom(anvId, real);
            if (d->control || d->createControl(nullptr))
                fresh = !d->show(view);
        }
        if (fresh || !d->control || view->current() != anvId
            || aanvrager->realNumber(qint16(d->currentRow() + 1)) != real) {
            // Not shown, so not checkable; what the screen reported while trying is the reason.
            scheme.passed = false;
            scheme.messages = d->loading;
            scheme.stop = !d->loading.isEmpty() ? d->loading.first()
                          : d->control ? Message{QString(), QStringLiteral("Het pensioenscherm toont deze regeling niet."), false, true, {}}
                                       : Message{QString(), QStringLiteral("Het pensioenscherm kan niet worden gemaakt."), false, true, {}};
            // The next scheme gets a fresh control.
            d->dropControl();
            view->reopen();
            fresh = true;
        } else {
            fresh = !d->checkShown(*view, anvId, real, scheme, afterFailure);
            if (fresh) {
                // The screen did not follow (a check that was not quiet the second time, a host
                // error on the way): the next scheme gets a fresh control.
                d->dropControl();
                view->reopen();
            }
        }
        afterFailure = !scheme.passed;
        if (progress)
            progress(++done, total);
    }
    // The next case must not find this one's view in the control.
    view->close();
    return result;
}

// ---------------------------------------------------------------------------------------------

QString legend()
{
    return QStringLiteral("Per pensioenregeling staat de eerste melding die de gebruiker zou tegenhouden bij het "
                          "verlaten van het pensioenscherm. Vragen met Ja/Nee (zoals \"LET OP!\") zijn met Ja "
                          "beantwoord en houden niemand tegen.");
}

QString schemeLabel(const SchemeResult &scheme)
{
    return QStringLiteral("%1 %2, regeling %3 (%4)")
        .arg(deelnemer(scheme.anvId), scheme.naam.isEmpty() ? QStringLiteral("(zonder naam)") : scheme.naam)
        .arg(scheme.penId)
        .arg(scheme.uitvoerder.isEmpty() ? QStringLiteral("geen uitvoerder") : scheme.uitvoerder);
}

namespace {

QString oneLine(QString text)
{
    return text.replace(QLatin1Char('\n'), QLatin1Char(' ')).simplified();
}

} // namespace

QString schemeLine(const SchemeResult &scheme)
{
    QString line = schemeLabel(scheme) + QStringLiteral(": ");
    if (scheme.passed) {
        line += QStringLiteral("in orde");
    } else {
        line += QStringLiteral("FOUT");
        if (!scheme.stop.title.isEmpty())
            line += QStringLiteral(" [%1]").arg(scheme.stop.title);
        line += QLatin1Char(' ') + oneLine(scheme.stop.text);
    }
    int questions = 0;
    for (const Message &m : scheme.messages)
        questions += m.question ? 1 : 0;
    if (questions > 0)
        line += QStringLiteral(" (%1 %2 met Ja beantwoord)").arg(questions).arg(questions == 1 ? QStringLiteral("vraag") : QStringLiteral("vragen"));
    return line;
}

QList<Finding> findings(const CaseResult &result)
{
    QList<Finding> list;
    if (!result.unreadable.isEmpty())
        list.append({0, 0, QStringLiteral("NIET GELEZEN: ") + result.unreadable});
    for (const SchemeResult &scheme : result.schemes)
        if (!scheme.passed)
            list.append({scheme.anvId, scheme.penId, schemeLine(scheme)});
    for (const QString &remark : result.hostFindings)
        list.append({0, 0, remark});
    return list;
}

QString textReport(const QList<CaseResult> &cases)
{
    QString report;
    QTextStream out(&report);
    int total = 0;
    int failed = 0;
    int unreadable = 0;
    for (const CaseResult &c : cases) {
        out << "Dossier " << Terminal::escaped(c.source) << "\n";
        if (!c.unreadable.isEmpty()) {
            ++unreadable;
            out << "  NIET GELEZEN: " << Terminal::escaped(c.unreadable) << "\n\n";
            continue;
        }
        if (c.schemes.isEmpty())
            out << "  Geen pensioenregelingen.\n";
        for (const SchemeResult &scheme : c.schemes) {
            ++total;
            failed += scheme.passed ? 0 : 1;
            out << "  " << Terminal::escaped(schemeLine(scheme)) << "\n";
        }
        if (!c.hostFindings.isEmpty()) {
            out << "  Opmerkingen van de controledienst (houden de gebruiker niet tegen):\n";
            for (const QString &finding : c.hostFindings)
                out << "    - " << Terminal::escaped(finding) << "\n";
        }
        out << "\n";
    }
    out << "Resultaat: " << total << (total == 1 ? " regeling" : " regelingen") << " gecontroleerd, "
        << (total - failed) << " in orde, " << failed << " met een fout";
    if (unreadable > 0)
        out << ", " << unreadable << (unreadable == 1 ? " dossier" : " dossiers") << " niet gelezen";
    out << ".\n\n" << legend() << "\n";
    return report;
}

QJsonObject jsonReport(const QList<CaseResult> &cases)
{
    const auto messageJson = [](const Message &m) {
        return QJsonObject{{QStringLiteral("titel"), m.title},
                           {QStringLiteral("tekst"), m.text},
                           {QStringLiteral("soort"), m.errorReport ? QStringLiteral("foutrapport")
                                                     : m.question ? QStringLiteral("vraag")
                                                                  : QStringLiteral("melding")},
                           {QStringLiteral("antwoord"), m.question ? QStringLiteral("Ja") : QStringLiteral("OK")}};
    };
    QJsonArray dossiers;
    for (const CaseResult &c : cases) {
        QJsonObject dossier{{QStringLiteral("bestand"), c.source}, {QStringLiteral("geslaagd"), c.passed()}};
        if (!c.unreadable.isEmpty())
            dossier.insert(QStringLiteral("fout"), c.unreadable);
        QJsonArray regelingen;
        for (const SchemeResult &s : c.schemes) {
            QJsonObject regeling{{QStringLiteral("deelnemer"), deelnemer(s.anvId)},
                                 {QStringLiteral("Anv_Id"), s.anvId},
                                 {QStringLiteral("naam"), s.naam},
                                 {QStringLiteral("Pen_Id"), s.penId},
                                 {QStringLiteral("uitvoerder"), s.uitvoerder},
                                 {QStringLiteral("geslaagd"), s.passed}};
            regeling.insert(QStringLiteral("melding"), s.passed ? QJsonValue() : QJsonValue(messageJson(s.stop)));
            QJsonArray all;
            for (const Message &m : s.messages)
                all.append(messageJson(m));
            regeling.insert(QStringLiteral("meldingen"), all);
            regelingen.append(regeling);
        }
        dossier.insert(QStringLiteral("regelingen"), regelingen);
        dossier.insert(QStringLiteral("opmerkingen"), QJsonArray::fromStringList(c.hostFindings));
        dossiers.append(dossier);
    }
    return {{QStringLiteral("legenda"), legend()},
            {QStringLiteral("geslaagd"), exitCode(cases) == 0},
            {QStringLiteral("dossiers"), dossiers}};
}

int exitCode(const QList<CaseResult> &cases)
{
    int code = 0;
    for (const CaseResult &c : cases) {
        if (!c.unreadable.isEmpty())
            return 2;
        if (!c.passed())
            code = 1;
    }
    return code;
}

// ---------------------------------------------------------------------------------------------

ProgressBar::ProgressBar() : m_enabled(isatty(STDERR_FILENO) == 1) { m_clock.start(); }

ProgressBar::~ProgressBar() { finish(); }

void ProgressBar::update(const QString &source, int done, int total, const QString &unit)
{
    // Short runs would only flicker; the bar appears once a run has taken half a second.
    if (!m_enabled || m_clock.elapsed() < 500 || (m_drawn && m_lastDraw.elapsed() < 100 && done < total))
        return;
    constexpr int width = 30;
    const int filled = total > 0 ? done * width / total : width;
    QTextStream err(stderr);
    err << "\r" << Terminal::escaped(QFileInfo(source).fileName()) << " [" << QString(filled, QLatin1Char('#'))
        << QString(width - filled, QLatin1Char('.')) << "] " << done << "/" << total << " " << unit
        << "\x1b[K";
    err.flush();
    m_drawn = true;
    m_lastDraw.start();
}

void ProgressBar::finish()
{
    if (!m_drawn)
        return;
    QTextStream err(stderr);
    err << "\r\x1b[K";
    err.flush();
    m_drawn = false;
}

int main(int argc, char **argv)
{
    HeadlessApplication app(argc, argv);
    // The check's own responder answers the screen while a scheme is checked; anything outside
    // it is printed and logged, never shown.
    ErrorLog::answerHeadless();

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Controleert elke pensioenregeling van de dossiers zoals het pensioenscherm dat doet."));
    parser.addHelpOption();
    QCommandLineOption json(QStringLiteral("json"), QStringLiteral("Geef het verslag als JSON."));
    parser.addOption(json);
    QCommandLineOption all(QStringLiteral("alle"), QStringLiteral("Controleer alle dossiers (van de database, of in de dossiermap)."));
    parser.addOption(all);
    parser.addPositionalArgument(QStringLiteral("check"), QStringLiteral("De opdracht."));
    parser.addPositionalArgument(QStringLiteral("DOSSIER"), QStringLiteral("Dossierbestanden of JSON-dossiers."),
                                 QStringLiteral("DOSSIER..."));
    parser.process(app);
    QStringList paths = parser.positionalArguments().mid(1);
    QTextStream err(stderr);
    if (parser.isSet(all)) {
        try {
            paths << Commands::allCases();
        } catch (const HostError &e) {
            err << "zarnoveld: " << Terminal::escaped(e.description()) << Qt::endl;
            return 2;
        }
        if (paths.isEmpty()) {
            err << "zarnoveld: er zijn geen dossiers om te controleren." << Qt::endl;
            return 0;
        }
    }
    if (paths.isEmpty()) {
        err << "zarnoveld: gebruik: zarnoveld check DOSSIER... | --alle [--json]" << Qt::endl;
        return 2;
    }

    Checker checker;
    QString error;
    if (!checker.prepare(&error)) {
        err << "zarnoveld: " << Terminal::escaped(error) << Qt::endl;
        return 2;
    }

    QList<CaseResult> results;
    ProgressBar bar;
    for (const QString &path : paths) {
        std::shared_ptr<HostApplication> application;
        try {
            application = loadInMemory(path);
        } catch (const HostError &e) {
            CaseResult unreadable;
            unreadable.source = path;
            unreadable.unreadable = e.description();
            results.append(unreadable);
            continue;
        }
        results.append(checker.checkCase(application, path, [&](int done, int total) {
            bar.update(path, done, total);
        }));
    }
    bar.finish();

    QTextStream out(stdout);
    if (parser.isSet(json))
        out << QJsonDocument(jsonReport(results)).toJson(QJsonDocument::Indented);
    else
        out << textReport(results);
    out.flush();
    return exitCode(results);
}

} // namespace Zarnoveld::Check
