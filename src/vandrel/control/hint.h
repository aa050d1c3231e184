#pragma once

#include "vandrelcontrol_export.h"

#include <QLabel>

namespace VandrelControl {

// An information icon that shows its text as a balloon when the user points at or clicks it.
class VANDRELCONTROL_EXPORT Hint : public QLabel
{
    Q_OBJECT
    Q_PROPERTY(QString hintText READ hintText WRITE setHintText)

public:
    explicit Hint(QWidget *parent = nullptr);

    QString hintText() const;
    void setHintText(const QString &text);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    QString m_text;
};

} // namespace VandrelControl
