#include "output/frmClipboard.h"

#include "app/Log.h"
#include "app/mFile.h"
#include "app/Settings.h"
#include "app/Twips.h"
#include "controls/ScrollBar.h"
#include "engine/Limits.h"
#include "output/ClipboardLayout.h"
#include "output/ClipboardText.h"
#include "output/ClipSurface.h"
#include "platform/Icons.h"

#include <QAction>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMenuBar>
#include <QPointer>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <utility>

namespace quorvia::output {

using controls::ScrollBar;

namespace {

constexpr QSize smallest(360, 280); // pixels
constexpr QSize usual(640, 480);
constexpr int arrowStep = 300; // twips, at least

QPushButton* addButton(QWidget* parent, const char* name, const QString& text)
{
    auto* const button = new QPushButton(text, parent);
    button->setObjectName(QLatin1String(name));
    button->setAccessibleName(text);
    return button;
}

ScrollBar* addBar(QWidget* parent, const char* name, const QString& accessible, int alight)
{
    auto* const bar = new ScrollBar(parent);
    bar->setObjectName(QLatin1String(name));
    bar->setAccessibleName(accessible);
    bar->SetAlight(alight);
    bar->SetSmallChange(arrowStep);
    bar->hide();
    return bar;
}

/// The image that `clipboard` holds; null, with a line in the log, when it is larger than pictures may be.
QImage imageOf(const platform::ClipboardReader& clipboard)
{
    QImage image = clipboard.image();
    image.setDevicePixelRatio(1);
    if (image.isNull())
        return image;
    if (const engine::Status size = engine::checkSize(image.size()); !size) {
        app::WriteLog(QStringLiteral("Clipboard image not shown: ") + size.error().text);
        return {};
    }
    return image;
}

} // namespace

frmClipboard::frmClipboard(Caller caller, platform::ClipboardReader clipboard)
    : QDialog(caller.window), m_caller(std::move(caller)), m_clipboard(std::move(clipboard)),
      m_lblTitle(new QLabel(this)), m_pToolbar(new QWidget(this)), m_holder(new QWidget(this))
{
    setObjectName(QStringLiteral("frmClipboard"));
    setWindowTitle(QStringLiteral("Clipboard Preview"));
    setModal(true);
    setMinimumSize(smallest);
    resize(usual);
    m_lblTitle->setObjectName(QStringLiteral("lblTitle"));
    buildMenu();
    buildArea();
    buildToolbar();
    buildWindow();
    bool aspect = true;
    app::TextBool(app::read(app::setting::ClipboardView), aspect);
    setAspectResize(aspect);
    GeneratePreview();
}

frmClipboard::~frmClipboard() = default;

void frmClipboard::ShowClipboard(const Caller& caller)
{
    const qint64 maxBytes = engine::Limits::machine().maxBytes;
    const QPointer<frmClipboard> window = new frmClipboard(caller, platform::desktopClipboard(maxBytes));
    window->exec();
    delete window; // null when its owner has taken it along
}

// --- building

void frmClipboard::buildMenu()
{
    auto* const bar = new QMenuBar(this);
    bar->setNativeMenuBar(false);
    QMenu* const view = bar->addMenu(tr("&View"));
    view->setObjectName(QStringLiteral("mnuView"));
    view->setAccessibleName(tr("View"));
    const auto add = [this, view](const char* name, const QString& text) {
        QAction* const item = view->addAction(text);
        item->setObjectName(QLatin1String(name));
        item->setCheckable(true);
        connect(item, &QAction::triggered, this, &frmClipboard::changeMode);
        return item;
    };
    m_mnuAspectResize = add("mnuAspectResize", tr("&Aspect Resize"));
    m_mnuScrollbars = add("mnuScrollbars", tr("&Scrollbars"));
    m_menuBar = bar;
}

void frmClipboard::buildArea()
{
    m_holder->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    m_holder->installEventFilter(this);
    m_picBG = new ClipSurface("picBG", m_holder);
    m_picBG->setAccessibleName(QStringLiteral("Clipboard preview"));
    m_pClip = new ClipSurface("pClip", m_picBG);
    m_pClip->setAccessibleName(QStringLiteral("Clipboard picture"));
    m_pTextP = new QWidget(this);
    m_pTextP->setObjectName(QStringLiteral("pTextP"));
    m_pTextP->setAccessibleName(QStringLiteral("Clipboard text"));
    m_pTextP->hide();
    m_sbH = addBar(m_holder, "sbH", QStringLiteral("Scroll across"), 2);
    m_sbV = addBar(m_holder, "sbV", QStringLiteral("Scroll down"), 1);
    connect(m_sbH, &ScrollBar::Change, this, &frmClipboard::scrollPicture);
    connect(m_sbV, &ScrollBar::Change, this, &frmClipboard::scrollPicture);
}

void frmClipboard::buildToolbar()
{
    m_pToolbar->setObjectName(QStringLiteral("pToolbar"));
    m_pToolbar->setAccessibleName(QStringLiteral("Tools"));
    m_lblRepaste = addButton(m_pToolbar, "lblRepaste", QStringLiteral("Re-paste from Clipboard"));
    m_lblCancel = addButton(m_pToolbar, "lblCancel", QStringLiteral("Cancel"));
    m_cmdFinish = addButton(m_pToolbar, "cmdFinish", QStringLiteral("Paste Image >>"));
    auto* const picture = new QLabel(m_pToolbar);
    picture->setObjectName(QStringLiteral("cmdFinishi"));
    picture->setAccessibleName(m_cmdFinish->text());
    const int side = style()->pixelMetric(QStyle::PM_SmallIconSize);
    picture->setPixmap(
        platform::icon(QStringLiteral("paste")).pixmap(QSize(side, side), devicePixelRatioF()));

    m_cmdFinish->setDefault(true);
    m_cmdFinish->setFocus();
    for (QPushButton* const button : {m_lblRepaste, m_lblCancel, m_cmdFinish})
        button->installEventFilter(this);
    connect(m_lblRepaste, &QPushButton::clicked, this, &frmClipboard::GeneratePreview);
    connect(m_lblCancel, &QPushButton::clicked, this, &frmClipboard::reject);
    connect(m_cmdFinish, &QPushButton::clicked, this, &frmClipboard::finish);

    auto* const row = new QHBoxLayout(m_pToolbar);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(m_lblRepaste);
    row->addStretch();
    row->addWidget(m_lblCancel);
    row->addWidget(picture);
    row->addWidget(m_cmdFinish);
    setTabOrder(m_lblRepaste, m_lblCancel);
    setTabOrder(m_lblCancel, m_cmdFinish);
}

void frmClipboard::buildWindow()
{
    auto* const rows = new QVBoxLayout(this);
    rows->setMenuBar(m_menuBar);
    rows->addWidget(m_lblTitle);
    rows->addWidget(m_holder, 1);
    rows->addWidget(m_pToolbar);
}

// --- the preview

void frmClipboard::GeneratePreview()
{
    m_picBG->hide();
    m_pClip->clear();
    m_picBG->clear();
    m_picture = {};
    m_ratio = devicePixelRatioF();
    const QString text = m_clipboard.text();
    const bool isText = isClipboardText(text);
    m_lblTitle->setText(isText ? QStringLiteral("Clipboard Preview: Text")
                               : QStringLiteral("Clipboard Preview: Image"));
    if (isText) {
        PrintedText printed = printText(text, m_pTextP->font(), m_ratio);
        if (printed.cut || printed.image.isNull())
            app::WriteLog(QStringLiteral("Clipboard text is too large for one picture"));
        m_picture = std::move(printed.image);
    } else {
        m_picture = imageOf(m_clipboard);
    }
    m_sbH->SetValue(0);
    m_sbV->SetValue(0);
    layOut();
    m_picBG->show();
}

void frmClipboard::setAspectResize(bool aspect)
{
    m_mnuAspectResize->setChecked(aspect);
    m_mnuScrollbars->setChecked(!aspect);
    m_aspect = aspect;
}

/// Either item of the menu does this. The toolkit has negated the one that was clicked already.
void frmClipboard::changeMode()
{
    setAspectResize(!m_aspect);
    app::save(app::setting::ClipboardView, app::BoolText(m_aspect));
    layOut();
}

void frmClipboard::layOut()
{
    const QSize room = app::inTwips(m_holder->size());
    const QSize clip = clipSize(m_picture.size(), devicePixelRatioF());
    const int thickness = app::toTwips(m_sbV->sizeHint().width());
    placeParts(m_aspect ? aspectResizeView(clip, room) : scrollBarView(clip, room, thickness), clip);
}

void frmClipboard::placeParts(const ClipboardView& view, QSize clip)
{
    const QRect area(QPoint(), view.area);
    const auto twips = [](QSize size) { return app::inTwips(size); };
    m_picBG->setGeometry(app::toPixels(area));
    m_sbH->setGeometry(app::toPixels(
        QRect(QPoint(0, view.area.height()), QSize(view.area.width(), twips(m_sbH->sizeHint()).height()))));
    m_sbV->setGeometry(app::toPixels(
        QRect(QPoint(view.area.width(), 0), QSize(twips(m_sbV->sizeHint()).width(), view.area.height()))));
    m_sbH->SetMax(view.maxAcross);
    m_sbV->SetMax(view.maxDown);
    m_sbH->setVisible(view.hasAcross);
    m_sbV->setVisible(view.hasDown);

    m_pClip->hide();
    m_pClip->resize(app::toPixels(QRect(QPoint(), clip)).size());
    if (view.stretched) {
        m_picBG->stretchPicture(m_picture);
        m_pClip->move(0, 0);
        return;
    }
    m_picBG->clear();
    m_pClip->showPicture(m_picture);
    scrollPicture();
    m_pClip->setVisible(!m_picture.isNull());
}

/// A bar that is hidden has nothing to scroll, whatever its value still is.
void frmClipboard::scrollPicture()
{
    const auto offset = [](const ScrollBar* bar) {
        return bar->isHidden() ? 0 : app::toPixels(bar->Value());
    };
    m_pClip->move(-offset(m_sbH), -offset(m_sbV));
}

// --- what the user does

void frmClipboard::finish()
{
    if (std::exchange(m_finished, true))
        return; // pasting may let events run, this button's among them
    m_cmdFinish->setText(QStringLiteral("Okay"));
    const QPointer<frmClipboard> alive = this;
    if (m_caller.PasteImage)
        m_caller.PasteImage(m_picture);
    if (alive)
        accept();
}

void frmClipboard::reject()
{
    if (m_finished)
        return;
    m_pClip->setProperty("tag", QStringLiteral("Cancel"));
    QDialog::reject();
}

bool frmClipboard::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_holder && event->type() == QEvent::Resize)
        layOut();
    if (watched != m_holder && event->type() == QEvent::KeyPress &&
        scrollByKey(static_cast<QKeyEvent*>(event)))
        return true;
    return QDialog::eventFilter(watched, event);
}

/// The buttons have the focus, and the bars their keys. False when no bar wants this one.
bool frmClipboard::scrollByKey(QKeyEvent* event)
{
    const bool isAcross = event->key() == Qt::Key_Left || event->key() == Qt::Key_Right;
    const bool isDown = event->key() == Qt::Key_Up || event->key() == Qt::Key_Down;
    ScrollBar* bar = isAcross ? m_sbH : m_sbV;
    if (!isAcross && !isDown && bar->isHidden())
        bar = m_sbH; // page keys
    if (bar->isHidden())
        return false;
    event->accept();
    QCoreApplication::sendEvent(bar, event);
    return event->isAccepted();
}

void frmClipboard::wheelEvent(QWheelEvent* event)
{
    if (event->modifiers() & Qt::ControlModifier)
        return event->ignore(); // no bar wants it
    const QPoint turned = event->angleDelta();
    const bool across =
        (event->modifiers() & Qt::ShiftModifier) || std::abs(turned.x()) > std::abs(turned.y());
    ScrollBar* const wanted = across ? m_sbH : m_sbV;
    ScrollBar* const other = across ? m_sbV : m_sbH;
    ScrollBar* const bar = wanted->isHidden() ? other : wanted;
    if (!bar->isHidden())
        QCoreApplication::sendEvent(bar, event);
}

/// The text was printed before it was known on which screen it shows.
void frmClipboard::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    if (m_ratio != devicePixelRatioF())
        GeneratePreview();
}

} // namespace quorvia::output
