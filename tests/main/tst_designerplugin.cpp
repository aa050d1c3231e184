// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// Designer loads the plugin as a module and asks it for the pension screen.

#include <QtUiPlugin/QDesignerCustomWidgetInterface>

#include <QPluginLoader>
#include <QTest>
#include <QWidget>

class TestDesignerPlugin : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pluginOffersThePensionScreen()
    {
        QPluginLoader loader(QStringLiteral(VANDREL_DESIGNER_PLUGIN));
        QObject *instance = loader.instance();
        QVERIFY2(instance, qPrintable(loader.errorString()));
        auto *plugin = qobject_cast<QDesignerCustomWidgetInterface *>(instance);
        QVERIFY(plugin);
        QCOMPARE(plugin->name(), QStringLiteral("VandrelPensioen::PensMain"));
        // A form the host saves includes the screen as the installed package offers it.
        QCOMPARE(plugin->includeFile(), QStringLiteral("VandrelPensioen/pensmain.h"));
        QVERIFY(plugin->domXml().contains(QStringLiteral("<header location=\"global\">VandrelPensioen/pensmain.h</header>")));
        QVERIFY(plugin->domXml().contains(QStringLiteral("VandrelPensioen::PensMain")));
        QVERIFY(!plugin->isContainer());

        std::unique_ptr<QWidget> widget(plugin->createWidget(nullptr));
        QVERIFY(widget);
        QCOMPARE(widget->metaObject()->className(), "VandrelPensioen::PensMain");
        QVERIFY(widget->findChild<QWidget *>(QStringLiteral("PensioenList")));
    }
};

QTEST_MAIN(TestDesignerPlugin)
#include "tst_designerplugin.moc"
