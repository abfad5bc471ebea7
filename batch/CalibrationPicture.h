#pragma once

#include <QWidget>

#include "printing/calibration/OffsetWords.h"

/// The upper left corner of a printed test sheet with a ruler laid at the edge of the paper: where
/// to read off how far the print has moved. The print stands where the number says.
class CalibrationPicture : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

    /// X has the ruler along the upper scale, Y along the left one.
    void setAxis(OffsetWords::Axis axis) { m_axis = axis; }

    /// How far the print lies too far right or too low, in millimetres.
    void setReadOff(double millimetres);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void paintSheet(QPainter& painter) const;
    void paintRuler(QPainter& painter) const;
    void paintPointer(QPainter& painter) const;
    bool isUpright() const { return m_axis == OffsetWords::Axis::Y; }

    OffsetWords::Axis m_axis = OffsetWords::Axis::X;
    double m_readOff = 0;
};
