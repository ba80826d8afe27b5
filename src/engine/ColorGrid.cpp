#include "engine/ColorGrid.h"

#include "engine/SrgbCurve.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <utility>
#include <vector>

namespace quorvia::engine {

namespace {

// Profiles with tables describe colours in CIE Lab, and lcms2 interpolates there. So does the grid, in the
// three numbers that Lab is a sum of: then it meets the profile's own colours, and near the edge of sRGB's
// gamut no curve bends between two nodes.

/// Lab's numbers f(X / Xn), f(Y / Yn), f(Z / Zn) of a colour, and one unused. Source: CIE 15:2004, 8.2.1.
using Node = Four;

constexpr float cubeEnd = 6.0F / 29;              ///< f above which it is a cube root
constexpr float slope = 29.0F * 29 / (3 * 6 * 6); ///< of f below that
constexpr float offset = 4.0F / 29;

float labNumber(float share)
{
    return share > cubeEnd * cubeEnd * cubeEnd ? std::cbrt(share) : slope * share + offset;
}

Four sharesOf(Node number)
{
    return number > cubeEnd ? number * number * number : (number - offset) * (1 / slope);
}

using Matrix = std::array<std::array<float, 3>, 3>;

/// From the light of sRGB's primaries to X / Xn, Y / Yn, Z / Zn of D50. Source: IEC 61966-2-1's primaries,
/// adapted as ICC.1:2010, Annex E tells; each row is divided by its sum, so that white is 1 exactly.
constexpr Matrix toShares = {{{0.4522564F, 0.3993538F, 0.1483898F},
                              {0.2225045F, 0.7168786F, 0.0606169F},
                              {0.0168832F, 0.1176725F, 0.8654443F}}};

/// The inverse, by cofactors.
Matrix inverseOf(const Matrix& m)
{
    const auto cofactor = [&m](size_t row, size_t column) {
        const size_t r1 = (row + 1) % 3;
        const size_t r2 = (row + 2) % 3;
        const size_t c1 = (column + 1) % 3;
        const size_t c2 = (column + 2) % 3;
        return m[r1][c1] * m[r2][c2] - m[r1][c2] * m[r2][c1];
    };
    const float determinant = m[0][0] * cofactor(0, 0) + m[0][1] * cofactor(0, 1) + m[0][2] * cofactor(0, 2);
    Matrix inverse;
    for (size_t row = 0; row < 3; ++row) {
        for (size_t column = 0; column < 3; ++column)
            inverse[row][column] = cofactor(column, row) / determinant;
    }
    return inverse;
}

Node nodeOf(const LinearColor& color)
{
    Node node = {};
    for (size_t i = 0; i < 3; ++i)
        node[static_cast<int>(i)] = labNumber(toShares[i][0] * color.red + toShares[i][1] * color.green +
                                              toShares[i][2] * color.blue);
    return node;
}

/// From an interpolated node to a pixel.
class NodeReader
{
  public:
    NodeReader()
    {
        const Matrix inverse = inverseOf(toShares);
        for (size_t i = 0; i < 3; ++i) {
            for (size_t channel = 0; channel < 3; ++channel)
                m_columns[i][static_cast<int>(channel)] = inverse[channel][i] * (lightSteps - 1);
        }
    }

    QRgb pixel(Node numbers) const
    {
        const Four shares = sharesOf(numbers);
        const FourInts places =
            srgbPlaces(m_columns[0] * shares[0] + m_columns[1] * shares[1] + m_columns[2] * shares[2] + 0.5F);
        const auto encoded = [&](int c) { return m_encode[static_cast<size_t>(places[c])]; };
        return qRgb(encoded(0), encoded(1), encoded(2));
    }

  private:
    std::array<Four, 3> m_columns = {}; ///< of the matrix back, in lightSteps
    const std::array<uchar, lightSteps>& m_encode = srgbTable();
};

/// Where an 8-bit value lies on one axis: the node below it, and the way from there to the next in 1 / whole.
/// Both in one number, so that sorting by the way carries the axis along.
constexpr unsigned wholeBits = 12;
constexpr unsigned strideBits = 32 - wholeBits - 1;
constexpr unsigned strideMask = (1U << strideBits) - 1;

struct Place
{
    unsigned node = 0; ///< index of the node below, times the axis's stride
    unsigned key = 0;  ///< way << strideBits | stride
};

template <size_t Axes>
class Grid
{
  public:
    static constexpr unsigned nodes = Axes == 3 ? 33 : 17; // an axis

    static std::unique_ptr<const Grid> make(ProfileSampler& sampler)
    {
        size_t count = 1;
        for (size_t axis = 0; axis < Axes; ++axis)
            count *= nodes;
        std::vector<float> device(count * Axes);
        for (size_t i = 0; i < count; ++i) {
            size_t rest = i;
            for (size_t axis = Axes; axis-- > 0; rest /= nodes)
                device[i * Axes + axis] = float(rest % nodes) / (nodes - 1);
        }
        std::vector<LinearColor> light(count);
        if (!sampler.sample(device.data(), light.data(), count))
            return nullptr;
        auto grid = std::make_unique<Grid>();
        grid->m_nodes.reserve(count);
        std::transform(light.begin(), light.end(), std::back_inserter(grid->m_nodes), nodeOf);
        return grid;
    }

    Grid()
    {
        unsigned stride = 1;
        for (size_t axis = Axes; axis-- > 0; stride *= nodes) {
            for (unsigned value = 0; value < 256; ++value) {
                const unsigned scaled = value * (nodes - 1);
                const unsigned below =
                    std::min(scaled / 255, nodes - 2); // the last node is the end of a cell
                const unsigned way = ((scaled - below * 255) << wholeBits) / 255;
                m_places[axis][value] = {below * stride, way << strideBits | stride};
            }
        }
    }

    /// Linear along the first axis where there are four, and in the tetrahedron of the other three, as
    /// lcms2 interpolates itself: a profile's own grid of as many nodes is met exactly.
    QRgb at(const std::array<uchar, Axes>& values) const
    {
        constexpr size_t apart = Axes - 3;
        unsigned node = 0;
        std::array<unsigned, 3> keys;
        for (size_t axis = 0; axis < 3; ++axis) {
            const Place& place = m_places[axis + apart][values[axis + apart]];
            node += place.node;
            keys[axis] = place.key;
        }
        sortDown(keys);
        Node sum = {};
        if constexpr (apart == 0) {
            addTetrahedron(sum, node, keys, 1);
        } else {
            const Place& place = m_places[0][values[0]];
            const float way = wayOf(place.key);
            addTetrahedron(sum, node + place.node, keys, 1 - way);
            addTetrahedron(sum, node + place.node + (place.key & strideMask), keys, way);
        }
        return m_reader.pixel(sum);
    }

  private:
    static float wayOf(unsigned key) { return float(key >> strideBits) * (1.0F / (1U << wholeBits)); }

    /// From the node below along the axes, the longest way first.
    void addTetrahedron(Node& sum, unsigned node, const std::array<unsigned, 3>& keys, float share) const
    {
        float before = 1;
        for (size_t i = 0; i <= 3; ++i) {
            const float way = i < 3 ? wayOf(keys[i]) : 0;
            const float weight = (before - way) * share;
            sum += weight * m_nodes[node];
            before = way;
            if (i < 3)
                node += keys[i] & strideMask;
        }
    }

    static void sortDown(std::array<unsigned, 3>& keys)
    {
        const auto order = [&keys](size_t a, size_t b) {
            const unsigned high = std::max(keys[a], keys[b]);
            keys[b] = std::min(keys[a], keys[b]);
            keys[a] = high;
        };
        order(0, 1);
        order(1, 2);
        order(0, 1);
    }

    std::array<std::array<Place, 256>, Axes> m_places;
    std::vector<Node> m_nodes;
    const NodeReader m_reader;
};

class RgbGridConversion final : public ColorConversion
{
  public:
    explicit RgbGridConversion(std::unique_ptr<const Grid<3>> grid)
        : ColorConversion(ColorModel::Rgb), m_grid(std::move(grid))
    {
    }

    void convert(QRgb* pixels, qsizetype count) const override
    {
        QRgb last = 0;
        QRgb made = one(last);
        for (qsizetype i = 0; i < count; ++i) {
            const QRgb color = pixels[i] & 0xffffffU;
            if (color != last) // runs of one colour are common
                made = one(last = color);
            pixels[i] = (pixels[i] & 0xff000000U) | (made & 0xffffffU);
        }
    }

  private:
    QRgb one(QRgb color) const { return m_grid->at({uchar(color >> 16), uchar(color >> 8), uchar(color)}); }

    const std::unique_ptr<const Grid<3>> m_grid;
};

class CmykGridConversion final : public ColorConversion
{
  public:
    explicit CmykGridConversion(std::unique_ptr<const Grid<4>> grid)
        : ColorConversion(ColorModel::Cmyk), m_grid(std::move(grid))
    {
    }

    void convertInks(const uchar* inks, QRgb* out, qsizetype count, bool inverted) const override
    {
        const uchar flip = inverted ? 255 : 0;
        std::array<uchar, 4> last = {};
        QRgb made = m_grid->at(last);
        for (qsizetype i = 0; i < count; ++i, inks += 4) {
            const std::array<uchar, 4> ink = {uchar(inks[0] ^ flip), uchar(inks[1] ^ flip),
                                              uchar(inks[2] ^ flip), uchar(inks[3] ^ flip)};
            if (ink != last)
                made = m_grid->at(last = ink);
            out[i] = made;
        }
    }

  private:
    const std::unique_ptr<const Grid<4>> m_grid;
};

} // namespace

QRgb labInSrgb(float lightness, float a, float b)
{
    static const NodeReader reader;
    const float number = (lightness + 16) / 116;
    return reader.pixel(Node{number + a / 500, number, number - b / 200});
}

std::shared_ptr<const ColorConversion> makeGrid(ProfileSampler& sampler, ColorModel model)
{
    if (model == ColorModel::Cmyk) {
        auto grid = Grid<4>::make(sampler);
        return grid ? std::make_shared<CmykGridConversion>(std::move(grid)) : nullptr;
    }
    auto grid = Grid<3>::make(sampler);
    return grid ? std::make_shared<RgbGridConversion>(std::move(grid)) : nullptr;
}

} // namespace quorvia::engine
