// The pages of help as the build made them: what they say of keys, commands, menus and types is what the
// program has, and whatever they lead to is there.
#include "../commands/BuildStage.h"
#include "app/ImageTypes.h"
#include "app/KeyCodes.h"
#include "commands/InterfaceFile.h"
#include "commands/KeyCatalog.h"
#include "HelpPage.h"
#include "HtmlPage.h"
#include "OtherKeys.h"
#include "output/FullScreenLayout.h"

#include <QDir>
#include <QDirIterator>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

using namespace quorvia;
using test::Element;
using test::HtmlPage;

namespace {

const QString made = QStringLiteral(QUORVIA_HELP "/");
const QString sources = QStringLiteral(QUORVIA_SOURCE "/");
const QStringList pages{QStringLiteral("qo_faq_help.htm"), QStringLiteral("qo_shortcut.htm")};

/// A key, and what it does.
using KeyAndText = std::pair<QString, QString>;

/// All keys that the program tells of.
QSet<KeyAndText> keysOfTheProgram()
{
    QSet<KeyAndText> keys;
    for (const commands::KeyText& key : commands::mainWindowKeys())
        keys.insert({key.keys, key.text});
    for (const output::FullScreenKey& key : output::fullScreenKeys())
        keys.insert({app::keyName(key.keyCode, 0), QLatin1String(key.text)});
    for (const QString& part : help::otherParts()) {
        for (const help::OtherKey& row : help::otherKeys(part)) {
            for (const QString& key : help::separateKeys(row))
                keys.insert({key, QLatin1String(row.text)});
        }
    }
    return keys;
}

QSet<KeyAndText> keysOfTables(const HtmlPage& page)
{
    QSet<KeyAndText> keys;
    for (const Element* const table : page.all("table", "keys")) {
        for (const Element* const row : page.within(*table, "tr")) {
            for (const Element* const key : page.within(*row, "kbd"))
                keys.insert({key->text, page.within(*row, "td").at(0)->text});
        }
    }
    return keys;
}

QString textOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// A caption as a reader sees it.
QString plainCaption(QString caption)
{
    return caption.remove(u'&').remove(QStringLiteral("..."));
}

/// Whether the context menu has the captions `path`, each in the menu of the one before.
bool leads(const test::BuildStage& stage, const QStringList& path)
{
    QString at = QStringLiteral("NewImage");
    for (const QString& wanted : path) {
        const platform::ToolBand* const band = stage.band(at);
        const platform::Tool* found = nullptr;
        for (int index = 0; band && index < band->toolCount(); ++index) {
            if (plainCaption(band->toolAt(index)->values().caption) == wanted)
                found = band->toolAt(index);
        }
        if (!found)
            return false;
        at = found->values().subBand;
    }
    return true;
}

/// All that stands between quotes in the program's sources.
QString captionsOfTheSources()
{
    QString all;
    QDirIterator each(sources + QStringLiteral("src"), {QStringLiteral("*.cpp")}, QDir::Files,
                      QDirIterator::Subdirectories);
    while (each.hasNext())
        all += textOf(each.next());
    return all;
}

} // namespace

class TestHelpPages : public QObject
{
    Q_OBJECT

    std::vector<HtmlPage> m_pages;

  private Q_SLOTS:
    void initTestCase()
    {
        for (const QString& page : pages) {
            m_pages.emplace_back(made + page);
            QVERIFY2(m_pages.back().error.isEmpty(), qPrintable(page + u' ' + m_pages.back().error));
        }
    }

    void theyAreSoundHtml()
    {
        for (const QString& page : pages) {
            QProcess tidy;
            tidy.start(QStringLiteral("tidy"), {QStringLiteral("-q"), QStringLiteral("-e"), made + page});
            QVERIFY(tidy.waitForFinished());
            QCOMPARE(QString::fromUtf8(tidy.readAllStandardError()), QString());
            QCOMPARE(tidy.exitCode(), 0);
        }
    }

    void theyHaveALanguageATitleAndHeadingsInOrder()
    {
        for (const HtmlPage& page : m_pages) {
            QCOMPARE(page.elements.at(0).attribute("lang"), QStringLiteral("en"));
            QCOMPARE(page.all("title").size(), std::size_t(1));
            QVERIFY(page.all("title")[0]->text.startsWith(QStringLiteral("Quorvia: ")));
            QCOMPARE(page.all("h1").size(), std::size_t(1));
            int before = 0;
            for (const Element& each : page.elements) {
                if (each.name.size() != 2 || each.name[0] != u'h' || !each.name[1].isDigit())
                    continue;
                const int level = each.name[1].digitValue();
                QVERIFY2(level <= before + 1, qPrintable(each.text));
                before = level;
            }
            QVERIFY(before >= 2);
        }
    }

    void nothingWasLeftUnfilled()
    {
        for (const HtmlPage& page : m_pages) {
            QVERIFY(page.source.size() > 5000);
            QVERIFY(!page.source.contains(QStringLiteral("{{")));
            QVERIFY(!page.source.contains(QStringLiteral("}}")));
        }
    }

    void theTablesHaveTheKeysOfTheProgram()
    {
        const QSet<KeyAndText> told = keysOfTables(m_pages[1]);
        const QSet<KeyAndText> all = keysOfTheProgram();
        QVERIFY(all.size() > 80);
        for (const auto& [key, text] : all)
            QVERIFY2(told.contains({key, text}),
                     qPrintable(key + u' ' + text + QStringLiteral(" is missing")));
        for (const auto& [key, text] : told)
            QVERIFY2(all.contains({key, text}), qPrintable(key + u' ' + text + QStringLiteral(" is none")));
    }

    void theKeysInTheTextAreKeys()
    {
        QSet<QString> names;
        for (const auto& [key, text] : keysOfTheProgram())
            names.insert(key);
        int seen = 0;
        for (const HtmlPage& page : m_pages) {
            for (const Element* const key : page.all("kbd")) {
                if (page.isWithin(*key, "table"))
                    continue;
                ++seen;
                // Any key that has no other meaning goes back from the whole screen.
                QVERIFY2(names.contains(key->text), qPrintable(key->text));
            }
        }
        QVERIFY(seen > 20);
    }

    void theCommandsAreInTheCatalog()
    {
        int seen = 0;
        for (const Element* const row : m_pages[1].all("tr")) {
            const QString command = row->attribute("data-command");
            if (command.isEmpty())
                continue;
            ++seen;
            QVERIFY2(commands::catalogEntry(command), qPrintable(command));
        }
        QVERIFY(seen > 20);
    }

    void theMenusAreThere()
    {
        test::BuildStage stage;
        const QString definition = textOf(sources + QStringLiteral("data/interface.dat"));
        stage.postrel = true;
        stage.run(commands::definitionSection(definition, QStringLiteral("Menu")).value_or(QString()),
                  commands::definitionSection(definition, QStringLiteral("Toolbar")).value_or(QString()));
        QVERIFY(!leads(stage, {QStringLiteral("Image"), QStringLiteral("Copy")}));
        int seen = 0;
        for (const HtmlPage& page : m_pages) {
            for (const Element* const menu : page.all("span", "menu")) {
                ++seen;
                QVERIFY2(leads(stage, menu->text.split(QStringLiteral(" \u203a "))), qPrintable(menu->text));
            }
        }
        QVERIFY(seen > 15);
    }

    void theCaptionsOfWindowsAreThere()
    {
        const QString all = captionsOfTheSources();
        int seen = 0;
        for (const HtmlPage& page : m_pages) {
            for (const Element* const label : page.all("span", "label")) {
                ++seen;
                const QRegularExpression caption(QStringLiteral("\" ?") +
                                                 QRegularExpression::escape(label->text) + u'"');
                QVERIFY2(all.contains(caption), qPrintable(label->text));
            }
        }
        QVERIFY(seen > 10);
    }

    void whatTheyLeadToIsThere()
    {
        for (const HtmlPage& page : m_pages) {
            QSet<QString> marks;
            for (const Element& each : page.elements) {
                if (const QString id = each.attribute("id"); !id.isEmpty()) {
                    QVERIFY2(!marks.contains(id), qPrintable(id));
                    marks.insert(id);
                }
            }
            for (const Element& each : page.elements) {
                const QString target = each.attribute("href") + each.attribute("src");
                if (target.startsWith(u'#'))
                    QVERIFY2(marks.contains(target.mid(1)), qPrintable(target));
                else if (!target.isEmpty())
                    QVERIFY2(QFile::exists(made + target), qPrintable(target));
            }
        }
    }

    void everyPictureIsUsedAndDescribed()
    {
        QSet<QString> used;
        for (const HtmlPage& page : m_pages) {
            for (const Element* const image : page.all("img")) {
                QVERIFY2(image->attribute("alt").size() > 20, qPrintable(image->attribute("src")));
                used.insert(image->attribute("src"));
            }
        }
        QVERIFY(used.size() >= 5);
        constexpr int largest = 150'000; // bytes
        const QFileInfoList files =
            QDir(sources + QStringLiteral("data/help/images")).entryInfoList(QDir::Files);
        QCOMPARE(files.size(), used.size());
        for (const QFileInfo& file : files) {
            QVERIFY2(used.contains(QStringLiteral("images/") + file.fileName()), qPrintable(file.fileName()));
            QVERIFY2(file.size() <= largest, qPrintable(file.fileName()));
        }
    }

    void nothingComesFromOutside()
    {
        for (const HtmlPage& page : m_pages) {
            QVERIFY(page.all("script").empty());
            for (const Element& each : page.elements) {
                QVERIFY(!each.attribute("src").contains(u':') && !each.attribute("href").contains(u':'));
                for (auto name = each.attributes.keyBegin(); name != each.attributes.keyEnd(); ++name)
                    QVERIFY2(!name->startsWith(QStringLiteral("on")), qPrintable(*name));
            }
        }
        const QString style = textOf(made + QStringLiteral("style.css"));
        QVERIFY(style.contains(QStringLiteral("prefers-color-scheme: dark")));
        QVERIFY(!style.contains(QStringLiteral("url(")) && !style.contains(QStringLiteral("@import")));
    }

    void theTypesAreTheProgramsOwn()
    {
        QStringList told;
        for (const Element* const table : m_pages[0].all("table", "types")) {
            for (const Element* const cell : m_pages[0].within(*table, "td"))
                told += cell->text.split(QStringLiteral(", "));
        }
        QStringList all =
            QString::fromLatin1(app::ImageExtensionList).remove(QStringLiteral("*.")).split(u';');
        told.sort();
        all.sort();
        QCOMPARE(told, all);
    }
};

QTEST_GUILESS_MAIN(TestHelpPages)
#include "tst_helppages.moc"
