// The tab strip: it holds its own tabs and paints them itself. Adding and selecting lay out all tabs anew,
// which is cheap; nothing runs while the pointer is elsewhere.
#pragma once

#include "controls/ControlStatus.h"
#include "controls/TabList.h"
#include "controls/TabProperties.h"

#include <QPixmap>
#include <QTimer>
#include <QWidget>

namespace quorvia::controls {

class TabScrollButton;
class TabSurface;

class gnTab : public QWidget
{
    Q_OBJECT

  public:
    /// A strip without tabs, with the properties of a new one.
    explicit gnTab(QWidget* parent = nullptr);

    // --- tabs. Indexes are 1-based. A tab that is not found is no error; nothing happens to any tab then.
    /// Adds a tab in front of the tab with the key `before`, or at the end. The first tab of all is selected,
    /// and nothing is signalled for that. Error 8601 when another tab has the same key, an empty one too.
    ControlStatus AddTab(const QString& caption, const QString& key = {}, const QString& toolTip = {},
                         const QString& before = {});
    /// Takes a tab out. When it was selected, the tab that takes its place is, or the last one, with a
    /// signal.
    void RemoveTab(const TabRef& tab);
    void RemoveAllTabs();
    void SetTabCaption(const TabRef& tab, const QString& caption);
    void SetTabToolTip(const TabRef& tab, const QString& toolTip);
    /// The index of the selected tab; 0 when there is none.
    int SelectedTab() const { return m_tabs.selected(); }
    /// The key of the selected tab; empty when there is none.
    QString SelectedTabKey() const;
    /// Selects a tab and signals it, also when it is selected already. When it is not found, no tab is
    /// selected, without a signal.
    void SetSelectedTab(const TabRef& tab);
    const TabList& tabs() const { return m_tabs; }
    /// The index of the leftmost tab that is shown.
    int FirstVisibleTab() const { return m_first; }

    // --- persisted properties; see TabProperties for what they mean
    const TabProperties& properties() const { return m_properties; }
    void setProperties(const TabProperties& properties);
    /// Takes all properties from `bag`; a missing one takes its default.
    void ReadProperties(const QVariantMap& bag) { setProperties(readProperties(bag)); }
    QVariantMap WriteProperties() const { return writeProperties(m_properties); }

    QFont Font() const { return font(); }
    void SetFont(const QFont& value) { set(&TabProperties::Font, std::optional(value)); }
    quint32 TabBackColor() const { return m_properties.TabBackColor; }
    void SetTabBackColor(quint32 color) { set(&TabProperties::TabBackColor, color); }
    quint32 TabTextColor() const { return m_properties.TabTextColor; }
    void SetTabTextColor(quint32 color) { set(&TabProperties::TabTextColor, color); }
    quint32 ActiveTabBackColor() const { return m_properties.ActiveTabBackColor; }
    void SetActiveTabBackColor(quint32 color) { set(&TabProperties::ActiveTabBackColor, color); }
    quint32 ActiveTabTextColor() const { return m_properties.ActiveTabTextColor; }
    void SetActiveTabTextColor(quint32 color) { set(&TabProperties::ActiveTabTextColor, color); }
    quint32 BackColor() const { return m_properties.BackColor; }
    void SetBackColor(quint32 color) { set(&TabProperties::BackColor, color); }
    quint32 HoverColour() const { return m_properties.HoverColour; }
    void SetHoverColour(quint32 color) { set(&TabProperties::HoverColour, color); }
    bool AllignBottom() const { return m_properties.AllignBottom; }
    void SetAllignBottom(bool bottom) { set(&TabProperties::AllignBottom, bottom); }
    quint32 SeperatorLineColor() const { return m_properties.SeperatorLineColor; }
    void SetSeperatorLineColor(quint32 color) { set(&TabProperties::SeperatorLineColor, color); }
    quint32 SelectedTabHoverColor() const { return m_properties.SelectedTabHoverColor; }
    void SetSelectedTabHoverColor(quint32 color) { set(&TabProperties::SelectedTabHoverColor, color); }
    int TabBorderType() const { return m_properties.TabBorderType; }
    void SetTabBorderType(int type) { set(&TabProperties::TabBorderType, type); }

    // --- what is not persisted
    /// A text that the host keeps here; the strip makes no use of it.
    QString Tag() const { return m_tag; }
    void SetTag(const QString& tag) { m_tag = tag; }
    /// The window system's handle of the strip; makes one when there is none yet.
    WId hWnd() const { return winId(); }
    /// The pointer's shape over the tabs; Qt::BitmapCursor shows MouseIcon.
    Qt::CursorShape MousePointer() const { return m_mousePointer; }
    void SetMousePointer(Qt::CursorShape shape);
    QPixmap MouseIcon() const { return m_mouseIcon; }
    void SetMouseIcon(const QPixmap& icon);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  Q_SIGNALS:
    /// A tab has been selected.
    void TabSelected(const QString& key, const QString& caption, int index);
    /// The pointer has moved over the tabs. `button` is a mask of what is held: 1 left, 2 right, 4 middle;
    /// `shift` one of 1 Shift, 2 Ctrl, 4 Alt; `x` and `y` in pixels of the surface that the tabs are on.
    void TabMouseMove(int button, int shift, int x, int y);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    template <class Value>
    void set(Value TabProperties::*property, Value value)
    {
        TabProperties properties = m_properties;
        properties.*property = std::move(value);
        setProperties(properties);
    }

    TabScrollButton* makeButton(Qt::ArrowType arrow, const char* name, const QString& text);
    /// Measures the captions and places all.
    void layOut();
    /// Places surface, bars and buttons for the tabs as they are.
    void placeChildren();
    void applyColors();
    void applyCursor();
    void signalSelection();
    void scrollTo(int first);
    /// Marks tab `index` as the one under the pointer; 0 for none.
    void hover(int index);
    /// Puts the tip of the tab under the pointer on the surface.
    void takeToolTip();
    void endHover();
    void endHoverWhenOutside();
    TabRoom room() const;

    TabList m_tabs;
    TabProperties m_properties = TabProperties::whenNew();
    int m_first = 1;
    QString m_tag;
    Qt::CursorShape m_mousePointer = Qt::ArrowCursor;
    QPixmap m_mouseIcon;
    QWidget* m_pbTop;
    QWidget* m_pbBottom;
    TabSurface* m_pbTabs;
    TabScrollButton* m_scrollLeft;
    TabScrollButton* m_scrollRight;
    QTimer m_tmrMouseOut;
};

} // namespace quorvia::controls
