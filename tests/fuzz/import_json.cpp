// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// The JSON case import on arbitrary bytes: a document is imported whole or refused with a
// HostError, never a crash or another exception. A refused document leaves no case file behind;
// an imported one exports to JSON that imports again to the very same JSON.

#include "hostapplication.h"
#include "fuzzsupport.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QTemporaryDir>

using VandrelApplication::HostError;
using Zarnoveld::HostApplication;

namespace {

QString scratchFile()
{
    static QTemporaryDir dir;
    return dir.filePath(QStringLiteral("fuzz-case.zarnoveld"));
}

QString compact(const QJsonObject &o)
{
    return QString::fromUtf8(QJsonDocument(o).toJson(QJsonDocument::Compact));
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    // The SQLite driver is a plugin; it wants an application object to be found.
    static QCoreApplication app(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QJsonDocument document = QJsonDocument::fromJson(
        QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));
    if (!document.isObject())
        return 0;
    const QJsonObject object = document.object();

    std::shared_ptr<HostApplication> imported;
    try {
        imported = HostApplication::importJson(object);
    } catch (const HostError &error) {
        Fuzz::require(!error.description().isEmpty(), "a refusal says why", compact(object));
        const QString path = scratchFile();
        bool refusedAgain = false;
        try {
            HostApplication::importJson(object, path);
        } catch (const HostError &) {
            refusedAgain = true;
        }
        Fuzz::require(refusedAgain, "a refused document is refused for a file too", compact(object));
        Fuzz::require(!QFile::exists(path), "a refused document writes no file", compact(object));
        return 0;
    }

    Fuzz::require(imported && imported->Get_Dossier() && imported->Get_Dossier()->Get_Aanvrager(1),
                  "an imported case has an applicant", compact(object));
    const QJsonObject exported = imported->exportJson();
    std::shared_ptr<HostApplication> again;
    try {
        again = HostApplication::importJson(exported);
    } catch (const HostError &error) {
        Fuzz::fail("an exported case imports again", error.description() + "\n  " + compact(exported));
    }
    Fuzz::require(again->exportJson() == exported, "export, import, export is stable",
                  compact(exported) + "\n  " + compact(again->exportJson()));
    return 0;
}
