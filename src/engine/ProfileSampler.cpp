#include "engine/ProfileSampler.h"

#include <QtEndian>

#include <lcms2.h>
#include <lcms2_plugin.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <vector>

namespace quorvia::engine {

namespace {

// --- memory: a profile can ask for tables far larger than itself

constexpr qint64 mostBytes = qint64(96) << 20; // alive at a time, for one profile

struct Budget
{
    qint64 used = 0;
};

/// Stands before each block, so that its length is known when it goes.
union BlockHead {
    qint64 length;
    std::max_align_t alignment;
};

void* grow(cmsContext context, void* block, cmsUInt32Number length)
{
    auto* budget = static_cast<Budget*>(cmsGetContextUserData(context));
    auto* head = block ? static_cast<BlockHead*>(block) - 1 : nullptr;
    const qint64 before = head ? head->length : 0;
    if (budget && budget->used - before + length > mostBytes)
        return nullptr;
    auto* grown = static_cast<BlockHead*>(std::realloc(head, sizeof(BlockHead) + size_t(length)));
    if (!grown)
        return nullptr;
    if (budget)
        budget->used += length - before;
    grown->length = length;
    return grown + 1;
}

void* take(cmsContext context, cmsUInt32Number length)
{
    return length == 0 ? nullptr : grow(context, nullptr, length);
}

void giveBack(cmsContext context, void* block)
{
    if (!block)
        return;
    BlockHead* head = static_cast<BlockHead*>(block) - 1;
    if (auto* budget = static_cast<Budget*>(cmsGetContextUserData(context)))
        budget->used -= head->length;
    std::free(head);
}

cmsPluginMemHandler memoryPlugin()
{
    cmsPluginMemHandler plugin = {};
    plugin.base.Magic = cmsPluginMagicNumber;
    plugin.base.ExpectedVersion = 2060;
    plugin.base.Type = cmsPluginMemHandlerSig;
    plugin.MallocPtr = take;
    plugin.FreePtr = giveBack;
    plugin.ReallocPtr = grow;
    return plugin;
}

// --- time: lcms2 takes minutes for a float pipeline of some thousand elements, and a few bytes make one

/// `profile` without the tags of float pipelines (D2B0 to B2D3), which every profile may lack: their names
/// are blotted out. All other kinds are bounded by the profile's length. Format: ICC.1:2010, 7.3.
QByteArray withoutFloatTags(QByteArray profile)
{
    constexpr qsizetype tableStart = 132;
    constexpr qsizetype entryBytes = 12;
    if (profile.size() < tableStart)
        return profile;
    const qsizetype told = qFromBigEndian<quint32>(profile.constData() + tableStart - 4);
    const qsizetype count = std::min(told, (profile.size() - tableStart) / entryBytes);
    for (qsizetype i = 0; i < count; ++i) {
        const qsizetype at = tableStart + i * entryBytes;
        const QByteArrayView name = QByteArrayView(profile).sliced(at, 4);
        if (name.startsWith("D2B") || name.startsWith("B2D"))
            profile.replace(at, 4, "none");
    }
    return profile;
}

// --- formats

constexpr cmsUInt32Number deviceFormat(ColorModel model)
{
    switch (model) {
    case ColorModel::Gray:
        return TYPE_GRAY_FLT;
    case ColorModel::Rgb:
        return TYPE_RGB_FLT;
    case ColorModel::Cmyk:
        break;
    }
    return TYPE_CMYK_FLT;
}

constexpr size_t channelsOf(ColorModel model)
{
    return model == ColorModel::Gray ? 1 : model == ColorModel::Rgb ? 3 : 4;
}

float bounded(float light)
{
    return std::isfinite(light) ? std::clamp(light, -1.0F, 4.0F) : 0.0F;
}

} // namespace

/// lcms2's objects, freed in the order that it asks for.
class ProfileSampler::Lcms
{
  public:
    Lcms()
    {
        cmsPluginMemHandler plugin = memoryPlugin();
        context = cmsCreateContext(&plugin, &m_budget);
        if (context)
            cmsSetLogErrorHandlerTHR(context, [](cmsContext, cmsUInt32Number, const char*) {});
    }
    ~Lcms()
    {
        if (transform)
            cmsDeleteTransform(transform);
        if (context)
            cmsDeleteContext(context);
    }
    Lcms(const Lcms&) = delete;
    Lcms& operator=(const Lcms&) = delete;

    bool open(const QByteArray& profile, ColorModel model)
    {
        if (!context)
            return false;
        const QByteArray bytes = withoutFloatTags(profile);
        const cmsHPROFILE device =
            cmsOpenProfileFromMemTHR(context, bytes.constData(), static_cast<cmsUInt32Number>(bytes.size()));
        const cmsHPROFILE light = linearSrgb();
        if (device && light)
            transform = cmsCreateTransformTHR(
                context, device, deviceFormat(model), light, TYPE_RGB_FLT, INTENT_PERCEPTUAL,
                cmsFLAGS_BLACKPOINTCOMPENSATION | cmsFLAGS_NOCACHE | cmsFLAGS_NOOPTIMIZE);
        for (const cmsHPROFILE opened : {device, light}) {
            if (opened)
                cmsCloseProfile(opened);
        }
        return transform != nullptr;
    }

    cmsContext context = nullptr;
    cmsHTRANSFORM transform = nullptr;

  private:
    cmsHPROFILE linearSrgb() const
    {
        const cmsCIExyY white = {0.3127, 0.3290, 1};
        const cmsCIExyYTRIPLE primaries = {{0.64, 0.33, 1}, {0.30, 0.60, 1}, {0.15, 0.06, 1}};
        cmsToneCurve* straight = cmsBuildGamma(context, 1);
        if (!straight)
            return nullptr;
        const std::array<cmsToneCurve*, 3> curves = {straight, straight, straight};
        const cmsHPROFILE profile = cmsCreateRGBProfileTHR(context, &white, &primaries, curves.data());
        cmsFreeToneCurve(straight);
        return profile;
    }

    Budget m_budget;
};

ProfileSampler::ProfileSampler(std::unique_ptr<Lcms> lcms, ColorModel model)
    : m_lcms(std::move(lcms)), m_model(model),
      m_deadline(std::chrono::steady_clock::now() + std::chrono::seconds(2))
{
}

ProfileSampler::~ProfileSampler() = default;

std::unique_ptr<ProfileSampler> ProfileSampler::open(const QByteArray& profile, ColorModel model)
{
    auto lcms = std::make_unique<Lcms>();
    if (!lcms->open(profile, model))
        return nullptr;
    return std::unique_ptr<ProfileSampler>(new ProfileSampler(std::move(lcms), model));
}

bool ProfileSampler::sample(const float* device, LinearColor* out, size_t count)
{
    constexpr size_t slice = 64;
    const size_t channels = channelsOf(m_model);
    const float scale = m_model == ColorModel::Cmyk ? 100 : 1; // lcms2 counts ink in percent
    std::array<float, slice * 4> in;
    for (size_t from = 0; from < count; from += slice) {
        if (std::chrono::steady_clock::now() > m_deadline)
            return false;
        const size_t now = std::min(slice, count - from);
        std::transform(device + from * channels, device + (from + now) * channels, in.begin(),
                       [scale](float value) { return value * scale; });
        static_assert(sizeof(LinearColor) == 3 * sizeof(float));
        cmsDoTransform(m_lcms->transform, in.data(), out + from, static_cast<cmsUInt32Number>(now));
    }
    for (size_t i = 0; i < count; ++i)
        out[i] = {bounded(out[i].red), bounded(out[i].green), bounded(out[i].blue)};
    return true;
}

} // namespace quorvia::engine
