// The editable combo box of a tool, in a menu or on the toolbar. It tells of every edit and of every end of
// one.
#pragma once

#include <QComboBox>
#include <QPointer>

namespace quorvia::platform {

class Tool;
class ToolModel;

class ToolCombo : public QComboBox
{
    Q_OBJECT

  public:
    /// Shows `tool` for as long as it lives, and reports through `model`.
    ToolCombo(ToolModel* model, Tool* tool, QWidget* parent = nullptr);

  Q_SIGNALS:
    /// Enter ended the edit; the model has been told.
    void entered();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void showTool();
    void showText(const QString& text);
    void report(const QString& text, void (ToolModel::*signal)(Tool*));

    QPointer<ToolModel> m_model;
    QPointer<Tool> m_tool;
};

} // namespace quorvia::platform
