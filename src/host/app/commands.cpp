// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "commands.h"

#include "caseaddress.h"
#include "componentloader.h"
#include "safefile.h"
#include "store.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonParseError>
#include <QLocale>
#include <QSettings>

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

QString caseFor(const QString &jsonPath)
{
    const QString file = caseFileFor(jsonPath);
    return database().isEmpty() ? file : CaseAddress::ofCase(database(), QFileInfo(file).completeBaseName());
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

namespace {

QString &chosenDatabase()
{
    static QString url;
    return url;
}

} // namespace

bool chooseDatabase(int &argc, char **argv, QString *error)
{
    QString url = qEnvironmentVariable("ZARNOVELD_DATABASE");
    if (url.isEmpty())
        url = QSettings(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Vandrel"), QStringLiteral("zarnoveld"))
                  .value(QStringLiteral("database")).toString();
    // The option may stand anywhere; it is taken out so that every command's own parser never
    // sees it.
    int kept = 1;
    for (int i = 1; i < argc; ++i) {
        const QByteArray arg(argv[i]);
        if (arg == "--database" || arg == "-database") {
            if (i + 1 >= argc) {
                *error = QStringLiteral("--database verwacht het adres van de database: postgresql://gebruiker@server:poort/database.");
                return false;
            }
            url = QString::fromLocal8Bit(argv[++i]);
            continue;
        }
        if (arg.startsWith("--database=")) {
            url = QString::fromLocal8Bit(arg.mid(11));
            continue;
        }
        argv[kept++] = argv[i];
    }
    argc = kept;
    argv[argc] = nullptr;
    if (!url.isEmpty()) {
        try {
            CaseAddress::parse(url);
        } catch (const HostError &e) {
            *error = e.description();
            return false;
        }
    }
    chosenDatabase() = url;
    return true;
}

QString database()
{
    return chosenDatabase();
}

QString caseAddress(const QString &typed)
{
    if (database().isEmpty() || CaseAddress::isServer(typed))
        return typed;
    return CaseAddress::ofCase(database(), typed);
}

QStringList caseListing()
{
    QStringList lines;
    const QLocale dutch(QLocale::Dutch, QLocale::Netherlands);
    if (!database().isEmpty()) {
        for (const auto &c : detail::casesOnServer(database()))
            lines << (c.user.isEmpty() ? QStringLiteral("%1\tvrij").arg(c.name)
                                       : QStringLiteral("%1\tin gebruik door %2 op %3 sinds %4")
                                             .arg(c.name, c.user, c.pc, dutch.toString(c.since.toLocalTime(), QStringLiteral("d-M-yyyy HH:mm"))));
        return lines;
    }
    for (const QString &path : allCases()) {
        const QString holder = HostApplication::holderOf(path);
        lines << QStringLiteral("%1\t%2").arg(path, holder.isEmpty() ? QStringLiteral("vrij") : holder);
    }
    return lines;
}

QStringList allCases()
{
    QStringList cases;
    if (!database().isEmpty()) {
        for (const auto &c : detail::casesOnServer(database()))
            cases << c.name;
        return cases;
    }
    const QDir folder(caseFolder());
    for (const QString &name : folder.entryList({QStringLiteral("*") + caseSuffix()}, QDir::Files, QDir::Name))
        cases << folder.filePath(name);
    return cases;
}

std::shared_ptr<HostApplication> importCase(const QString &jsonPath, const QString &casePath)
{
    const QJsonObject document = readJsonCase(jsonPath);
    if (CaseAddress::isServer(caseAddress(casePath)))
        return HostApplication::importJson(document, caseAddress(casePath));
    const QFileInfo target(casePath);
    if (target.exists() || target.isSymLink())
        throw HostError(StoreFailed, QStringLiteral("Het dossier %1 bestaat al.").arg(casePath));
    if (!SafeFile::makePrivateDir(target.absolutePath()))
        throw HostError(StoreFailed, QStringLiteral("De map %1 kan niet worden gemaakt.").arg(target.absolutePath()));
    return HostApplication::importJson(document, casePath);
}

std::shared_ptr<HostApplication> openOrImport(const QString &path)
{
    // With a database, a JSON document opened directly becomes a case there the first time, under
    // the name its case file would get, and that case is opened afterwards.
    if (!database().isEmpty() && path.endsWith(QStringLiteral(".json"), Qt::CaseInsensitive) && QFileInfo(path).isFile()) {
        const QString address = caseFor(path);
        try {
            return HostApplication::openFile(address);
        } catch (const HostError &e) {
            if (e.number() != VandrelApplication::HostErrorCode::NotFound)
                throw;
        }
        return HostApplication::importJson(readJsonCase(path), address);
    }
    if (CaseAddress::isServer(caseAddress(path)))
        return HostApplication::openFile(caseAddress(path));
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
