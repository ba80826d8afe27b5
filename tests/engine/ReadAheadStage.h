// A loader over four files of content that the test gives, with gates at each step of their decoding.
#pragma once

#include "engine/ImageLoader.h"
#include "FakePictures.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace quorvia::test {

inline constexpr QSize box(100, 100);

/// The files are `m_a` to `m_d`, of 1000 x 500 and 40 x 30 pixels; `m_pictures` says what was done with them.
class ReadAheadStage
{
  protected:
    void setUp()
    {
        m_directory = std::make_unique<QTemporaryDir>();
        m_pictures = std::make_unique<FakePictures>();
        for (QString* path : {&m_a, &m_b, &m_c, &m_d}) {
            *path = m_directory->filePath(QChar(u'a' + static_cast<int>(m_names++ % 4)));
            write(*path, "content");
            file(*path).pages = {graded(1000, 500), graded(40, 30)};
        }
        m_loader = std::make_unique<engine::ImageLoader>(m_pictures->opener());
    }

    void tearDown()
    {
        for (const QString& path : {m_a, m_b, m_c, m_d})
            file(path).headerGate->open();
        m_loader.reset();
        QCOMPARE(m_pictures->openDecoders(), 0);
    }

    FakeFile& file(const QString& path) { return (*m_pictures)[path]; }

    static void write(const QString& path, const QByteArray& content)
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    /// Waits until `count` pages of the usual size stand ready.
    bool stands(int count, qint64 each = qint64(100) * 50 * 4)
    {
        return QTest::qWaitFor([&] { return m_loader->readAheadBytes() == count * each; }, 10'000);
    }

    unsigned m_names = 0;
    QString m_a;
    QString m_b;
    QString m_c;
    QString m_d;
    std::unique_ptr<QTemporaryDir> m_directory;
    std::unique_ptr<FakePictures> m_pictures;
    std::unique_ptr<engine::ImageLoader> m_loader;
};

} // namespace quorvia::test
