// A list of images as a strip of thumbnails in one to three rows. Paints one cell a tick of its timer, and
// reads the images on the engine's thread, so that everything stays live while it fills; up to 200 images it
// is one strip that slides, above that what is in sight is painted anew at each scroll.
#pragma once

#include "collections/StripPump.h"
#include "collections/StripTimer.h"
#include "engine/SmallPictures.h"

#include <QColor>
#include <QWidget>

#include <memory>
#include <optional>

namespace quorvia::controls {
class ScrollBar;
}

namespace quorvia::collections {

class StripSurface;

/// Buttons are numbered 1 left, 2 right, 4 middle; `Shift` has the bits of app::Modifier; X and Y are twips
/// on the painted strip; positions of images count from 0.
class Filmstrip : public QWidget
{
    Q_OBJECT

  public:
    explicit Filmstrip(QWidget* parent = nullptr);
    ~Filmstrip() override;

    /// Empties the list and wipes the strip.
    void Clear();
    /// Appends a file by its full name. One file may stand several times. Paints nothing.
    void add(const QString& sFile);
    /// The list, in its order.
    const QStringList& Images() const { return m_images; }
    /// Lays the strip out and paints all of it, beginning 100 ms from now.
    void DrawStrip();
    /// Does nothing.
    void ReDraw();
    /// While the strip cannot be seen: nothing is read or painted. What was begun, or is asked for meanwhile,
    /// goes on afterwards from where it stood.
    void SetPaused(bool paused);
    /// Brings the first entry that is `sFile`, ignoring case, into view; nothing happens for any other name.
    /// While a layout is about to come, once it has come.
    void SetVisibleImage(const QString& sFile);
    /// A short fingerprint of the list: its length and at most three of its names.
    QString GetUniKey() const;
    int NumberOfRows() const { return m_rows; }
    /// Numbers below 1 count as 1, those above 200 as 200. Another number draws the strip anew; the selection
    /// is painted again in any case.
    void SetNumberOfRows(int rows);
    /// The position that the keys lead from; -1 before they came.
    int currentIndex() const { return m_current; }
    /// Where the cell of `index` lies on the control, in pixels; outside of it when it is scrolled away.
    QRect cellRect(int index) const;
    /// The position of the image at `point` of the control, in pixels; -1 where none lies.
    int indexAt(QPoint point) const;
    /// Does what a click on the image `index` does.
    void choose(int index);
    /// The selected positions, each with a ";" behind it.
    QString SelectedImages() const;
    /// Selects the positions that `text` names, joined by ";". They are painted some ticks later, one cell a
    /// tick; of several texts that come together the last one counts.
    void SetSelectedImages(const QString& text);

  Q_SIGNALS:
    /// The list was emptied, or has one entry more.
    void listChanged();
    /// A button was let go over an image, and the strip was not dragged.
    void IndexSelected(int ListIndex);
    /// Right behind it.
    void ImageClicked(int ListIndex, int Button, int Shift);
    /// The pointer moved over an image with no button held on the strip.
    void ImageHoverOver(int ListIndex);
    void MouseUp(int Button, int Shift, double X, double Y);
    void MouseDown(int Button, int Shift, double X, double Y);
    void MouseMove(int Button, int Shift, double X, double Y);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

  private:
    /// A cell's picture that was asked for.
    struct Wanted
    {
        int index = -1; // 0-based position in the list
        QString file;
        QString thumbnail;
        std::shared_ptr<engine::SmallRead> read;
    };

    int count() const { return int(m_images.size()); }
    bool isWhole() const { return m_pump.MaxDraw == wholeStrip; }
    bool awaitsLayout() const;
    QSize innerTwips() const;

    void SizeStrip();
    void applyHeight();
    void placeStrip();
    void scrolled(int value);
    void takeSize();
    void lookAtPixels();
    void drawFrom(int column);
    int firstColumn() const;
    int firstPaintedColumn() const;
    CellPlace paintedPlace(int index) const;
    void showFirstColumn(int column);
    void beginPass();
    void paintNext();
    void ask(Wanted& want, int index, const QString& underWay = QString());
    void askAhead();
    void dropReads();
    void endPass();
    void paintCell(const engine::SmallImage& picture, bool selected, CellPlace place);

    void applySelection();
    void drawSelected();
    void restartSelected(bool selected);

    void pressed(const QMouseEvent& event);
    void released(const QMouseEvent& event);
    void pointerMoved(const QMouseEvent& event);
    void letGo();
    void dragStep();
    std::optional<int> hit(QPointF twips) const;

    bool takeKey(const QKeyEvent& event);
    void moveCurrentTo(qint64 index);
    void showCurrent();
    void frameCurrent();

    QStringList m_images;
    int m_rows = 1;
    StripPump m_pump;
    QSize m_cell; // twips
    QColor m_canvasColor;
    QString m_visibleWanted; // to be brought into view once the strip is laid out
    int m_columnWanted = 0;  // to stand at the left edge then
    int m_laidOutWidth = 0;  // twips
    double m_ratio = 0;      // device pixel ratio that the cells are composed for; 0 before there are any

    QStringList m_selected{QString()};
    QString m_requested;
    int m_selIndex = 0;
    bool m_selState = false;
    bool m_clearing = false;

    bool m_dragging = false; // the next release ends a drag
    bool m_mouseIsDown = false;
    StripDrag m_drag;   // its left edge is the strip's at all times
    int m_pointerX = 0; // screen pixels
    int m_current = -1; // where the keyboard is

    StripSurface* m_pImages;
    controls::ScrollBar* m_sBar;
    StripTimer m_tDraw;
    StripTimer m_tSelectionChange;
    StripTimer m_tDrawSelected;
    QTimer m_tMove;
    QTimer m_tResize; ///< runs while the strip gets another size
    engine::SmallPictureReader m_ix1;
    Wanted m_now;  // the cell that is to be painted next
    Wanted m_next; // and the one behind it
    Wanted m_selectedRead;
};

} // namespace quorvia::collections
