// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// The case's bin: a scheme the host removes is kept, with the time, until the adviser puts it
// back or empties the bin. It lives in the case file itself, so it travels with the case and
// survives a restart; the JSON export leaves it out, being the case as it stands.

#include "casecore.h"
#include "objects.h"
#include "store.h"

#include <QJsonDocument>

#include <algorithm>

namespace Zarnoveld::detail {

namespace Code = VandrelApplication::HostErrorCode;

namespace {

[[noreturn]] void fail(qint32 code, const QString &text)
{
    throw HostError(code, text, QStringLiteral("Zarnoveld"));
}

} // namespace

void CaseCore::removeToBin(AanvragerNode &aanvrager, qint16 penId)
{
    checkOpen();
    auto &list = aanvrager.pensioenen;
    if (penId < 1 || penId > static_cast<qint16>(list.size()))
        fail(Code::OutOfRange, QStringLiteral("Pensioenregeling %1 bestaat niet.").arg(penId));
    const std::shared_ptr<PensioenNode> node = list[static_cast<size_t>(penId - 1)];
    BinItem item;
    item.id = m_nextBinId + 1;
    item.aanvragerId = aanvrager.id;
    item.position = penId;
    const QDateTime now = QDateTime::currentDateTimeUtc();
    item.removedAt = now.addMSecs(-now.time().msec());
    item.scheme = QJsonDocument(pensioenToJson(*node)).toJson(QJsonDocument::Compact);
    write([&](Store *s) {
        if (s) {
            s->remove(*node);
            s->shift(PensioenTable, aanvrager.id, penId, -1);
            s->binInsert(item);
        }
    });
    m_nextBinId = item.id;
    bin.push_back(std::move(item));
    kill(*node);
    list.erase(list.begin() + (penId - 1));
}

qint16 CaseCore::restoreFromBin(qint64 binId)
{
    checkOpen();
    const auto it = std::find_if(bin.begin(), bin.end(), [binId](const BinItem &i) { return i.id == binId; });
    if (it == bin.end())
        fail(Code::NotFound, QStringLiteral("Deze regeling staat niet meer in de prullenbak."));
    AanvragerNode *aanvrager = nullptr;
    for (const auto &a : dossier->aanvragers)
        if (a->id == it->aanvragerId)
            aanvrager = a.get();
    if (!aanvrager)
        fail(Code::NotFound, QStringLiteral("De deelnemer van deze regeling staat niet meer in het dossier."));
    if (aanvrager->pensioenen.size() >= static_cast<size_t>(AanvragerObj::MaxPensioenen))
        fail(Code::OutOfRange, QStringLiteral("Er kunnen niet meer dan %1 pensioenregelingen per aanvrager worden vastgelegd.")
                                   .arg(AanvragerObj::MaxPensioenen));
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(it->scheme, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        fail(Code::InvalidState, QStringLiteral("De regeling in de prullenbak is beschadigd en kan niet worden teruggezet."));
    std::shared_ptr<PensioenNode> pen = pensioenFromJson(*this, document.object());
    pen->aanvrager = aanvrager;
    // Back at its old number; when the list has since become shorter, at its end.
    const int pos = std::min(it->position, static_cast<int>(aanvrager->pensioenen.size()) + 1);
    write([&](Store *s) {
        if (s) {
            s->shift(PensioenTable, aanvrager->id, pos - 1, 1);
            s->insertPensioen(*pen, aanvrager->id, pos);
            s->binRemove(binId);
        }
    });
    aanvrager->pensioenen.insert(aanvrager->pensioenen.begin() + (pos - 1), std::move(pen));
    bin.erase(it);
    return static_cast<qint16>(pos);
}

int CaseCore::emptyBin(const QDateTime &removedBefore)
{
    checkOpen();
    std::vector<qint64> gone;
    for (const BinItem &item : bin)
        if (!removedBefore.isValid() || item.removedAt < removedBefore)
            gone.push_back(item.id);
    if (gone.empty())
        return 0;
    write([&gone](Store *s) {
        if (s)
            for (qint64 id : gone)
                s->binRemove(id);
    });
    std::erase_if(bin, [&gone](const BinItem &item) { return std::find(gone.begin(), gone.end(), item.id) != gone.end(); });
    return static_cast<int>(gone.size());
}

} // namespace Zarnoveld::detail
