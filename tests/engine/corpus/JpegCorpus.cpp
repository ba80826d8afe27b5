// JPEG files of libjpeg-turbo's writer, with the pixels that its reader gives.
#include "../JpegFixtures.h"
#include "Corpus.h"

namespace quorvia::test {

namespace {

struct Recipe
{
    const char* name;
    const char* options;
    QSize size;
};

} // namespace

std::vector<Fixture> jpegCorpus()
{
    const Recipe recipes[] = {
        {"2x2", "-sample 2x2", {83, 49}},
        {"2x1", "-sample 2x1", {83, 49}},
        {"1x2", "-sample 1x2", {83, 49}},
        {"1x1", "-sample 1x1 -quality 97", {83, 49}},
        {"4x1", "-sample 4x1", {83, 49}},
        {"RGB", "-rgb", {40, 33}},
        {"progressive", "-progressive", {83, 49}},
        {"progressive with restarts", "-progressive -restart 2", {83, 49}},
        {"restart by block", "-restart 3B", {83, 49}},
        {"worst quality", "-quality 1", {83, 49}},
        {"best quality, optimised", "-quality 100 -optimize", {83, 49}},
        {"arithmetic", "-arithmetic", {83, 49}},
        {"grey", "-grayscale", {83, 49}},
        {"grey progressive", "-grayscale -progressive", {61, 7}},
        {"1 x 1", "", {1, 1}},
        {"1 x 20000", "", {1, 20000}},
        {"20000 x 1", "-grayscale", {20000, 1}},
        {"8 x 8", "", {8, 8}},
    };
    std::vector<Fixture> fixtures;
    for (const Recipe& recipe : recipes) {
        const QStringList options =
            QString::fromLatin1(recipe.options).split(QLatin1Char(' '), Qt::SkipEmptyParts);
        Fixture fixture{QString::fromLatin1(recipe.name), colorJpeg(recipe.size, options), {}};
        fixture.expected = djpeg(fixture.file);
        fixtures.push_back(fixture);
    }
    return fixtures;
}

} // namespace quorvia::test
