#include "Corpus.h"
#include "SoftimageMaker.h"
#include "StbReader.h"

namespace quorvia::test {

std::vector<Fixture> picCorpus()
{
    using Packets = std::vector<SoftimageMaker::Packet>;
    struct Variant
    {
        const char* name;
        Packets packets;
        QSize size = QSize(397, 9);
    };
    const Variant variants[] = {
        {"mixed", {{2, 0xE0}}},
        {"mixed with alpha", {{2, 0xE0}, {2, 0x10}}},
        {"mixed, four channels in one", {{2, 0xF0}}},
        {"runs", {{1, 0xE0}}},
        {"runs with alpha", {{1, 0xE0}, {1, 0x10}}},
        {"raw", {{0, 0xE0}}},
        {"raw with mixed alpha", {{0, 0xE0}, {2, 0x10}}},
        {"a packet each", {{2, 0x80}, {1, 0x40}, {0, 0x20}, {2, 0x10}}},
        {"alpha first", {{2, 0x10}, {2, 0xE0}}},
        {"blue and red, then green", {{2, 0xA0}, {1, 0x40}}},
        {"mixed", {{2, 0xE0}}, QSize(1, 1)},
        {"mixed with alpha", {{2, 0xE0}, {2, 0x10}}, QSize(1, 20000)},
        {"mixed", {{2, 0xE0}}, QSize(20000, 1)},
        {"runs", {{1, 0xE0}}, QSize(7, 13)},
    };
    std::vector<Fixture> corpus;
    for (const Variant& variant : variants) {
        SoftimageMaker maker;
        maker.picture = runPicture(variant.size);
        maker.packets = variant.packets;
        maker.wordRunFrom = corpus.size() % 2 == 0 ? 129 : 60;
        const QByteArray file = maker.bytes();
        corpus.push_back({QStringLiteral("%1, %2 x %3")
                              .arg(QLatin1String(variant.name))
                              .arg(variant.size.width())
                              .arg(variant.size.height()),
                          file, readByStb(file)});
    }
    SoftimageMaker maker; // the other reader shows channels that are not there as white
    maker.picture = runPicture(QSize(50, 5));
    maker.packets.front().channels = 0x80;
    corpus.push_back({QStringLiteral("red alone, 50 x 5"), maker.bytes(), maker.shown()});
    return corpus;
}

} // namespace quorvia::test
