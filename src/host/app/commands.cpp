#include "commands.h"

#include "componentloader.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonParseError>
#include <QSaveFile>

using VandrelApplication::HostError;
using VandrelApplication::HostErrorCode::StoreFailed;

namespace Zarnoveld::Commands {

QString caseSuffix()
{
    return QStringLiteral(".zdossier");
}

QString caseFileFor(const QString &jsonPath)
{
    QString data = qEnvironmentVariable("XDG_DATA_HOME");
    if (data.isEmpty())
        data = QDir::homePath() + QStringLiteral("/.local/share");
    return data + QStringLiteral("/zarnoveld/dossiers/") + QFileInfo(jsonPath).completeBaseName() + caseSuffix();
}

std::shared_ptr<HostApplication> importCase(const QString &jsonPath, const QString &casePath)
{
    QFile file(jsonPath);
    if (!file.open(QIODevice::ReadOnly))
        throw HostError(StoreFailed, QStringLiteral("Het bestand %1 kan niet worden gelezen.").arg(jsonPath));
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &parseError);
    if (parseError.error != QJsonParseError::NoError || !document.isObject())
        throw HostError(StoreFailed, QStringLiteral("%1 is geen geldig JSON-dossier: %2 (positie %3).")
                                         .arg(jsonPath, parseError.errorString())
                                         .arg(parseError.offset));
    if (QFileInfo::exists(casePath))
        throw HostError(StoreFailed, QStringLiteral("Het dossier %1 bestaat al.").arg(casePath));
    QDir().mkpath(QFileInfo(casePath).absolutePath());
    return HostApplication::importJson(document.object(), casePath);
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

void exportCase(HostApplication &application, const QString &jsonPath)
{
    QSaveFile file(jsonPath);
    if (!file.open(QIODevice::WriteOnly))
        throw HostError(StoreFailed, QStringLiteral("%1 kan niet worden geschreven.").arg(jsonPath));
    file.write(QJsonDocument(application.exportJson()).toJson(QJsonDocument::Indented));
    if (!file.commit())
        throw HostError(StoreFailed, QStringLiteral("%1 kan niet worden geschreven.").arg(jsonPath));
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
