// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "commands.h"

#include "componentloader.h"
#include "safefile.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonParseError>

using VandrelApplication::HostError;
using VandrelApplication::HostErrorCode::StoreFailed;

namespace Zarnoveld::Commands {

QString caseSuffix()
{
    return QStringLiteral(".zdossier");
}

QString caseFolder()
{
    QString data = qEnvironmentVariable("XDG_DATA_HOME");
    if (data.isEmpty())
        data = QDir::homePath() + QStringLiteral("/.local/share");
    return data + QStringLiteral("/zarnoveld/dossiers");
}

QString caseFileFor(const QString &jsonPath)
{
    QFile file(jsonPath);
    if (!file.open(QIODevice::ReadOnly))
        throw HostError(StoreFailed, QStringLiteral("Het bestand %1 kan niet worden gelezen.").arg(jsonPath));
    QCryptographicHash content(QCryptographicHash::Sha256);
    content.addData(&file);
    const QString canonical = QFileInfo(jsonPath).canonicalFilePath();
    const QByteArray where = QCryptographicHash::hash(canonical.toUtf8(), QCryptographicHash::Sha256);
    return caseFolder() + QLatin1Char('/') + QFileInfo(jsonPath).completeBaseName() + QLatin1Char('-')
        + QString::fromLatin1(where.toHex().left(12)) + QLatin1Char('-') + QString::fromLatin1(content.result().toHex().left(12))
        + caseSuffix();
}

QJsonObject readJsonCase(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw HostError(StoreFailed, QStringLiteral("Het bestand %1 kan niet worden gelezen.").arg(path));
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &parseError);
    if (parseError.error != QJsonParseError::NoError)
        throw HostError(StoreFailed, QStringLiteral("%1 is geen geldig JSON-dossier: %2 (positie %3).")
                                         .arg(path, parseError.errorString())
                                         .arg(parseError.offset));
    if (!document.isObject())
        throw HostError(StoreFailed, QStringLiteral("%1 is geen JSON-dossier: een dossier is een object tussen { en }, "
                                                    "dit bestand bevat %2.")
                                         .arg(path, document.isArray() ? QStringLiteral("een lijst") : QStringLiteral("iets anders")));
    return document.object();
}

std::shared_ptr<HostApplication> importCase(const QString &jsonPath, const QString &casePath)
{
    const QJsonObject document = readJsonCase(jsonPath);
    const QFileInfo target(casePath);
    if (target.exists() || target.isSymLink())
        throw HostError(StoreFailed, QStringLiteral("Het dossier %1 bestaat al.").arg(casePath));
    if (!SafeFile::makePrivateDir(target.absolutePath()))
        throw HostError(StoreFailed, QStringLiteral("De map %1 kan niet worden gemaakt.").arg(target.absolutePath()));
    return HostApplication::importJson(document, casePath);
}

std::shared_ptr<HostApplication> openOrImport(const QString &path)
{
    if (!path.endsWith(QStringLiteral(".json"), Qt::CaseInsensitive))
        return HostApplication::openFile(path);
    const QString casePath = caseFileFor(path);
    if (QFileInfo::exists(casePath))
        return HostApplication::openFile(casePath);
    return importCase(path, casePath);
}

void exportCase(HostApplication &application, const QString &jsonPath, bool overwrite)
{
    SafeFile::write(jsonPath, QJsonDocument(application.exportJson()).toJson(QJsonDocument::Indented),
                    overwrite ? SafeFile::Existing::Replace : SafeFile::Existing::Refuse);
}

QStringList caseWarnings(HostApplication &application)
{
    QStringList warnings;
    const auto dossier = application.Get_Dossier();
    for (qint16 id = 1; dossier && id <= 2; ++id) {
        const auto anv = dossier->Get_Aanvrager(id);
        if (!anv)
            break;
        const QString who = id == 1 ? QStringLiteral("De aanvrager") : QStringLiteral("De partner");
        if (anv->Naam().trimmed().isEmpty())
            warnings << QStringLiteral("%1 heeft geen naam.").arg(who);
        if (!VandrelApplication::isFilled(anv->GeboorteDatum()))
            warnings << QStringLiteral("%1 heeft geen geboortedatum: leeftijden, de AOW-datum en de datum 65 jaar "
                                       "kunnen niet worden bepaald tot die is ingevuld.").arg(who);
    }
    return warnings;
}

QString bundledLibrary()
{
    // Installed: <prefix>/bin/zarnoveld next to <prefix>/lib/libVandrelPensioen.so; in the build
    // tree the library stays where CMake built it.
    const QDir bin(QCoreApplication::applicationDirPath());
    const QString installed = bin.absoluteFilePath(QStringLiteral("../lib/") + QStringLiteral(VANDREL_PENSIOEN_LIBRARY_NAME));
    if (QFileInfo::exists(installed))
        return QFileInfo(installed).canonicalFilePath();
    return QStringLiteral(VANDREL_PENSIOEN_LIBRARY);
}

bool registerComponent(QString *error)
{
    return VandrelPensioen::ComponentLoader::registerLibrary(bundledLibrary(), error);
}

bool unregisterComponent(QString *error)
{
    return VandrelPensioen::ComponentLoader::unregisterLibrary(bundledLibrary(), error);
}

bool ensureRegistered(QString *error)
{
    VandrelPensioen::ComponentLoader::Registered record;
    if (VandrelPensioen::ComponentLoader::lookup(QStringLiteral("VandrelPensioen.PensMain"), &record, nullptr)
        && QFileInfo::exists(record.library))
        return true;
    return registerComponent(error);
}

} // namespace Zarnoveld::Commands
