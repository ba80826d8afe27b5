// The sign of the maker's media portal at the foot of the welcome panel, painted in the panel's text colour.
#pragma once

#include "platform/SpokenWidget.h"

#include <QString>
#include <QWidget>

namespace quorvia::commands {

/// The command that a click of `button` with `modifiers` on the sign runs; empty when it runs none. A right
/// click without modifier is for the context menu.
QString logoCommand(Qt::MouseButton button, Qt::KeyboardModifiers modifiers);

class WelcomeLogo : public QWidget, public platform::SpokenWidget
{
    Q_OBJECT

  public:
    explicit WelcomeLogo(QWidget* parent = nullptr);

    QSize sizeHint() const override;
    /// Any width: in a narrow column the name is cut off, not the column widened.
    QSize minimumSizeHint() const override { return {0, sizeHint().height()}; }

    QAccessible::Role spokenRole() const override { return QAccessible::Link; }
    bool isSpokenPressable() const override { return true; }
    void pressSpoken() override { Q_EMIT commandChosen(logoCommand(Qt::LeftButton, Qt::NoModifier)); }

  Q_SIGNALS:
    void commandChosen(const QString& name);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

  private:
    QFont nameFont() const;

    Qt::MouseButton m_pressed = Qt::NoButton; ///< with which a click has begun here
};

} // namespace quorvia::commands
