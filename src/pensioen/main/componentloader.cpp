// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "componentloader.h"

#include "registration.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLibrary>
#include <QWidget>

namespace VandrelPensioen::ComponentLoader {

namespace {

using EntryPoint = long (*)();
using GetClassObject = long (*)(const char *, const char *, void **);

QLibrary *loaded(const QString &path, QString *error)
{
    // Kept loaded for the life of the process: controls created from it must outlive any caller.
    auto *library = new QLibrary(path);
    if (!library->load()) {
        if (error)
            *error = QStringLiteral("De componentbibliotheek %1 kan niet worden geladen: %2")
                         .arg(path, library->errorString());
        delete library;
        return nullptr;
    }
    return library;
}

bool callEntry(const QString &library, const char *name, QString *error)
{
    QLibrary *lib = loaded(library, error);
    if (!lib)
        return false;
    auto entry = reinterpret_cast<EntryPoint>(lib->resolve(name));
    if (!entry) {
        if (error)
            *error = QStringLiteral("%1 ontbreekt in %2.").arg(QLatin1String(name), library);
        return false;
    }
    const long result = entry();
    if (result != Registration::S_OK && error)
        *error = QStringLiteral("%1 gaf foutcode %2.").arg(QLatin1String(name)).arg(result);
    return result == Registration::S_OK;
}

} // namespace

bool lookup(const QString &progId, Registered *record, QString *error)
{
    const QDir dir(Registration::registryFolder());
    const auto entries = dir.entryList({QStringLiteral("*.json")}, QDir::Files, QDir::Name);
    for (const QString &name : entries) {
        QFile file(dir.filePath(name));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QJsonObject json = QJsonDocument::fromJson(file.readAll()).object();
        if (json.value(QStringLiteral("progId")).toString() != progId)
            continue;
        if (record) {
            record->classId = json.value(QStringLiteral("classId")).toString();
            record->progId = progId;
            record->library = json.value(QStringLiteral("library")).toString();
            record->typeLibrary = json.value(QStringLiteral("typeLibrary")).toString();
        }
        return true;
    }
    if (error)
        *error = QStringLiteral("Het onderdeel %1 is niet geregistreerd (map %2).").arg(progId, dir.path());
    return false;
}

bool registerLibrary(const QString &library, QString *error)
{
    return callEntry(library, "DllRegisterServer", error);
}

bool unregisterLibrary(const QString &library, QString *error)
{
    return callEntry(library, "DllUnregisterServer", error);
}

QWidget *create(const QString &progId, QWidget *parent, QString *error)
{
    Registered record;
    if (!lookup(progId, &record, error))
        return nullptr;
    QLibrary *lib = loaded(record.library, error);
    if (!lib)
        return nullptr;
    auto getClassObject = reinterpret_cast<GetClassObject>(lib->resolve("DllGetClassObject"));
    if (!getClassObject) {
        if (error)
            *error = QStringLiteral("DllGetClassObject ontbreekt in %1.").arg(record.library);
        return nullptr;
    }
    void *factory = nullptr;
    const QByteArray classId = record.classId.toLatin1();
    const long result = getClassObject(classId.constData(), Registration::InterfaceId, &factory);
    if (result != Registration::S_OK || !factory) {
        if (error)
            *error = QStringLiteral("De klasse %1 is niet beschikbaar (foutcode %2).").arg(record.classId).arg(result);
        return nullptr;
    }
    QWidget *control = static_cast<Registration::ClassFactory *>(factory)->CreateInstance(parent);
    if (!control && error)
        *error = QStringLiteral("Het onderdeel %1 kon niet worden gemaakt.").arg(progId);
    return control;
}

bool canUnload(const QString &progId)
{
    Registered record;
    if (!lookup(progId, &record, nullptr))
        return true;
    QLibrary lib(record.library);
    auto entry = reinterpret_cast<EntryPoint>(lib.resolve("DllCanUnloadNow"));
    return entry && entry() == Registration::S_OK;
}

} // namespace VandrelPensioen::ComponentLoader
