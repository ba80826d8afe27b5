#include "collections/PanelTabs.h"

#include "app/Twips.h"
#include "collections/PanelTab.h"
#include "collections/PlaylistLayout.h"

#include <array>

namespace quorvia::collections {

namespace {

constexpr int tick_ms = 1;

struct TabFace
{
    const char* caption;
    const char* icon;
};

constexpr std::array faces = {TabFace{"Folders", "folder"}, TabFace{"Playlist", "playlist"}};

void wearFace(PanelTab& tab, int face)
{
    const TabFace& shown = faces.at(std::size_t(face));
    tab.setFace(QLatin1String(shown.caption), QLatin1String(shown.icon));
}

} // namespace

PanelTabs::PanelTabs(int face, QWidget* parent)
    : QWidget(parent), m_tab1(new PanelTab(1, this)), m_tab2(new PanelTab(2, this)), m_face(face)
{
    m_tAni.setObjectName(QStringLiteral("tAni"));
    m_tAni.setParent(this);
    m_tAni.setTimerType(Qt::PreciseTimer);
    m_tAni.setInterval(tick_ms);
    connect(&m_tAni, &QTimer::timeout, this, &PanelTabs::tick);
    connect(m_tab2, &QAbstractButton::clicked, this, [this] {
        m_animation.restart();
        Q_EMIT faceWanted(1 - m_worn);
    });
    m_tab1->raise(); // the other one passes below it
    wear(face);
}

void PanelTabs::wear(int face)
{
    m_worn = face;
    wearFace(*m_tab1, face);
    wearFace(*m_tab2, 1 - face);
}

void PanelTabs::showFace(int face, bool animated)
{
    m_face = face;
    if (!animated || !isVisible()) {
        settle();
        return;
    }
    m_animation.restart();
    m_tAni.start();
}

void PanelTabs::setTab2Visible(bool visible)
{
    m_tab2->setVisible(visible);
}

QSize PanelTabs::sizeHint() const
{
    return m_tab1->sizeHint().expandedTo(m_tab2->sizeHint());
}

void PanelTabs::tick()
{
    if (!isVisible()) {
        settle();
        return;
    }
    switch (m_animation.step(app::toTwips(m_tab1->width()))) {
    case TabAnimation::Step::Moved:
        break;
    case TabAnimation::Step::Exchanged:
        wear(m_face);
        break;
    case TabAnimation::Step::Ended:
        m_tAni.stop();
        break;
    }
    place();
}

void PanelTabs::settle()
{
    m_tAni.stop();
    m_animation.restart();
    if (m_worn != m_face)
        wear(m_face);
    place();
}

void PanelTabs::place()
{
    const TabPlaces places = layoutTabs({.panel = app::inTwips(size()), .head = app::toTwips(height())});
    if (!m_tAni.isActive())
        m_animation.left = places.tab2.left();
    m_tab1->setGeometry(app::toPixels(places.tab1));
    m_tab2->setGeometry(app::toPixels(movingTab(places, m_animation.left)));
}

void PanelTabs::resizeEvent(QResizeEvent*)
{
    place();
}

} // namespace quorvia::collections
