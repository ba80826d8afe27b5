#include "viewer/Panes.h"

#include "app/Colors.h"
#include "app/Log.h"
#include "app/mFile.h"
#include "app/Settings.h"
#include "app/Twips.h"
#include "controls/gnTab.h"
#include "controls/uLink.h"
#include "platform/MenuControl.h"
#include "platform/ToolButton.h"
#include "platform/ToolControl.h"
#include "platform/ToolModel.h"
#include "viewer/DragHandle.h"
#include "viewer/FileListHandle.h"

#include <QEvent>
#include <QFrame>
#include <QMouseEvent>
#include <QPushButton>
#include <QWidget>

#include <algorithm>
#include <utility>

namespace quorvia::viewer {

namespace {

// Heights in twips.
constexpr int filebarHeight = 330;
constexpr int leastTabHeight = 330; // more where the font asks for it
constexpr int splitterHeight = 90;
constexpr int informationHeight = 2700;
constexpr int captureHeight = 2400;

constexpr int filmstripDelay = 100; // milliseconds for which the picture stays away after a step of a drag

constexpr char imageKey[] = "Image";
constexpr char informationKey[] = "Information";
constexpr char filmstripKey[] = "Filmstrip";

QWidget* makePane(QWidget* parent, const char* name)
{
    auto* pane = new QWidget(parent);
    pane->setObjectName(QLatin1String(name));
    pane->setAutoFillBackground(true);
    return pane;
}

void openLink(const QString& link)
{
    constexpr int showDefault = 10;
    QString failure; // of which nobody is told
    app::ShellRun(link, showDefault, QString(), QString(), QStringLiteral("open"), failure);
}

void setColor(QWidget* widget, QPalette::ColorRole role, const QColor& color)
{
    QPalette colors; // of which only this role is the widget's own
    colors.setColor(role, color);
    widget->setPalette(colors);
}

void placeAt(QWidget* pane, const QRect& twips)
{
    pane->setGeometry(app::toPixels(twips));
}

} // namespace

Panes::Panes(QWidget* window, Sinks sinks)
    : QObject(window), m_window(window), m_sinks(std::move(sinks)), m_pMain(makePane(window, "pMain")),
      m_ab1(new platform::ToolControl(m_pMain)), m_iButton(new platform::ToolButton(m_pMain)),
      m_Line1(new QFrame(m_pMain)), m_aP(new platform::MenuControl(m_pMain)), m_pTop(makePane(m_aP, "pTop")),
      m_pFilebar(makePane(m_pTop, "pFilebar")), m_uLink(new controls::uLink(openLink, m_pTop)),
      m_gTab(new controls::gnTab(m_pTop)), m_pContain(makePane(m_pTop, "pContain")),
      m_pWelcome(makePane(m_pContain, "pWelcome")), m_pInformation(makePane(m_pTop, "pInformation")),
      m_pShowInfo(makePane(m_pInformation, "pShowInfo")), m_pFilmStrip(makePane(m_pTop, "pFilmStrip")),
      m_pFilm(makePane(m_pFilmStrip, "pFilm")),
      m_pSize(new DragHandle(Qt::Vertical, QStringLiteral("pSize"), m_pTop)),
      m_pCapture(makePane(m_pTop, "pCapture")),
      m_bPlay(m_aP->addBand(QStringLiteral("bPlay"), QStringLiteral("fPlaylist"),
                            QStringLiteral("Picture List"))),
      m_bInfo(m_aP->addBand(QStringLiteral("bInfo"), QStringLiteral("fBar"), QStringLiteral("Resource Panel"),
                            platform::dockingArea::right)),
      m_pMove(new FileListHandle({.pMain = m_pMain, .pTop = m_pTop, .bPlay = m_bPlay}))
{
    static_cast<QFrame*>(m_Line1)->setFrameStyle(QFrame::HLine | QFrame::Sunken);
    m_Line1->setObjectName(QStringLiteral("Line1"));
    m_ab1->setObjectName(QStringLiteral("ab1"));
    m_ab1->setAutoFillBackground(true);
    m_ab1->hide();
    m_iButton->setObjectName(QStringLiteral("iButton"));
    platform::ToolValues alone;
    alone.caption = tr("Show the picture alone");
    alone.pictures[0] = QStringLiteral("alone");
    m_iButton->showTool(alone, platform::ToolButton::Opens::Nothing);
    m_iButton->setFocusPolicy(Qt::TabFocus); // no row lends it the key
    connect(m_iButton, &QAbstractButton::clicked, this,
            [this] { m_sinks.runTool(QStringLiteral("miHideInterface")); });
    m_uLink->setObjectName(QStringLiteral("uLink"));
    m_aP->setObjectName(QStringLiteral("aP"));
    m_aP->setClientArea(m_pTop);
    m_gTab->setObjectName(QStringLiteral("gTab"));
    makePane(m_pInformation, "pInfoShow2")->hide();

    auto* label = new QPushButton(QStringLiteral("Picture List"), m_pFilebar);
    label->setObjectName(QStringLiteral("lFilebar"));
    label->setFlat(true);
    label->setFocusPolicy(Qt::NoFocus);
    connect(label, &QPushButton::clicked, this,
            [this] { m_sinks.runTool(QStringLiteral("miFilelistMenu")); });

    for (QWidget* pane : {static_cast<QWidget*>(m_iButton), static_cast<QWidget*>(m_uLink), m_pWelcome,
                          m_pInformation, m_pFilmStrip, m_pCapture, static_cast<QWidget*>(m_pSize)})
        pane->hide();

    connect(m_gTab, &controls::gnTab::TabSelected, this, &Panes::showTab);
    connect(m_pSize, &DragHandle::dragged, this, &Panes::dragFilmstrip);
    connect(m_pSize, &DragHandle::released, this, &Panes::dropFilmstrip);
    connect(m_pMove, &FileListHandle::moved, this, &Panes::place);
    for (const platform::Band* band : {m_bPlay, m_bInfo}) {
        connect(band, &platform::Band::visibilityChanged, this, &Panes::placeTop);
        connect(band, &platform::Band::areaChanged, this, &Panes::placeTop);
    }
    connect(m_bPlay, &platform::Band::visibilityChanged, this, [this] { m_sinks.listToggled(); });
    m_pTop->installEventFilter(this);
    for (QWidget* pane : {m_pContain, m_pWelcome, m_pMain, static_cast<QWidget*>(m_aP)})
        pane->installEventFilter(this);
}

void Panes::colourChrome(const QColor& color)
{
    for (QWidget* pane : {m_pMain, static_cast<QWidget*>(m_ab1), m_pTop, m_pFilebar, m_pFilmStrip,
                          m_pInformation, static_cast<QWidget*>(m_pSize), static_cast<QWidget*>(m_pMove)})
        app::setPaneColor(pane, color);
    const auto number = quint32(app::toColorNumber(color));
    const auto white = quint32(app::toColorNumber(Qt::white));
    m_gTab->SetBackColor(number);
    m_gTab->SetTabBackColor(number);
    m_gTab->SetActiveTabBackColor(number);
    for (const auto setText : {&controls::gnTab::SetTabTextColor, &controls::gnTab::SetActiveTabTextColor,
                               &controls::gnTab::SetHoverColour})
        (m_gTab->*setText)(white);
    m_gTab->SetSelectedTabHoverColor(quint32(app::toColorNumber(color.darker(125))));
    m_gTab->SetSeperatorLineColor(quint32(app::toColorNumber(color.lighter(150))));
    for (QWidget* label : m_pFilebar->findChildren<QPushButton*>())
        setColor(label, QPalette::ButtonText, Qt::white);
    setColor(m_uLink, QPalette::WindowText, Qt::white); // its own colour is that of the chrome
}

void Panes::addTabs()
{
    m_tabsReady = false;
    m_gTab->RemoveAllTabs();
    const std::pair<const char*, const char*> tabs[] = {
        {"Active Image", imageKey}, {"Information", informationKey}, {"Filmstrip", filmstripKey}};
    for (const auto& [caption, key] : tabs) {
        if (const controls::ControlStatus added = m_gTab->AddTab(QLatin1String(caption), QLatin1String(key));
            !added)
            app::WriteLog(added.error().Description);
    }
    m_tabsReady = true;
}

void Panes::place()
{
    m_pMain->setGeometry(m_window->rect());
    placeMain();
    m_aP->recalcLayout();
    placeTop();
}

void Panes::placeMain()
{
    const bool toolbar = !m_ab1->isHidden();
    m_awaitsToolbar = m_awaitsToolbar && !toolbar;
    m_Line1->setVisible(toolbar || m_awaitsToolbar);
    if (!toolbar && !m_awaitsToolbar) {
        m_aP->setGeometry(m_pMain->rect());
        placeButton();
        return;
    }
    if (toolbar)
        m_ab1->fitInto(m_pMain->width());
    const QSize bar = toolbar ? m_ab1->size() : QSize(0, platform::ToolControl::usualHeight());
    const MainPanes panes = layoutMain(app::inTwips(m_pMain->size()), app::inTwips(bar));
    if (toolbar)
        m_ab1->move(app::toPixels(panes.toolbar.x()), app::toPixels(panes.toolbar.y()));
    m_Line1->setGeometry(0, app::toPixels(panes.rule), m_pMain->width(), 1);
    placeAt(m_aP, panes.docking);
    placeButton();
}

void Panes::placeButton()
{
    std::optional<int> top;
    const QRect toolbar = app::inTwips(m_ab1->geometry());
    m_iButton->resize(m_iButton->sizeHint());
    if (!m_interfaceFlag && !m_ab1->isHidden())
        top = buttonTop(app::toTwips(m_iButton->x() + m_iButton->width()), toolbar);
    if (!top && m_iButton->hasFocus())
        m_window->setFocus(); // it goes by its own press too
    m_iButton->setVisible(top.has_value());
    if (top)
        m_iButton->move(m_iButton->x(), app::toPixels(*top));
}

bool Panes::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_pTop && event->type() == QEvent::Resize)
        placeTop();
    if (watched == m_pTop || event->type() != QEvent::MouseButtonRelease)
        return false;
    const auto& release = static_cast<const QMouseEvent&>(*event);
    const bool counts = watched != m_pMain || release.modifiers() == Qt::NoModifier;
    if (release.button() != Qt::RightButton || !counts)
        return false;
    m_sinks.openMenu();
    return true;
}

TopState Panes::topState() const
{
    TopState state;
    state.size = app::inTwips(m_pTop->size());
    state.windowWidth = app::toTwips(m_window->width());
    state.listVisible = m_bPlay->visible();
    state.listArea = m_bPlay->dockingArea();
    state.filebarHeight = filebarHeight;
    state.tabHeight = std::max(app::toTwips(m_gTab->sizeHint().height()), leastTabHeight);
    state.splitterHeight = splitterHeight;
    state.informationHeight = informationHeight;
    state.filmstripHeight = m_filmStripHeight;
    state.captureHeight = captureHeight;
    state.interfaceFlag = m_interfaceFlag;
    if (!m_pInformation->isHidden())
        state.pane = TabPane::Information;
    else if (!m_pFilmStrip->isHidden())
        state.pane = TabPane::Filmstrip;
    else if (!m_pCapture->isHidden())
        state.pane = TabPane::Capture;
    if (!m_uLink->isHidden())
        state.link = app::inTwips(m_uLink->size());
    return state;
}

void Panes::placeTop()
{
    const TopPanes panes = layoutTop(topState());
    m_pFilebar->setVisible(!panes.filebar.isNull());
    placeAt(m_pFilebar, panes.filebar);
    if (auto* label = m_pFilebar->findChild<QPushButton*>())
        label->setGeometry(0, 0, label->sizeHint().width(), m_pFilebar->height());
    placeAt(m_gTab, panes.tabs);
    m_uLink->move(app::toPixels(panes.link.x()), app::toPixels(panes.link.y()));
    // Where there is no room for both, the tabs are the ones that are needed.
    if (m_uLink->x() < m_gTab->sizeHint().width() && panes.filebar.isNull())
        m_uLink->stackUnder(m_gTab);
    else
        m_uLink->raise();
    placeAt(m_pContain, panes.viewport);
    if (!m_pWelcome->isHidden())
        m_pWelcome->setGeometry(m_pContain->rect());
    if (!panes.information.isNull()) {
        placeAt(m_pInformation, panes.information);
        placeAt(m_pShowInfo, layoutInside(panes.information.size()));
    }
    if (!m_pSize->isDragged()) {
        m_draggedTop.reset();
        placeAt(m_pSize, panes.splitter);
    }
    if (!panes.filmstrip.isNull()) {
        placeAt(m_pFilmStrip, panes.filmstrip);
        placeAt(m_pFilm, layoutInside(panes.filmstrip.size()));
    }
    placeAt(m_pCapture, panes.capture);
    m_pMove->place(app::toPixels(splitterHeight));
    m_sinks.laidOut();
}

int Panes::freeRight() const
{
    constexpr int gap = 7; // pixels
    return m_uLink->isHidden() ? m_pTop->width() : m_uLink->x() - gap;
}

void Panes::setInterfaceFlag(bool flag)
{
    m_interfaceFlag = flag;
    if (flag)
        m_pContain->raise();
    else
        m_pContain->lower();
    disableCovered();
    placeMain();
    placeTop();
}

/// Panes that the viewport lies over take no keys.
void Panes::disableCovered()
{
    for (QWidget* pane : {m_pInformation, m_pFilmStrip, m_pCapture}) {
        if (m_interfaceFlag && pane->isAncestorOf(m_window->focusWidget()))
            m_window->setFocus();
        pane->setEnabled(!m_interfaceFlag);
    }
}

bool Panes::isInformationShown() const
{
    return !m_interfaceFlag && !m_pInformation->isHidden();
}

bool Panes::isFilmstripShown() const
{
    return !m_interfaceFlag && !m_pFilmStrip->isHidden();
}

void Panes::setFilmStripHeight(int twips)
{
    constexpr int least = 300;
    constexpr int most = 1 << 20; // higher than any screen; a damaged setting may hold more
    m_filmStripHeight = std::clamp(twips, least, most);
}

void Panes::showTab(const QString& key)
{
    if (!m_tabsReady)
        return;
    m_gTab->SetTag(QString()); // the mark of an open under way
    const bool information = key == QLatin1String(informationKey);
    const bool filmstrip = key == QLatin1String(filmstripKey);
    m_pContain->setVisible(information || filmstrip || key == QLatin1String(imageKey));
    m_pInformation->setVisible(information);
    m_pFilmStrip->setVisible(filmstrip);
    m_pSize->setVisible(filmstrip);
    m_pCapture->hide();
    app::save(app::setting::ActiveTabWindow, key);
    placeTop();
    m_sinks.tabShown(key);
}

void Panes::dragFilmstrip(int offset)
{
    m_draggedTop = splitterTop(app::toTwips(m_pSize->y() + offset), app::toTwips(m_pContain->y()),
                               app::toTwips(m_pTop->height()));
    m_pSize->move(m_pSize->x(), app::toPixels(*m_draggedTop));
    m_pSize->raise();
    m_sinks.setUpdate(false, filmstripDelay);
}

void Panes::dropFilmstrip()
{
    if (!m_draggedTop)
        return;
    m_filmStripHeight =
        filmstripHeight(*m_draggedTop, app::toTwips(m_pSize->height()), app::toTwips(m_pTop->height()));
    m_draggedTop.reset();
    app::save(app::setting::FilmStripHeight, m_filmStripHeight);
    placeTop();
    m_sinks.filmstripResized();
}

void Panes::showWelcome(bool show)
{
    m_pWelcome->setGeometry(m_pContain->rect());
    m_pWelcome->setVisible(show);
    m_pWelcome->raise();
}

bool Panes::isViewShown() const
{
    return !m_pTop->isHidden();
}

void Panes::showView(bool show)
{
    m_pTop->setVisible(show);
    m_ab1->setVisible(show && m_ab1->hasTools());
    placeMain(); // its rule and the button beside it go with the toolbar
}

void Panes::toggleFileList()
{
    m_bPlay->setVisible(!m_bPlay->visible());
    place();
}

void Panes::toggleSideBar()
{
    m_bInfo->setVisible(!m_bInfo->visible());
    place();
}

} // namespace quorvia::viewer
