#include "commands/KeyCatalog.h"

#include "app/KeyCodes.h"
#include "commands/FixedKeys.h"
#include "commands/ShortcutTable.h"

#include <algorithm>

namespace quorvia::commands {

namespace {

const CommandText* rowOf(const QString& command)
{
    const auto catalog = commandCatalog();
    const auto found = std::find_if(catalog.begin(), catalog.end(), [&command](const CommandText& row) {
        return command == QLatin1String(row.name);
    });
    return found == catalog.end() ? nullptr : &*found;
}

KeyText commandKey(int keyCode, int shift, const QString& command)
{
    const CommandText* const row = catalogEntry(command);
    return {.keyCode = keyCode,
            .shift = shift,
            .keys = app::keyName(keyCode, shift),
            .group = row ? row->group : CommandGroup::OtherNames,
            .command = command,
            .text = row ? QString(QLatin1String(row->text)) : command};
}

KeyText textOf(const FixedKey& key)
{
    const int shift = key.shift == anyModifier ? int(app::NoModifier) : key.shift;
    if (key.step == KeyStep::RunTool)
        return commandKey(key.keyCode, shift, QLatin1String(key.tool));
    return {key.keyCode, shift,     app::keyName(key.keyCode, shift),
            key.group,   QString(), QLatin1String(key.text)};
}

} // namespace

const CommandText* catalogEntry(const QString& command)
{
    const CommandText* const row = rowOf(command);
    if (!row || row->group != CommandGroup::OtherNames)
        return row;
    const CommandText* const own = rowOf(QLatin1String(row->text));
    return own ? own : row;
}

std::vector<KeyText> mainWindowKeys()
{
    std::vector<KeyText> all;
    for (const FixedKey& key : fixedKeys())
        all.push_back(textOf(key));
    ShortcutTable shortcuts;
    fillShortcuts(shortcuts, fixedShortcuts());
    fillShortcuts(shortcuts, mailShortcut());
    for (int index = 1; index <= shortcuts.count(); ++index) {
        const QStringList fields = shortcuts.entry(index).split(u':');
        const int shift = fields[0].toInt();
        const int keyCode = fields[1].toInt();
        if (!keyAmong(fixedKeys(), keyCode, shift))
            all.push_back(commandKey(keyCode, shift, fields[2]));
    }
    for (const FixedKey& key : earlyKeys())
        all.push_back(textOf(key));
    return all;
}

} // namespace quorvia::commands
