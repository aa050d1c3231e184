#pragma once

/// \file hostapplication.h
/// The reference host's Application: an advice case held in memory and written through to its
/// SQLite file on every setter.

#include "hostmodel.h"

#include <QJsonObject>
#include <QList>
#include <QString>

#include <functional>
#include <memory>

namespace Zarnoveld {

/// The reference host's complete host object model (Vandrel::MemoryHost): a case held in
/// memory, read from and written to the JSON case format, optionally written through to an
/// SQLite case file. A host can use it as it is, or read it as the worked example of every rule
/// of the contract (see \ref writing_a_host).
class HostApplication : public VandrelApplication::Application
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

    /// Whole-case JSON with field names equal to the host operation names. Import is
    /// all-or-nothing: on any problem it throws HostError naming the path and the problem.
    QJsonObject exportJson() const;
    /// With an empty path the case lives in memory only; otherwise it also becomes a new case file
    /// there.
    static std::shared_ptr<HostApplication> importJson(const QJsonObject &document,
                                                       const QString &path = QString());

    /// Schedule owners outside a case, for screens that edit capital and insured-person covers.
    static VandrelApplication::KapitaalPtr createKapitaal();
    static VandrelApplication::VerzekerdePtr createVerzekerde();  ///< See createKapitaal().

    // Application
    VandrelApplication::DossierPtr Get_Dossier() override;
    VandrelApplication::ParametersPtr Get_Parameters() override;
    void ReportError(VandrelApplication::ErrorRecord &record) override;
    QString Title() const override;
    QIcon Icon() const override;

    void setTitle(const QString &title);  ///< The Title() the library's dialogs show.
    /// Every report is kept (tests read them) and passed to the handler when one is set.
    QList<VandrelApplication::ErrorRecord> reportedErrors() const;
    void clearReportedErrors();  ///< Forgets the kept reports.
    /// Called with every ReportError(); the reference program logs and shows it.
    void setErrorHandler(std::function<void(const VandrelApplication::ErrorRecord &)> handler);

    QString filePath() const;   ///< empty for an in-memory case

private:
    HostApplication();
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace Zarnoveld
