#include "collections/Filmstrip.h"

#include "app/Twips.h"
#include "collections/CellComposer.h"
#include "collections/CellFit.h"
#include "collections/FilmstripAccess.h"
#include "collections/StripSurface.h"
#include "collections/ThumbnailCache.h"
#include "controls/ScrollBar.h"

#include <QSignalBlocker>

#include <algorithm>

namespace quorvia::collections {

namespace {

constexpr int firstInterval = 100;    // milliseconds; marks the tick that lays the strip out
constexpr int paintInterval = 10;     // milliseconds
constexpr int scrolledInterval = 1;   // milliseconds
constexpr int selectionInterval = 10; // milliseconds
constexpr int dragInterval = 5;       // milliseconds
constexpr int initialInterval = 1000; // milliseconds
constexpr int resizeInterval = 100;   // milliseconds
constexpr int mostRows = wholeStrip;  // a damaged setting may hold any number
constexpr int initialColor = 0xE0;

void setUp(QTimer& timer, QObject* parent, const char* name, int interval)
{
    timer.setParent(parent);
    timer.setObjectName(QLatin1String(name));
    timer.setInterval(interval);
}

} // namespace

Filmstrip::Filmstrip(QWidget* parent)
    : QWidget(parent), m_canvasColor(initialColor, initialColor, initialColor),
      m_pImages(new StripSurface(this)), m_sBar(new controls::ScrollBar(this))
{
    announceFilmstrips(); // a reader may ask at the first name
    m_pImages->setObjectName(QStringLiteral("pImages"));
    m_pImages->installEventFilter(this);
    m_sBar->setObjectName(QStringLiteral("sBar"));
    m_sBar->hide();
    setUp(m_tDraw, this, "tDraw", initialInterval);
    setUp(m_tSelectionChange, this, "tSelectionChange", selectionInterval);
    setUp(m_tDrawSelected, this, "tDrawSelected", selectionInterval);
    setUp(m_tMove, this, "tMove", dragInterval);
    setUp(m_tResize, this, "tResize", resizeInterval);
    m_tResize.setSingleShot(true);
    connect(&m_tResize, &QTimer::timeout, this, &Filmstrip::takeSize);
    connect(&m_tDraw, &QTimer::timeout, this, &Filmstrip::paintNext);
    connect(&m_tSelectionChange, &QTimer::timeout, this, &Filmstrip::applySelection);
    connect(&m_tDrawSelected, &QTimer::timeout, this, &Filmstrip::drawSelected);
    connect(&m_tMove, &QTimer::timeout, this, &Filmstrip::dragStep);
    connect(m_sBar, &controls::ScrollBar::Change, this, &Filmstrip::scrolled);
    setMouseTracking(true);
    setFocusPolicy(Qt::TabFocus); // a click leaves the keys to the window
    setAccessibleName(tr("Filmstrip"));
    m_pImages->setAccessibleName(tr("Thumbnails"));
    applyHeight();
}

Filmstrip::~Filmstrip() = default;

void Filmstrip::Clear()
{
    m_images.clear();
    m_current = -1;
    setAccessibleDescription(QString());
    frameCurrent();
    m_pImages->wipe();
    Q_EMIT listChanged();
}

void Filmstrip::add(const QString& sFile)
{
    m_images.append(sFile);
    Q_EMIT listChanged();
}

void Filmstrip::DrawStrip()
{
    m_pImages->wipe();
    m_tDraw.end();
    m_tMove.stop(); // a drag of the list before; its release is still no click
    dropReads();
    m_visibleWanted.clear();
    m_columnWanted = 0;
    {
        const QSignalBlocker quiet(m_sBar);
        m_sBar->SetValue(0);
    }
    m_drag.left = 0;
    placeStrip();
    m_tDraw.begin(firstInterval);
}

void Filmstrip::ReDraw() {}

void Filmstrip::SetPaused(bool paused)
{
    if (paused) {
        letGo();
        dropReads();
        m_selectedRead = {};
    }
    for (StripTimer* const timer : {&m_tDraw, &m_tSelectionChange, &m_tDrawSelected})
        timer->SetPaused(paused);
}

void Filmstrip::SetVisibleImage(const QString& sFile)
{
    if (awaitsLayout()) {
        m_visibleWanted = sFile;
        return;
    }
    const auto found = std::find_if(m_images.begin(), m_images.end(), [&sFile](const QString& file) {
        return file.compare(sFile, Qt::CaseInsensitive) == 0;
    });
    if (found == m_images.end())
        return;
    const int position = int(found - m_images.begin()) + 1;
    if (const auto value = valueShowing(position, m_cell.width(), innerTwips().width(), m_sBar->Value()))
        m_sBar->SetValue(*value);
}

QString Filmstrip::GetUniKey() const
{
    return listKey(m_images);
}

void Filmstrip::SetNumberOfRows(int rows)
{
    const int usable = std::clamp(rows, 1, mostRows);
    if (usable != m_rows) {
        m_rows = usable;
        DrawStrip();
    }
    SetSelectedImages(SelectedImages());
}

void Filmstrip::resizeEvent(QResizeEvent*)
{
    applyHeight();
    if (!m_images.isEmpty())
        m_tResize.start();
}

/// True between DrawStrip() and the tick that lays the strip out.
bool Filmstrip::awaitsLayout() const
{
    return m_tDraw.isDue() && m_tDraw.interval() == firstInterval;
}

QSize Filmstrip::innerTwips() const
{
    return app::inTwips(size());
}

// --- layout

void Filmstrip::SizeStrip()
{
    const StripLayout layout = sizeStrip({innerTwips(), app::toTwips(m_pImages->height()),
                                          app::toTwips(m_sBar->sizeHint().height()), count(), m_rows});
    m_pump.MaxDraw = layout.maxDraw;
    m_cell = layout.cell;
    m_laidOutWidth = innerTwips().width();
    m_sBar->setVisible(layout.barVisible);
    applyHeight();
    // A strip that lost its bar only after its height was settled keeps that height.
    const int width = count() > 0 ? app::toPixels(layout.strip.width() + app::twipsPerPixel - 1) : 0;
    m_pImages->setGeometry(m_pImages->x(), 0, width, app::toPixels(layout.strip.height()));
    m_pImages->setGrid(layout.columns, m_rows, layout.cell);
    m_sBar->SetMax(layout.barMaximum);
    m_sBar->SetSmallChange(layout.isWhole() ? layout.cell.width() / scrollUnit : 1);
    frameCurrent();
}

void Filmstrip::applyHeight()
{
    const bool bar = !m_sBar->isHidden();
    const int height =
        app::toPixels(stripHeight(innerTwips().height(), app::toTwips(m_sBar->sizeHint().height()), bar));
    m_pImages->resize(m_pImages->width(), height);
    if (bar)
        m_sBar->setGeometry(0, height, width(), m_sBar->sizeHint().height());
}

/// Puts the strip where its left edge is.
void Filmstrip::placeStrip()
{
    m_pImages->move(qRound(double(m_drag.left) / app::twipsPerPixel), 0);
}

void Filmstrip::scrolled(int value)
{
    if (m_tMove.isActive())
        return;
    if (m_laidOutWidth != innerTwips().width() || awaitsLayout()) {
        const QSize before = m_cell;
        const int column = isWhole() ? value * scrollUnit / std::max(m_cell.width(), 1) : value;
        SizeStrip();
        if (m_cell != before && !awaitsLayout())
            return drawFrom(column);
    }
    const int usable = m_sBar->isHidden() ? 0 : std::min(value, m_sBar->Max());
    m_drag.left = isWhole() ? -usable * scrollUnit : 0;
    placeStrip();
    if (isWhole())
        return;
    m_pImages->wipe();
    m_pump = fromColumn(m_pump, usable, m_rows);
    dropReads();
    frameCurrent();
    m_tDraw.begin(scrolledInterval);
}

/// Draws the strip anew with column `column` (0-based) at the left edge.
void Filmstrip::drawFrom(int column)
{
    DrawStrip();
    m_columnWanted = column;
}

/// Takes the size and the pixels that the strip has come to: what is painted stays in place as long as cells
/// keep theirs.
void Filmstrip::takeSize()
{
    if (awaitsLayout())
        return;
    if (m_tMove.isActive())
        return m_tResize.start();
    const QSize before = m_cell;
    const int column = firstColumn();
    SizeStrip();
    if (m_cell == before && m_ratio == devicePixelRatioF())
        return scrolled(m_sBar->Value());
    drawFrom(column);
}

/// Cells of another screen's pixels are drawn anew.
void Filmstrip::lookAtPixels()
{
    if (m_ratio > 0 && m_ratio != devicePixelRatioF() && !m_tResize.isActive())
        m_tResize.start();
}

/// The column that the surface begins with, 0-based.
int Filmstrip::firstPaintedColumn() const
{
    return std::max(m_pump.FirstIndex - 1, 0) / m_rows;
}

/// The column at the left edge, 0-based.
int Filmstrip::firstColumn() const
{
    if (!isWhole())
        return firstPaintedColumn();
    return m_cell.width() > 0 ? -m_drag.left / m_cell.width() : 0;
}

void Filmstrip::showFirstColumn(int column)
{
    m_sBar->SetValue(isWhole() ? column * m_cell.width() / scrollUnit : column);
}

// --- the paint pump

void Filmstrip::beginPass()
{
    m_tDraw.setInterval(paintInterval);
    m_ratio = devicePixelRatioF();
    m_pump = fromBeginning(m_pump);
    SizeStrip();
    if (m_columnWanted > 0)
        showFirstColumn(std::exchange(m_columnWanted, 0));
    if (!m_visibleWanted.isEmpty())
        SetVisibleImage(std::exchange(m_visibleWanted, QString()));
    askAhead();
}

void Filmstrip::paintNext()
{
    if (awaitsLayout())
        return beginPass();
    if (isDone(m_pump, count()))
        return endPass();
    askAhead();
    if (!m_now.read->isDone())
        return;
    paintCell(m_now.read->result(), false, placeOf(m_pump, m_rows));
    m_pump = stepped(m_pump);
    m_now = std::exchange(m_next, {});
    askAhead();
}

/// Asks for the picture of the cell at `index`, unless it has been asked for or its thumbnail is `underWay`.
void Filmstrip::ask(Wanted& want, int index, const QString& underWay)
{
    const QString& file = m_images.at(index);
    if (want.read && want.index == index && want.file == file)
        return;
    const QString thumbnail = thumbnailFor(file);
    const bool there = hasThumbnail(thumbnail);
    if (!there && !thumbnail.isEmpty() && thumbnail == underWay)
        return;
    want = {
        index, file, thumbnail,
        m_ix1.ask(cellPicture(there ? thumbnail : file, there ? QString() : thumbnail, devicePixelRatioF()))};
}

/// Lets the reader go on with the cell behind the present one.
void Filmstrip::askAhead()
{
    if (isDone(m_pump, count()))
        return;
    ask(m_now, m_pump.DrawIndex - 1);
    if (!isDone(stepped(m_pump), count()))
        ask(m_next, m_pump.DrawIndex, m_now.thumbnail);
}

void Filmstrip::dropReads()
{
    m_now = {};
    m_next = {};
}

void Filmstrip::endPass()
{
    m_tDraw.end();
    dropReads();
    // The pass has painted over the selected cells.
    if (m_pump.FirstIndex <= 1 && !m_tSelectionChange.isDue())
        restartSelected(true);
}

void Filmstrip::paintCell(const engine::SmallImage& picture, bool selected, CellPlace place)
{
    m_canvasColor = selected ? selectedCellColor() : nextCellColor(m_canvasColor);
    const double ratio = devicePixelRatioF();
    m_pImages->put(place, composeCell(picture, m_canvasColor, m_pImages->pixelsAt(place, ratio), ratio));
}

} // namespace quorvia::collections
