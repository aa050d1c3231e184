#pragma once

// The reference host's Application: an advice case held in memory and written through to its
// SQLite file on every setter.

#include "hostmodel.h"

#include <QDateTime>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <functional>
#include <memory>

namespace Zarnoveld {

// A scheme in the case's bin, as the adviser picks it to put it back.
struct BinEntry
{
    qint64 id = 0;
    qint16 anvId = 0;        // 1 applicant, 2 partner
    QString naam;            // the participant's name
    int position = 0;        // the scheme's number in the list when it was removed
    QDateTime removedAt;     // UTC
    QString uitvoerder;      // the provider, may be empty
};

class HostApplication : public VandrelApplication::Application
{
public:
    ~HostApplication() override;

    // A new case with only an applicant, not backed by a file (tests, scratch work).
    static std::shared_ptr<HostApplication> createInMemory();
    // A new case file; throws HostError with a Dutch description when it cannot be made.
    static std::shared_ptr<HostApplication> createFile(const QString &path);
    // Opens a case file; a file of a newer version, one that is not a case, or one that another
    // program has open for writing throws HostError with a Dutch description and changes nothing.
    static std::shared_ptr<HostApplication> openFile(const QString &path);

    // Whole-case JSON with field names equal to the host operation names. Import is
    // all-or-nothing: on any problem it throws HostError naming the path and the problem.
    QJsonObject exportJson() const;
    static std::shared_ptr<HostApplication> importJson(const QJsonObject &document,
                                                       const QString &path = QString());

    // Schedule owners outside a case, for screens that edit capital and insured-person covers.
    static VandrelApplication::KapitaalPtr createKapitaal();
    static VandrelApplication::VerzekerdePtr createVerzekerde();

    // Application
    VandrelApplication::DossierPtr Get_Dossier() override;
    VandrelApplication::ParametersPtr Get_Parameters() override;
    void ReportError(VandrelApplication::ErrorRecord &record) override;
    QString Title() const override;
    QIcon Icon() const override;

    void setTitle(const QString &title);
    // Every report is kept (tests read them) and passed to the handler when one is set.
    QList<VandrelApplication::ErrorRecord> reportedErrors() const;
    void clearReportedErrors();
    void setErrorHandler(std::function<void(const VandrelApplication::ErrorRecord &)> handler);

    QString filePath() const;   // empty for an in-memory case

    // A case shown for reading only; the window marks it so.
    bool isReadOnly() const;
    void setReadOnly(bool readOnly);

    // Called after every change the case file accepted; it runs inside the change, so it should
    // only note it (the window starts a timer).
    void setChangeHandler(std::function<void()> handler);

    // The year of the fiscal figures a new case starts with.
    static int figuresYear();

    // The schemes RemovePension put in the bin, oldest first.
    QList<BinEntry> binEntries() const;
    // Puts a scheme back at its old number in its participant's list (the end when the list has
    // become shorter) with all its values; returns that number. Throws HostError (Dutch).
    qint16 restoreFromBin(qint64 id);
    // Removes for good what was removed before removedBefore (an invalid time: everything);
    // returns how many schemes went.
    int emptyBin(const QDateTime &removedBefore = QDateTime());

private:
    HostApplication();
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace Zarnoveld
