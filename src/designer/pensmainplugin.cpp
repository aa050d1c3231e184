// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "pensmainplugin.h"

#include "pensmain.h"

#include <QIcon>

PensMainPlugin::PensMainPlugin(QObject *parent)
    : QObject(parent)
{
}

QString PensMainPlugin::name() const
{
    return QStringLiteral("VandrelPensioen::PensMain");
}

QString PensMainPlugin::group() const
{
    return QStringLiteral("Vandrel");
}

QString PensMainPlugin::toolTip() const
{
    return QStringLiteral("Pensioengegevens van aanvrager en partner");
}

QString PensMainPlugin::whatsThis() const
{
    return QStringLiteral("Het pensioenscherm: de lijst met pensioenregelingen, de gegevens van de "
                          "regeling en de pensioentoezeggingen.");
}

QString PensMainPlugin::includeFile() const
{
    return QStringLiteral("VandrelPensioen/pensmain.h");
}

QIcon PensMainPlugin::icon() const
{
    return {};
}

bool PensMainPlugin::isContainer() const
{
    // Its three panels are its own; nothing else may be dropped into it.
    return false;
}

QWidget *PensMainPlugin::createWidget(QWidget *parent)
{
    return new VandrelPensioen::PensMain(parent);
}

bool PensMainPlugin::isInitialized() const
{
    return m_initialized;
}

void PensMainPlugin::initialize(QDesignerFormEditorInterface *core)
{
    Q_UNUSED(core);
    m_initialized = true;
}

QString PensMainPlugin::domXml() const
{
    return QStringLiteral(
        "<ui language=\"c++\">\n"
        " <widget class=\"VandrelPensioen::PensMain\" name=\"PensioenScherm\"/>\n"
        " <customwidgets>\n"
        "  <customwidget>\n"
        "   <class>VandrelPensioen::PensMain</class>\n"
        "   <extends>QWidget</extends>\n"
        "   <header location=\"global\">VandrelPensioen/pensmain.h</header>\n"
        "  </customwidget>\n"
        " </customwidgets>\n"
        "</ui>\n");
}
