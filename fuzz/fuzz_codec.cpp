// One codec under libFuzzer: whatever the bytes, opening and decoding them keeps the codec's promises. The
// codec is chosen when this is compiled, by its name in the table (QUORVIA_FUZZED).
#include "engine/Codec.h"
#include "engine/Limits.h"
#include "tests/engine/fixtures/HostileBytes.h"

#include <QGuiApplication>

#include <cstdio>
#include <cstdlib>

using namespace quorvia;

namespace {

const engine::Codec* fuzzedCodec()
{
    for (const engine::Codec* codec : engine::codecTable()) {
        if (codec->name() == QLatin1String(QUORVIA_FUZZED))
            return codec;
    }
    std::fprintf(stderr, "there is no codec %s\n", QUORVIA_FUZZED);
    std::abort();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    constexpr qint64 pictureBudget = qint64(16) << 20; // small pictures, many executions
    engine::Limits::setMachineBytes(pictureBudget);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int count = 1;
    static char name[] = "fuzz";
    static char* arguments[] = {name, nullptr};
    static const QGuiApplication application(count, arguments); // some decoders draw
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const engine::Codec* const codec = fuzzedCodec();
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    if (!codec->sniff(bytes.left(1024), codec->extensions().constFirst()))
        return 0;
    const QString fault = test::misbehaviour(*codec, bytes);
    if (!fault.isEmpty()) {
        std::fprintf(stderr, "%s\n", qPrintable(fault));
        std::abort();
    }
    return 0;
}
