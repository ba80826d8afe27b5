// The conversion preview: what it shows, what it asks, what it answers and what it writes.
#include "app/Product.h"
#include "ConvertBench.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QTest>

using namespace quorvia;
using test::noise;

class TestFrmImageConvert : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<test::ConvertBench> m_bench;
    test::ConvertBench& bench() { return *m_bench; }
    static QImage read(const QString& path) { return QImage(path).convertToFormat(QImage::Format_RGB32); }

  private Q_SLOTS:
    void init() { m_bench = std::make_unique<test::ConvertBench>(); }
    void cleanup() { m_bench.reset(); }

    void texts()
    {
        QStringList labels;
        for (const QLabel* const label : bench().window->findChildren<QLabel*>())
            labels.append(label->text());
        QVERIFY(labels.contains(QStringLiteral("Original:")));
        QVERIFY(labels.contains(QStringLiteral("Preview:")));
        QVERIFY(labels.contains(
            QStringLiteral("Do you want to convert the above original image the above preview image?")));
        QCOMPARE(bench().part<QCheckBox>("chkDelete")->text(),
                 QStringLiteral("Delete original file after conversion"));
        QVERIFY(!bench().part<QCheckBox>("chkDelete")->isChecked());
        QCOMPARE(bench().button("cmdYes")->text(), QStringLiteral("Yes"));
        QCOMPARE(bench().button("cmdYesToAll")->text(), QStringLiteral("Yes to All"));
        QCOMPARE(bench().button("cmdNo")->text(), QStringLiteral("No"));
        QCOMPARE(bench().button("cmdCancel")->text(), QStringLiteral("Cancel"));
        for (const char* name :
             {"ixOri", "ixPreview", "chkDelete", "cmdYes", "cmdYesToAll", "cmdNo", "cmdCancel"})
            QVERIFY2(!bench().part<QWidget>(name)->accessibleName().isEmpty(), name);
    }

    void showsBothPictures()
    {
        const QString source = bench().picture("a.bmp");
        const QString target = bench().file("a.png");
        const QString answer = bench().convert(source, target, [&] {
            QCOMPARE(bench().window->windowTitle(), QStringLiteral("pngConversion Preview: a.bmp > png"));
            QCOMPARE(bench().image("ixOri")->FileName(), source);
            QCOMPARE(bench().image("ixOri")->property("tag").toString(), source);
            QCOMPARE(bench().image("ixPreview")->property("tag").toString(), target);
            QCOMPARE(bench().image("ixPreview")->FileName(), bench().scratchFolder() + "/tempimage.png");
            QCOMPARE(bench().image("ixPreview")->Picture(), bench().image("ixOri")->Picture());
            QCOMPARE(bench().scratchFiles(), QStringList{"tempimage.png"});
            for (const char* name : {"cmdYes", "cmdYesToAll", "cmdNo", "cmdCancel"})
                QVERIFY(bench().button(name)->isEnabled());
            bench().button("cmdNo")->click();
        });
        QVERIFY(bench().asked);
        QCOMPARE(answer, QStringLiteral("No"));
        QVERIFY(!bench().window->isVisible());
        QVERIFY(!QFile::exists(target));
        QVERIFY(bench().image("ixOri")->FileName().isEmpty());
        QCOMPARE(bench().scratchFiles(), QStringList());
    }

    void answers_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("answer");
        QTest::addColumn<bool>("writes");
        QTest::newRow("Yes") << "cmdYes"
                             << "Yes" << true;
        QTest::newRow("Yes to All") << "cmdYesToAll"
                                    << "Yes to all" << true;
        QTest::newRow("No") << "cmdNo"
                            << "No" << false;
        QTest::newRow("Cancel") << "cmdCancel"
                                << "Cancel" << false;
    }

    void answers()
    {
        QFETCH(QString, name);
        QFETCH(bool, writes);
        const QString source = bench().picture("a.bmp");
        QTEST(bench().convert(source, bench().file("a.png"), name.toLatin1().constData()), "answer");
        QCOMPARE(QFile::exists(bench().file("a.png")), writes);
        QVERIFY(QFile::exists(source));
        QVERIFY(bench().boxes.isEmpty()); // a target that is not there asks nothing
    }

    void keys_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<QString>("answer");
        QTest::newRow("Enter") << int(Qt::Key_Return) << "Yes";
        QTest::newRow("Y") << int(Qt::Key_Y) << "Yes";
        QTest::newRow("A") << int(Qt::Key_A) << "Yes to all";
        QTest::newRow("N") << int(Qt::Key_N) << "No";
        QTest::newRow("Esc") << int(Qt::Key_Escape) << "Cancel";
    }

    void keys()
    {
        QFETCH(int, key);
        QTEST(bench().convert(bench().picture("a.bmp"), bench().file("a.png"),
                              [&] {
                                  bench().window->activateWindow();
                                  QVERIFY(QTest::qWaitForWindowActive(bench().window.get()));
                                  QTest::keyClick(bench().window->focusWidget(), Qt::Key(key));
                              }),
              "answer");
    }

    void theCloseBoxCancels()
    {
        QCOMPARE(bench().convert(bench().picture("a.bmp"), bench().file("a.png"),
                                 [&] { bench().window->close(); }),
                 QStringLiteral("Cancel"));
        QVERIFY(!QFile::exists(bench().file("a.png")));
    }

    /// A key that is still down from the image before must not answer this one.
    void aHeldKeyAnswersNothing()
    {
        bench().convert(bench().picture("a.bmp"), bench().file("a.png"), [&] {
            QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QString(), true);
            QCoreApplication::sendEvent(bench().button("cmdYes"), &held);
            QVERIFY(bench().window->isVisible());
            bench().window->close();
        });
        QVERIFY(!QFile::exists(bench().file("a.png")));
    }

    void tabOrder()
    {
        bench().convert(bench().picture("a.bmp"), bench().file("a.png"), [&] {
            bench().window->activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(bench().window.get()));
            QCOMPARE(bench().window->focusWidget()->objectName(), QStringLiteral("cmdYes"));
            for (const char* next : {"cmdYesToAll", "cmdNo", "cmdCancel", "chkDelete", "cmdYes"}) {
                QTest::keyClick(bench().window->focusWidget(), Qt::Key_Tab);
                QCOMPARE(bench().window->focusWidget()->objectName(), QLatin1String(next));
            }
            bench().window->close();
        });
    }

    void writesEveryFormat_data()
    {
        QTest::addColumn<bool>("exact");
        for (const char* extension : {"bmp", "pic", "png", "tif", "pcx", "tga"})
            QTest::newRow(extension) << true;
        QTest::newRow("jpg") << false;
        QTest::newRow("ppm") << false; // exact as a picture, but not by copying
    }

    void writesEveryFormat()
    {
        const QString target = bench().file(QStringLiteral("b.") + QTest::currentDataTag());
        QCOMPARE(bench().convert(bench().picture("a.bmp"), target), QStringLiteral("Yes"));
        engine::ImageEngine reader(std::make_shared<engine::ImageLoader>());
        reader.SetFileName(target);
        if (qstrcmp(QTest::currentDataTag(), "jpg") == 0)
            QVERIFY(!reader.Picture().isNull() && reader.Picture() != noise(QSize(61, 47), 90));
        else
            QCOMPARE(reader.Picture(), noise(QSize(61, 47), 90));
        QCOMPARE(bench().log(), QStringLiteral("not to be read"));
    }

    /// What is written is the preview's picture, once more through the codec.
    void aJpegIsWrittenTwice()
    {
        const QString source = bench().picture("a.bmp");
        QByteArray once;
        bench().convert(source, bench().file("a.jpg"), [&] {
            once = test::contentOf(bench().scratchFolder() + "/tempimage.jpg");
            bench().button("cmdYes")->click();
        });
        const QByteArray twice = test::contentOf(bench().file("a.jpg"));
        QVERIFY(twice.startsWith("\xff\xd8") && twice != once);
        bench().bytes(QStringLiteral("once.jpg"), once);
        engine::ImageEngine again(std::make_shared<engine::ImageLoader>());
        again.SetFileName(bench().file("once.jpg"));
        again.SetSaveFileName(bench().file("twice.jpg"));
        QVERIFY(again.SaveFile());
        QVERIFY(test::contentOf(bench().file("twice.jpg")) == twice);
    }

    void jpegSettingsGoIntoBothSaves_data()
    {
        QTest::addColumn<QString>("extension");
        QTest::newRow("jpg") << "jpg";
        QTest::newRow("jpeg") << "JPEG";
    }

    void jpegSettingsGoIntoBothSaves()
    {
        QFETCH(QString, extension);
        const QString source = bench().picture("a.bmp");
        const auto sizes = [&] {
            qsizetype once = 0;
            const QString target = bench().file(QStringLiteral("b.") + extension);
            bench().convert(source, target, [&] {
                once = test::contentOf(bench().image("ixPreview")->FileName()).size();
                bench().button("cmdYes")->click();
            });
            return std::pair(once, test::contentOf(target).size());
        };
        app::save(app::setting::JPEGLum, 0);
        app::save(app::setting::JPEGChrome, 0);
        app::save(app::setting::JPEGSampling, 0);
        const auto best = sizes();
        app::save(app::setting::JPEGLum, 255);
        const auto poorLuminance = sizes();
        QVERIFY(poorLuminance.first < best.first && poorLuminance.second < best.second);
        app::save(app::setting::JPEGChrome, 255);
        const auto poorBoth = sizes();
        QVERIFY(poorBoth.first < poorLuminance.first && poorBoth.second < poorLuminance.second);
        app::save(app::setting::JPEGChrome, 0);
        app::save(app::setting::JPEGSampling, 2);
        const auto sampled = sizes();
        QVERIFY(sampled.first < poorLuminance.first && sampled.second < poorLuminance.second);
        app::save(app::setting::JPEGGray, 1);
        sizes();
        engine::ImageEngine reader(std::make_shared<engine::ImageLoader>());
        reader.SetFileName(bench().file(QStringLiteral("b.") + extension));
        QCOMPARE(reader.BitsPerPixel(), 8);
    }

    // --- targets that are there

    void anExistingTargetIsAskedAbout()
    {
        const QString source = bench().picture("a.bmp");
        const QString target = bench().bytes("a.png", "old");
        QCOMPARE(bench().convert(source, target), QStringLiteral("Yes"));
        QCOMPARE(bench().boxes.size(), 1);
        const platform::MessageBox& box = bench().boxes.front();
        QCOMPARE(box.text,
                 QStringLiteral("The image 'a.png' already exists. Would you like to overwrite this file?"));
        QCOMPARE(box.title, app::productTitle());
        QVERIFY(box.buttons == platform::BoxButtons::YesNo);
        QCOMPARE(read(target), noise(QSize(61, 47), 90));
        QCOMPARE(bench().inTrash("a (replaced).png"), QByteArray("old"));
    }

    void noLeavesItAsItIs_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("Yes") << "cmdYes";
        QTest::newRow("Yes to All") << "cmdYesToAll";
    }

    void noLeavesItAsItIs()
    {
        QFETCH(QString, name);
        bench().overwrite = platform::BoxAnswer::No;
        bench().deleteOriginal(true);
        const QString source = bench().picture("a.bmp");
        const QString target = bench().bytes("a.png", "old");
        QCOMPARE(bench().convert(source, target, name.toLatin1().constData()), QStringLiteral("No"));
        QCOMPARE(test::contentOf(target), QByteArray("old"));
        QVERIFY(QFile::exists(source));
        QCOMPARE(bench().trash(), QStringList());
    }

    void theSourceItselfIsNotAskedAbout()
    {
        bench().deleteOriginal(true);
        const QString source = bench().picture("a.jpg");
        const QByteArray old = test::contentOf(source);
        QCOMPARE(bench().convert(source, source), QStringLiteral("Yes"));
        QVERIFY(bench().boxes.isEmpty());
        QVERIFY(test::contentOf(source).startsWith("\xff\xd8") && test::contentOf(source) != old);
        QCOMPARE(bench().trash(), QStringList{"a (replaced).jpg"});
        QCOMPARE(bench().inTrash("a (replaced).jpg"), old);
    }

    void theSameContentOnceMoreIsNotKept()
    {
        const QString source = bench().picture("a.bmp");
        const QString target = bench().file("a.tga");
        bench().convert(source, target);
        bench().convert(target, target);
        QCOMPARE(bench().trash(), QStringList());
        bench().convert(source, target);
        QCOMPARE(bench().boxes.size(), 1);
        QCOMPARE(bench().trash(), QStringList());
    }

    void aFolderOfThatNameIsNoFile()
    {
        const QString source = bench().picture("a.bmp");
        QVERIFY(QDir().mkpath(bench().file("a.png")));
        QCOMPARE(bench().convert(source, bench().file("a.png")), QStringLiteral("No"));
        QVERIFY(bench().boxes.isEmpty());
        QVERIFY(QFileInfo(bench().file("a.png")).isDir());
    }

    void aNameWithSignsOfPatternsIsThatName()
    {
        bench().bytes("ab.png", "another");
        QCOMPARE(bench().convert(bench().picture("a.bmp"), bench().file("a?.png")), QStringLiteral("Yes"));
        QVERIFY(bench().boxes.isEmpty());
        QVERIFY(QFile::exists(bench().file("a?.png")));
    }

    // --- deleting the original

    void theOriginalGoesToTheTrash()
    {
        bench().deleteOriginal(true);
        const QString source = bench().picture("a.bmp");
        const QByteArray content = test::contentOf(source);
        QCOMPARE(bench().convert(source, bench().file("a.png")), QStringLiteral("Yes"));
        QCOMPARE(bench().pictures(), QStringList{"a.png"});
        QCOMPARE(bench().inTrash("a.bmp"), content);
    }

    void onlyAfterYes()
    {
        bench().deleteOriginal(true);
        const QString source = bench().picture("a.bmp");
        bench().convert(source, bench().file("a.png"), "cmdNo");
        bench().convert(source, bench().file("a.png"), "cmdCancel");
        QCOMPARE(bench().pictures(), QStringList{"a.bmp"});
        QCOMPARE(bench().trash(), QStringList());
    }

    void theCheckLastsForABatch()
    {
        bench().window->beginBatch();
        bench().deleteOriginal(true);
        bench().convert(bench().picture("a.bmp"), bench().file("a.png"), "cmdNo");
        QVERIFY(bench().window->findChild<QCheckBox*>("chkDelete")->isChecked());
        bench().window->endBatch();
        bench().window->beginBatch();
        QVERIFY(!bench().window->findChild<QCheckBox*>("chkDelete")->isChecked());
    }

    void nothingIsWrittenOnceItIsStopped()
    {
        bench().deleteOriginal(true);
        const QString source = bench().picture("a.bmp");
        bench().window->stop();
        QCOMPARE(bench().window->LoadConversion(source, bench().file("a.png"), true), QString("Cancel"));
        QCOMPARE(bench().window->LoadConversion(source, bench().file("a.png"), false), QString("Cancel"));
        QCOMPARE(bench().pictures(), QStringList{"a.bmp"});
    }

    void aStopInTheMiddleWritesNothing()
    {
        bench().deleteOriginal(true);
        const QString source = bench().picture("a.bmp");
        QTimer::singleShot(0, bench().window.get(), [this] { bench().window->stop(); });
        QCOMPARE(bench().window->LoadConversion(source, bench().file("a.png"), true), QString("Cancel"));
        QCOMPARE(bench().pictures(), QStringList{"a.bmp"});
        QVERIFY(bench().trash().isEmpty());
    }

    // --- yes to all

    void yesToAllAsksNothing()
    {
        bench().deleteOriginal(true);
        for (const char* name : {"a", "b", "c"}) {
            const QString source = bench().picture(QLatin1String(name) + ".bmp", noise(QSize(61, 47), *name));
            QCOMPARE(bench().convertAlone(source, bench().file(QLatin1String(name) + ".png")),
                     QStringLiteral("Yes to all"));
            bench().window->endBatch(); // until then the window is up
            QVERIFY(!bench().window->isVisible());
            QCOMPARE(read(bench().file(QLatin1String(name) + ".png")), noise(QSize(61, 47), *name));
        }
        QCOMPARE(bench().pictures(), QStringList({"a.png", "b.png", "c.png"}));
        QVERIFY(bench().boxes.isEmpty());
    }

    void yesToAllStillAsksAboutEachTarget()
    {
        bench().whileAsked = [&] {
            QVERIFY(bench().window->isVisible());
            QVERIFY(!bench().window->isModal());
            for (const char* name : {"cmdYes", "cmdYesToAll", "cmdNo", "cmdCancel"})
                QVERIFY(!bench().button(name)->isEnabled());
        };
        for (const char* name : {"a", "b"}) {
            const QString target = bench().bytes(QLatin1String(name) + ".png", "old");
            QCOMPARE(bench().convertAlone(bench().picture(QLatin1String(name) + ".bmp"), target),
                     QStringLiteral("Yes to all"));
        }
        QCOMPARE(bench().boxes.size(), 2);
        bench().overwrite = platform::BoxAnswer::No;
        QCOMPARE(bench().convertAlone(bench().file("a.bmp"), bench().file("b.png")), QStringLiteral("No"));
    }

    void theButtonsAreBackInTheNextBatch()
    {
        bench().convertAlone(bench().picture("a.bmp"), bench().file("a.png"));
        QCOMPARE(bench().convert(bench().file("a.bmp"), bench().file("b.png"), "cmdNo"),
                 QStringLiteral("No"));
    }

    void closingItEndsTheBatch()
    {
        bench().bytes("a.png", "old");
        bench().whileAsked = [&] { bench().window->reject(); }; // in the middle of a write
        QCOMPARE(bench().convertAlone(bench().picture("a.bmp"), bench().file("a.png")),
                 QStringLiteral("Yes to all"));
        QCOMPARE(bench().convertAlone(bench().file("a.bmp"), bench().file("b.png")),
                 QStringLiteral("Cancel"));
        QVERIFY(!QFile::exists(bench().file("b.png")));
        QCOMPARE(bench().convert(bench().file("a.bmp"), bench().file("b.png")), QStringLiteral("Yes"));
    }

    void closingItBeforeTheWriteWritesNothing()
    {
        QTimer watch;
        connect(&watch, &QTimer::timeout, this, [&] {
            if (bench().window->isVisible())
                bench().window->close();
        });
        watch.start(0);
        QCOMPARE(bench().convertAlone(bench().picture("a.bmp"), bench().file("a.png")),
                 QStringLiteral("Cancel"));
        QVERIFY(!QFile::exists(bench().file("a.png")));
    }

    void aSecondConversionInsideTheFirstIsRefused()
    {
        const QString source = bench().picture("a.bmp");
        QString inner;
        bench().convert(source, bench().file("a.png"), [&] {
            inner = bench().convertAlone(source, bench().file("b.png"));
            bench().button("cmdYes")->click();
        });
        QCOMPARE(inner, QStringLiteral("Cancel"));
        QCOMPARE(bench().pictures(), QStringList({"a.bmp", "a.png"}));
    }

    void aWindowThatIsDeletedWhileItAsks()
    {
        bool deleted = false;
        const QString answer = bench().convert(bench().picture("a.bmp"), bench().file("a.png"), [&] {
            delete bench().window.release();
            deleted = true;
        });
        QVERIFY(deleted);
        QCOMPARE(answer, QStringLiteral("Cancel"));
        QCOMPARE(bench().pictures(), QStringList{"a.bmp"});
    }

    void keepsItsSizeThroughABatch()
    {
        const QString source = bench().picture("a.bmp");
        bench().convert(source, bench().file("a.png"), [&] {
            QCOMPARE(bench().window->size(), QSize(900, 600));
            bench().window->resize(700, 500);
            bench().button("cmdNo")->click();
        });
        bench().convert(source, bench().file("a.png"), [&] {
            QCOMPARE(bench().window->size(), QSize(700, 500));
            bench().button("cmdNo")->click();
        });
    }
};

QTEST_MAIN(TestFrmImageConvert)
#include "tst_frmimageconvert.moc"
