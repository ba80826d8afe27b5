// Keeps docs/subjects.md whole: what it names is there, and what is there is named.
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

namespace {

const QString root = QStringLiteral(QUORVIA_SOURCE "/");

/// The files below `directory` that match `names`, as the table writes them: from there on, without ending.
QSet<QString> filesBelow(const QString& directory, const QStringList& names)
{
    QSet<QString> found;
    QDirIterator each(root + directory, names, QDir::Files, QDirIterator::Subdirectories);
    while (each.hasNext()) {
        const QString path = each.next().mid(root.size() + directory.size());
        found.insert(path.left(path.lastIndexOf(u'.')));
    }
    return found;
}

/// The names between backticks in column `column` (from 1) of all rows.
QStringList namesInColumn(int column)
{
    static const QRegularExpression name(QStringLiteral("`([^`]+)`"));
    QFile file(root + QStringLiteral("docs/subjects.md"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QStringList names;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
    for (const QString& line : lines) {
        if (!line.startsWith(u'|'))
            continue;
        auto match = name.globalMatch(line.section(u'|', column, column));
        while (match.hasNext())
            names.append(match.next().captured(1));
    }
    return names;
}

QRegularExpression expressionOf(const QString& name)
{
    return QRegularExpression(QRegularExpression::wildcardToRegularExpression(name));
}

/// True when `name` would take any new file of a folder, or any folder: "engine/*", "scan/tst_*", "*/x". The
/// folder of a codec is a subject by itself.
bool takesEverything(const QString& name)
{
    static const QRegularExpression folderOfACodec(QStringLiteral("^engine/codecs/[^/*]+/\\*$"));
    static const QRegularExpression everything(QStringLiteral("^(tst_|test_)?\\*+$"));
    if (folderOfACodec.match(name).hasMatch())
        return false;
    return name.section(u'/', 0, -2).contains(u'*') || everything.match(name.section(u'/', -1)).hasMatch();
}

} // namespace

class TestSubjects : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void columns_data()
    {
        QTest::addColumn<int>("column");
        QTest::addColumn<QString>("directory");
        QTest::addColumn<QStringList>("files");
        QTest::newRow("built by") << 2 << QStringLiteral("src/") << QStringList({"*.cpp", "*.h", "*.inc"});
        QTest::newRow("proved by") << 3 << QStringLiteral("tests/")
                                   << QStringList({"tst_*.cpp", "test_*.py"});
    }

    void columns()
    {
        QFETCH(int, column);
        QFETCH(QString, directory);
        QFETCH(QStringList, files);
        QSet<QString> unnamed = filesBelow(directory, files);
        const QSet<QString> all = unnamed;
        const QStringList names = namesInColumn(column);
        QVERIFY(names.size() > 30);
        for (const QString& name : names) {
            QVERIFY2(!takesEverything(name), qPrintable(name + QStringLiteral(" takes everything")));
            const QRegularExpression expression = expressionOf(name);
            bool leads = false;
            for (const QString& file : all) {
                if (expression.match(file).hasMatch()) {
                    leads = true;
                    unnamed.remove(file);
                }
            }
            QVERIFY2(leads, qPrintable(name + QStringLiteral(" leads to no file")));
        }
        QVERIFY2(unnamed.isEmpty(), qPrintable(unnamed.values().join(u' ') + QStringLiteral(": in no row")));
    }

    void namesThatTakeEverything_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("everything");
        QTest::newRow("a room") << "engine/*" << true;
        QTest::newRow("the tests of a room") << "scan/tst_*" << true;
        QTest::newRow("the journeys") << "journeys/test_*" << true;
        QTest::newRow("two stars") << "engine/**" << true;
        QTest::newRow("no room") << "*" << true;
        QTest::newRow("all codecs") << "engine/codecs/*" << true;
        QTest::newRow("the folders of all codecs") << "engine/codecs/*/*" << true;
        QTest::newRow("a name in any room") << "*/Twips" << true;
        QTest::newRow("a codec") << "engine/codecs/png/*" << false;
        QTest::newRow("a family of names") << "collections/Qol*" << false;
        QTest::newRow("a family of tests") << "collections/tst_qol*" << false;
        QTest::newRow("a name") << "app/Twips" << false;
    }

    void namesThatTakeEverything()
    {
        QFETCH(QString, name);
        QTEST(takesEverything(name), "everything");
    }
};

QTEST_GUILESS_MAIN(TestSubjects)
#include "tst_subjects.moc"
