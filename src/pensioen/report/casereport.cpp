// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "casereport.h"

#include "formats.h"

#include <QAbstractTextDocumentLayout>
#include <QFont>
#include <QFontMetricsF>
#include <QImage>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>
#include <QTextDocument>

#include <cmath>
#include <vector>

namespace VandrelReport {

using namespace VandrelApplication;
namespace Format = VandrelControl::Format;

namespace {

// Every length below is in units of 1/96 inch; a printer of another resolution gets a scaled
// painter, so the same blocks land on the same pages on paper and in the PDF.
constexpr qreal kDpi = 96.0;
constexpr qreal mm(qreal millimetres) { return millimetres * kDpi / 25.4; }

constexpr qreal kPageWidth = mm(210);
constexpr qreal kPageHeight = mm(297);
constexpr qreal kMarginSide = mm(20);
constexpr qreal kMarginTop = mm(14);
constexpr qreal kHeaderBand = mm(10);
constexpr qreal kMarginBottom = mm(14);
constexpr qreal kFooterBand = mm(10);
constexpr qreal kBodyTop = kMarginTop + kHeaderBand;
constexpr qreal kBodyHeight = kPageHeight - kBodyTop - kMarginBottom - kFooterBand;
constexpr qreal kBodyWidth = kPageWidth - 2 * kMarginSide;

constexpr qreal kGapScheme = mm(6);
constexpr qreal kGapSection = mm(2.5);
// A table longer than this many rows is cut before it is measured: keeps each block's layout
// cheap; a cut that is still too tall for a page is cut again.
constexpr int kRowsPerBlock = 40;

QString esc(const QString &text)
{
    return text.toHtmlEscaped();
}

QString orDash(const QString &text)
{
    return text.trimmed().isEmpty() ? QStringLiteral("-") : esc(text.trimmed());
}

QString amount(double value)
{
    return Format::amount(value);
}

QString percentage(double value)
{
    return Format::decimal(value, 3) + QStringLiteral(" %");
}

QString date(const QDate &value)
{
    return isFilled(value) ? Format::date(value) : QStringLiteral("-");
}

QString age(qint32 months)
{
    if (months <= 0)
        return QStringLiteral("-");
    QString text = QString::number(months / 12) + QStringLiteral(" jaar");
    if (months % 12 != 0)
        text += QStringLiteral(" en ") + QString::number(months % 12) + QStringLiteral(" mnd");
    return text;
}


QString soortRegeling(qint16 soort)
{
    switch (soort) {
    case SoortRegeling::Eindloon:
        return QStringLiteral("Eindloonregeling");
    case SoortRegeling::Middelloon:
        return QStringLiteral("Middelloonregeling");
    case SoortRegeling::BeschikbarePremie:
        return QStringLiteral("Beschikbare premieregeling");
    default:
        return QStringLiteral("-");
    }
}

QString participantRole(qint16 anvId)
{
    return anvId == 1 ? QStringLiteral("Aanvrager") : QStringLiteral("Partner");
}

const QString kTableOpen = QStringLiteral(
    "<table width=\"100%\" border=\"1\" cellspacing=\"0\" cellpadding=\"3\" "
    "style=\"border-style: solid; border-color: #b0b0b0;\">");

// A table of columns with titles; right-aligned columns hold numbers.
struct Table
{
    QString title;            // the heading above the table, part of every block it is cut into
    QString intro;            // HTML above the column titles in the first block only (the scheme heading)
    QStringList columns;
    QList<bool> right;
    QList<int> widths;        // percentages of the body width; empty: the table decides
    QList<QStringList> rows;  // cell texts, already formatted (plain text)
    QString empty;            // shown instead of the table when there are no rows
};

QString tableHtml(const Table &table, qsizetype from, qsizetype to, bool first)
{
    QString html;
    if (first)
        html += table.intro;
    if (!table.title.isEmpty())
        html += QStringLiteral("<p style=\"margin-top:0; margin-bottom:3px;\"><b>%1</b>%2</p>")
                    .arg(esc(table.title), first ? QString() : QStringLiteral(" (vervolg)"));
    if (table.rows.isEmpty()) {
        html += QStringLiteral("<p style=\"margin:0;\">%1</p>").arg(esc(table.empty));
        return html;
    }
    html += kTableOpen + QStringLiteral("<thead><tr style=\"background-color:#e8e8e8;\">");
    for (qsizetype c = 0; c < table.columns.size(); ++c)
        html += QStringLiteral("<th align=\"%1\"%3>%2</th>")
                    .arg(table.right.value(c) ? QStringLiteral("right") : QStringLiteral("left"), esc(table.columns[c]),
                         table.widths.value(c) > 0 ? QStringLiteral(" width=\"%1%\"").arg(table.widths.value(c)) : QString());
    html += QStringLiteral("</tr></thead>");
    for (qsizetype r = from; r < to; ++r) {
        html += QStringLiteral("<tr>");
        const QStringList &row = table.rows[r];
        for (qsizetype c = 0; c < row.size(); ++c)
            html += QStringLiteral("<td align=\"%1\">%2</td>")
                        .arg(table.right.value(c) ? QStringLiteral("right") : QStringLiteral("left"), esc(row[c]));
        html += QStringLiteral("</tr>");
    }
    html += QStringLiteral("</table>");
    return html;
}

// Label/value pairs, two pairs to a row.
QString fieldsHtml(const QList<std::pair<QString, QString>> &fields)
{
    QString html = kTableOpen;
    for (qsizetype i = 0; i < fields.size(); i += 2) {
        html += QStringLiteral("<tr>");
        for (qsizetype j = i; j < i + 2; ++j) {
            if (j < fields.size())
                html += QStringLiteral("<td width=\"27%\" style=\"background-color:#f2f2f2;\">%1</td><td width=\"23%\">%2</td>")
                            .arg(esc(fields[j].first), esc(fields[j].second));
            else
                html += QStringLiteral("<td></td><td></td>");
        }
        html += QStringLiteral("</tr>");
    }
    return html + QStringLiteral("</table>");
}

} // namespace

class CaseReport::Private
{
public:
    explicit Private(const Options &o) : options(o)
    {
        // Layout against a fixed resolution, never the screen's: the same case gives the same
        // pages on every machine, with or without a display.
        measure.setDotsPerMeterX(qRound(kDpi / 0.0254));
        measure.setDotsPerMeterY(qRound(kDpi / 0.0254));
        font = QFont(QStringLiteral("DejaVu Sans"));
        font.setPointSizeF(8.5);
        // No ligatures: "fi" drawn as one glyph reads back from the PDF as a single character, and
        // a search for "Specificatie" in the file would miss it.
        font.setStyleStrategy(QFont::PreferNoShaping);
        // Header and footer are drawn by the painter, which would size a point size for the
        // printer's resolution and then scale it again: their size is given in layout pixels.
        small = font;
        small.setPixelSize(qRound(7.5 * kDpi / 72.0));
    }

    std::unique_ptr<QTextDocument> layOut(const QString &source);
    void keep(std::unique_ptr<QTextDocument> document, const QString &source, qreal gap, bool schemeHeading,
              const QString &heading);
    void add(const QString &source, qreal gap, bool schemeHeading, const QString &heading);
    void addTable(const Table &table, qreal gap, bool schemeHeading, const QString &heading);
    void addTitle();
    void addParticipant(const AanvragerPtr &aanvrager);
    void addScheme(const AanvragerPtr &aanvrager, qint16 penId, const PensioenPtr &pensioen);
    void addFindings();
    void paginate();

    Options options;
    QImage measure{1, 1, QImage::Format_RGB32};
    QFont font;
    QFont small;
    QList<Block> blocks;
    std::vector<std::unique_ptr<QTextDocument>> documents;
    QStringList html;          // each block's source
    QList<int> pageOf;
    QList<QList<int>> pages;   // block numbers per page
    QList<QList<qreal>> tops;  // each block's top within the body, per page
};

std::unique_ptr<QTextDocument> CaseReport::Private::layOut(const QString &html)
{
    auto document = std::make_unique<QTextDocument>();
    document->documentLayout()->setPaintDevice(&measure);
    document->setDefaultFont(font);
    document->setDocumentMargin(0);
    document->setUndoRedoEnabled(false);
    document->setHtml(html);
    document->setTextWidth(kBodyWidth);
    return document;
}

void CaseReport::Private::keep(std::unique_ptr<QTextDocument> document, const QString &source, qreal gap,
                               bool schemeHeading, const QString &heading)
{
    Block block;
    block.height = document->size().height();
    block.gapBefore = gap;
    block.schemeHeading = schemeHeading;
    block.heading = heading;
    blocks.append(block);
    documents.push_back(std::move(document));
    html.append(source);
}

void CaseReport::Private::add(const QString &source, qreal gap, bool schemeHeading, const QString &heading)
{
    keep(layOut(source), source, gap, schemeHeading, heading);
}

void CaseReport::Private::addTable(const Table &table, qreal gap, bool schemeHeading, const QString &heading)
{
    if (table.rows.isEmpty()) {
        add(tableHtml(table, 0, 0, true), gap, schemeHeading, heading);
        return;
    }
    qsizetype from = 0;
    bool first = true;
    while (from < table.rows.size()) {
        qsizetype count = std::min<qsizetype>(kRowsPerBlock, table.rows.size() - from);
        // Rows whose text wraps make a cut taller; cut again until it fits, down to one row (a
        // single row taller than a page is left to overflow rather than lost).
        for (;;) {
            const QString source = tableHtml(table, from, from + count, first);
            std::unique_ptr<QTextDocument> document = layOut(source);
            if (document->size().height() <= kBodyHeight || count == 1) {
                keep(std::move(document), source, first ? gap : kGapSection, first && schemeHeading,
                     first ? heading : heading + QStringLiteral(" (vervolg)"));
                break;
            }
            count = std::max<qsizetype>(1, count / 2);
        }
        from += count;
        first = false;
    }
}

void CaseReport::Private::addTitle()
{
    QString html = QStringLiteral("<h1 style=\"margin-top:0;\">Pensioenoverzicht</h1>");
    html += QStringLiteral("<p>Dossier: <b>%1</b><br>Datum van afdrukken: %2</p>")
                .arg(orDash(options.caseName), Format::date(options.printDate));
    html += QStringLiteral("<p style=\"color:#444;\">Dit overzicht toont de pensioengegevens van het dossier waarop "
                           "het advies berust. Bedragen in euro's per jaar tenzij anders vermeld.</p>");
    add(html, 0, false, QStringLiteral("Pensioenoverzicht"));
}

void CaseReport::Private::addParticipant(const AanvragerPtr &aanvrager)
{
    const QString role = participantRole(aanvrager->Anv_Id());
    const QString naam = aanvrager->Naam().trimmed();
    const QString heading = QStringLiteral("%1: %2").arg(role, naam.isEmpty() ? QStringLiteral("(zonder naam)") : naam);
    const QDate geboorte = aanvrager->GeboorteDatum();
    const qint16 aowLeeftijd = aanvrager->AowLeeftijd();
    // The state pension starts on the day the participant reaches the AOW age (SVB, "Wanneer
    // krijg ik AOW?", svb.nl; not re-verified for this build); the host gives that age in whole years.
    const QDate aowDatum = isFilled(geboorte) && aowLeeftijd > 0 ? geboorte.addYears(aowLeeftijd) : QDate();

    Table table;
    table.intro = QStringLiteral("<h2 style=\"margin-top:0; margin-bottom:4px;\">%1</h2>").arg(esc(heading))
                  + fieldsHtml({{QStringLiteral("Geboortedatum"), date(geboorte)},
                                {QStringLiteral("AOW-leeftijd"), aowLeeftijd > 0 ? QStringLiteral("%1 jaar").arg(aowLeeftijd)
                                                                                 : QStringLiteral("-")},
                                {QStringLiteral("AOW-datum"), date(aowDatum)},
                                {QStringLiteral("Einde inkomen"), date(aanvrager->Dt_EindeInkomen())}})
                  + QStringLiteral("<p style=\"margin:0;\"> </p>");
    table.title = QStringLiteral("Dienstverbanden");
    table.columns = {QStringLiteral("Werkgever"), QStringLiteral("In dienst"), QStringLiteral("Uit dienst"),
                     QStringLiteral("Salaris"), QStringLiteral("Inkomen meetellen tot")};
    table.right = {false, false, false, true, false};
    table.empty = QStringLiteral("Geen dienstverbanden.");
    for (qint16 i = 1;; ++i) {
        const DienstverbandPtr dv = aanvrager->Get_Dienstverband(i);
        if (!dv)
            break;
        table.rows.append({dv->Werkgever().trimmed().isEmpty() ? QStringLiteral("-") : dv->Werkgever().trimmed(),
                           date(dv->Dt_Begin()), date(dv->Dt_Einde()), amount(dv->Salaris()),
                           date(dv->Dt_InkomenMeetellenTot())});
    }
    addTable(table, kGapScheme, false, heading);
}

void CaseReport::Private::addScheme(const AanvragerPtr &aanvrager, qint16 penId, const PensioenPtr &p)
{
    const QString provider = p->Uitvoerder().trimmed();
    const QString naam = aanvrager->Naam().trimmed();
    const QString heading = QStringLiteral("Regeling %1: %2")
                                .arg(penId)
                                .arg(provider.isEmpty() ? QStringLiteral("(geen uitvoerder)") : provider);

    QString werkgever = QStringLiteral("-");
    const QString key = p->DienstverbandKey();
    if (!key.isEmpty()) {
        for (qint16 i = 1;; ++i) {
            const DienstverbandPtr dv = aanvrager->Get_Dienstverband(i);
            if (!dv)
                break;
            if (dv->Key().compare(key, Qt::CaseInsensitive) == 0) {
                werkgever = dv->Werkgever().trimmed().isEmpty() ? QStringLiteral("-") : dv->Werkgever().trimmed();
                break;
            }
        }
    }
    werkgever += p->HuidigeWerkgever() ? QStringLiteral(" (huidige werkgever)") : QStringLiteral(" (vorige werkgever)");

    QString intro = QStringLiteral("<h3 style=\"margin-top:0; margin-bottom:2px;\">%1</h3>"
                                   "<p style=\"margin-top:0; margin-bottom:3px; color:#444;\">%2 %3</p>")
                        .arg(esc(heading), participantRole(aanvrager->Anv_Id()),
                             naam.isEmpty() ? QStringLiteral("(zonder naam)") : esc(naam));
    intro += fieldsHtml({
        {QStringLiteral("Uitvoerder"), provider.isEmpty() ? QStringLiteral("-") : provider},
        {QStringLiteral("Branche"), p->Branche().trimmed().isEmpty() ? QStringLiteral("-") : p->Branche().trimmed()},
        {QStringLiteral("Werkgever"), werkgever},
        {QStringLiteral("Soort pensioenregeling"), soortRegeling(p->SoortRegeling())
                                                       + (p->RegelingBekend() ? QString() : QStringLiteral(" (onbekend)"))},
        {QStringLiteral("Pensioengevend salaris"), amount(p->Salaris())},
        {QStringLiteral("Franchise"), amount(p->Franchise())},
        {QStringLiteral("Pensioengrondslag"), amount(p->Grondslag())},
        {QStringLiteral("Opbouwpercentage"), percentage(p->OpbouwPercentage())},
        {QStringLiteral("Pensioenaangroei (factor A)"), amount(p->Aangroei())},
        {QStringLiteral("Dienstjaren"), QString::number(p->Dienstjaren())},
        {QStringLiteral("Bijdrage ouderdomspensioen"), amount(p->BijdrageOP())},
        {QStringLiteral("Bijdrage pré-pensioen"), amount(p->BijdragePreP())},
        {QStringLiteral("Bijdrage vrijwillig"), amount(p->BijdrageVrijwillig())},
        {QStringLiteral("Beschikbare premie"), amount(p->Premie())},
        {QStringLiteral("Doelvermogen"), amount(p->Doelvermogen())},
        {QStringLiteral("Rekenrente opbouw / uitkering"),
         percentage(p->RekenrenteOpbouw()) + QStringLiteral(" / ") + percentage(p->RekenrenteUitkering())},
        {QStringLiteral("Datum overzicht"), date(p->Dt_Overzicht())},
        {QStringLiteral("Huidig opgebouwd bedrag"), amount(p->Opgebouwd())},
    });
    intro += QStringLiteral("<p style=\"margin:0;\"> </p>");

    // The commitments table carries the scheme heading: heading, data and the first commitments
    // are one block, so a scheme never starts with its heading alone at a page's foot.
    Table commitments;
    commitments.intro = intro;
    commitments.title = QStringLiteral("Pensioentoezeggingen");
    commitments.columns = {QStringLiteral("Toezegging"), QStringLiteral("Bedrag"), QStringLiteral("% t.o.v. OP"),
                           QStringLiteral("Ingangsdatum"), QStringLiteral("Leeftijd")};
    commitments.right = {false, true, true, false, false};
    commitments.empty = QStringLiteral("Geen toezeggingen.");
    const OuderdomRegelPtr eerste = p->OuderdomRegelCount() > 0 ? p->Get_OuderdomRegel(1) : nullptr;
    const QString dash = QStringLiteral("-");
    if (eerste && eerste->OP())
        commitments.rows.append({QStringLiteral("Ouderdomspensioen (OP)"), amount(eerste->BedragOP()), dash,
                                 date(eerste->Dt_IngangOP()), age(eerste->LeeftijdOP())});
    if (eerste && eerste->PreP())
        commitments.rows.append({QStringLiteral("Pré-pensioen"), amount(eerste->BedragPreP()), dash,
                                 date(eerste->Dt_IngangPreP()), age(eerste->LeeftijdPreP())});
    if (p->TOP())
        commitments.rows.append({QStringLiteral("Overbruggingspensioen"), amount(p->BedragTOP()), dash, dash, dash});
    if (p->PP())
        commitments.rows.append({QStringLiteral("Nabestaandenpensioen tot AOW bij overlijden voor AOW"),
                                 amount(p->BedragPP()), percentage(p->Pc_PP()), dash, dash});
    if (p->PPNaAow())
        commitments.rows.append({QStringLiteral("Nabestaandenpensioen na AOW bij overlijden voor AOW"),
                                 amount(p->BedragPPNaAow()), percentage(p->Pc_PPNaAow()), dash, dash});
    if (p->PPna65())
        commitments.rows.append({QStringLiteral("Nabestaandenpensioen na AOW bij overlijden na AOW"),
                                 amount(p->BedragPPna65()), percentage(p->Pc_PPna65()), dash, dash});
    if (p->PpNa65TotAow())
        commitments.rows.append({QStringLiteral("Nabestaandenpensioen tot AOW bij overlijden na AOW"),
                                 amount(p->BedragPpNa65TotAow()), percentage(p->Pc_PpNa65TotAow()), dash, dash});
    if (p->WzP())
        commitments.rows.append({QStringLiteral("Wezenpensioen"), amount(p->BedragWzP()), percentage(p->Pc_WzP()), dash,
                                 QStringLiteral("tot %1 jaar").arg(p->EindLeeftijdWzP())});
    if (p->IP()) {
        const qint16 soort = p->Cd_UitkeringSoort();
        const QString wijze = soort == UitkeringSoort::Volledig ? QStringLiteral(" (volledig)")
                              : soort == UitkeringSoort::ProRata ? QStringLiteral(" (pro-rata)")
                                                                 : QString();
        commitments.rows.append({QStringLiteral("Invaliditeitspensioen") + wijze, amount(p->BedragIP()),
                                 percentage(p->Pc_IP()), dash, dash});
    }
    if (p->AnwCompensatie())
        commitments.rows.append({QStringLiteral("ANW-compensatie tot AOW"), amount(p->BedragAnwCompensatie()), dash,
                                 dash, dash});
    addTable(commitments, kGapScheme, true, heading);

    const qint16 regels = p->OuderdomRegelCount();
    if (p->HeeftSpecificatie()) {
        Table breakdown;
        breakdown.title = QStringLiteral("Specificatie pensioen");
        breakdown.columns = {QStringLiteral("Ingangsleeftijd"), QStringLiteral("OP"), QStringLiteral("Ingang OP"),
                        QStringLiteral("Pré-pensioen"), QStringLiteral("Ingang pré-pensioen")};
        breakdown.right = {false, true, false, true, false};
        breakdown.empty = QStringLiteral("Geen regels.");
        for (qint16 i = 1; i <= regels; ++i) {
            const OuderdomRegelPtr r = p->Get_OuderdomRegel(i);
            if (!r)
                continue;
            breakdown.rows.append({age(r->Leeftijd()), r->OP() ? amount(r->BedragOP()) : dash, r->OP() ? date(r->Dt_IngangOP()) : dash,
                              r->PreP() ? amount(r->BedragPreP()) : dash, r->PreP() ? date(r->Dt_IngangPreP()) : dash});
        }
        addTable(breakdown, kGapSection, false, heading + QStringLiteral(", specificatie pensioen"));
    }

    for (qint16 i = 1; i <= regels; ++i) {
        const OuderdomRegelPtr r = p->Get_OuderdomRegel(i);
        if (!r)
            continue;
        const ScenarioPtr scenario = r->ScenarioOP();
        if (!scenario || scenario->RegelCount() == 0)
            continue;
        Table table;
        table.title = QStringLiteral("Scenario ouderdomspensioen, ingang %1 (%2)")
                          .arg(date(r->Dt_IngangOP()), age(r->LeeftijdOP()));
        table.columns = {QStringLiteral("Maand"), QStringLiteral("Vanaf"), QStringLiteral("Bedrag")};
        table.right = {true, false, true};
        const QDate ingang = r->Dt_IngangOP();
        table.rows.append({QStringLiteral("1"), date(ingang), amount(scenario->Bedrag())});
        for (qint16 j = 1; j <= scenario->RegelCount(); ++j) {
            const ScenarioRegelPtr regel = scenario->Regel(j);
            if (!regel || (regel->Maand() == 1 && regel->Bedrag() == scenario->Bedrag()))
                continue;   // the first month is the scenario's own amount, shown above
            table.rows.append({QString::number(regel->Maand()),
                               isFilled(ingang) && regel->Maand() > 0 ? date(ingang.addMonths(regel->Maand() - 1)) : dash,
                               amount(regel->Bedrag())});
        }
        addTable(table, kGapSection, false, heading + QStringLiteral(", scenario"));
    }

    Table ao;
    ao.title = QStringLiteral("Uitkering bij arbeidsongeschiktheid (staffel)");
    ao.columns = {QStringLiteral("AO% vanaf"), QStringLiteral("AO% tot"), QStringLiteral("Uitkering")};
    ao.right = {true, true, true};
    for (qint16 i = 1;; ++i) {
        const AoUitkeringPtr row = p->AoUitkeringItem(i);
        if (!row)
            break;
        ao.rows.append({percentage(row->Pc_AoVanaf()), percentage(row->Pc_AoTot()),
                        row->Pc_Uitkering() == -1.f ? QStringLiteral("het AO-percentage") : percentage(row->Pc_Uitkering())});
    }
    if (!ao.rows.isEmpty())
        addTable(ao, kGapSection, false, heading + QStringLiteral(", staffel"));
}

void CaseReport::Private::addFindings()
{
    const QString heading = QStringLiteral("Bevindingen van de controle");
    QString html = QStringLiteral("<h2 style=\"margin-top:0; margin-bottom:4px;\">%1</h2>").arg(heading);
    if (!options.checked) {
        html += QStringLiteral("<p style=\"margin:0;\">De controle is niet uitgevoerd.</p>");
        add(html, kGapScheme, false, heading);
        return;
    }
    html += QStringLiteral("<p style=\"margin:0;\">Wat het pensioenscherm zou weigeren of vragen bij het verlaten "
                           "van elke regeling, en de opmerkingen van de controledienst.</p>");
    if (options.findings.isEmpty()) {
        html += QStringLiteral("<p style=\"margin-top:4px; margin-bottom:0;\">Geen bevindingen: elke regeling is in orde.</p>");
        add(html, kGapScheme, false, heading);
        return;
    }
    add(html, kGapScheme, false, heading);

    // One block per subject, its findings in the order the check met them.
    QStringList subjects;
    for (const Finding &f : options.findings)
        if (!subjects.contains(f.subject))
            subjects.append(f.subject);
    for (const QString &subject : subjects) {
        Table table;
        table.title = subject.isEmpty() ? QStringLiteral("Dossier") : subject;
        table.columns = {QStringLiteral("Soort"), QStringLiteral("Bevinding")};
        table.right = {false, false};
        table.widths = {14, 86};
        for (const Finding &f : options.findings) {
            if (f.subject != subject)
                continue;
            const QString kind = f.kind == Finding::Kind::Refusal    ? QStringLiteral("Geweigerd")
                                 : f.kind == Finding::Kind::Question ? QStringLiteral("Vraag")
                                                                     : QStringLiteral("Opmerking");
            table.rows.append({kind, f.text.simplified()});
        }
        addTable(table, kGapSection, false, table.title);
    }
}

void CaseReport::Private::paginate()
{
    pageOf.clear();
    pages.clear();
    tops.clear();
    qreal y = 0;
    for (int i = 0; i < blocks.size(); ++i) {
        const Block &block = blocks[i];
        if (pages.isEmpty() || (y > 0 && y + block.gapBefore + block.height > kBodyHeight)) {
            pages.append(QList<int>());
            tops.append(QList<qreal>());
            y = 0;
        } else if (y > 0) {
            y += block.gapBefore;
        }
        pages.last().append(i);
        tops.last().append(y);
        pageOf.append(int(pages.size()) - 1);
        y += block.height;
    }
    if (pages.isEmpty()) {
        pages.append(QList<int>());
        tops.append(QList<qreal>());
    }
}

// ---------------------------------------------------------------------------------------------

CaseReport::CaseReport(const ApplicationPtr &application, const Options &options)
    : d(std::make_unique<Private>(options))
{
    d->addTitle();
    const DossierPtr dossier = application ? application->Get_Dossier() : nullptr;
    QList<AanvragerPtr> participants;
    if (dossier) {
        for (qint16 anvId = 1; anvId <= 2; ++anvId)
            if (AanvragerPtr a = dossier->Get_Aanvrager(anvId))
                participants.append(a);
    }
    for (const AanvragerPtr &a : participants)
        d->addParticipant(a);
    for (const AanvragerPtr &a : participants) {
        for (qint16 penId = 1;; ++penId) {
            const PensioenPtr p = a->Get_Pensioen(penId);
            if (!p)
                break;
            d->addScheme(a, penId, p);
        }
    }
    d->addFindings();
    d->paginate();
}

CaseReport::~CaseReport() = default;

qreal CaseReport::bodyHeight()
{
    return kBodyHeight;
}

qreal CaseReport::bodyWidth()
{
    return kBodyWidth;
}

const QList<Block> &CaseReport::blocks() const
{
    return d->blocks;
}

const QList<int> &CaseReport::pageOfBlock() const
{
    return d->pageOf;
}

QString CaseReport::html() const
{
    return d->html.join(QStringLiteral("\n"));
}

int CaseReport::pageCount() const
{
    return int(d->pages.size());
}

void CaseReport::paintPage(QPainter &painter, int page) const
{
    painter.setPen(Qt::black);
    painter.setFont(d->small);
    const QRectF header(kMarginSide, kMarginTop, kBodyWidth, kHeaderBand - mm(3));
    // A long case name is shortened in the header rather than run into the date; the title
    // page shows it whole.
    const QFontMetricsF metrics(d->small, &d->measure);
    painter.drawText(header, Qt::AlignLeft | Qt::AlignBottom,
                     metrics.elidedText(QStringLiteral("Pensioenoverzicht - dossier %1").arg(d->options.caseName),
                                        Qt::ElideMiddle, kBodyWidth * 0.7));
    painter.drawText(header, Qt::AlignRight | Qt::AlignBottom,
                     QStringLiteral("Afgedrukt op %1").arg(Format::date(d->options.printDate)));
    painter.setPen(QPen(QColor(0x9a, 0x9a, 0x9a), 0.75));
    painter.drawLine(QPointF(kMarginSide, kBodyTop - mm(2)), QPointF(kMarginSide + kBodyWidth, kBodyTop - mm(2)));

    const QList<int> &blocks = d->pages[page];
    for (int i = 0; i < blocks.size(); ++i) {
        painter.save();
        painter.translate(kMarginSide, kBodyTop + d->tops[page][i]);
        d->documents[size_t(blocks[i])]->drawContents(&painter);
        painter.restore();
    }

    const qreal footerTop = kPageHeight - kMarginBottom - kFooterBand;
    painter.setPen(QPen(QColor(0x9a, 0x9a, 0x9a), 0.75));
    painter.drawLine(QPointF(kMarginSide, footerTop + mm(2)), QPointF(kMarginSide + kBodyWidth, footerTop + mm(2)));
    painter.setPen(Qt::black);
    painter.setFont(d->small);
    painter.drawText(QRectF(kMarginSide, footerTop + mm(3), kBodyWidth, kFooterBand - mm(3)),
                     Qt::AlignHCenter | Qt::AlignTop,
                     QStringLiteral("pagina %1 van %2").arg(page + 1).arg(pageCount()));
}

bool CaseReport::paint(QPagedPaintDevice *device, QString *error, const Progress &progress) const
{
    // Scaled by what the device says its page is wide, not by the resolution it reports: a
    // printer reconfigured by its dialog does not always report both alike.
    const qreal scale = qreal(device->width()) / kPageWidth;
    QPainter painter;
    if (!painter.begin(device)) {
        if (error)
            *error = QStringLiteral("Het rapport kan niet worden getekend.");
        return false;
    }
    painter.setRenderHint(QPainter::Antialiasing);
    for (int page = 0; page < pageCount(); ++page) {
        if (page > 0 && !device->newPage()) {
            if (error)
                *error = QStringLiteral("Er kan geen nieuwe pagina worden begonnen.");
            painter.end();
            return false;
        }
        painter.save();
        painter.scale(scale, scale);
        paintPage(painter, page);
        painter.restore();
        if (progress)
            progress(page + 1, pageCount());
    }
    if (!painter.end()) {
        if (error)
            *error = QStringLiteral("Het rapport kan niet worden afgerond.");
        return false;
    }
    return true;
}

bool CaseReport::writePdf(QIODevice *device, QString *error, const Progress &progress) const
{
    QPdfWriter writer(device);
    writer.setResolution(int(kDpi));
    writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF(0, 0, 0, 0)));
    writer.setTitle(QStringLiteral("Pensioenoverzicht %1").arg(d->options.caseName));
    writer.setCreator(QStringLiteral("Vandrel"));
    return paint(&writer, error, progress);
}

bool CaseReport::print(QPrinter *printer, QString *error, const Progress &progress) const
{
    printer->setFullPage(true);
    printer->setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF(0, 0, 0, 0)));
    if (printer->docName().isEmpty())
        printer->setDocName(QStringLiteral("Pensioenoverzicht %1").arg(d->options.caseName));
    return paint(printer, error, progress);
}

} // namespace VandrelReport
