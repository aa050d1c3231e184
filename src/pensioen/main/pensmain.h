#pragma once

#include "hostmodel.h"
#include "vandrelpensioen_export.h"

#include <QColor>
#include <QWidget>

#include <memory>

namespace VandrelPensioen {

// The pension screen: the one control a host places. Public members in their dispatch order.
class VANDRELPENSIOEN_EXPORT PensMain : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QColor BackColor READ BackColor WRITE setBackColor)

public:
    explicit PensMain(QWidget *parent = nullptr);
    ~PensMain() override;

    Q_INVOKABLE void SetApplication(const VandrelApplication::ApplicationPtr &Application);
    Q_INVOKABLE void Validation(bool &Cancel, qint32 ControleNr);
    QColor BackColor() const;
    void setBackColor(const QColor &colour);

    // The scheme the two data panels show (0, 0 when none); for hosts that report on it.
    qint16 shownAanvrager() const;
    qint16 shownPensioen() const;

protected:
    bool event(QEvent *event) override;

private:
    // Removes the schemes marked RemoveOnClose; runs once, at quit or destruction.
    void terminateNow();

    class Private;
    std::unique_ptr<Private> d;
};

} // namespace VandrelPensioen

