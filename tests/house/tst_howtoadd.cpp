// Keeps docs/how-to-add.md true: it has five steps, and the lines that each of them shows stand in the file
// that it names.
#include <QFile>
#include <QRegularExpression>
#include <QTest>

class TestHowToAdd : public QObject
{
    Q_OBJECT

  private:
    static QString contents(const QString& path)
    {
        QFile file(QStringLiteral(QUORVIA_SOURCE "/") + path);
        if (!file.open(QIODevice::ReadOnly))
            return {};
        return QString::fromUtf8(file.readAll()).remove(QLatin1Char('\r'));
    }

    static QStringList steps()
    {
        return contents(QStringLiteral("docs/how-to-add.md")).split(QStringLiteral("\n## ")).mid(1);
    }

  private Q_SLOTS:
    void thereAreFiveSteps()
    {
        const QStringList all = steps();
        QCOMPARE(all.size(), 5);
        for (int i = 0; i < all.size(); ++i)
            QVERIFY2(all.at(i).startsWith(QString::number(i + 1) + QStringLiteral(". ")),
                     qPrintable(all.at(i).left(40)));
    }

    void theLinesShownStandWhereItSays()
    {
        static const QRegularExpression path(QStringLiteral("`((?:src|data)/[^`]+)`"));
        static const QRegularExpression block(QStringLiteral("\n```[a-z]*\n(.*?)\n```"),
                                              QRegularExpression::DotMatchesEverythingOption);
        for (const QString& step : steps()) {
            const QString file = path.match(step).captured(1);
            const QString lines = block.match(step).captured(1);
            QVERIFY2(!file.isEmpty() && lines.contains(QLatin1String("miBestFit")), qPrintable(step));
            QVERIFY2(contents(file).contains(lines), qPrintable(file + QStringLiteral(": ") + lines));
        }
    }

    void theFilesNamedAreThere()
    {
        static const QRegularExpression named(QStringLiteral("`((?:src|data|docs|tests)/[^`]+)`"));
        auto match = named.globalMatch(contents(QStringLiteral("docs/how-to-add.md")));
        QVERIFY(match.hasNext());
        while (match.hasNext()) {
            const QString path = match.next().captured(1);
            QVERIFY2(QFile::exists(QStringLiteral(QUORVIA_SOURCE "/") + path), qPrintable(path));
        }
    }
};

QTEST_GUILESS_MAIN(TestHowToAdd)
#include "tst_howtoadd.moc"
