#include "engine/ColorGrid.h"

#include "engine/GridAxis.h"
#include "engine/SrgbCurve.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <random>
#include <utility>
#include <vector>

namespace quorvia::engine {

namespace {

// Profiles with tables describe colours in CIE Lab or in XYZ, and lcms2 interpolates there. So does the grid,
// in the three numbers that Lab is a sum of, or in light: then it meets the profile's own colours, and near
// the edge of sRGB's gamut no curve bends between two nodes.
enum class NodeKind { Lab, Light };

/// Lab's numbers f(X / Xn), f(Y / Yn), f(Z / Zn) of a colour, or its light, and one unused. Source: CIE
/// 15:2004, 8.2.1.
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

Node nodeOf(const LinearColor& color, NodeKind kind)
{
    if (kind == NodeKind::Light)
        return Node{color.red, color.green, color.blue, 0};
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
    explicit NodeReader(NodeKind kind) : m_cubed(kind == NodeKind::Lab)
    {
        constexpr Matrix same = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
        const Matrix inverse = m_cubed ? inverseOf(toShares) : same;
        for (size_t i = 0; i < 3; ++i) {
            for (size_t channel = 0; channel < 3; ++channel)
                m_columns[i][static_cast<int>(channel)] = inverse[channel][i] * (lightSteps - 1);
        }
    }

    QRgb pixel(Node numbers) const
    {
        const Four shares = m_cubed ? sharesOf(numbers) : numbers;
        const FourInts places =
            srgbPlaces(m_columns[0] * shares[0] + m_columns[1] * shares[1] + m_columns[2] * shares[2] + 0.5F);
        const auto encoded = [&](int c) { return m_encode[static_cast<size_t>(places[c])]; };
        return qRgb(encoded(0), encoded(1), encoded(2));
    }

  private:
    const bool m_cubed;
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
    using GridAxes = std::array<GridAxis, Axes>;

    /// `light` holds the colours of deviceOf(axes).
    Grid(const GridAxes& axes, const std::vector<LinearColor>& light, NodeKind kind) : m_reader(kind)
    {
        unsigned stride = 1;
        for (size_t axis = Axes; axis-- > 0; stride *= unsigned(axes[axis].size()))
            place(m_places[axis], axes[axis], stride);
        m_nodes.reserve(light.size());
        std::transform(light.begin(), light.end(), std::back_inserter(m_nodes),
                       [kind](const LinearColor& color) { return nodeOf(color, kind); });
    }

    /// The device values of all nodes, the last axis first.
    static std::vector<float> deviceOf(const GridAxes& axes)
    {
        size_t count = 1;
        for (const GridAxis& axis : axes)
            count *= axis.size();
        std::vector<float> device(count * Axes);
        for (size_t i = 0; i < count; ++i) {
            size_t rest = i;
            for (size_t axis = Axes; axis-- > 0; rest /= axes[axis].size())
                device[i * Axes + axis] = axes[axis][rest % axes[axis].size()];
        }
        return device;
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
    static void place(std::array<Place, 256>& places, const GridAxis& nodes, unsigned stride)
    {
        unsigned below = 0;
        for (unsigned value = 0; value < 256; ++value) {
            const float at = float(value) / 255;
            while (below + 2 < nodes.size() && nodes[below + 1] <= at) // the last node is the end of a cell
                ++below;
            const float way = (at - nodes[below]) / (nodes[below + 1] - nodes[below]);
            const auto whole = float(1U << wholeBits);
            const auto counted = unsigned(std::lround(std::clamp(way, 0.0F, 1.0F) * whole));
            places[value] = {below * stride, counted << strideBits | stride};
        }
    }

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

// --- the grid that fits a profile best

/// Device values all over, each ink alone among them, and what the sampler makes of them.
template <size_t Axes>
struct Trial
{
    using Values = std::array<uchar, Axes>;
    std::vector<Values> device;
    std::vector<QRgb> srgb;

    static std::optional<Trial> of(ProfileSampler& sampler)
    {
        Trial trial;
        for (size_t axis = 0; axis < Axes; ++axis) {
            for (int value = 0; value < 256; value += 5) {
                Values values = {};
                values[axis] = uchar(value);
                trial.device.push_back(values);
            }
        }
        std::minstd_rand numbers(21);
        constexpr size_t enough = 1024;
        while (trial.device.size() < enough) {
            Values values;
            std::generate(values.begin(), values.end(), [&] { return uchar(numbers() >> 8); });
            trial.device.push_back(values);
        }
        std::vector<float> device;
        for (const Values& values : trial.device) {
            for (const uchar value : values)
                device.push_back(float(value) / 255);
        }
        std::vector<LinearColor> light(trial.device.size());
        if (!sampler.sample(device.data(), light.data(), light.size()))
            return {};
        for (const LinearColor& color : light)
            trial.srgb.push_back(qRgb(srgbByte(color.red), srgbByte(color.green), srgbByte(color.blue)));
        return trial;
    }

    /// The squares of what `grid` is off by, summed up; 0 where nothing is off by more than rounding.
    double missOf(const Grid<Axes>& grid) const
    {
        double sum = 0;
        int most = 0;
        for (size_t i = 0; i < device.size(); ++i) {
            const QRgb made = grid.at(device[i]);
            const int off =
                std::max({std::abs(qRed(made) - qRed(srgb[i])), std::abs(qGreen(made) - qGreen(srgb[i])),
                          std::abs(qBlue(made) - qBlue(srgb[i]))});
            most = std::max(most, off);
            sum += double(off) * off;
        }
        return most > 1 ? sum : 0;
    }
};

/// The nodes of one axis where the colours along it bend; empty when the profile is to be given up.
template <size_t Axes>
GridAxis bentAxis(ProfileSampler& sampler, size_t axis, size_t nodes, NodeKind kind)
{
    constexpr size_t steps = 256;
    std::vector<float> bend(steps, 0);
    for (const float others : {0.0F, 0.25F, 0.5F}) {
        std::vector<float> device(steps * Axes, others);
        for (size_t i = 0; i < steps; ++i)
            device[i * Axes + axis] = float(i) / (steps - 1);
        std::vector<LinearColor> light(steps);
        if (!sampler.sample(device.data(), light.data(), steps))
            return {};
        std::vector<Node> line;
        std::transform(light.begin(), light.end(), std::back_inserter(line),
                       [kind](const LinearColor& color) { return nodeOf(color, kind); });
        for (size_t i = 1; i + 1 < steps; ++i) {
            const Node second = line[i - 1] - 2 * line[i] + line[i + 1];
            for (int c = 0; c < 3; ++c)
                bend[i] = std::max(bend[i], std::abs(second[c]));
        }
    }
    return axisByBend(bend, nodes);
}

/// First with even nodes; where that misses, with nodes where the colours bend.
template <size_t Axes>
std::unique_ptr<const Grid<Axes>> bestGrid(ProfileSampler& sampler)
{
    using Fitting = Grid<Axes>;
    constexpr size_t evenNodes = Axes == 3 ? 33 : 17;
    const auto trial = Trial<Axes>::of(sampler);
    if (!trial)
        return nullptr;
    std::unique_ptr<const Fitting> best;
    NodeKind bestKind = NodeKind::Lab;
    double least = 0;
    const auto tryAxes = [&](const typename Fitting::GridAxes& axes, std::initializer_list<NodeKind> kinds) {
        const std::vector<float> device = Fitting::deviceOf(axes);
        std::vector<LinearColor> light(device.size() / Axes);
        if (!sampler.sample(device.data(), light.data(), light.size()))
            return;
        for (const NodeKind kind : kinds) {
            auto grid = std::make_unique<const Fitting>(axes, light, kind);
            const double miss = trial->missOf(*grid);
            if (best && miss >= least)
                continue;
            best = std::move(grid);
            bestKind = kind;
            least = miss;
        }
    };
    typename Fitting::GridAxes axes;
    axes.fill(evenAxis(evenNodes));
    tryAxes(axes, {NodeKind::Lab, NodeKind::Light});
    if (!best || least == 0)
        return best;
    for (size_t axis = 0; axis < Axes; ++axis) {
        axes[axis] = bentAxis<Axes>(sampler, axis, evenNodes, bestKind);
        if (axes[axis].empty())
            return best;
    }
    tryAxes(axes, {bestKind});
    return best;
}

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
    static const NodeReader reader(NodeKind::Lab);
    const float number = (lightness + 16) / 116;
    return reader.pixel(Node{number + a / 500, number, number - b / 200});
}

std::shared_ptr<const ColorConversion> makeGrid(ProfileSampler& sampler, ColorModel model)
{
    if (model == ColorModel::Cmyk) {
        auto grid = bestGrid<4>(sampler);
        return grid ? std::make_shared<CmykGridConversion>(std::move(grid)) : nullptr;
    }
    auto grid = bestGrid<3>(sampler);
    return grid ? std::make_shared<RgbGridConversion>(std::move(grid)) : nullptr;
}

} // namespace quorvia::engine
