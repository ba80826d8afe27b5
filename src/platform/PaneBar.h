// A column of panes, each a head that folds it and rows of text below. A change of texts alone is cheap; a
// change of panes or rows makes all anew, and keeps what was folded and what had the focus.
#pragma once

#include <QColor>
#include <QList>
#include <QScrollArea>
#include <QSet>
#include <QString>

class QVBoxLayout;

namespace quorvia::platform {

enum class PaneItemKind {
    Link,   ///< can be reached and chosen by keys
    Header, ///< in bold letters
    Text
};

/// A row. Keys are one of a kind within the bar; a text may have several lines. Blanks that it begins with
/// set it in, all its lines alike; in a pane with icons every text stands at least where those beside an icon
/// do.
struct PaneItem
{
    QString key;
    QString text;
    QString tag = {}; ///< what the host makes of it
    PaneItemKind kind = PaneItemKind::Link;
    QString icon = {}; ///< a drawing of platform/Icons to its left; empty for none
    bool operator==(const PaneItem&) const = default;
};

struct Pane
{
    QString key;
    QString title;
    QList<PaneItem> items;
    bool operator==(const Pane&) const = default;
};

/// Colours and gaps of a bar; a colour that is not valid is taken from the palette.
struct PaneLook
{
    QColor headGround;
    QColor headText;
    QColor link; ///< with its icon
    QColor text; ///< of rows that are texts
    int gap = 8; ///< between the panes and around them all, pixels
    bool operator==(const PaneLook&) const = default;
};

class PaneRow;

class PaneBar : public QScrollArea
{
    Q_OBJECT

  public:
    explicit PaneBar(QWidget* parent = nullptr);

    const QList<Pane>& panes() const { return m_panes; }
    void setPanes(const QList<Pane>& panes);
    /// Gives the row `key` another text; cheaper than all panes anew. Does nothing when there is no such row.
    void setItemText(const QString& key, const QString& text);
    void setLook(const PaneLook& look);
    /// Puts `footer`, which becomes the bar's, at the right end below the panes: at the bottom of the bar
    /// while there is room.
    void setFooter(QWidget* footer);

    /// Whether the rows of the pane `key` are put away. Kept over changes of the panes, also while there is
    /// no pane of that key.
    bool isFolded(const QString& key) const { return m_folded.contains(key); }

  Q_SIGNALS:
    /// A row was clicked, or chosen by Enter or the space bar.
    void itemClicked(const QString& key, const QString& tag);

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    bool differsInTextsOnly(const QList<Pane>& panes) const;
    void showTexts();
    void setGaps();
    void makeAnew();
    QWidget* makePane(const Pane& pane);
    PaneRow* makeRow(const PaneItem& item, bool besideIcons);
    QString focusedName() const;
    void focusOn(const QString& name);

    QWidget* m_column;
    QVBoxLayout* m_layout;
    QWidget* m_footer = nullptr;
    PaneLook m_look;
    QList<Pane> m_panes;
    QSet<QString> m_folded;
};

} // namespace quorvia::platform
