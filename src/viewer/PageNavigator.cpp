#include "viewer/PageNavigator.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QToolButton>

namespace quorvia::viewer {

namespace {

/// The toolkit's buttons would take the arrows, to walk from one button to the next.
class PageButton : public QToolButton
{
  public:
    using QToolButton::QToolButton;

  protected:
    void keyPressEvent(QKeyEvent* event) override
    {
        if (event->key() == Qt::Key_Space)
            QToolButton::keyPressEvent(event);
        else
            event->ignore(); // the viewer's own keys work here too
    }
};

QToolButton* makeButton(QWidget* parent, const QString& name, const QString& text,
                        const QString& accessibleName)
{
    auto* button = new PageButton(parent);
    button->setObjectName(name);
    button->setText(text);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus); // a click leaves the keys where they are
    button->setAccessibleName(accessibleName);
    button->setToolTip(accessibleName);
    return button;
}

} // namespace

bool isTiffName(const QString& name)
{
    return name.endsWith(QLatin1String("tif"), Qt::CaseInsensitive) ||
           name.endsWith(QLatin1String("tiff"), Qt::CaseInsensitive);
}

QString pageCaption(int page, int count)
{
    return QStringLiteral("%1 of %2").arg(page).arg(count);
}

int totalFromCaption(const QString& caption)
{
    return caption.section(QStringLiteral(" of "), -1).toInt();
}

PageNavigator::PageNavigator(QWidget* parent) : QFrame(parent), m_lTiffImg(new QLabel(this))
{
    setObjectName(QStringLiteral("pTiff"));
    setAccessibleName(tr("Pages of the document"));
    setAutoFillBackground(true);
    QPalette colours = palette(); // as the chrome that it stands on: white on its colour
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::ButtonText, QPalette::Text})
        colours.setColor(role, Qt::white);
    setPalette(colours);
    setFrameShape(QFrame::StyledPanel);

    m_lTiffImg->setObjectName(QStringLiteral("lTiffImg"));
    m_lTiffImg->setText(QStringLiteral("Image 1 of X"));
    QToolButton* previous =
        makeButton(this, QStringLiteral("lTiffPrevious"), QStringLiteral("<<"), tr("Previous page"));
    QToolButton* next = makeButton(this, QStringLiteral("lTiffNext"), QStringLiteral(">>"), tr("Next page"));

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(4, 2, 4, 2);
    row->addWidget(previous);
    row->addWidget(m_lTiffImg);
    row->addWidget(next);
    connect(previous, &QToolButton::clicked, this, &PageNavigator::previousClicked);
    connect(next, &QToolButton::clicked, this, &PageNavigator::nextClicked);
    hide();
}

void PageNavigator::setVisible(bool visible)
{
    if (!visible && isAncestorOf(window()->focusWidget()))
        window()->setFocus(); // else the toolkit would give the keys to what comes next, maybe the link
    QFrame::setVisible(visible);
}

void PageNavigator::showPage(int page, int count)
{
    m_lTiffImg->setText(pageCaption(page, count));
    adjustSize();
    place(m_right);
}

void PageNavigator::place(int right)
{
    m_right = right;
    move(right - width(), 0);
}

int PageNavigator::total() const
{
    return totalFromCaption(m_lTiffImg->text());
}

} // namespace quorvia::viewer
