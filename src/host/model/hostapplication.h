// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

/// \file hostapplication.h
/// The reference host's Application: an advice case held in memory and written through on every
/// setter to where it is kept: an SQLite file, or a case in a PostgreSQL database.
///
/// Wherever a path is asked for, a server address may be given instead:
/// `postgresql://user@host:port/dbname#Case name` (the case's name as the URL's fragment; the
/// password comes from PGPASSWORD or ~/.pgpass, never from the address).

#include "hostmodel.h"
#include "registerlink.h"

#include <QDateTime>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace Zarnoveld {

/// A scheme in the case's bin, as the adviser picks it to put it back.
struct BinEntry
{
    qint64 id = 0;           ///< the bin entry's own number
    qint16 anvId = 0;        ///< 1 applicant, 2 partner
    QString naam;            ///< the participant's name
    int position = 0;        ///< the scheme's number in the list when it was removed
    QDateTime removedAt;     ///< UTC
    QString uitvoerder;      ///< the provider, may be empty
};

/// The reference host's complete host object model (Vandrel::MemoryHost): a case held in
/// memory, read from and written to the JSON case format, optionally written through to an
/// SQLite case file. A host can use it as it is, or read it as the worked example of every rule
/// of the contract (see \ref writing_a_host).
class HostApplication : public VandrelApplication::Application, public VandrelApplication::RegisterLink
{
public:
    ~HostApplication() override;  ///< Closes the case; handles still held throw HostError on use.

    /// A new case with only an applicant, not backed by a file (tests, scratch work).
    static std::shared_ptr<HostApplication> createInMemory();
    /// A new case file; throws HostError with a Dutch description when it cannot be made.
    static std::shared_ptr<HostApplication> createFile(const QString &path);
    /// Opens a case file; a file of a newer version, one that is not a case, or one that another
    /// program has open for writing throws HostError with a Dutch description and changes nothing.
    static std::shared_ptr<HostApplication> openFile(const QString &path);
    /// Opens a case only to read it (an export, a check). On a server nothing is taken, so the
    /// case may be open for editing elsewhere at the same time, and it is read as one snapshot; a
    /// case file is opened as openFile() opens it. Every change throws HostError(InvalidState).
    static std::shared_ptr<HostApplication> openForReading(const QString &address);
    /// Who works in the case at address now, as the Dutch sentence an adviser reads ("Dossier ...
    /// is in gebruik door ... op ... sinds ..."); empty when nobody does.
    static QString holderOf(const QString &address);
    /// Copies the case at `from` into a new case at `to`, bin included, all or nothing, and
    /// returns the copy opened. Throws HostError (Dutch) and leaves nothing at `to` on failure.
    static std::shared_ptr<HostApplication> copyCase(const QString &from, const QString &to);

    /// The longest text a case holds from an import: names, providers and keys. Far beyond any real
    /// name or provider, and short enough that the screen and the check never slow down on one.
    static constexpr int MaxTextLength = 200;

    /// Whole-case JSON with field names equal to the host operation names. Import is
    /// all-or-nothing: on any problem it throws HostError naming the path and the problem.
    QJsonObject exportJson() const;
    /// Reads a whole-case JSON document; with a path the case also becomes a new case file there.
    static std::shared_ptr<HostApplication> importJson(const QJsonObject &document,
                                                       const QString &path = QString());

    /// Schedule owners outside a case, for screens that edit capital and insured-person covers.
    static VandrelApplication::KapitaalPtr createKapitaal();
    static VandrelApplication::VerzekerdePtr createVerzekerde();  ///< See createKapitaal().

    /// Application
    VandrelApplication::DossierPtr Get_Dossier() override;
    VandrelApplication::ParametersPtr Get_Parameters() override;
    void ReportError(VandrelApplication::ErrorRecord &record) override;
    QString Title() const override;
    QIcon Icon() const override;

    /// RegisterLink: the register's identifier is a field of the scheme record; one change is one
    /// store transaction.
    QString HerkenningsNummer(VandrelApplication::Pensioen &scheme) const override;
    void setHerkenningsNummer(VandrelApplication::Pensioen &scheme, const QString &value) override;  ///< Stores the identifier.
    void RunAsOneChange(const std::function<void()> &body) override;  ///< One store transaction around body.

    void setTitle(const QString &title);  ///< The Title() the library's dialogs show.
    /// Every report is kept (tests read them) and passed to the handler when one is set.
    QList<VandrelApplication::ErrorRecord> reportedErrors() const;
    void clearReportedErrors();  ///< Forgets the kept reports.
    void setErrorHandler(std::function<void(const VandrelApplication::ErrorRecord &)> handler);  ///< Receives every report.

    QString filePath() const;   ///< the case's path or server address; empty for an in-memory case
    QString caseName() const;   ///< the name an adviser knows the case by: file name or name on the server
    /// True when the case file was opened read-only: it is shown as it is and every change throws
    /// HostError(InvalidState) with a Dutch description.
    bool readOnly() const;

    /// The year of the fiscal figures the case computes with.
    int figureYear() const;
    /// What moving a case to another figure year changed, in Dutch lines for the adviser.
    struct FigureYearMove
    {
        int from = 0;   ///< the year before the move
        int to = 0;     ///< the year after it
        QStringList figures;   ///< "FranchiseA: 18.475,00 -> 19.172,00"
        QStringList schemes;   ///< "Jan van den Berg, regeling 1 (ABP): Franchise 18.475,00 -> 19.172,00"
        /// Whether the move changed anything.
        bool changed() const { return from != to || !figures.isEmpty() || !schemes.isEmpty(); }
    };
    /// Gives the case the figures of `year`: the figures, the year, and for every scheme whose
    /// franchise is kept computed the franchise (and the basis and accrual computed from it), all
    /// in one transaction. Throws HostError (Dutch) for a year without figures.
    FigureYearMove moveToFigureYear(int year);

    /// A case shown for reading only; the window marks it so.
    bool isReadOnly() const;
    void setReadOnly(bool readOnly);  ///< Marks the case read-only for the window.

    /// Called after every change the case file accepted; it runs inside the change, so it should
    /// only note it (the window starts a timer).
    void setChangeHandler(std::function<void()> handler);

    /// The year of the fiscal figures a new case starts with.
    static int figuresYear();

    /// The schemes RemovePension put in the bin, oldest first.
    QList<BinEntry> binEntries() const;
    /// Puts a scheme back at its old number in its participant's list (the end when the list has
    /// become shorter) with all its values; returns that number. Throws HostError (Dutch).
    qint16 restoreFromBin(qint64 id);
    /// Removes for good what was removed before removedBefore (an invalid time: everything);
    /// returns how many schemes went.
    int emptyBin(const QDateTime &removedBefore = QDateTime());

private:
    HostApplication();
    class Private;
    std::unique_ptr<Private> d;
};

} ///< namespace Zarnoveld
