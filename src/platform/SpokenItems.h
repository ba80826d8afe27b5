// What a screen reader is told of a painted control that is a list: its entries, each of which can be chosen.
// Entries are made when a reader asks for them.
#pragma once

#include <QAccessible>
#include <QAccessibleWidget>
#include <QObject>
#include <QTimer>
#include <QWidget>

#include <map>

namespace quorvia::platform {

/// One entry. It stands for the one that has its place in the list at the time of the question.
class SpokenItem : public QAccessibleInterface, public QAccessibleActionInterface
{
  public:
    /// The entry at `index`, from 0, of `list`, with which it goes.
    SpokenItem(QWidget* list, int index, QAccessible::Role role) : m_list(list), m_index(index), m_role(role)
    {
    }

    /// Its place; -1 when the list has grown shorter.
    int index() const { return isValid() ? m_index : -1; }
    /// Whether it is one of `list`.
    bool isOf(const QWidget* list) const { return list == m_list; }

    QObject* object() const override { return nullptr; }
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(m_list); }
    QAccessibleInterface* child(int) const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QAccessible::Role role() const override { return m_role; }
    QAccessible::State state() const override;
    void setText(QAccessible::Text, const QString&) override {}
    void* interface_cast(QAccessible::InterfaceType kind) override;
    QStringList actionNames() const override { return {pressAction()}; }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }
    void doAction(const QString& action) override;

  protected:
    /// The entry is the chosen one, where the keys are.
    virtual bool isSelected() const = 0;
    /// Some of it shows, when the list does.
    virtual bool isInSight() const = 0;
    /// Chooses the entry, which is there.
    virtual void press() = 0;
    /// Its place, valid or not.
    int place() const { return m_index; }

  private:
    QWidget* m_list;
    int m_index;
    QAccessible::Role m_role;
};

/// The list. How many entries there are, and which one has the focus, the control's own class says.
class SpokenItems : public QAccessibleWidget
{
  public:
    SpokenItems(QWidget* list, QAccessible::Role role);
    ~SpokenItems() override;

    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* wanted) const override;

  protected:
    /// Makes the entry at `index`, from 0.
    virtual SpokenItem* makeItem(int index) const = 0;
    /// Each `signal` of `list` says that it has become another one: the entries that a reader knows are gone,
    /// and it is told so once, when what brings the change has ended.
    template <class List>
    void follow(List* list, void (List::*signal)())
    {
        QObject::connect(list, signal, &m_reorder, [this] { forgetItems(); });
    }

  private:
    void forgetItems();
    void dropItems();

    mutable std::map<int, QAccessible::Id> m_ids; ///< of the entries asked for so far, by their index
    QTimer m_reorder;                             ///< runs while a reader is to be told
};

} // namespace quorvia::platform
