// Which commands a key runs: the shortcut table, and the fixed list that fills it. Some twenty entries,
// walked at each key.
#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace quorvia::commands {

class ShortcutTable
{
  public:
    /// Adds an entry at the end, unless the same one is there. `modifier` is the mask in decimal (1 Shift,
    /// 2 Ctrl, 4 Alt); `key` one character, which stands for its code, or a longer text, which is a decimal
    /// key code and kept as it stands. No key, no entry.
    void AddShortcut(const QString& modifier, const QString& key, const QString& toolName);

    /// The tools of all entries of that key code and exactly that modifier mask, in the order of the table.
    QStringList tools(int keyCode, int shift) const;

    /// How many entries there are; they are numbered from 1.
    int count() const { return int(m_entries.size()) - 1; }
    /// The entry as "modifier:keycode:toolname", 1-based; "" at 0 and beyond the table.
    QString entry(int index) const;

  private:
    struct Entry
    {
        QString text;
        int shift = 0;
        int keyCode = 0;
        QString tool;
    };
    std::vector<Entry> m_entries{Entry()}; ///< the first one is not used
};

/// The fixed list: entries "name:modifier:key", separated by "|".
QString fixedShortcuts();
/// The entry that comes to it with the mail tool.
QString mailShortcut();
/// Adds the entries of such a list to `table`, in their order; one with less than three fields adds nothing.
void fillShortcuts(ShortcutTable& table, const QString& list);

} // namespace quorvia::commands
