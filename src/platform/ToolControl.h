// The menu and toolbar control: it owns the tools and bands, shows the visible band of the toolbar kind as a
// row of buttons, and its other bands as menus. It follows its model: any number of changes in one go are
// shown together by one repaint. It costs nothing until the toolbar's band is there.
#pragma once

#include "platform/ToolButton.h"
#include "platform/ToolModel.h"
#include "platform/ToolRow.h"

#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <memory>
#include <vector>

namespace quorvia::platform {

class ToolMenu;

class ToolControl : public QWidget
{
    Q_OBJECT

  public:
    explicit ToolControl(QWidget* parent = nullptr);
    ~ToolControl() override;

    /// What the control shows, and whose signals tell what the user does with it.
    ToolModel* model() const { return m_model.get(); }
    ToolMenu* menus() const { return m_menus.get(); }

    /// The version of the control, as in "1.0.000".
    static QString version();

    /// Sets the width or the height, in twips; `fitInto` comes back to it.
    void setWidthInTwips(int twips);
    void setHeightInTwips(int twips);
    /// Takes the width that was set, or `pixels` when that is less.
    void fitInto(int pixels);

    /// The height, in pixels, of a toolbar whose band says nothing else.
    static int usualHeight();

    /// True once there is a band with tools to show.
    bool hasTools() const { return !m_items.empty(); }

    /// Looks for the band to show, makes its buttons and gives the band the size in which all of them stand.
    /// To be called once the bands are built; what changes on that band later is followed.
    void recalculateLayout();

    /// Shows the band as a menu at the mouse. False when there is no such band or a listener of BandOpen
    /// cancelled.
    bool popUp(const QString& bandName);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

  private:
    /// A tool of the band and what shows it; no widget for a separator.
    struct Item
    {
        QPointer<Tool> tool;
        ToolKind kind = ToolKind::Plain; ///< for which the widget was made
        QWidget* widget = nullptr;
    };

    void changeLater();
    void catchUp();
    bool isOutdated() const;
    void rebuild();
    QWidget* makeWidget(Tool* tool);
    ToolButton* makeButton(Tool* tool);
    void showTools();
    void showTool(const Item& item);
    void layOut();
    void placeItems();
    void placeWidget(QWidget* widget, const RowPlace& place);
    ToolButton::Opens opensOf(const ToolValues& values) const;
    void openBand(ToolButton* button, const QString& bandName, bool byKey);
    void openRest(bool byKey);
    void followMenu(ToolButton* button, bool byKey);
    QRect onScreen(const QWidget* widget) const;

    std::vector<ToolButton*> buttons() const;
    ToolButton* reachableNear(const QWidget* widget) const;
    void keepFocus();
    void lendTab(ToolButton* button);
    void moveFocus(int key);

    std::unique_ptr<ToolModel> m_model;
    std::unique_ptr<ToolMenu> m_menus;
    QPointer<ToolBand> m_band;
    std::vector<Item> m_items;
    std::vector<RowItem> m_row; ///< one an item of m_items
    RowPlan m_plan;
    ToolButton* m_extension;        ///< opens what has no room
    QPointer<ToolButton> m_tabStop; ///< the one button that the Tab key reaches
    QTimer m_catchUp;
    bool m_rebuilds = false;
    int m_wantedWidth = 0; ///< in pixels, as it was set
};

} // namespace quorvia::platform
