// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "hostapplication.h"
#include "hostapplication_p.h"

#include "objects.h"
#include "store.h"

#include <QFile>
#include <QJsonDocument>

#include <algorithm>

namespace Zarnoveld {

using namespace VandrelApplication;
using namespace detail;

std::shared_ptr<DossierNode> detail::newDossierTree(CaseCore &core)
{
    auto dossier = std::make_shared<DossierNode>();
    dossier->id = core.newId(DossierTable);
    dossier->v[DossierF::Rekenjaar] = normalise(Kind::Int16, figureYearForNewCase());
    auto applicant = std::make_shared<AanvragerNode>();
    applicant->id = core.newId(AanvragerTable);
    applicant->v[AanvragerF::Categorie] = QVariant::fromValue<quint8>(1);
    dossier->aanvragers.push_back(applicant);
    return dossier;
}

HostApplication::HostApplication()
    : d(std::make_unique<Private>())
{
}

HostApplication::~HostApplication()
{
    // Handles may outlive the program's case object; they keep reading from memory, but the file
    // is closed (and its lock released) now, so any later change is refused.
    if (d->core) {
        d->core->closed = true;
        d->core->store.reset();
    }
}

std::shared_ptr<HostApplication> HostApplication::createInMemory()
{
    std::shared_ptr<HostApplication> app(new HostApplication);
    auto core = std::make_shared<CaseCore>();
    core->params = builtInParameters();
    core->dossier = newDossierTree(*core);
    app->d->core = std::move(core);
    return app;
}

std::shared_ptr<HostApplication> HostApplication::createFile(const QString &path)
{
    std::shared_ptr<HostApplication> app(new HostApplication);
    auto core = std::make_shared<CaseCore>();
    core->params = builtInParameters();
    core->dossier = newDossierTree(*core);
    core->attach(Store::create(path, *core->dossier, core->params));
    app->d->core = std::move(core);
    return app;
}

std::shared_ptr<HostApplication> HostApplication::openFile(const QString &path)
{
    std::shared_ptr<HostApplication> app(new HostApplication);
    auto core = std::make_shared<CaseCore>();
    core->attach(Store::open(path, core->dossier, core->params));
    core->bin = core->store->loadBin();
    core->seedIds();
    app->d->core = std::move(core);
    return app;
}

std::shared_ptr<HostApplication> HostApplication::openForReading(const QString &address)
{
    std::shared_ptr<HostApplication> app(new HostApplication);
    auto core = std::make_shared<CaseCore>();
    core->attach(Store::open(address, core->dossier, core->params, Store::Access::Read));
    core->bin = core->store->loadBin();
    core->seedIds();
    app->d->core = std::move(core);
    return app;
}

QString HostApplication::holderOf(const QString &address)
{
    return Store::holderOf(address);
}

std::shared_ptr<HostApplication> HostApplication::copyCase(const QString &from, const QString &to)
{
    auto source = openForReading(from);
    std::shared_ptr<HostApplication> app(new HostApplication);
    auto core = std::make_shared<CaseCore>();
    const CaseCore &original = *source->d->core;
    core->attach(Store::createWhole(to, *original.dossier, original.params, original.bin, core->dossier, core->params));
    core->bin = core->store->loadBin();
    core->seedIds();
    app->d->core = std::move(core);
    return app;
}

KapitaalPtr HostApplication::createKapitaal()
{
    return makeKapitaal();
}

VerzekerdePtr HostApplication::createVerzekerde()
{
    return makeVerzekerde();
}

DossierPtr HostApplication::Get_Dossier()
{
    return d->core && d->core->dossier ? makeDossier(d->core) : nullptr;
}

ParametersPtr HostApplication::Get_Parameters()
{
    return makeParameters(d->core);
}

void HostApplication::ReportError(ErrorRecord &record)
{
    try {
        d->errors.append(record);
        if (d->handler)
            d->handler(record);
    } catch (...) {
        // A failing handler must not turn an error report into a second error.
    }
}

QString HostApplication::Title() const
{
    return d->title;
}

QIcon HostApplication::Icon() const
{
    return QIcon::fromTheme(QStringLiteral("accessories-calculator"));
}

namespace {

std::shared_ptr<PensioenNode> ownScheme(const std::shared_ptr<CaseCore> &core, Pensioen &scheme)
{
    auto [owner, node] = pensioenOf(scheme);
    if (!node || owner != core)
        throw HostError(HostErrorCode::InvalidState,
                        QStringLiteral("Deze pensioenregeling hoort niet bij het geopende dossier."),
                        QStringLiteral("Zarnoveld"));
    node->check();
    return node;
}

} // namespace

QString HostApplication::HerkenningsNummer(Pensioen &scheme) const
{
    return ownScheme(d->core, scheme)->s(PensioenF::HerkenningsNummer);
}

void HostApplication::setHerkenningsNummer(Pensioen &scheme, const QString &value)
{
    auto node = ownScheme(d->core, scheme);
    d->core->set(node, PensioenF::HerkenningsNummer, value, node.get());
}

void HostApplication::RunAsOneChange(const std::function<void()> &body)
{
    if (!d->core)
        throw HostError(HostErrorCode::InvalidState, QStringLiteral("Er is geen dossier geopend."),
                        QStringLiteral("Zarnoveld"));
    d->core->asOneChange(body);
}

void HostApplication::setTitle(const QString &title)
{
    d->title = title;
}

QList<ErrorRecord> HostApplication::reportedErrors() const
{
    return d->errors;
}

void HostApplication::clearReportedErrors()
{
    d->errors.clear();
}

void HostApplication::setErrorHandler(std::function<void(const ErrorRecord &)> handler)
{
    d->handler = std::move(handler);
}

QString HostApplication::filePath() const
{
    return d->core && d->core->store ? d->core->store->path() : QString();
}

QString HostApplication::caseName() const
{
    return d->core && d->core->store ? d->core->store->displayName() : QString();
}

bool HostApplication::readOnly() const
{
    return d->core && d->core->store && d->core->store->readOnly();
}

int HostApplication::figuresYear()
{
    return detail::figureYearForNewCase();
}

bool HostApplication::isReadOnly() const
{
    return d->readOnly || readOnly();
}

void HostApplication::setReadOnly(bool readOnly)
{
    d->readOnly = readOnly;
}

void HostApplication::setChangeHandler(std::function<void()> handler)
{
    d->core->written = std::move(handler);
}

QList<BinEntry> HostApplication::binEntries() const
{
    QList<BinEntry> entries;
    const auto &aanvragers = d->core->dossier->aanvragers;
    for (const BinItem &item : d->core->bin) {
        BinEntry entry;
        entry.id = item.id;
        for (size_t i = 0; i < aanvragers.size(); ++i)
            if (aanvragers[i]->id == item.aanvragerId) {
                entry.anvId = static_cast<qint16>(i + 1);
                entry.naam = aanvragers[i]->s(AanvragerF::Naam);
            }
        entry.position = item.position;
        entry.removedAt = item.removedAt;
        entry.uitvoerder = QJsonDocument::fromJson(item.scheme).object().value(QStringLiteral("Uitvoerder")).toString();
        entries.append(entry);
    }
    return entries;
}

qint16 HostApplication::restoreFromBin(qint64 id)
{
    return d->core->restoreFromBin(id);
}

int HostApplication::emptyBin(const QDateTime &removedBefore)
{
    return d->core->emptyBin(removedBefore);
}

} // namespace Zarnoveld
