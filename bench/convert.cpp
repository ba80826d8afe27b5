// What a batch of conversions costs beside the bare codec calls in it: convert PICTURES [RUNS] takes some
// pictures of 12 megapixels through the conversion preview, after "Yes to all", in turn with decoding,
// encoding, decoding and encoding each of them without any window or file. PICTURES is the directory that
// bench/ratios fills.
#include "app/mWindowsAPI.h"
#include "engine/Codec.h"
#include "engine/ImageEngine.h"
#include "output/frmImageConvert.h"
#include "Ratio.h"

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

using namespace quorvia;
using namespace quorvia::bench;

namespace {

constexpr int files = 6;

struct Case
{
    const char* name;
    const char* extension;
    double limit;
};

[[noreturn]] void fail(const char* what)
{
    std::fprintf(stderr, "convert: %s\n", what);
    std::exit(1);
}

using Source = engine::Result<std::shared_ptr<engine::ByteSource>>;

QImage decoded(const Source& source)
{
    if (!source)
        fail("no picture");
    const auto decoder = engine::openDecoder(*source, {});
    const engine::CancelFlag goOn{false};
    auto picture =
        decoder ? (*decoder)->decode(1, QSize(), goOn) : engine::Result<engine::Picture>(decoder.error());
    if (!picture)
        fail("a picture that cannot be read");
    return (*std::move(picture)).image;
}

QByteArray encoded(const QImage& image, const QString& extension)
{
    auto bytes = engine::encoderFor(extension)->encode(image, extension, {});
    if (!bytes)
        fail("a picture that cannot be written");
    return *std::move(bytes);
}

/// The codecs' work for all files.
qsizetype bare(const QStringList& sources, const QString& extension)
{
    qsizetype written = 0;
    for (const QString& source : sources) {
        const QByteArray once = encoded(decoded(engine::ByteSource::open(source)), extension);
        written += encoded(decoded(engine::ByteSource::fromBytes(once)), extension).size();
    }
    return written;
}

/// The same through the window, with targets that are not there before.
qsizetype converted(output::frmImageConvert& window, const QStringList& sources, const QString& extension)
{
    for (qsizetype i = 0; i < sources.size(); ++i) {
        const QString& source = sources[i];
        window.expectNext(sources.value(i + 1));
        const QString target = source + u'.' + extension;
        QFile::remove(target);
        if (window.LoadConversion(source, target, true) != QLatin1String("Yes to all"))
            fail("a conversion that wrote nothing");
    }
    return sources.size();
}

/// `count` names in `folder` for the file at `path`.
QStringList linkedNames(const QString& path, const QTemporaryDir& folder, int count)
{
    QStringList names;
    for (int i = 0; i < count; ++i) {
        names.append(folder.filePath(QStringLiteral("picture%1.jpg").arg(i)));
        if (::link(QFile::encodeName(path).constData(), QFile::encodeName(names.last()).constData()) != 0)
            fail("no link to the picture can be made");
    }
    return names;
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc < 2) {
        std::fprintf(stderr, "usage: convert PICTURES [RUNS [WORD]]\n");
        return 2;
    }
    constexpr int mostRuns = 5; // each takes some seconds
    const int runs = std::clamp(argc > 2 ? std::atoi(argv[2]) : mostRuns, 1, mostRuns);
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QString pictures = QFile::decodeName(argv[1]);
    const QTemporaryDir home(pictures + QStringLiteral("/convert-home-XXXXXX"));
    for (const char* variable :
         {"HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_DATA_HOME", "QUORVIA_ROOT"})
        qputenv(variable, QFile::encodeName(home.path()));
    const QApplication application(argc, argv);
    const QTemporaryDir folder(pictures + QStringLiteral("/convert-XXXXXX"));
    const QStringList sources = linkedNames(pictures + QStringLiteral("/photo-12mp.jpg"), folder, files);
    app::openSettings();
    {
        output::frmImageConvert window(std::make_shared<engine::ImageLoader>());
        for (const Case& one :
             {Case{"6 JPEGs of 12 MP to JPEG", "jpg", 1.2}, Case{"6 JPEGs of 12 MP to PNG", "png", 1.2},
              Case{"6 JPEGs of 12 MP to BMP", "bmp", 1.2}}) {
            if (argc > 3 && !std::strstr(one.name, argv[3]))
                continue;
            const QString extension = QString::fromLatin1(one.extension);
            compare(
                one.name, [&] { return converted(window, sources, extension); },
                [&] { return bare(sources, extension); }, runs, one.limit);
        }
    }
    app::closeSettings();
    return 0;
}
