#include "collections/EditorButtons.h"

#include "app/Colors.h"
#include "app/Twips.h"
#include "platform/Icons.h"
#include "platform/ToolLook.h"

#include <QAbstractButton>
#include <QEvent>
#include <QPainter>

namespace quorvia::collections {

namespace {

constexpr int iconSide = 20;  // pixels
constexpr int panelSide = 32; // pixels

struct Row
{
    const char* drawing;
    const char* name; ///< for those that cannot see the drawing; without one the tip says it
    const char* tip;
    bool isWhite;
};

constexpr std::array<Row, editorButtons> rows{{
    {"moveup", "Move Up", nullptr, false},
    {"movedown", "Move Down", nullptr, false},
    {"remove", nullptr, "Remove Selected Items from Playlist", true},
    {"add", nullptr, "Move Selected Items to Playlist", true},
    {"addall", nullptr, "Move All Files to Playlist", true},
}};

/// A drawing that is a button, in the colours of the panel that it stands on.
class DrawingButton : public QAbstractButton
{
  public:
    DrawingButton(const char* drawing, QWidget* panel)
        : QAbstractButton(panel), m_drawing(QLatin1String(drawing))
    {
        setFocusPolicy(Qt::TabFocus);
        setMouseTracking(true);
        setAttribute(Qt::WA_Hover);
    }

    QSize sizeHint() const override { return {panelSide, panelSide}; }

  protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        const platform::ToolLook look = platform::toolLook(palette());
        if (isDown() || underMouse())
            painter.fillRect(rect(), isDown() ? look.pressed : look.hovered);
        const qreal ratio = devicePixelRatioF();
        QPixmap picture = platform::drawing(m_drawing, qRound(iconSide * ratio), look.ink);
        picture.setDevicePixelRatio(ratio);
        painter.drawPixmap((width() - iconSide) / 2, (height() - iconSide) / 2, picture);
        if (!hasFocus())
            return;
        painter.setPen(look.ink);
        painter.drawRect(rect().adjusted(1, 1, -2, -2));
    }

  private:
    QString m_drawing;
};

} // namespace

EditorButtons::EditorButtons(QWidget* moves, QWidget* changes, QObject* parent) : QObject(parent)
{
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const Row& row = rows.at(i);
        auto* const panel = new QWidget(row.isWhite ? changes : moves);
        panel->setObjectName(QStringLiteral("pImage%1").arg(i));
        panel->setAutoFillBackground(row.isWhite);
        if (row.isWhite)
            app::setPaneColor(panel, Qt::white);
        auto* const button = new DrawingButton(row.drawing, panel);
        button->setObjectName(QStringLiteral("iImg%1").arg(i));
        button->setAccessibleName(QLatin1String(row.name ? row.name : row.tip));
        button->setToolTip(QLatin1String(row.tip));
        button->installEventFilter(this);
        connect(button, &QAbstractButton::clicked, this, [this, i] { Q_EMIT clicked(EditorAction(i)); });
        m_pImage.at(i) = panel;
        m_iImg.at(i) = button;
    }
}

int EditorButtons::side()
{
    return panelSide;
}

void EditorButtons::place(const std::array<QRect, editorButtons>& twips)
{
    for (std::size_t i = 0; i < twips.size(); ++i) {
        m_pImage.at(i)->setGeometry(app::toPixels(twips.at(i)));
        m_iImg.at(i)->setGeometry(m_pImage.at(i)->rect());
    }
}

std::array<QWidget*, editorButtons> EditorButtons::inTabOrder() const
{
    return {m_iImg[3], m_iImg[4], m_iImg[2], m_iImg[0], m_iImg[1]};
}

bool EditorButtons::eventFilter(QObject* watched, QEvent* event)
{
    const bool moves = event->type() == QEvent::Enter || event->type() == QEvent::MouseMove;
    if (const auto* const button = qobject_cast<QAbstractButton*>(watched);
        moves && button && !button->toolTip().isEmpty())
        Q_EMIT hovered(QStringLiteral("Click button to: ") + button->toolTip());
    if (event->type() == QEvent::Leave)
        Q_EMIT left();
    return false;
}

} // namespace quorvia::collections
