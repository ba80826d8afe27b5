#include "viewer/InformationPanel.h"

#include "app/Colors.h"
#include "app/mFile.h"
#include "viewer/BarRoom.h"
#include "viewer/DescriptionField.h"
#include "viewer/InformationText.h"

#include <QEvent>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QScrollBar>

#include <algorithm>
#include <utility>

namespace quorvia::viewer {

namespace {

/// A text that can be read, selected and copied, on the ground of the panel. A click leaves the keys to the
/// window; Tab leads here.
QPlainTextEdit* makeFacts(const char* name, QWidget* parent)
{
    auto* const field = new QPlainTextEdit(parent);
    field->setObjectName(QLatin1String(name));
    field->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    field->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    new BarRoom(field);
    field->setTabChangesFocus(true);
    field->setFocusPolicy(Qt::TabFocus);
    field->setFrameStyle(QFrame::NoFrame);
    field->document()->setDocumentMargin(0);
    return field;
}

QLabel* makeHeading(int number, const QString& text, QWidget* buddy)
{
    auto* const heading = new QLabel(text, buddy->parentWidget());
    heading->setObjectName(QStringLiteral("Label%1").arg(number));
    heading->setBuddy(buddy);
    buddy->setAccessibleName(text);
    QFont font; // all but the weight stays the panel's
    font.setBold(true);
    heading->setFont(font);
    return heading;
}

bool isPlainEnter(const QKeyEvent& key)
{
    return (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) &&
           (key.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
}

} // namespace

InformationPanel::InformationPanel(Parts parts)
    : QWidget(parts.pShowInfo), m_parts(std::move(parts)), m_tPath(new QLineEdit(this)),
      m_tFileInfo(makeFacts("tFileInfo", this)), m_tImageInfo(makeFacts("tImageInfo", this)),
      m_tDes(new DescriptionField(this)), m_keeper(m_tDes)
{
    setObjectName(QStringLiteral("InformationPanel"));
    makeFields();
    layOut();
    takeColors();
    takeFont();
    m_keeper.setParent(this); // so that its timer is found from here
    m_rest.setObjectName(QStringLiteral("tColors"));
    m_rest.setSingleShot(true);
    m_rest.setInterval(app::restBeforeCounting);
    connect(&m_rest, &QTimer::timeout, this, &InformationPanel::countColors);
    connect(&m_keeper, &DescriptionKeeper::outdated, this, &InformationPanel::showCurrent);
}

InformationPanel::~InformationPanel()
{
    saveDescriptionNow();
}

void InformationPanel::makeFields()
{
    m_tPath->setObjectName(QStringLiteral("tPath"));
    m_tPath->setReadOnly(true);
    m_tPath->setFrame(false);
    m_tPath->setFocusPolicy(Qt::TabFocus);
    m_tPath->setAccessibleName(tr("Path"));
    m_tPath->setToolTip(QStringLiteral("Double-Click to open containing folder in 'Windows Explorer'"));
    m_tPath->installEventFilter(this);
    m_tDes->setObjectName(QStringLiteral("tDes"));
}

void InformationPanel::layOut()
{
    auto* const around = new QGridLayout(m_parts.pShowInfo);
    around->setContentsMargins(0, 0, 0, 0);
    around->addWidget(this);
    auto* const grid = new QGridLayout(this);
    grid->setContentsMargins(4, 2, 4, 4);
    grid->setHorizontalSpacing(12);
    grid->setVerticalSpacing(2);
    grid->addWidget(m_tPath, 0, 0, 1, 3);
    grid->addWidget(makeHeading(1, QStringLiteral("File Information"), m_tFileInfo), 1, 0);
    grid->addWidget(makeHeading(2, QStringLiteral("Image"), m_tImageInfo), 1, 1);
    grid->addWidget(makeHeading(3, QStringLiteral("Description"), m_tDes), 1, 2);
    int column = 0;
    for (QWidget* field : {static_cast<QWidget*>(m_tFileInfo), static_cast<QWidget*>(m_tImageInfo),
                           static_cast<QWidget*>(m_tDes)}) {
        field->setMinimumSize(1, 1); // the pane is as high as it is, whatever the fonts
        field->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
        grid->addWidget(field, 2, column++);
    }
    grid->setColumnStretch(2, 1); // the description takes what the facts leave
    grid->setRowStretch(2, 1);
}

void InformationPanel::takeColors()
{
    const QColor ink = palette().color(QPalette::WindowText);
    QPalette colors; // of which only these roles are the fields' own
    colors.setColor(QPalette::Base, Qt::transparent);
    colors.setColor(QPalette::Text, ink);
    // The desktop's colour of a selection may be near that of the panel.
    colors.setColor(QPalette::Highlight, ink);
    colors.setColor(QPalette::HighlightedText, palette().color(QPalette::Window));
    for (QWidget* field : {static_cast<QWidget*>(m_tPath), static_cast<QWidget*>(m_tFileInfo),
                           static_cast<QWidget*>(m_tImageInfo)})
        field->setPalette(colors);
    for (QWidget* control :
         {static_cast<QWidget*>(m_tFileInfo->verticalScrollBar()),
          static_cast<QWidget*>(m_tImageInfo->verticalScrollBar()), static_cast<QWidget*>(m_tDes)})
        app::setDesktopColors(control);
}

void InformationPanel::takeFont()
{
    const QFontMetrics letters = fontMetrics();
    const int blanks = letters.horizontalAdvance(QStringLiteral("  "));
    const int labels = std::max(letters.horizontalAdvance(QStringLiteral("Bits Per Pixel: ")),
                                letters.horizontalAdvance(QStringLiteral("Unique Colors:")));
    const int mostColors = letters.horizontalAdvance(QStringLiteral("16777216"));
    const int largestSize = letters.horizontalAdvance(QStringLiteral("Dimensions: 65535x65535"));
    m_tImageInfo->setTabStopDistance(labels + blanks); // the values stand below each other
    m_imageFactsWidth = std::max(labels + blanks + mostColors, largestSize) + blanks;
    m_fileFactsWidth =
        letters.horizontalAdvance(QStringLiteral("File Size: 99,999,999 Bytes  99,999 KB  99.99 MB   "));
    placeColumns();
}

/// The facts take what they need, but no more than their share of a narrow panel.
void InformationPanel::placeColumns()
{
    constexpr double fileShare = 0.37;
    constexpr double imageShare = 0.3;
    auto* const grid = static_cast<QGridLayout*>(layout());
    grid->setColumnMinimumWidth(0, std::min(m_fileFactsWidth, int(fileShare * width())));
    grid->setColumnMinimumWidth(1, std::min(m_imageFactsWidth, int(imageShare * width())));
}

void InformationPanel::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    placeColumns();
}

void InformationPanel::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        takeColors();
    else if (event->type() == QEvent::FontChange)
        takeFont();
}

void InformationPanel::showCurrent()
{
    if (!m_parts.isShown()) {
        saveDescriptionNow();
        return;
    }
    m_path = m_parts.fileName();
    m_tPath->setText(m_path);
    m_tPath->setCursorPosition(0);
    if (m_tPath->hasFocus())
        m_tPath->setSelection(int(m_path.size()), -int(m_path.size())); // it has no caret
    if (const std::optional<FileFacts> facts = fileFacts(m_path))
        m_tFileInfo->setPlainText(fileInfoText(*facts));
    showImageFacts(std::nullopt);
    m_rest.start();
    m_keeper.show(m_path);
}

void InformationPanel::showImageFacts(std::optional<int> colors)
{
    m_tImageInfo->setPlainText(imageInfoText(m_parts.image.facts(), colors));
}

void InformationPanel::countColors()
{
    if (!m_parts.isShown())
        return;
    const int colors = m_parts.image.uniqueColors();
    if (m_parts.fileName() == m_path)
        showImageFacts(colors);
    else // it had no readable pixels, and the image before it is back
        showCurrent();
}

bool InformationPanel::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != m_tPath)
        return false;
    const bool clicked = event->type() == QEvent::MouseButtonDblClick &&
                         static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton;
    const bool entered = event->type() == QEvent::KeyPress && isPlainEnter(*static_cast<QKeyEvent*>(event));
    if (clicked || (entered && !static_cast<QKeyEvent*>(event)->isAutoRepeat()))
        openFolder();
    return clicked || entered;
}

void InformationPanel::openFolder() const
{
    if (!m_path.isEmpty())
        m_parts.openFolder(app::SplitPathName(m_path, 1));
}

} // namespace quorvia::viewer
