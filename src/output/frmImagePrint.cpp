#include "output/frmImagePrint.h"

#include "app/Log.h"
#include "app/mFile.h"
#include "app/Twips.h"
#include "engine/Resample.h"
#include "output/PagePreview.h"
#include "output/PreviewBox.h"
#include "output/PrintButtons.h"
#include "output/PrintOptions.h"
#include "platform/Dialogs.h"
#include "platform/OneLine.h"
#include "platform/WaitCursor.h"

#include <QPointer>
#include <QScreen>

#include <utility>

namespace quorvia::output {

namespace {

constexpr QSize usual(900, 640);  // pixels, as the next
constexpr QSize aroundIt(16, 48); // for frame and title
constexpr int titleDelay = 500;   // milliseconds

} // namespace

frmImagePrint::frmImagePrint(std::shared_ptr<platform::Printer> printer, PrintedImage image, QWidget* owner)
    : QDialog(owner), m_printer(std::move(printer)), m_pImage(std::move(image)), m_tUpdate(this),
      m_fPrintOptions(new PrintOptions(this)), m_pBox(new PreviewBox(m_pPrinter, this)),
      m_buttons(new PrintButtons(this))
{
    setObjectName(QStringLiteral("frmImagePrint"));
    setWindowTitle(QStringLiteral("Print Image"));
    setModal(true);
    m_pImage.picture = engine::normalized(m_pImage.picture); // once, not at each composition
    m_pImage.picture.setDevicePixelRatio(1);
    m_tUpdate.setObjectName(QStringLiteral("tUpdate"));
    m_tUpdate.setSingleShot(true);
    m_tUpdate.setInterval(titleDelay);
    connect(&m_tUpdate, &QTimer::timeout, this, &frmImagePrint::UpdatePage);
    connectParts();
    applySettings();
    sayPrinter();
    const QSize row = m_buttons->sizeHint();
    setMinimumSize(
        app::toPixels(QRect(QPoint(), smallestPrintWindow(app::inTwips(m_fPrintOptions->sizeHint()),
                                                          app::toTwips(row.height()))))
            .size());
    resize(usual.boundedTo(screen()->availableSize() - aroundIt));
    m_loading = false;
}

frmImagePrint::~frmImagePrint()
{
    saveSettings(); // when the owner has taken it along
}

// --- building

void frmImagePrint::connectParts()
{
    connect(m_fPrintOptions, &PrintOptions::changed, this, &frmImagePrint::UpdatePage);
    connect(m_fPrintOptions, &PrintOptions::titleTyped, &m_tUpdate, qOverload<>(&QTimer::start));
    connect(m_fPrintOptions, &PrintOptions::boxTyped, this, [this](const QString& text) {
        if (m_readyToDraw && composesWith(text))
            UpdatePage();
    });
    connect(m_fPrintOptions, &PrintOptions::layoutChanged, this, &frmImagePrint::turnPage);
    connect(m_fPrintOptions, &PrintOptions::zoomChanged, this, &frmImagePrint::layOut);
    connect(m_fPrintOptions, &PrintOptions::fontWanted, this, &frmImagePrint::chooseFont);
    connect(m_buttons, &PrintButtons::printWanted, this, &frmImagePrint::print);
    connect(m_buttons, &PrintButtons::closeWanted, this, &frmImagePrint::reject);
    connect(m_buttons, &PrintButtons::copiesWanted, this, &frmImagePrint::askCopies);
    connect(&m_pBox->preview(), &PagePreview::drawn, this, &frmImagePrint::takeDrawn);
}

void frmImagePrint::applySettings()
{
    m_settings = readPrintSettings();
    m_fPrintOptions->show(m_settings);
    turnPage(); // the printer may stand otherwise than the option, which has not changed then
}

/// At every close, and once.
void frmImagePrint::saveSettings()
{
    if (std::exchange(m_saved, true))
        return;
    m_fPrintOptions->put(m_settings);
    savePrintSettings(m_settings);
}

// --- the page

void frmImagePrint::ShowX()
{
    m_readyToDraw = true;
    UpdatePage();
    layOut();
    m_saved = false;
    exec();
}

void frmImagePrint::UpdatePage()
{
    LoadPrint();
    GenPreview();
}

void frmImagePrint::LoadPrint()
{
    if (m_loading || !m_readyToDraw)
        return;
    m_readyToDraw = false;
    m_tUpdate.stop(); // the title is on the page now
    m_fPrintOptions->setBoxes(withDefaults(m_fPrintOptions->boxes(), m_pImage.size, twipsPerPixel()));
    if (!m_pPrinter.compose(content()))
        app::WriteLog(QStringLiteral("Page not composed: out of memory"));
    m_fPrintOptions->sayPage(pageText(m_pPrinter.layout().page, twipsPerPixel()));
    if (m_fPrintOptions->withName() || m_fPrintOptions->withDirectory())
        setWindowTitle(platform::oneLine(captionText(m_pImage.path)));
    m_readyToDraw = true;
}

PageContent frmImagePrint::content() const
{
    const PrintOptions& chosen = *m_fPrintOptions;
    const auto footer = footerText(chosen.withName(), chosen.withDirectory(), m_pImage.path);
    const bool isCustom = chosen.area() == AreaMode::Custom;
    return {.picture = m_pImage.picture,
            .imageSize = m_pImage.size,
            .printer = m_printer->pageSize(),
            .resolution = m_printer->resolution(),
            .title = chosen.title(),
            .footer = footer.value_or(QString()),
            .hasFooter = footer.has_value(),
            .titleAlign = chosen.titleAlign(),
            .area = chosen.area(),
            .custom = isCustom ? boxesRect(chosen.boxes()) : QRectF(), // else it changes nothing
            .twipsPerPixel = twipsPerPixel(),
            .decorations = chosen.decorations(),
            .font = m_settings.font,
            .textColor = m_settings.color};
}

void frmImagePrint::GenPreview()
{
    m_pBox->preview().update();
}

// --- the window

QSizeF frmImagePrint::twipsPerPixel() const
{
    const double twips = app::twipsPerPixel / devicePixelRatioF();
    return {twips, twips};
}

void frmImagePrint::layOut()
{
    if (m_loading)
        return;
    const PrintWindowLayout places =
        printWindowLayout(app::inTwips(size()), app::inTwips(m_fPrintOptions->sizeHint()),
                          app::toTwips(m_buttons->sizeHint().height()));
    m_fPrintOptions->setGeometry(app::toPixels(places.options));
    m_pBox->setGeometry(app::toPixels(places.frame));
    m_buttons->setGeometry(app::toPixels(places.buttons));
    m_pBox->layOut(m_pPrinter.layout().page, m_fPrintOptions->zoom());
    GenPreview();
}

void frmImagePrint::resizeEvent(QResizeEvent* event)
{
    QDialog::resizeEvent(event);
    layOut();
}

void frmImagePrint::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    layOut();
}

void frmImagePrint::sayPrinter()
{
    m_buttons->sayPrinter(printerText(platform::oneLine(m_printer->deviceName()), m_printer->copies()));
}

// --- what the user does

void frmImagePrint::turnPage()
{
    m_printer->setOrientation(m_fPrintOptions->layoutLine() == 0 ? platform::PageOrientation::Portrait
                                                                 : platform::PageOrientation::Landscape);
    UpdatePage();
    layOut();
}

/// A click moves the picture to the pointer, a drag gives it its size too.
void frmImagePrint::takeDrawn(const QRectF& drawn)
{
    const double zoom = m_fPrintOptions->zoom();
    const QRectF rect =
        isClick(drawn) ? withBoxSize(drawn, m_fPrintOptions->boxes(), twipsPerPixel(), zoom) : drawn;
    m_loading = true; // one composition for all five
    m_fPrintOptions->setBoxes(boxesOf(rect, twipsPerPixel(), zoom));
    m_fPrintOptions->chooseArea(AreaMode::Custom);
    m_loading = false;
    UpdatePage();
}

void frmImagePrint::askCopies()
{
    const QString typed = platform::askText(this, {.title = QStringLiteral("Printer Copies"),
                                                   .text = QStringLiteral("Enter number of copies:"),
                                                   .answer = QString::number(m_printer->copies())});
    if (typed.isEmpty())
        return;
    const CopiesAnswer answer = typedCopies(typed);
    if (!answer.isNumber)
        app::WriteLog(QStringLiteral("Not a number of copies: ") + typed);
    if (answer.copies)
        m_printer->setCopies(*answer.copies);
    sayPrinter();
}

void frmImagePrint::chooseFont()
{
    const QPointer<frmImagePrint> alive = this;
    const auto chosen =
        platform::askFont(this, {QStringLiteral("Font"), {m_settings.font, m_settings.color}});
    if (!alive)
        return;
    if (chosen) {
        m_settings.font = chosen->font;
        m_settings.color = chosen->color;
    }
    UpdatePage();
}

void frmImagePrint::print()
{
    if (std::exchange(m_printed, true))
        return; // a second click
    const QPointer<frmImagePrint> alive = this;
    const QString why = printPage();
    if (!why.isEmpty())
        app::WriteLog(QStringLiteral("Not printed: ") + why);
    if (alive)
        accept();
}

/// Why it was not printed; empty when it was.
QString frmImagePrint::printPage()
{
    const platform::WaitCursor waiting;
    UpdatePage(); // a title that was typed just now
    m_pPrinter.dropScaled();
    if (m_pPrinter.page().isNull())
        return QStringLiteral("there is no page");
    const QString title = m_fPrintOptions->title();
    QString why;
    const QRect target(QPoint(paperMargin, paperMargin), m_pPrinter.layout().page);
    const bool printed = m_printer->printPage(
        m_pPrinter.page(), target, title.isEmpty() ? app::SplitPathName(m_pImage.path, 2) : title, &why);
    if (printed)
        return {};
    return why.isEmpty() ? QStringLiteral("no reason given") : why;
}

void frmImagePrint::reject()
{
    if (!m_printed && !m_pBox->preview().giveUpDrawing())
        QDialog::reject();
}

void frmImagePrint::done(int result)
{
    saveSettings();
    QDialog::done(result);
}

} // namespace quorvia::output
