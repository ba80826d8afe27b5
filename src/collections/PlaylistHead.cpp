#include "collections/PlaylistHead.h"

#include "collections/RowDelegate.h"
#include "platform/OneLine.h"
#include "platform/SpokenWidget.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QCursor>
#include <QEvent>
#include <QFrame>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QStyleOption>
#include <QStylePainter>

namespace quorvia::collections {

namespace {

constexpr int hoverDelay = 400; // milliseconds
constexpr int hideDelay = 2500; // milliseconds
constexpr int shortName = 30;   // characters; from here on the name stands alone
constexpr int arrowSize = 10;   // pixels, as all below
constexpr int air = 4;          // beside and between the parts
constexpr int outside = 2;      // around the box
constexpr int widestName = 400; // in the list of names
constexpr char tag[] = "tag";

/// Shortens a long name in the middle.
class NameCombo : public QComboBox
{
  public:
    using QComboBox::QComboBox;

  protected:
    void paintEvent(QPaintEvent*) override
    {
        QStyleOptionComboBox option;
        initStyleOption(&option);
        const QRect place =
            style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
        option.currentText = fontMetrics().elidedText(option.currentText, Qt::ElideMiddle, place.width());
        QStylePainter painter(this);
        painter.drawComplexControl(QStyle::CC_ComboBox, option);
        painter.drawControl(QStyle::CE_ComboBoxLabel, option);
    }
};

/// A frame that shows when it has the keys. For a reader it is a button, which opens the list.
class NameBox : public QFrame, public platform::SpokenWidget
{
  public:
    explicit NameBox(PlaylistHead* head) : QFrame(head), m_head(head) {}

    QAccessible::Role spokenRole() const override { return QAccessible::Button; }
    bool isSpokenPressable() const override { return m_head->hasNames(); }
    void pressSpoken() override { m_head->openList(); }
    bool hidesItsParts() const override { return true; }

  protected:
    void paintEvent(QPaintEvent* event) override
    {
        QFrame::paintEvent(event);
        if (!hasFocus())
            return;
        QStyleOptionFocusRect option;
        option.initFrom(this);
        option.rect = contentsRect().adjusted(1, 1, -1, -1);
        QStylePainter(this).drawPrimitive(QStyle::PE_FrameFocusRect, option);
    }

  private:
    PlaylistHead* m_head;
};

/// An arrow down as the desktop draws it.
class Arrow : public QWidget
{
  public:
    using QWidget::QWidget;

  protected:
    void paintEvent(QPaintEvent*) override
    {
        QStyleOption option;
        option.initFrom(this);
        QStylePainter(this).drawPrimitive(QStyle::PE_IndicatorArrowDown, option);
    }
};

} // namespace

QString playlistCaption(const QString& name)
{
    if (name.isEmpty())
        return QStringLiteral("Open Playlist");
    return name.size() < shortName ? QStringLiteral("Playlist: ") + name : name;
}

PlaylistHead::PlaylistHead(QWidget* parent)
    : QWidget(parent), m_pPlaylistBox(new NameBox(this)), m_lPlaylistName(new QLabel(m_pPlaylistBox)),
      m_iDown(new Arrow(m_pPlaylistBox)), m_cboPlaylist(new NameCombo(this))
{
    fillParts();
    startTimers();
    setName(QString());
}

void PlaylistHead::fillParts()
{
    setObjectName(QStringLiteral("pInternalPlaylist"));
    m_pPlaylistBox->setObjectName(QStringLiteral("pPlaylistBox"));
    m_pPlaylistBox->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    m_pPlaylistBox->setFocusPolicy(Qt::TabFocus);
    m_pPlaylistBox->setAutoFillBackground(true);
    m_lPlaylistName->setObjectName(QStringLiteral("lPlaylistName"));
    m_lPlaylistName->setToolTip(QStringLiteral("SelectPlaylist"));
    m_lPlaylistName->setTextFormat(Qt::PlainText);
    m_lPlaylistName->setContentsMargins(air, 0, air + arrowSize + air, 0);
    m_iDown->setObjectName(QStringLiteral("iDown"));
    m_iDown->setAttribute(Qt::WA_TransparentForMouseEvents); // what is below it is the name
    m_lPlaylistName->setMouseTracking(true);
    m_cboPlaylist->setObjectName(QStringLiteral("cboPlaylist"));
    m_cboPlaylist->setAccessibleName(tr("Playlists"));
    m_cboPlaylist->setFocusPolicy(Qt::NoFocus);
    m_cboPlaylist->setItemDelegate(new RowDelegate(m_cboPlaylist, widestName));
    m_cboPlaylist->view()->setTextElideMode(Qt::ElideMiddle);
    m_cboPlaylist->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_cboPlaylist->setMouseTracking(true);
    m_cboPlaylist->hide();
    for (QWidget* watched : {static_cast<QWidget*>(m_pPlaylistBox), static_cast<QWidget*>(m_lPlaylistName),
                             static_cast<QWidget*>(m_cboPlaylist), m_cboPlaylist->view()->viewport(),
                             m_cboPlaylist->view()->window()})
        watched->installEventFilter(this);
    connect(m_cboPlaylist, &QComboBox::activated, this, &PlaylistHead::choose);
}

void PlaylistHead::startTimers()
{
    m_tCombo.setObjectName(QStringLiteral("tCombo"));
    m_tCombo.setInterval(hoverDelay);
    connect(&m_tCombo, &QTimer::timeout, this, &PlaylistHead::endHover);
    m_tHide.setObjectName(QStringLiteral("tHide"));
    m_tHide.setInterval(hideDelay);
    connect(&m_tHide, &QTimer::timeout, this, &PlaylistHead::hideList);
    for (QTimer* timer : {&m_tCombo, &m_tHide}) {
        timer->setParent(this);
        timer->setSingleShot(true);
    }
}

QWidget* PlaylistHead::box() const
{
    return m_pPlaylistBox;
}

QString PlaylistHead::name() const
{
    return m_lPlaylistName->property(tag).toString();
}

void PlaylistHead::setName(const QString& name)
{
    m_lPlaylistName->setProperty(tag, name);
    m_pPlaylistBox->setAccessibleName(platform::oneLine(playlistCaption(name)));
    showCaption();
}

void PlaylistHead::showCaption()
{
    const QString caption = platform::oneLine(playlistCaption(name()));
    m_lPlaylistName->setText(m_lPlaylistName->fontMetrics().elidedText(
        caption, Qt::ElideMiddle, m_lPlaylistName->contentsRect().width()));
}

void PlaylistHead::setNames(const QStringList& names)
{
    if (names == m_names) // which comes with every save, and the list may be open
        return;
    hideList();
    m_names = names;
    m_cboPlaylist->clear();
    for (const QString& name : names)
        m_cboPlaylist->addItem(platform::oneLine(name), name);
}

void PlaylistHead::openList()
{
    if (m_cboPlaylist->isVisible() || m_cboPlaylist->count() == 0 || !isVisible())
        return;
    m_tCombo.stop();
    m_cboPlaylist->setGeometry(m_pPlaylistBox->x() + m_lPlaylistName->x(), 0, m_lPlaylistName->width(),
                               height());
    m_cboPlaylist->setCurrentIndex(m_cboPlaylist->findData(name()));
    m_cboPlaylist->show();
    m_cboPlaylist->raise();
    m_cboPlaylist->showPopup();
}

void PlaylistHead::hideList()
{
    m_tHide.stop();
    if (m_cboPlaylist->isHidden())
        return;
    m_cboPlaylist->hide();
    m_cboPlaylist->hidePopup();
}

void PlaylistHead::choose(int row)
{
    const QString name = m_cboPlaylist->itemData(row).toString();
    hideList();
    Q_EMIT chosen(name);
}

void PlaylistHead::noteHover()
{
    m_tCombo.setProperty(tag, QCursor::pos().y());
    m_tCombo.start();
}

void PlaylistHead::endHover()
{
    const bool isElsewhere = QApplication::activeModalWidget() || QApplication::activePopupWidget();
    if (isElsewhere || !restsAt(m_tCombo.property(tag).toInt(), QCursor::pos().y()))
        return;
    openList();
    if (m_cboPlaylist->isVisible())
        m_tHide.start();
}

bool PlaylistHead::takeKey(int key)
{
    const bool opens =
        key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Down;
    if (opens)
        openList();
    return opens;
}

bool PlaylistHead::eventFilter(QObject* watched, QEvent* event)
{
    const bool isList = watched != m_pPlaylistBox && watched != m_lPlaylistName;
    switch (event->type()) {
    case QEvent::MouseMove:
        if (watched == m_lPlaylistName)
            noteHover();
        else if (isList)
            m_tHide.start();
        return false;
    case QEvent::MouseButtonRelease: // at the press the list would take the release for a choice
        if (isList || static_cast<QMouseEvent*>(event)->button() != Qt::LeftButton)
            return false;
        openList();
        return true;
    case QEvent::KeyPress:
        return watched == m_pPlaylistBox && takeKey(static_cast<QKeyEvent*>(event)->key());
    case QEvent::Hide:
        // Its list has closed, and is still at work.
        if (watched == m_cboPlaylist->view()->window())
            QMetaObject::invokeMethod(this, &PlaylistHead::hideClosed, Qt::QueuedConnection);
        return false;
    default:
        return false;
    }
}

void PlaylistHead::hideClosed()
{
    if (!m_cboPlaylist->view()->isVisible())
        hideList();
}

QSize PlaylistHead::sizeHint() const
{
    const int inside = m_pPlaylistBox->frameWidth() * 2 + m_lPlaylistName->fontMetrics().height() + air;
    return {0, std::max(inside, m_cboPlaylist->sizeHint().height()) + 2 * outside};
}

void PlaylistHead::resizeEvent(QResizeEvent*)
{
    m_pPlaylistBox->setGeometry(0, outside, width(), std::max(height() - 2 * outside, 0));
    const QRect inner = m_pPlaylistBox->contentsRect();
    m_lPlaylistName->setGeometry(inner);
    const int arrowTop = inner.top() + (inner.height() - arrowSize) / 2;
    m_iDown->setGeometry(std::max(inner.right() + 1 - air - arrowSize, 0), arrowTop, arrowSize, arrowSize);
    showCaption();
    hideList();
}

void PlaylistHead::hideEvent(QHideEvent*)
{
    m_tCombo.stop();
    hideList();
}

} // namespace quorvia::collections
