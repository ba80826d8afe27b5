#include "MadeProfiles.h"

#include <lcms2.h>

#include <algorithm>

namespace quorvia::test {

namespace {

/// The bytes of `profile`, which is closed.
QByteArray bytesOf(cmsHPROFILE profile)
{
    cmsUInt32Number length = 0;
    cmsSaveProfileToMem(profile, nullptr, &length);
    QByteArray bytes(qsizetype(length), '\0');
    cmsSaveProfileToMem(profile, bytes.data(), &length);
    cmsCloseProfile(profile);
    return bytes;
}

/// Lightness by how much of the inks lies on the paper; no hue.
int lightnessOfInks(const cmsUInt16Number in[], cmsUInt16Number out[], void*)
{
    const int inks = std::max({int(in[0]), int(in[1]), int(in[2])}) / 2 + in[3] / 2;
    out[0] = cmsUInt16Number(65535 - inks);
    out[1] = 0x8080; // neither red nor green
    out[2] = 0x8080;
    return TRUE;
}

} // namespace

QByteArray rgbProfile()
{
    const cmsCIExyY white = {0.3457, 0.3585, 1};
    const cmsCIExyYTRIPLE primaries = {{0.73, 0.26, 1}, {0.12, 0.82, 1}, {0.04, 0.02, 1}};
    cmsToneCurve* curve = cmsBuildGamma(nullptr, 1.8);
    cmsToneCurve* const curves[] = {curve, curve, curve};
    const QByteArray bytes = bytesOf(cmsCreateRGBProfile(&white, &primaries, curves));
    cmsFreeToneCurve(curve);
    return bytes;
}

QByteArray grayProfile()
{
    cmsToneCurve* curve = cmsBuildGamma(nullptr, 1);
    const QByteArray bytes = bytesOf(cmsCreateGrayProfile(cmsD50_xyY(), curve));
    cmsFreeToneCurve(curve);
    return bytes;
}

QByteArray cmykProfile()
{
    constexpr int steps = 5; // of the grid, each way
    cmsHPROFILE profile = cmsCreateProfilePlaceholder(nullptr);
    cmsSetProfileVersion(profile, 2.4);
    cmsSetDeviceClass(profile, cmsSigOutputClass);
    cmsSetColorSpace(profile, cmsSigCmykData);
    cmsSetPCS(profile, cmsSigLabData);
    cmsPipeline* pipeline = cmsPipelineAlloc(nullptr, 4, 3);
    cmsStage* grid = cmsStageAllocCLut16bit(nullptr, steps, 4, 3, nullptr);
    cmsStageSampleCLut16bit(grid, lightnessOfInks, nullptr, 0);
    cmsPipelineInsertStage(pipeline, cmsAT_END, grid);
    cmsWriteTag(profile, cmsSigAToB0Tag, pipeline);
    cmsWriteTag(profile, cmsSigMediaWhitePointTag, cmsD50_XYZ());
    cmsPipelineFree(pipeline);
    return bytesOf(profile);
}

} // namespace quorvia::test
