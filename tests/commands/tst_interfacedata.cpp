// The definition that comes with the program, and the one that the manual page of the format shows.
#include "BuildStage.h"
#include "CommandNames.h"
#include "commands/InterfaceFile.h"
#include "IconCarriers.h"

#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

using namespace quorvia;
using namespace quorvia::platform;
using commands::definitionSection;
using test::BuildStage;
using test::commandNames;
using test::CommandRow;

namespace {

constexpr int firstIdentifier = 1000;

/// Names of parents, which run nothing.
const QSet<QString> parents{"miResizeMenu", "miSlideShowMenu", "tRecent"};

bool isCommand(const QString& name)
{
    return std::any_of(std::begin(commandNames), std::end(commandNames),
                       [&name](const CommandRow& row) { return name == QLatin1String(row.name); });
}

QString textOf(const char* path)
{
    QFile file(QStringLiteral(QUORVIA_SOURCE) + QLatin1String(path));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QString shipped()
{
    return textOf("/data/interface.dat");
}

/// The definitions of all items of the menu section, whatever their level.
QList<QStringList> itemsOf(const QString& definition)
{
    QList<QStringList> items;
    const QString section = definitionSection(definition, QStringLiteral("Menu")).value_or(QString());
    for (QString item : section.split(QRegularExpression(QStringLiteral("[|>,%*]"))))
        items << item.remove(QStringLiteral("[InternalExtensions]")).split(u':');
    return items;
}

void build(BuildStage& stage, const QString& definition, bool postrel = true)
{
    stage.postrel = postrel;
    stage.run(definitionSection(definition, QStringLiteral("Menu")).value_or(QString()),
              definitionSection(definition, QStringLiteral("Toolbar")).value_or(QString()));
}

/// All tools that a definition made.
QList<const Tool*> toolsOf(const BuildStage& stage)
{
    QList<const Tool*> tools;
    for (int index = 0; index < stage.model.toolCount(); ++index) {
        if (const Tool* const tool = stage.model.toolAt(index); tool->id() >= firstIdentifier)
            tools << tool;
    }
    return tools;
}

/// The context menu and all bands that open from it, by their names, each once.
QStringList reachedBands(const BuildStage& stage)
{
    QStringList reached{QStringLiteral("NewImage")};
    for (int next = 0; next < reached.size(); ++next) {
        const ToolBand* const band = stage.band(reached[next]);
        for (int index = 0; band && index < band->toolCount(); ++index) {
            const QString sub = band->toolAt(index)->values().subBand;
            if (!sub.isEmpty() && !reached.contains(sub))
                reached << sub;
        }
    }
    return reached;
}

/// The letter that chooses an item; null for none.
QChar mnemonic(const QString& caption)
{
    const qsizetype at = caption.indexOf(u'&');
    return at >= 0 && at + 1 < caption.size() ? caption[at + 1].toLower() : QChar();
}

} // namespace

class TestInterfaceData : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void linesEndAsInThePlainForm()
    {
        const QString text = shipped();
        QVERIFY(text.contains(QStringLiteral("\r\n----- StrData:Menu\r\n")));
        QVERIFY(text.contains(QStringLiteral("\r\n----- StrData:Toolbar\r\n")));
        QCOMPARE(text.count(u'\n'), text.count(QStringLiteral("\r\n")));
        QVERIFY(!text.contains(u'\t'));
    }

    void everyItemIsBuilt()
    {
        BuildStage stage;
        build(stage, shipped(), false);
        QVERIFY(stage.build.isBuilt());
        QCOMPARE(int(toolsOf(stage).size()), int(itemsOf(shipped()).size()));
        for (const Tool* const tool : toolsOf(stage)) {
            const ToolValues& values = tool->values();
            QVERIFY2((values.kind == ToolKind::Separator) == values.caption.isEmpty(),
                     qPrintable(tool->name()));
        }
        for (const QString& name : reachedBands(stage)) {
            const ToolBand* const band = stage.band(name);
            QVERIFY2(band, qPrintable(name)); // a band that is named is there
            const bool filledLater = name == QLatin1String("bRecent") || name == QLatin1String("bFiles");
            QVERIFY2(band->toolCount() > 0 || filledLater, qPrintable(name));
        }
    }

    void everyNameIsACommand()
    {
        BuildStage stage;
        build(stage, shipped());
        for (const Tool* const tool : toolsOf(stage)) {
            const bool unnamed = tool->name() == QStringLiteral("miSep%1").arg(tool->id());
            QVERIFY2(isCommand(tool->name()) || parents.contains(tool->name()) || unnamed,
                     qPrintable(tool->name()));
            const ToolValues& values = tool->values();
            const bool opens = values.kind == ToolKind::Separator || !values.subBand.isEmpty();
            QVERIFY2(!unnamed || opens, qPrintable(values.caption)); // what can be chosen does something
        }
    }

    void everyCommandHasItsPlace_data()
    {
        QTest::addColumn<bool>("leftOut");
        for (const CommandRow& row : commandNames)
            QTest::newRow(row.name) << (row.leftOut != nullptr);
    }

    void everyCommandHasItsPlace()
    {
        QFETCH(bool, leftOut);
        BuildStage stage;
        build(stage, shipped());
        const QString name = QLatin1String(QTest::currentDataTag());
        qsizetype places = 0;
        for (const Tool* const tool : toolsOf(stage))
            places += tool->name() == name ? 1 : 0;
        QCOMPARE(places, leftOut ? 0 : 1);
    }

    void whatIsOnADesignedBandCanBeReached()
    {
        BuildStage stage;
        build(stage, shipped());
        for (const CommandRow& row : commandNames) {
            const QString band = QString::fromLatin1(row.leftOut).section(QStringLiteral("on "), 1);
            if (!band.startsWith(u'b') || band == QLatin1String("bFilmStrip") ||
                band == QLatin1String("bRecent"))
                continue;
            QVERIFY2(reachedBands(stage).contains(band), row.name);
            QVERIFY2(stage.band(band)->tool(QLatin1String(row.name)), row.name);
        }
        QVERIFY(reachedBands(stage).contains(QStringLiteral("bRecent")));
        QVERIFY(reachedBands(stage).contains(QStringLiteral("bCustom")));
    }

    void everyIconIsACarrier()
    {
        int icons = 0;
        const QStringList carriers = test::iconCarriers(BuildStage().model);
        for (const QStringList& item : itemsOf(shipped())) {
            if (const QString icon = item.value(2); !icon.isEmpty()) {
                QVERIFY2(carriers.contains(icon), qPrintable(icon));
                ++icons;
            }
        }
        QVERIFY(icons > 40);
        BuildStage stage;
        build(stage, shipped());
        for (const Tool* const tool : toolsOf(stage)) {
            for (const QStringList& item : itemsOf(shipped())) {
                if (item.value(1) == tool->name() && item.size() > 2)
                    QCOMPARE(tool->picture(0), item[2].mid(1));
            }
        }
    }

    void noFieldIsLeftToThePadding()
    {
        for (const QStringList& item : itemsOf(shipped())) {
            QVERIFY2(item.size() <= 3 || item.size() == 6, qPrintable(item.join(u':')));
            QVERIFY2(item.size() != 1 || item[0] == u"-" || !item[0].isEmpty(), "an item too many");
        }
    }

    void noCaptionHoldsASeparator()
    {
        BuildStage stage;
        build(stage, shipped());
        static const QRegularExpression separators(QStringLiteral("[|>,%*:]"));
        for (const Tool* const tool : toolsOf(stage)) {
            QVERIFY2(!tool->values().caption.contains(separators), qPrintable(tool->values().caption));
            QVERIFY2(!tool->values().toolTip.contains(separators), qPrintable(tool->values().toolTip));
            QVERIFY2(!tool->values().toolTip.startsWith(QLatin1String("miSep")), qPrintable(tool->name()));
            QCOMPARE(tool->values().caption, tool->values().caption.trimmed());
        }
    }

    void lettersChooseOneItemOfAMenu()
    {
        BuildStage stage;
        build(stage, shipped());
        for (const QString& name : reachedBands(stage)) {
            if (name.startsWith(u'b'))
                continue; // the designed ones are as they are
            QSet<QChar> letters;
            for (const QString& caption : stage.captionsOn(name)) {
                const QChar letter = mnemonic(caption);
                QVERIFY2(letter.isNull() || !letters.contains(letter), qPrintable(name + caption));
                letters.insert(letter);
            }
        }
    }

    void theToolbarHasAllThatItNames_data()
    {
        QTest::addColumn<bool>("postrel");
        QTest::newRow("with the mail button") << true;
        QTest::newRow("without it") << false;
    }

    void theToolbarHasAllThatItNames()
    {
        QFETCH(bool, postrel);
        BuildStage stage;
        build(stage, shipped(), postrel);
        QString section = definitionSection(shipped(), QStringLiteral("Toolbar")).value_or(QString());
        QVERIFY(section.startsWith(QLatin1String("[num]|")));
        section.replace(QStringLiteral("[InternalExtensions]"),
                        postrel ? QStringLiteral("miEmailImage|") : QString());
        QStringList names = section.split(u'|').mid(1);
        names.replaceInStrings(QRegularExpression(QStringLiteral("^-$")), QStringLiteral("miSep"));
        QCOMPARE(stage.namesOn(QStringLiteral("Toolbar")), names);
        const ToolBand* const toolbar = stage.band(QStringLiteral("Toolbar"));
        for (int index = 0; index < toolbar->toolCount(); ++index) {
            const Tool& tool = *toolbar->toolAt(index);
            if (tool.values().kind == ToolKind::Separator)
                continue;
            QVERIFY2(!tool.picture(0).isEmpty(), qPrintable(tool.name()));
            QVERIFY2(!tool.values().toolTip.contains(u'&'), qPrintable(tool.name()));
        }
    }

    void theExampleOfTheManualIsBuilt()
    {
        const QString manual = textOf("/docs/interface-definition.md");
        const QString example =
            manual.section(QStringLiteral("```interface\n"), 1).section(QStringLiteral("```"), 0, 0);
        QVERIFY(!example.isEmpty());
        BuildStage stage;
        build(stage, example, false);
        QVERIFY(stage.build.isBuilt());
        QCOMPARE(stage.captionsOn(QStringLiteral("NewImage")),
                 (QStringList{"&Open...", "&Recent", "", "&Next", "&Previous", "", "&View", "&Slide Show",
                              "E&xit"}));
        QCOMPARE(stage.captionsOn(QStringLiteral("mnu&View")),
                 (QStringList{"&Full Screen", "&Zoom", "", "File &List"}));
        QCOMPARE(stage.captionsOn(QStringLiteral("mnu&Zoom")), (QStringList{"&In", "&Out"}));
        QCOMPARE(stage.namesOn(QStringLiteral("Toolbar")),
                 (QStringList{"miOpen", "miSep", "miPrevious", "miNext", "miSep", "miZoomIn", "miZoomOut",
                              "miFullScreen"}));
        QCOMPARE(stage.item(0).picture(0), QStringLiteral("open"));
        QCOMPARE(stage.item(1).values().subBand, QStringLiteral("bRecent"));
        QCOMPARE(stage.item(7).values().toolTip, QStringLiteral("Order and delay"));
    }

    void theManualNamesWhatThereIs()
    {
        const QString names =
            textOf("/docs/interface-definition.md").section(QStringLiteral("\n## Names\n"), 1);
        static const QRegularExpression quoted(QStringLiteral("`([^`]+)`"));
        BuildStage stage;
        QStringList icons;
        QSet<QString> known;
        for (auto it = quoted.globalMatch(names); it.hasNext();) {
            const QString name = it.next().captured(1);
            if (name.startsWith(u'#'))
                icons << name;
            else if (name.startsWith(u'b'))
                QVERIFY2(stage.band(name), qPrintable(name));
            else
                QVERIFY2(isCommand(name) || parents.contains(name), qPrintable(name));
            known.insert(name);
        }
        QCOMPARE(icons, test::iconCarriers(stage.model));
        BuildStage built;
        build(built, shipped());
        for (const Tool* const tool : toolsOf(built)) {
            if (!tool->name().startsWith(QLatin1String("miSep")))
                QVERIFY2(known.contains(tool->name()), qPrintable(tool->name()));
        }
    }
};

QTEST_GUILESS_MAIN(TestInterfaceData)
#include "tst_interfacedata.moc"
