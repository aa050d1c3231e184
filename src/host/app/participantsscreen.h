// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "hostmodel.h"

#include <QWidget>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QPushButton;
class QTreeWidget;

namespace VandrelControl {
class TextBox;
}

namespace Zarnoveld {

// Applicant and optional partner: name, birth date, category and employments. Every field is
// written to the case when the user leaves it, like the pension screen does.
class ParticipantsScreen : public QWidget
{
    Q_OBJECT

public:
    explicit ParticipantsScreen(QWidget *parent = nullptr);

    void setApplication(const VandrelApplication::ApplicationPtr &application);
    void reload();

private:
    struct Side
    {
        qint16 anvId = 0;
        QGroupBox *box = nullptr;
        QCheckBox *present = nullptr;        // partner only
        VandrelControl::TextBox *naam = nullptr;
        VandrelControl::TextBox *geboorte = nullptr;
        QComboBox *categorie = nullptr;
        QTreeWidget *dienstverbanden = nullptr;
        QPushButton *add = nullptr;
        QPushButton *edit = nullptr;
        QPushButton *remove = nullptr;
    };

    void buildSide(Side &side, const QString &title);
    void loadSide(Side &side);
    VandrelApplication::AanvragerPtr participant(const Side &side) const;
    // True when the user confirmed the dialog with OK.
    bool editEmployment(Side &side, qint16 index);
    void guarded(const std::function<void()> &action);

    VandrelApplication::ApplicationPtr m_application;
    Side m_sides[2];
    bool m_loading = false;
};

} // namespace Zarnoveld
