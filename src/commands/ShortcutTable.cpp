#include "commands/ShortcutTable.h"

#include <algorithm>

namespace quorvia::commands {

namespace {

/// The number that `text` spells; -1, which no key event has, when it spells none.
int numberOf(const QString& text)
{
    bool spells = false;
    const int number = text.toInt(&spells);
    return spells ? number : -1;
}

} // namespace

void ShortcutTable::AddShortcut(const QString& modifier, const QString& key, const QString& toolName)
{
    if (key.isEmpty())
        return;
    const QString keyCode = key.size() == 1 ? QString::number(key.front().unicode()) : key;
    const QString text = modifier + u':' + keyCode + u':' + toolName;
    const bool known = std::any_of(m_entries.begin() + 1, m_entries.end(),
                                   [&text](const Entry& each) { return each.text == text; });
    if (!known)
        m_entries.push_back({text, numberOf(modifier), numberOf(keyCode), toolName});
}

QStringList ShortcutTable::tools(int keyCode, int shift) const
{
    QStringList found;
    for (auto each = m_entries.begin() + 1; each != m_entries.end(); ++each) {
        if (each->keyCode == keyCode && each->shift == shift)
            found.append(each->tool);
    }
    return found;
}

QString ShortcutTable::entry(int index) const
{
    return index > 0 && index <= count() ? m_entries[std::size_t(index)].text : QString();
}

QString fixedShortcuts()
{
    return QStringLiteral(
        "miEXIFView:0:K|miFileList:0:F|miRename:2:R|miNext:0:221|miPrevious:0:219|miNext:2:N|"
        "miPrevious:2:B|miPrint:2:P|miCopy:2:C|miPaste:2:V|miRandom:0:R|miWallpaper:2:W|"
        "miBestFit:2:2|miActualSize:2:1|miFullScreen:2:F|miOpen:2:O|miSave:2:S|"
        "miFullScreen:2:13|miDelete:0:46|miCloseImage:0:Q");
}

QString mailShortcut()
{
    return QStringLiteral("miEmailImage:2:E");
}

void fillShortcuts(ShortcutTable& table, const QString& list)
{
    for (const QString& shortcut : list.split(u'|')) {
        if (const QStringList fields = shortcut.split(u':'); fields.size() >= 3)
            table.AddShortcut(fields[1], fields[2], fields[0]);
    }
}

} // namespace quorvia::commands
