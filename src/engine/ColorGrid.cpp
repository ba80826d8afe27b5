#include "engine/ColorGrid.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace quorvia::engine {

namespace {

/// Blue, green and red in 255 steps of sRGB, out of range where the colour is.
struct alignas(16) Node
{
    std::array<float, 4> value;
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
        for (const LinearColor& color : light)
            grid->m_nodes.push_back({{255 * encodedSrgb(color.blue), 255 * encodedSrgb(color.green),
                                      255 * encodedSrgb(color.red), 0}});
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
        std::array<float, 4> sum = {0.5F, 0.5F, 0.5F, 0.5F}; // to round by
        if constexpr (apart == 0) {
            addTetrahedron(sum, node, keys, 1);
        } else {
            const Place& place = m_places[0][values[0]];
            const float way = wayOf(place.key);
            addTetrahedron(sum, node + place.node, keys, 1 - way);
            addTetrahedron(sum, node + place.node + (place.key & strideMask), keys, way);
        }
        std::array<int, 4> bytes;
        for (size_t c = 0; c < 4; ++c) {
            const float low = sum[c] > 0 ? sum[c] : 0;
            bytes[c] = static_cast<int>(low < 255 ? low : 255);
        }
        return qRgb(bytes[2], bytes[1], bytes[0]);
    }

  private:
    static float wayOf(unsigned key) { return float(key >> strideBits) * (1.0F / (1U << wholeBits)); }

    /// From the node below along the axes, the longest way first.
    void addTetrahedron(std::array<float, 4>& sum, unsigned node, const std::array<unsigned, 3>& keys,
                        float share) const
    {
        float before = 1;
        for (size_t i = 0; i <= 3; ++i) {
            const float way = i < 3 ? wayOf(keys[i]) : 0;
            const float weight = (before - way) * share;
            const Node& corner = m_nodes[node];
            for (size_t c = 0; c < 4; ++c)
                sum[c] += weight * corner.value[c];
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
