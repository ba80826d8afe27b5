// The parts of a pane bar: the head of a pane and a row below it. Painted from the palette alone, so that
// they can be read on whatever ground the bar stands.
#pragma once

#include "platform/KeyRepeats.h"
#include "platform/PaneBar.h"
#include "platform/SpokenWidget.h"

#include <QAbstractButton>
#include <QLabel>

namespace quorvia::platform {

/// Folds its pane; checked while the pane is open. By keys: Enter and the space bar.
class PaneHead : public QAbstractButton, public SpokenWidget
{
    Q_OBJECT

  public:
    PaneHead(const QString& title, const PaneLook& look, QWidget* parent);

    QSize sizeHint() const override;

    QAccessible::Role spokenRole() const override { return QAccessible::Button; }
    void addSpokenState(QAccessible::State& state) const override;
    bool isSpokenPressable() const override { return true; }
    void pressSpoken() override { click(); }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;

  private:
    QColor m_ground; ///< not valid: a tint of the bar's
    QColor m_ink;
    KeyRepeats m_repeats;
};

class PaneRow : public QLabel, public SpokenWidget
{
    Q_OBJECT

  public:
    /// With `besideIcons` the text leaves room for an icon, whether the row has one or not.
    PaneRow(const PaneItem& item, const PaneLook& look, bool besideIcons);

    void showItem(const PaneItem& item);

    /// One that can be chosen is a link.
    QAccessible::Role spokenRole() const override;
    bool isSpokenPressable() const override { return m_kind == PaneItemKind::Link; }
    void pressSpoken() override { Q_EMIT clicked(); }

  Q_SIGNALS:
    void clicked();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

  private:
    void underline();

    PaneItemKind m_kind;
    QString m_icon;
    int m_textLeft; ///< pixels
    KeyRepeats m_repeats;
    bool m_pressed = false; ///< a click has begun here
};

} // namespace quorvia::platform
