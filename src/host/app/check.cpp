#include "check.h"

#include "commands.h"
#include "componentloader.h"
#include "hostcheck.h"
#include "messagebox.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
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
#include <QWidget>

#include <map>

#include <unistd.h>

namespace Zarnoveld::Check {

using namespace VandrelApplication;
using VandrelControl::MessageBox;

namespace {

const QString kProgId = QStringLiteral("VandrelPensioen.PensMain");

// ---------------------------------------------------------------------------------------------
// The host may only hand the screen an Application and ask it to validate; the screen itself
// always shows the first row of its list. So the check hands it a view of the case in which the
// scheme to check is that first row: its participant lists it as number 1 followed by its other
// schemes in their own order (the employment choice still sees every scheme of the participant),
// and the other participant shows no schemes (nothing checks across participants). All data
// objects are the case's own; only the numbering of the two scheme lists differs.

class SchemeView;

class ViewAanvrager : public Aanvrager
{
public:
    ViewAanvrager(AanvragerPtr real, qint16 front) : m_real(std::move(real)), m_front(front) {}

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

    PensioenPtr Get_Pensioen(qint16 Pen_Id) override
    {
        if (m_front == 0 || Pen_Id < 1)
            return nullptr;
        if (Pen_Id == 1)
            return m_real->Get_Pensioen(m_front);
        return m_real->Get_Pensioen(Pen_Id <= m_front ? qint16(Pen_Id - 1) : Pen_Id);
    }
    // Renumbering under the screen's feet would make the view lie; nothing in a check adds or
    // removes a scheme, so one that tries is reported as an error.
    qint16 AddPension() override { throw refused(); }
    void RemovePension(qint16) override { throw refused(); }

private:
    static HostError refused()
    {
        return HostError(HostErrorCode::InvalidState,
                         QStringLiteral("Tijdens de controle worden geen pensioenregelingen toegevoegd of verwijderd."),
                         QStringLiteral("zarnoveld check"));
    }

    AanvragerPtr m_real;
    qint16 m_front;   // the real number shown as number 1; 0 hides every scheme
};

class ViewDossier : public Dossier
{
public:
    ViewDossier(DossierPtr real, qint16 anvId, qint16 penId)
        : m_real(std::move(real)), m_anvId(anvId), m_penId(penId) {}

    AanvragerPtr Get_Aanvrager(qint16 Anv_Id) override
    {
        auto found = m_aanvragers.find(Anv_Id);
        if (found != m_aanvragers.end())
            return found->second;
        AanvragerPtr real = m_real->Get_Aanvrager(Anv_Id);
        AanvragerPtr view = real ? std::make_shared<ViewAanvrager>(real, Anv_Id == m_anvId ? m_penId : 0) : nullptr;
        // Kept, so that the screen gets the same object each time it asks, as from the case.
        m_aanvragers.emplace(Anv_Id, view);
        return view;
    }
    qint16 AddAanvrager() override { m_aanvragers.clear(); return m_real->AddAanvrager(); }
    void RemoveAanvrager(qint16 Anv_Id) override { m_aanvragers.clear(); m_real->RemoveAanvrager(Anv_Id); }
    qint32 SyncVlaggen() const override { return m_real->SyncVlaggen(); }
    void setSyncVlaggen(qint32 value) override { m_real->setSyncVlaggen(value); }

private:
    DossierPtr m_real;
    qint16 m_anvId;
    qint16 m_penId;
    std::map<qint16, AanvragerPtr> m_aanvragers;
};

class SchemeView : public Application
{
public:
    SchemeView(std::shared_ptr<HostApplication> real, qint16 anvId, qint16 penId)
        : m_real(std::move(real))
    {
        if (DossierPtr dossier = m_real->Get_Dossier())
            m_dossier = std::make_shared<ViewDossier>(dossier, anvId, penId);
    }

    // A closed view has no case: a control that still holds it (its end-of-life clean-up walks
    // the case and removes schemes) finds nothing to do.
    void close() { m_closed = true; }

    DossierPtr Get_Dossier() override { return m_closed ? nullptr : m_dossier; }
    ParametersPtr Get_Parameters() override { return m_real->Get_Parameters(); }
    void ReportError(ErrorRecord &record) override
    {
        if (m_onError)
            m_onError(record);
    }
    QString Title() const override { return m_real->Title(); }
    QIcon Icon() const override { return m_real->Icon(); }

    std::function<void(const ErrorRecord &)> m_onError;

private:
    std::shared_ptr<HostApplication> m_real;
    DossierPtr m_dossier;
    bool m_closed = false;
};

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
    const QFileInfo info(path);
    if (!info.exists())
        throw HostError(HostErrorCode::StoreFailed, QStringLiteral("Het bestand %1 bestaat niet.").arg(path));
    if (!info.isFile() || !info.isReadable())
        throw HostError(HostErrorCode::StoreFailed, QStringLiteral("Het bestand %1 kan niet worden gelezen.").arg(path));

    QJsonObject document;
    if (path.endsWith(QStringLiteral(".json"), Qt::CaseInsensitive)) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            throw HostError(HostErrorCode::StoreFailed, QStringLiteral("Het bestand %1 kan niet worden gelezen.").arg(path));
        QJsonParseError parseError;
        const QJsonDocument json = QJsonDocument::fromJson(file.readAll(), &parseError);
        if (parseError.error != QJsonParseError::NoError || !json.isObject())
            throw HostError(HostErrorCode::StoreFailed, QStringLiteral("%1 is geen geldig JSON-dossier: %2 (positie %3).")
                                                             .arg(path, parseError.errorString())
                                                             .arg(parseError.offset));
        document = json.object();
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
            throw HostError(HostErrorCode::StoreFailed, QString(e.description()).replace(copy, path));
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
    bool show(const std::shared_ptr<SchemeView> &view);
    void validate(SchemeResult &result);

    QPointer<QWidget> control;
    std::shared_ptr<SchemeView> shown;   // the view the control holds
    bool controlClean = true;            // the shown scheme passed, so the control can move on
    QList<Message> captured;
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
    // Shown, so that every check sees the panels as the user would, but never mapped or painted:
    // the check has no screen, and painting would cost more than the check itself.
    widget->setAttribute(Qt::WA_DontShowOnScreen);
    widget->setUpdatesEnabled(false);
    widget->show();
    control = widget;
    controlClean = true;
    return true;
}

void Checker::Private::dropControl()
{
    if (shown)
        shown->close();
    shown.reset();
    delete control.data();
    control = nullptr;
}

bool Checker::Private::show(const std::shared_ptr<SchemeView> &view)
{
    // A control whose scheme failed refuses to show another one (it validates the old scheme
    // first and keeps it); a fresh control is cheaper than talking it round.
    if (control && !controlClean)
        dropControl();
    if (!control && !createControl(nullptr))
        return false;
    captured.clear();
    QMetaObject::invokeMethod(control, "SetApplication", Qt::DirectConnection,
                              Q_ARG(VandrelApplication::ApplicationPtr, view));
    if (shown)
        shown->close();
    shown = view;
    // Switching made the control check the scheme shown before once more. That scheme passed, so
    // it should be quiet; if it was not, the new scheme may not have been taken: start afresh.
    if (!captured.isEmpty()) {
        dropControl();
        if (!createControl(nullptr))
            return false;
        captured.clear();
        QMetaObject::invokeMethod(control, "SetApplication", Qt::DirectConnection,
                                  Q_ARG(VandrelApplication::ApplicationPtr, view));
        shown = view;
    }
    captured.clear();
    return true;
}

void Checker::Private::validate(SchemeResult &result)
{
    bool cancel = false;
    captured.clear();
    QMetaObject::invokeMethod(control, "Validation", Qt::DirectConnection, Q_ARG(bool &, cancel),
                              Q_ARG(qint32, 0));
    result.messages = captured;
    captured.clear();

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
            result.stop = {QString(), QStringLiteral("Het pensioenscherm laat de gebruiker niet verder, zonder melding."), false, false};
    } else if (errorReport) {
        result.passed = false;
        result.stop = *errorReport;
    }
    controlClean = !cancel;
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

CaseResult Checker::checkCase(const std::shared_ptr<HostApplication> &application, const QString &source,
                              const Progress &progress)
{
    CaseResult result;
    result.source = source;

    struct Target { qint16 anvId; qint16 penId; };
    QList<Target> targets;
    DossierPtr dossier = application->Get_Dossier();
    for (qint16 n = 1; dossier && dossier->Get_Aanvrager(n); ++n) {
        AanvragerPtr aanvrager = dossier->Get_Aanvrager(n);
        for (qint16 k = 1; aanvrager->Get_Pensioen(k); ++k)
            targets.append({n, k});
    }

    // The service's findings on the case as stored, before loading the screen fills anything in.
    {
        ApplicationPtr app = application;
        HostCheck::instance().RunHostCheck(app, 1, QDate(), 1, QDate());
        result.hostFindings = HostCheck::instance().Bevindingen();
    }

    // Every message is answered as a user who wants to go on would: OK, and Yes to a question.
    MessageBox::ScopedResponder responder([this](const MessageBox::Request &request) {
        const bool question = request.buttons == MessageBox::Buttons::YesNo;
        d->captured.append({request.title, request.text, question, false});
        return question ? MessageBox::Answer::Yes : MessageBox::Answer::Ok;
    });

    int done = 0;
    for (const Target &target : std::as_const(targets)) {
        SchemeResult scheme;
        scheme.anvId = target.anvId;
        scheme.penId = target.penId;
        AanvragerPtr aanvrager = dossier->Get_Aanvrager(target.anvId);
        PensioenPtr pensioen = aanvrager->Get_Pensioen(target.penId);
        scheme.naam = aanvrager->Naam();
        scheme.uitvoerder = pensioen->Uitvoerder().trimmed();

        auto view = std::make_shared<SchemeView>(application, target.anvId, target.penId);
        view->m_onError = [this](const ErrorRecord &record) {
            d->captured.append({record.Subject.isEmpty() ? record.Title : record.Subject,
                                QStringLiteral("%1 (%2 in %3: %4)")
                                    .arg(record.Message, record.Procedure, record.Component, record.Description),
                                false, true});
        };
        if (!d->show(view)) {
            scheme.passed = false;
            scheme.stop = {QString(), QStringLiteral("Het pensioenscherm kan niet worden gemaakt."), false, true};
        } else {
            d->validate(scheme);
        }
        result.schemes.append(scheme);
        ++done;
        if (progress)
            progress(done, int(targets.size()));
    }
    // The next case must not find this one's view in the control.
    d->dropControl();
    return result;
}

// ---------------------------------------------------------------------------------------------

QString legend()
{
    return QStringLiteral("Per pensioenregeling staat de eerste melding die de gebruiker zou tegenhouden bij het "
                          "verlaten van het pensioenscherm. Vragen met Ja/Nee (zoals \"LET OP!\") zijn met Ja "
                          "beantwoord en houden niemand tegen.");
}

namespace {

QString schemeLabel(const SchemeResult &scheme)
{
    return QStringLiteral("%1 %2, regeling %3 (%4)")
        .arg(deelnemer(scheme.anvId), scheme.naam.isEmpty() ? QStringLiteral("(zonder naam)") : scheme.naam)
        .arg(scheme.penId)
        .arg(scheme.uitvoerder.isEmpty() ? QStringLiteral("geen uitvoerder") : scheme.uitvoerder);
}

QString oneLine(QString text)
{
    return text.replace(QLatin1Char('\n'), QLatin1Char(' ')).simplified();
}

} // namespace

QString textReport(const QList<CaseResult> &cases)
{
    QString report;
    QTextStream out(&report);
    int total = 0;
    int failed = 0;
    int unreadable = 0;
    for (const CaseResult &c : cases) {
        out << "Dossier " << c.source << "\n";
        if (!c.unreadable.isEmpty()) {
            ++unreadable;
            out << "  NIET GELEZEN: " << c.unreadable << "\n\n";
            continue;
        }
        if (c.schemes.isEmpty())
            out << "  Geen pensioenregelingen.\n";
        for (const SchemeResult &scheme : c.schemes) {
            ++total;
            out << "  " << schemeLabel(scheme) << ": ";
            if (scheme.passed) {
                out << "in orde";
            } else {
                ++failed;
                out << "FOUT";
                if (!scheme.stop.title.isEmpty())
                    out << " [" << scheme.stop.title << "]";
                out << " " << oneLine(scheme.stop.text);
            }
            int questions = 0;
            for (const Message &m : scheme.messages)
                questions += m.question ? 1 : 0;
            if (questions > 0)
                out << " (" << questions << (questions == 1 ? " vraag" : " vragen") << " met Ja beantwoord)";
            out << "\n";
        }
        if (!c.hostFindings.isEmpty()) {
            out << "  Opmerkingen van de controledienst (houden de gebruiker niet tegen):\n";
            for (const QString &finding : c.hostFindings)
                out << "    - " << finding << "\n";
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

namespace {

// A bar on stderr for a person watching a terminal; pipes and logs get only the report.
class ProgressBar
{
public:
    ProgressBar() : m_enabled(isatty(STDERR_FILENO) == 1) { m_clock.start(); }
    ~ProgressBar() { finish(); }

    void update(const QString &source, int done, int total)
    {
        // Short runs would only flicker; the bar appears once a run has taken half a second.
        if (!m_enabled || m_clock.elapsed() < 500 || (m_drawn && m_lastDraw.elapsed() < 100 && done < total))
            return;
        constexpr int width = 30;
        const int filled = total > 0 ? done * width / total : width;
        QTextStream err(stderr);
        err << "\r" << QFileInfo(source).fileName() << " [" << QString(filled, QLatin1Char('#'))
            << QString(width - filled, QLatin1Char('.')) << "] " << done << "/" << total << " regelingen"
            << "\x1b[K";
        err.flush();
        m_drawn = true;
        m_lastDraw.start();
    }
    void finish()
    {
        if (!m_drawn)
            return;
        QTextStream err(stderr);
        err << "\r\x1b[K";
        err.flush();
        m_drawn = false;
    }

private:
    bool m_enabled;
    bool m_drawn = false;
    QElapsedTimer m_clock;
    QElapsedTimer m_lastDraw;
};

void quietHandler(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    // The offscreen platform warns about things that mean nothing without a screen; the report
    // must stay readable, so only real trouble reaches stderr.
    if (type == QtCriticalMsg || type == QtFatalMsg)
        QTextStream(stderr) << message << Qt::endl;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(quietHandler);
    QApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Vandrel"));
    QApplication::setApplicationName(QStringLiteral("zarnoveld"));
    QApplication::setApplicationDisplayName(QStringLiteral("Zarnoveld"));

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Controleert elke pensioenregeling van de dossiers zoals het pensioenscherm dat doet."));
    parser.addHelpOption();
    QCommandLineOption json(QStringLiteral("json"), QStringLiteral("Geef het verslag als JSON."));
    parser.addOption(json);
    parser.addPositionalArgument(QStringLiteral("check"), QStringLiteral("De opdracht."));
    parser.addPositionalArgument(QStringLiteral("DOSSIER"), QStringLiteral("Dossierbestanden of JSON-dossiers."),
                                 QStringLiteral("DOSSIER..."));
    parser.process(app);
    const QStringList paths = parser.positionalArguments().mid(1);
    QTextStream err(stderr);
    if (paths.isEmpty()) {
        err << "zarnoveld: gebruik: zarnoveld check DOSSIER... [--json]" << Qt::endl;
        return 2;
    }

    Checker checker;
    QString error;
    if (!checker.prepare(&error)) {
        err << "zarnoveld: " << error << Qt::endl;
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
