#include "HelpPage.h"

#include "app/ImageTypes.h"
#include "app/KeyCodes.h"
#include "app/Product.h"
#include "commands/KeyCatalog.h"
#include "OtherKeys.h"
#include "output/FullScreenLayout.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

namespace quorvia::help {

namespace {

using commands::CommandGroup;
using commands::KeyText;

/// What stands in place of a mark; nothing for a word that leads nowhere.
using Part = std::optional<QString>;

/// Keys that do the same.
struct KeyRow
{
    QStringList keys;
    QString text;
    QString command; ///< empty for none
};

QString kbd(const QString& key)
{
    return QStringLiteral("<kbd>") + key.toHtmlEscaped() + QStringLiteral("</kbd>");
}

QString rowHtml(const KeyRow& row)
{
    QStringList keys;
    for (const QString& key : row.keys)
        keys.append(kbd(key));
    const QString named =
        row.command.isEmpty() ? QString() : QStringLiteral(" data-command=\"%1\"").arg(row.command);
    return QStringLiteral("<tr%1><th scope=\"row\">%2</th><td>%3</td></tr>\n")
        .arg(named, keys.join(u' '), row.text.toHtmlEscaped());
}

QString tableHtml(const std::vector<KeyRow>& rows)
{
    QString html = QStringLiteral("<table class=\"keys\">\n");
    for (const KeyRow& row : rows)
        html += rowHtml(row);
    return html + QStringLiteral("</table>");
}

/// Appends a key to the row that does the same, else a row.
void add(std::vector<KeyRow>& rows, const QString& key, const QString& text, const QString& command)
{
    const auto same =
        std::find_if(rows.begin(), rows.end(), [&text](const KeyRow& row) { return row.text == text; });
    if (same != rows.end())
        same->keys.append(key);
    else
        rows.push_back({{key}, text, command});
}

QString groupHtml(CommandGroup group)
{
    std::vector<KeyRow> rows;
    for (const KeyText& key : commands::mainWindowKeys()) {
        if (key.group == group)
            add(rows, key.keys, key.text, key.command);
    }
    if (rows.empty())
        return {};
    return QStringLiteral("<section>\n<h3>%1</h3>\n%2\n</section>\n")
        .arg(QString(QLatin1String(commands::headingOf(group))).toHtmlEscaped(), tableHtml(rows));
}

Part windowKeys(const QString&)
{
    QString html;
    for (int group = 0; group <= int(CommandGroup::OtherNames); ++group)
        html += groupHtml(CommandGroup(group));
    return html.trimmed();
}

Part fullScreenKeys(const QString&)
{
    std::vector<KeyRow> rows;
    for (const output::FullScreenKey& key : output::fullScreenKeys())
        add(rows, app::keyName(key.keyCode, app::NoModifier), QLatin1String(key.text), QString());
    return tableHtml(rows);
}

Part partKeys(const QString& part)
{
    std::vector<KeyRow> rows;
    for (const OtherKey& key : otherKeys(part))
        rows.push_back({separateKeys(key), QLatin1String(key.text), QString()});
    return rows.empty() ? Part() : tableHtml(rows);
}

Part keyOfCommand(const QString& command)
{
    const auto keys = commands::mainWindowKeys();
    const auto found = std::find_if(keys.begin(), keys.end(),
                                    [&command](const KeyText& key) { return key.command == command; });
    return found == keys.end() || command.isEmpty() ? Part() : kbd(found->keys);
}

/// The rows of the dialog that opens images, without the first, which has all types.
Part types(const QString&)
{
    QString html = QStringLiteral("<table class=\"types\">\n");
    const QStringList fields = app::imageFilters().split(u'|');
    for (qsizetype i = 2; i + 1 < fields.size(); i += 2) {
        const QString endings =
            QString(fields[i + 1]).remove(QLatin1String("*.")).replace(u';', QLatin1String(", "));
        html += QStringLiteral("<tr><th scope=\"row\">%1</th><td>%2</td></tr>\n")
                    .arg(fields[i].toHtmlEscaped(), endings.toHtmlEscaped());
    }
    return html + QStringLiteral("</table>");
}

Part version(const QString&)
{
    return app::versionText(app::productVersion(), QStringLiteral("."));
}

struct MarkRow
{
    const char* name;
    Part (*make)(const QString& argument);
};

constexpr std::array marks = {
    MarkRow{"keys-of-window", &windowKeys},
    MarkRow{"keys-of-full-screen", &fullScreenKeys},
    MarkRow{"keys-of", &partKeys},
    MarkRow{"key", &keyOfCommand},
    MarkRow{"types", &types},
    MarkRow{"version", &version},
};

Part replacement(const QString& mark)
{
    const QString name = mark.section(u' ', 0, 0);
    const auto found = std::find_if(marks.begin(), marks.end(),
                                    [&name](const MarkRow& row) { return name == QLatin1String(row.name); });
    return found == marks.end() ? Part() : found->make(mark.section(u' ', 1));
}

} // namespace

HelpPage filledPage(const QString& source)
{
    static const QRegularExpression mark(QStringLiteral("\\{\\{(.*?)\\}\\}"));
    HelpPage page;
    qsizetype end = 0;
    for (auto each = mark.globalMatch(source); each.hasNext();) {
        const QRegularExpressionMatch match = each.next();
        const Part part = replacement(match.captured(1));
        if (!part)
            return {{}, QStringLiteral("nothing stands for the mark ") + match.captured(0)};
        page.html += source.mid(end, match.capturedStart() - end) + *part;
        end = match.capturedEnd();
    }
    page.html += source.mid(end);
    return page;
}

} // namespace quorvia::help
