// The row of a menu that holds a caption and an editable combo box.
#pragma once

#include <QPointer>
#include <QWidgetAction>

class QKeyEvent;
class QLabel;

namespace quorvia::platform {

class Tool;
class ToolCombo;
class ToolModel;

class MenuCombo : public QWidgetAction
{
    Q_OBJECT

  public:
    MenuCombo(ToolModel* model, Tool* tool, QWidget* parent);

    /// For a key that the menu got while the row is the chosen one: what writes goes into the box. False when
    /// the key is the menu's.
    bool takeKey(QKeyEvent* event);

  Q_SIGNALS:
    /// Enter ended an edit.
    void entered();

  private:
    QPointer<QLabel> m_label;
    QPointer<ToolCombo> m_combo;
};

} // namespace quorvia::platform
