#include "output/frmImageEXIF.h"

#include "app/BandKeys.h"
#include "app/Colors.h"
#include "app/MainWindow.h"
#include "app/mFile.h"
#include "platform/FileStatus.h"

#include <QEvent>
#include <QKeyEvent>
#include <QScrollBar>

#include <utility>

namespace quorvia::output {

frmImageEXIF::frmImageEXIF(app::MainWindow& main, Sinks sinks, QWidget* parent)
    : QWidget(parent), m_main(main), m_sinks(std::move(sinks)), m_barEXIF(new platform::PaneBar(this))
{
    setObjectName(QStringLiteral("frmImageEXIF"));
    setAccessibleName(tr("Image summary"));
    m_barEXIF->setObjectName(QStringLiteral("barEXIF"));
    m_barEXIF->setAccessibleName(accessibleName());
    m_rest.setObjectName(QStringLiteral("tColors"));
    m_rest.setSingleShot(true);
    m_rest.setInterval(app::restBeforeCounting);
    connect(&m_rest, &QTimer::timeout, this, &frmImageEXIF::countColors);
    connect(m_barEXIF, &platform::PaneBar::itemClicked, this, [this] { m_sinks.focusImage(); });
    takeDesktopColors();
    InitBar(QString());
}

void frmImageEXIF::InitBar(const QString& path)
{
    m_path = path;
    m_photo.reset();
    struct stat status = {};
    if (platform::fileStatus(path, status) == 0 && !S_ISDIR(status.st_mode))
        m_photo = PhotoFacts{
            .name = app::SplitPathName(path, 2), .bytes = status.st_size, .image = m_sinks.image.facts()};
    showPhoto();
    if (m_photo && isVisible())
        m_rest.start();
    else
        m_rest.stop();
}

void frmImageEXIF::showPhoto()
{
    m_barEXIF->setUpdatesEnabled(false);
    m_barEXIF->setPanes(exifPanes(m_photo));
    m_barEXIF->setUpdatesEnabled(true);
}

void frmImageEXIF::countColors()
{
    if (!isVisible() || !m_photo)
        return;
    const int colors = m_sinks.image.uniqueColors();
    if (const QString current = m_main.currentFile(); current != m_path) {
        InitBar(current); // what was to be counted had no readable pixels, and the image before it is back
        return;
    }
    m_photo->colors = colors;
    showPhoto();
}

void frmImageEXIF::takeDesktopColors()
{
    app::setDesktopColors(m_barEXIF->verticalScrollBar());
}

void frmImageEXIF::showEvent(QShowEvent*)
{
    if (m_photo && !m_photo->colors)
        m_rest.start();
}

void frmImageEXIF::resizeEvent(QResizeEvent*)
{
    m_barEXIF->setGeometry(rect());
}

void frmImageEXIF::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        takeDesktopColors();
}

void frmImageEXIF::keyPressEvent(QKeyEvent* event)
{
    app::takeBandKey(*this, *event, m_main);
}

} // namespace quorvia::output
