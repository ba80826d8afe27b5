// The tools and bands of the menu and toolbar control as data, without a window: what menus and toolbars
// show, and where they report what the user did with it. Cheap.
#pragma once

#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QSize>
#include <QString>
#include <QStringList>

#include <array>
#include <memory>
#include <type_traits>
#include <vector>

namespace quorvia::platform {

enum class ToolKind : int { Plain = 0, DropDown = 1, Combo = 3, Separator = 5 };
enum class BandKind : int { Toolbar = 0, PopUp = 2 };

/// Everything that shows of a tool, and what it carries.
struct ToolValues
{
    QString caption;
    bool literalCaption = false; ///< "&" in the caption stands for itself, as in the name of a file
    QString toolTip;
    ToolKind kind = ToolKind::Plain;
    bool checked = false;
    bool enabled = true;
    bool visible = true;
    std::array<QString, 3> pictures; ///< names of icons by variant; variants 0 and 2 are in use
    QString tag;
    QString subBand;  ///< name of the band that opens from it; empty: none
    QString category; ///< a word by which tools are told apart when they are listed
    QString text;     ///< of a combo box
    QStringList choices;

    bool operator==(const ToolValues&) const = default;
};

/// A tool of the control, or the copy of one on a band.
class Tool : public QObject
{
    Q_OBJECT

  public:
    Tool(int id, const QString& name) : m_id(id), m_name(name) {}

    int id() const { return m_id; }
    QString name() const { return m_name; }
    const ToolValues& values() const { return m_values; }

    /// Gives one value to the tool and to the copies that follow it, as in `set(&ToolValues::checked, true)`.
    template <class Value>
    void set(Value ToolValues::*which, const std::type_identity_t<Value>& value)
    {
        for (Tool* const copy : m_followers)
            copy->set(which, value);
        if (m_values.*which == value)
            return;
        m_values.*which = value;
        Q_EMIT changed();
    }
    /// The icon of `variant`, 0 to 2; empty for none.
    QString picture(int variant) const { return m_values.pictures.at(std::size_t(variant)); }
    void setPicture(int variant, const QString& icon);

  Q_SIGNALS:
    void changed();

  private:
    friend class ToolBand;
    friend class ToolModel;

    int m_id;
    QString m_name;
    ToolValues m_values;
    QList<Tool*> m_followers; ///< copies, which leave the list when they end, and tools of the same name
};

/// An ordered list of copies of tools: a pop-up menu or a toolbar.
class ToolBand : public QObject
{
    Q_OBJECT

  public:
    /// Copies on a band that `follows` take over what is set on their tools later.
    ToolBand(const QString& name, BandKind kind, bool follows)
        : m_name(name), m_kind(kind), m_follows(follows)
    {
    }
    ~ToolBand() override;

    QString name() const { return m_name; }
    BandKind kind() const { return m_kind; }
    void setKind(BandKind kind);
    bool visible() const { return m_visible; }
    void setVisible(bool visible);
    /// In twips, as the last layout left it; of a toolbar only.
    QSize size() const { return m_size; }
    void setSize(QSize size) { m_size = size; }
    QString tag() const { return m_tag; }
    void setTag(const QString& tag) { m_tag = tag; }
    /// By which a menu of the band is called where its name is said; empty: none.
    QString caption() const { return m_caption; }
    void setCaption(const QString& caption) { m_caption = caption; }

    int toolCount() const { return int(m_tools.size()); }
    /// 0-based; null beyond the band.
    Tool* toolAt(int index) const;
    /// The first copy of the tool `name`, or null.
    Tool* tool(const QString& name) const;
    /// Appends a copy of `tool` and gives it back; null for null.
    Tool* append(Tool* tool);
    /// Appends a tool that stands on this band alone.
    Tool* append(int id, const QString& name);
    void clear();

  Q_SIGNALS:
    /// Tools were added or removed, or the band was shown or hidden. What changes on a tool the tool tells.
    void changed();

  private:
    struct Entry
    {
        std::unique_ptr<Tool> copy;
        QPointer<Tool> original; ///< that it follows
    };
    void release(Entry& entry);

    QString m_name;
    BandKind m_kind;
    bool m_follows;
    bool m_visible = true;
    QSize m_size;
    QString m_tag;
    QString m_caption;
    std::vector<Entry> m_tools;
};

/// The collections of tools and bands, each found by its name, exactly as it is spelt.
class ToolModel : public QObject
{
    Q_OBJECT

  public:
    ToolModel();
    ~ToolModel() override;

    /// A new tool. A name that is taken gives another tool of that name: the first is found by it, and what
    /// is set on the first from now on reaches the others and their copies too.
    Tool* addTool(int id, const QString& name);
    /// The first tool of that name, or null.
    Tool* tool(const QString& name) const;
    int toolCount() const { return int(m_tools.size()); }
    /// 0-based, in the order of adding; null beyond the last.
    Tool* toolAt(int index) const;

    /// A new band, or the one that has the name already, emptied and of the kind now given.
    ToolBand* addBand(const QString& name, BandKind kind, bool follows = true);
    /// The band of that name, or null.
    ToolBand* band(const QString& name) const;
    int bandCount() const { return int(m_bands.size()); }
    /// 0-based, in the order of adding; null beyond the last.
    ToolBand* bandAt(int index) const;

  Q_SIGNALS:
    // What the user does with what shows the model; emitted by that.
    void ToolClick(const QString& name);
    /// Before a band shows. A listener that sets `cancel` keeps it closed.
    void BandOpen(quorvia::platform::ToolBand* band, bool& cancel);
    void BandClose(quorvia::platform::ToolBand* band);
    /// The text of a combo was edited, with every key, or ended by Enter or a choice.
    void TextChange(quorvia::platform::Tool* tool);
    void SelectionChange(quorvia::platform::Tool* tool);

  private:
    std::vector<std::unique_ptr<Tool>> m_tools;
    std::vector<std::unique_ptr<ToolBand>> m_bands;
    QHash<QString, Tool*> m_firstTools; ///< by name
    QHash<QString, ToolBand*> m_bandsByName;
};

} // namespace quorvia::platform
