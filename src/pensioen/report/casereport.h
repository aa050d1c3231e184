// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

/// \file casereport.h
/// \brief The case on paper (Vandrel::Report): a case and its check findings as A4 pages, PDF or printer.
///
/// The report reads the case only through the host object model, so any host can print; what the
/// pension screen would refuse or ask is the host's to find out (it knows how to run its check)
/// and is handed in as plain findings (Options::findings). Keeping the check out of the library
/// means a host that only prints need not load the pension screen.
///
/// Layout rule: the report is a sequence of blocks (the title, a participant, a scheme's heading
/// with its data, its commitments, its pension breakdown, ...). A block is never split over two
/// pages; a block that does not fit in what is left of a page starts the next page. A scheme's
/// heading is part of the block with its first rows, so it can never stand alone at a page's foot.
/// A table too long for one page is cut into blocks of whole rows, each with the table's heading
/// and column titles.
///
/// Every text on the pages is Dutch (headings, labels, "pagina X van Y"); amounts and dates are
/// formatted as the screen shows them.

#include "hostmodel.h"
#include "vandrelreport_export.h"

#include <QDate>
#include <QList>
#include <QString>

#include <functional>
#include <memory>

class QIODevice;
class QPagedPaintDevice;
class QPainter;
class QPrinter;

/// The case on paper: laying out and drawing a case report.
namespace VandrelReport {

/// One finding of the host's check, as the report lists it under "Bevindingen van de controle".
/// The report shows findings as they are; it neither runs nor judges the check.
struct Finding
{
    /// What kind of finding it is; shown as "Geweigerd", "Vraag" or "Opmerking".
    enum class Kind {
        Refusal,    ///< The pension screen would not let the user leave the scheme.
        Question,   ///< The screen would ask (Ja/Nee) before accepting.
        Remark      ///< The suite's check service remarks on the case; stops no one.
    };
    Kind kind = Kind::Refusal;  ///< What kind of finding it is.
    /// Which participant and scheme it is about, Dutch, e.g. "Aanvrager Jan, regeling 1 (ABP)".
    /// Findings with the same subject are grouped in one table, in the order handed in; an empty
    /// subject is shown as "Dossier".
    QString subject;
    QString text;  ///< The finding itself, Dutch, as the check worded it.
};

/// What the report needs besides the case. A plain value.
struct Options
{
    QString caseName;                 ///< Shown in the title and in the header of every page (shortened there when long).
    QDate printDate = QDate::currentDate();  ///< "Afgedrukt op" in every page's header.
    /// Whether the host ran its check. False: the findings section says "De controle is niet
    /// uitgevoerd." instead of claiming the case is in order.
    bool checked = true;
    /// The check's findings; empty (with checked true) prints that every scheme is in order.
    QList<Finding> findings;
};

/// One block of the layout, as the pagination sees it, in device-independent units of 1/96 inch.
/// Exposed so that a host or a test can see where a block landed (pageOfBlock()) without
/// reading the PDF back.
struct Block
{
    qreal height = 0;             ///< The block's height on the page.
    qreal gapBefore = 0;          ///< Space above the block when it does not open a page.
    bool schemeHeading = false;   ///< The block opens a scheme (its heading, data and first commitments).
    QString heading;              ///< The block's first line of text (Dutch), to recognise it by.
};

/// A report of one case, laid out once when constructed and then drawn as often as asked (PDF,
/// printer). It holds only its laid-out text, no handle on the case: the case may change or close
/// afterwards without affecting the report. Not copyable (it owns its layout documents).
class VANDRELREPORT_EXPORT CaseReport
{
public:
    /// Reads the whole case of \p application at once (both participants, their employments and
    /// schemes) and lays it out with \p options. The report does not keep the application, so a
    /// host may pass a non-owning pointer. A null application, or one without a case, gives a
    /// report of the title and findings only. A HostError the host throws while the case is read
    /// is passed on and no report is made; the report itself never writes to the case.
    CaseReport(const VandrelApplication::ApplicationPtr &application, const Options &options);
    ~CaseReport();  ///< Frees the layout.
    CaseReport(const CaseReport &) = delete;  ///< Not copyable: the layout is made once per case.
    CaseReport &operator=(const CaseReport &) = delete;  ///< Not copyable, see the copy constructor.

    /// The height of a page's body: what is left of an A4 page after the margins, header and
    /// footer, in 1/96 inch: the room the pagination fills.
    static qreal bodyHeight();
    static qreal bodyWidth();  ///< The width of a page's body (A4 less the side margins), in 1/96 inch.

    const QList<Block> &blocks() const;  ///< Every block of the layout, in reading order.
    /// The page (from 0) each block lands on by the layout rule; same length and order as blocks().
    const QList<int> &pageOfBlock() const;
    int pageCount() const;  ///< The number of pages; at least 1 (the title page).
    /// Every block's content as one HTML text, without pages: for an on-screen preview, or to
    /// compare two reports.
    QString html() const;

    /// Progress of drawing: called after each page with (pages done, pages in all), on the
    /// calling thread, so a host can show a progress bar on long cases.
    using Progress = std::function<void(int done, int total)>;

    /// Writes the report as A4 PDF onto \p device, which the caller has opened for writing and
    /// keeps owning (the reference host uses a QSaveFile so that a failure leaves no half
    /// file). Returns false with a Dutch reason in \p error (when not null) when drawing failed;
    /// the caller must then discard what was written. Never throws HostError (the case is not read
    /// again).
    bool writePdf(QIODevice *device, QString *error, const Progress &progress = {}) const;
    /// The same pages on \p printer, which the caller owns and has set up (for example with a
    /// QPrintDialog): the page size is set to A4 portrait, full page, whatever its resolution; the
    /// document name is set only when the printer has none. False with a Dutch reason in \p error
    /// when the printer refused.
    bool print(QPrinter *printer, QString *error, const Progress &progress = {}) const;

private:
    bool paint(QPagedPaintDevice *device, QString *error, const Progress &progress) const;
    void paintPage(QPainter &painter, int page) const;

    class Private;
    std::unique_ptr<Private> d;
};

} // namespace VandrelReport
