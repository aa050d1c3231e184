// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// The library as a host meets it: loaded with QLibrary from its built file, registered into a
// private registry folder, asked for its class factory, and created through the component loader.

#include "componentloader.h"
#include "hostapplication.h"
#include "registration.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLibrary>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>

using namespace VandrelPensioen;

namespace {
using EntryPoint = long (*)();
using GetClassObject = long (*)(const char *, const char *, void **);
}

class TestRegistration : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_registry.isValid());
        qputenv("VANDREL_COMPONENT_REGISTRY", m_registry.path().toLocal8Bit());
        m_library.setFileName(QStringLiteral(VANDREL_PENSIOEN_LIBRARY));
        QVERIFY2(m_library.load(), qPrintable(m_library.errorString()));
        m_register = reinterpret_cast<EntryPoint>(m_library.resolve("DllRegisterServer"));
        m_unregister = reinterpret_cast<EntryPoint>(m_library.resolve("DllUnregisterServer"));
        m_getClassObject = reinterpret_cast<GetClassObject>(m_library.resolve("DllGetClassObject"));
        m_canUnload = reinterpret_cast<EntryPoint>(m_library.resolve("DllCanUnloadNow"));
        QVERIFY(m_register && m_unregister && m_getClassObject && m_canUnload);
    }

    void registerWritesTheRecord()
    {
        QCOMPARE(m_register(), Registration::S_OK);
        QFile file(recordPath());
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QJsonObject record = QJsonDocument::fromJson(file.readAll()).object();
        QCOMPARE(record.value("classId").toString(), QLatin1String(Registration::ClassId));
        QCOMPARE(record.value("progId").toString(), QStringLiteral("VandrelPensioen.PensMain"));
        QCOMPARE(record.value("typeLibrary").toString(), QStringLiteral("VandrelPensioen"));
        QCOMPARE(record.value("interfaceId").toString(), QLatin1String(Registration::InterfaceId));
        QCOMPARE(record.value("eventInterfaceId").toString(),
                 QLatin1String(Registration::EventInterfaceId));
        const QString library = record.value("library").toString();
        QVERIFY(QFileInfo(library).isAbsolute());
        QCOMPARE(QFileInfo(library).canonicalFilePath(),
                 QFileInfo(QStringLiteral(VANDREL_PENSIOEN_LIBRARY)).canonicalFilePath());
    }

    void unregisterRemovesTheRecord()
    {
        QCOMPARE(m_register(), Registration::S_OK);
        QVERIFY(QFile::exists(recordPath()));
        QCOMPARE(m_unregister(), Registration::S_OK);
        QVERIFY(!QFile::exists(recordPath()));
        QCOMPARE(m_unregister(), Registration::S_OK);   // twice is not an error
        QString error;
        QVERIFY(!ComponentLoader::lookup(QStringLiteral("VandrelPensioen.PensMain"), nullptr, &error));
        QVERIFY(!error.isEmpty());
    }

    void factoryRefusesOtherClassesAndInterfaces()
    {
        void *factory = reinterpret_cast<void *>(1);
        QCOMPARE(m_getClassObject("{00000000-0000-0000-0000-000000000000}", nullptr, &factory),
                 Registration::CLASS_E_CLASSNOTAVAILABLE);
        QVERIFY(!factory);
        QCOMPARE(m_getClassObject(Registration::ClassId, "{12345678-0000-0000-0000-000000000000}",
                                  &factory),
                 Registration::E_NOINTERFACE);
        QCOMPARE(m_getClassObject(Registration::ClassId, nullptr, nullptr), Registration::E_POINTER);
    }

    void factoryCreatesAWorkingPensMain()
    {
        void *raw = nullptr;
        QCOMPARE(m_getClassObject(Registration::ClassId, Registration::ClassFactoryId, &raw),
                 Registration::S_OK);
        auto *factory = static_cast<Registration::ClassFactory *>(raw);
        QVERIFY(factory);
        QCOMPARE(m_canUnload(), Registration::S_OK);

        std::unique_ptr<QWidget> control(factory->CreateInstance(nullptr));
        QVERIFY(control);
        QCOMPARE(control->metaObject()->className(), "VandrelPensioen::PensMain");
        QCOMPARE(m_canUnload(), Registration::S_FALSE);

        auto app = Zarnoveld::HostApplication::createInMemory();
        app->Get_Dossier()->Get_Aanvrager(1)->AddPension();
        app->Get_Dossier()->Get_Aanvrager(1)->AddPension();
        QVERIFY(QMetaObject::invokeMethod(control.get(), "SetApplication", Qt::DirectConnection,
                                          Q_ARG(VandrelApplication::ApplicationPtr, app)));
        auto *list = control->findChild<QTreeWidget *>(QStringLiteral("LstPensioenen"));
        QVERIFY(list);
        QCOMPARE(list->topLevelItemCount(), 2);
        bool cancel = false;
        QVERIFY(QMetaObject::invokeMethod(control.get(), "Validation", Qt::DirectConnection,
                                          Q_ARG(bool &, cancel), Q_ARG(qint32, 3)));
        QVERIFY(!cancel);

        control.reset();
        QCOMPARE(m_canUnload(), Registration::S_OK);

        factory->LockServer(true);
        QCOMPARE(m_canUnload(), Registration::S_FALSE);
        factory->LockServer(false);
        QCOMPARE(m_canUnload(), Registration::S_OK);
    }

    void loaderCreatesTheRegisteredControl()
    {
        QString error;
        QVERIFY2(ComponentLoader::registerLibrary(QStringLiteral(VANDREL_PENSIOEN_LIBRARY), &error),
                 qPrintable(error));
        std::unique_ptr<QWidget> control(
            ComponentLoader::create(QStringLiteral("VandrelPensioen.PensMain"), nullptr, &error));
        QVERIFY2(control, qPrintable(error));
        QVERIFY(control->findChild<QWidget *>(QStringLiteral("PensioenGegevens")));
        QVERIFY(!ComponentLoader::canUnload(QStringLiteral("VandrelPensioen.PensMain")));
        control.reset();
        QVERIFY(ComponentLoader::canUnload(QStringLiteral("VandrelPensioen.PensMain")));
        QVERIFY(ComponentLoader::unregisterLibrary(QStringLiteral(VANDREL_PENSIOEN_LIBRARY), &error));
        QVERIFY(!QFile::exists(recordPath()));
    }

private:
    QString recordPath() const
    {
        return m_registry.path() + QStringLiteral("/VandrelPensioen.PensMain.json");
    }

    QTemporaryDir m_registry;
    QLibrary m_library;
    EntryPoint m_register = nullptr;
    EntryPoint m_unregister = nullptr;
    GetClassObject m_getClassObject = nullptr;
    EntryPoint m_canUnload = nullptr;
};

QTEST_MAIN(TestRegistration)
#include "tst_registration.moc"
