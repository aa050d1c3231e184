// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "registration.h"

#include "livecount.h"
#include "pensmain.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include <atomic>
#include <cstring>

#include <dlfcn.h>

namespace VandrelPensioen::Registration {

namespace {

std::atomic<int> s_locks{0};

QString recordPath()
{
    return registryFolder() + QLatin1Char('/') + QLatin1String(ProgId) + QStringLiteral(".json");
}

// The library's own file, wherever the host loaded it from.
QString libraryPath()
{
    Dl_info info{};
    if (dladdr(reinterpret_cast<void *>(&DllRegisterServer), &info) == 0 || !info.dli_fname)
        return QString();
    return QFileInfo(QFile::decodeName(info.dli_fname)).absoluteFilePath();
}

class PensMainFactory final : public ClassFactory
{
public:
    QWidget *CreateInstance(QWidget *parent) override { return new PensMain(parent); }
    void LockServer(bool lock) override
    {
        if (lock)
            ++s_locks;
        else if (s_locks > 0)
            --s_locks;
    }
};

bool sameId(const char *a, const char *b)
{
    return a && b && qstricmp(a, b) == 0;
}

} // namespace


} // namespace VandrelPensioen::Registration

using namespace VandrelPensioen::Registration;

long DllRegisterServer()
{
    try {
        const QString library = libraryPath();
        if (library.isEmpty() || !QDir().mkpath(registryFolder()))
            return E_FAIL;
        const QJsonObject record{
            {QStringLiteral("classId"), QLatin1String(ClassId)},
            {QStringLiteral("progId"), QLatin1String(ProgId)},
            {QStringLiteral("library"), library},
            {QStringLiteral("typeLibrary"), QLatin1String(TypeLibraryDescription)},
            {QStringLiteral("interfaceId"), QLatin1String(InterfaceId)},
            {QStringLiteral("eventInterfaceId"), QLatin1String(EventInterfaceId)},
        };
        // Written whole or not at all: a host must never read half a record.
        QSaveFile file(recordPath());
        if (!file.open(QIODevice::WriteOnly))
            return E_FAIL;
        file.write(QJsonDocument(record).toJson());
        return file.commit() ? S_OK : E_FAIL;
    } catch (...) {
        return E_FAIL;
    }
}

long DllUnregisterServer()
{
    try {
        QFile file(recordPath());
        // Not registered is what was asked for: that is no failure.
        if (!file.exists())
            return S_OK;
        return file.remove() ? S_OK : E_FAIL;
    } catch (...) {
        return E_FAIL;
    }
}

long DllGetClassObject(const char *classId, const char *interfaceId, void **factory)
{
    if (!factory)
        return E_POINTER;
    *factory = nullptr;
    if (!sameId(classId, ClassId))
        return CLASS_E_CLASSNOTAVAILABLE;
    // The factory answers to the class factory interface and, as hosts ask for it, to the
    // control's own interface; no interface named means the factory itself.
    const bool known = !interfaceId || !*interfaceId || sameId(interfaceId, ClassFactoryId)
        || sameId(interfaceId, InterfaceId);
    if (!known)
        return E_NOINTERFACE;
    static PensMainFactory instance;
    *factory = static_cast<ClassFactory *>(&instance);
    return S_OK;
}

long DllCanUnloadNow()
{
    return VandrelPensioen::LiveCount::pensMainObjects() == 0 && s_locks.load() == 0 ? S_OK
                                                                                      : S_FALSE;
}
