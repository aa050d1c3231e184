// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// The case on paper: every participant, employment and pension scheme of a case with the check's
// findings, laid out on A4 pages and written as PDF or sent to a printer.
//
// The report reads the case only through the host object model, so any host can print; what the
// pension screen would refuse or ask is the host's to find out (it knows how to run its check)
// and is handed in as plain findings.
//
// Layout rule: the report is a sequence of blocks (the title, a participant, a scheme's heading
// with its data, its commitments, its pension breakdown, ...). A block is never split over two
// pages; a block that does not fit in what is left of a page starts the next page. A scheme's
// heading is part of the block with its first rows, so it can never stand alone at a page's foot.
// A table too long for one page is cut into blocks of whole rows, each with the table's heading
// and column titles.

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

namespace VandrelReport {

struct Finding
{
    enum class Kind {
        Refusal,    // the pension screen would not let the user leave the scheme
        Question,   // the screen would ask (Ja/Nee) before accepting
        Remark      // the suite's check service remarks on the case; stops no one
    };
    Kind kind = Kind::Refusal;
    QString subject;   // which participant and scheme, e.g. "Aanvrager Jan, regeling 1 (ABP)"
    QString text;
};

struct Options
{
    QString caseName;                 // shown in the title and the header of every page
    QDate printDate = QDate::currentDate();
    bool checked = true;              // false: the findings section says the check was not run
    QList<Finding> findings;
};

// One block of the layout, as the pagination sees it (device-independent units of 1/96 inch).
struct Block
{
    qreal height = 0;
    qreal gapBefore = 0;      // space above the block when it does not open a page
    bool schemeHeading = false;   // the block opens a scheme
    QString heading;          // the block's first line of text
};

class VANDRELREPORT_EXPORT CaseReport
{
public:
    // Reads the whole case at once; the report does not keep the application.
    CaseReport(const VandrelApplication::ApplicationPtr &application, const Options &options);
    ~CaseReport();
    CaseReport(const CaseReport &) = delete;
    CaseReport &operator=(const CaseReport &) = delete;

    // The pages' body: what is left of an A4 page after the margins, header and footer.
    static qreal bodyHeight();
    static qreal bodyWidth();

    const QList<Block> &blocks() const;
    // The page (0-based) each block lands on, by the layout rule.
    const QList<int> &pageOfBlock() const;
    int pageCount() const;
    // Every block's content as one HTML text, without pages (for a preview, or to compare).
    QString html() const;

    // Called after each page with (pages done, pages in all).
    using Progress = std::function<void(int done, int total)>;

    // PDF onto an open device. False with a Dutch reason when nothing usable was written.
    bool writePdf(QIODevice *device, QString *error, const Progress &progress = {}) const;
    // The same pages on a printer (page size A4, whatever its resolution).
    bool print(QPrinter *printer, QString *error, const Progress &progress = {}) const;

private:
    bool paint(QPagedPaintDevice *device, QString *error, const Progress &progress) const;
    void paintPage(QPainter &painter, int page) const;

    class Private;
    std::unique_ptr<Private> d;
};

} // namespace VandrelReport
