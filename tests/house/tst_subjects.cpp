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
};

QTEST_GUILESS_MAIN(TestSubjects)
#include "tst_subjects.moc"
