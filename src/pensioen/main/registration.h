#pragma once

// The library's component identity and its four entry points. A host finds the library through
// the per-user component registry and creates PensMain through the class factory.

#include "vandrelpensioen_export.h"

#include <QDir>
#include <QString>

class QWidget;

namespace VandrelPensioen::Registration {

inline constexpr const char *ProgId = "VandrelPensioen.PensMain";
inline constexpr const char *TypeLibraryDescription = "VandrelPensioen";
inline constexpr const char *ClassId = "{6E0B7B52-3C1D-4F0A-9B52-5A8C2D7E4F10}";
inline constexpr const char *InterfaceId = "{6E0B7B53-3C1D-4F0A-9B52-5A8C2D7E4F10}";
inline constexpr const char *EventInterfaceId = "{6E0B7B54-3C1D-4F0A-9B52-5A8C2D7E4F10}";
// The class factory's own interface (the standard one of in-process component libraries).
inline constexpr const char *ClassFactoryId = "{00000001-0000-0000-C000-000000000046}";

// Result codes of the entry points.
inline constexpr long S_OK = 0;
inline constexpr long S_FALSE = 1;
inline constexpr long E_FAIL = static_cast<long>(0x80004005L);
inline constexpr long CLASS_E_CLASSNOTAVAILABLE = static_cast<long>(0x80040111L);
inline constexpr long E_NOINTERFACE = static_cast<long>(0x80004002L);
inline constexpr long E_POINTER = static_cast<long>(0x80004003L);

// The per-user registry folder: $VANDREL_COMPONENT_REGISTRY, else $XDG_DATA_HOME/vandrel/components.
// Inline, so that a host finds the registry without linking the library.
inline QString registryFolder()
{
    const QString overridden = qEnvironmentVariable("VANDREL_COMPONENT_REGISTRY");
    if (!overridden.isEmpty())
        return overridden;
    QString data = qEnvironmentVariable("XDG_DATA_HOME");
    if (data.isEmpty())
        data = QDir::homePath() + QStringLiteral("/.local/share");
    return data + QStringLiteral("/vandrel/components");
}

// What DllGetClassObject hands out.
class VANDRELPENSIOEN_EXPORT ClassFactory
{
public:
    // Defined inline so that a host that only includes this header has the type information too.
    virtual ~ClassFactory() = default;
    virtual QWidget *CreateInstance(QWidget *parent) = 0;
    virtual void LockServer(bool lock) = 0;
};

} // namespace VandrelPensioen::Registration

extern "C" {
VANDRELPENSIOEN_EXPORT long DllRegisterServer();
VANDRELPENSIOEN_EXPORT long DllUnregisterServer();
VANDRELPENSIOEN_EXPORT long DllGetClassObject(const char *classId, const char *interfaceId,
                                              void **factory);
VANDRELPENSIOEN_EXPORT long DllCanUnloadNow();
}
