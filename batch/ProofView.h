#pragma once

#include <QGraphicsView>
#include <QImage>
#include <QTimer>
#include <QVector>

#include <functional>

#include "preflight/Finding.h"

class QGraphicsPixmapItem;

/// A sheet as it will be printed, with its frames outlined and numbered; one of them may be marked.
/// The wheel zooms, the left button moves the sheet and chooses frames, the arrow keys ask for the
/// next sheets.
class ProofView : public QGraphicsView
{
    Q_OBJECT

public:
    /// A sheet to be shown.
    struct Sheet
    {
        std::function<QImage(int dpi)> draw; ///< the sheet alone, at a resolution
        QSizeF size;                         ///< millimetres
        QVector<QRectF> frames;              ///< of its items, millimetres
        QVector<Finding> findings;
    };

    explicit ProofView(QWidget* parent = nullptr);

    /// Shows a sheet as large as the last one; the first fits the view's width.
    void showSheet(const Sheet& sheet);

    /// Shows why there is no sheet.
    void showNotice(const QString& notice);

    /// Marks the frame of this number and brings it into view; 0 marks none.
    void markFrame(int number);

    /// Number of the frame that is marked; 0 if none is.
    int markedFrame() const { return m_marked; }

    void zoomIn();
    void zoomOut();
    void fitWidth();

    /// How large the sheet is shown, against paper held to the screen, per cent.
    int zoomPercent() const;

signals:
    void frameClicked(int number);
    void zoomChanged();

    /// An arrow key asks for the sheet after this one (1) or before it (-1).
    void stepped(int direction);

protected:
    void drawForeground(QPainter* painter, const QRectF& rect) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    bool hasSheet() const { return !m_sheet.size.isEmpty(); }
    double pixels(double millimetres) const;
    QRectF onScreen(const QRectF& millimetres) const;
    int frameAt(const QPoint& position) const;
    QColor colorOf(int frame) const;
    bool scrollBy(const QKeyEvent& event);
    void drawFrame(QPainter& painter, int number);
    void zoomTo(int dpi);
    void placeSheet();
    void drawSheet();
    int dpiForWidth() const;
    int largestDpi() const;

    Sheet m_sheet;
    QGraphicsPixmapItem* m_picture; // owned by the scene
    QString m_notice;
    QTimer m_redraw; // the picture, some time after a change of its size
    QPoint m_pressed;
    int m_dpi = 0;   // of the screen's pixels, device pixel ratio aside
    int m_drawn = 0; // resolution of the picture, likewise
    int m_marked = 0;
    bool m_fitsWidth = true;
};
