// A button of the toolbar, painted by the look of its ground. What opens from it, it leaves to its owner.
#pragma once

#include <QToolButton>

namespace quorvia::platform {

struct ToolValues;

class ToolButton : public QToolButton
{
    Q_OBJECT

  public:
    /// How much of the button opens something: none, a part at its end, or all of it.
    enum class Opens { Nothing, AtEnd, Whole };

    explicit ToolButton(QWidget* parent);

    /// Takes over what shows of a tool. A change of what `sizeHint` says is the owner's to look for.
    void showTool(const ToolValues& values, Opens opens);

    /// While what the button opened is open, that part looks held.
    void setOpen(bool open);

    QSize sizeHint() const override;

  Q_SIGNALS:
    /// The user wants open what opens from the button.
    void openRequested(bool byKey);

  protected:
    void nextCheckState() override {} // the tool says what is checked
    bool hitButton(const QPoint& point) const override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;

  private:
    QRect openingPart() const;
    void setHoversPart(bool hovers);
    void paintFace(QPainter& painter) const;
    void paintContent(QPainter& painter) const;
    void paintSign(QPainter& painter) const;

    QString m_caption; ///< shows where there is no drawing
    QString m_drawing;
    QString m_disabledDrawing;
    Opens m_opens = Opens::Nothing;
    bool m_open = false;
    bool m_hoversPart = false;
    bool m_focusByKey = false; ///< only keys bring the focus here for good reason, and a ring with it
};

} // namespace quorvia::platform
