#include "ProfileFixtures.h"

#include <QtEndian>

#include <lcms2.h>

#include <algorithm>
#include <cmath>

namespace quorvia::test {

namespace {

using Vector = std::array<double, 3>;
using Matrix = std::array<Vector, 3>;

Vector times(const Matrix& m, const Vector& v)
{
    Vector result = {};
    for (size_t row = 0; row < 3; ++row) {
        for (size_t i = 0; i < 3; ++i)
            result[row] += m[row][i] * v[i];
    }
    return result;
}

Matrix times(const Matrix& a, const Matrix& b)
{
    Matrix result = {};
    for (size_t row = 0; row < 3; ++row) {
        for (size_t column = 0; column < 3; ++column) {
            for (size_t i = 0; i < 3; ++i)
                result[row][column] += a[row][i] * b[i][column];
        }
    }
    return result;
}

Matrix inverse(const Matrix& m)
{
    const auto minor = [&m](size_t r, size_t c) {
        return m[(r + 1) % 3][(c + 1) % 3] * m[(r + 2) % 3][(c + 2) % 3] -
               m[(r + 1) % 3][(c + 2) % 3] * m[(r + 2) % 3][(c + 1) % 3];
    };
    const double determinant = m[0][0] * minor(0, 0) + m[0][1] * minor(0, 1) + m[0][2] * minor(0, 2);
    Matrix result;
    for (size_t row = 0; row < 3; ++row) {
        for (size_t column = 0; column < 3; ++column)
            result[row][column] = minor(column, row) / determinant;
    }
    return result;
}

Vector xyzOf(const RgbSpace::Xy& xy)
{
    return {xy[0] / xy[1], 1, (1 - xy[0] - xy[1]) / xy[1]};
}

/// Light of the space's primaries to XYZ, relative to its own white.
Matrix toXyz(const RgbSpace& space)
{
    const std::array<Vector, 3> primaries = {xyzOf(space.red), xyzOf(space.green), xyzOf(space.blue)};
    Matrix columns;
    for (size_t row = 0; row < 3; ++row) {
        for (size_t i = 0; i < 3; ++i)
            columns[row][i] = primaries[i][row];
    }
    const Vector share = times(inverse(columns), xyzOf(space.white));
    for (Vector& row : columns) {
        for (size_t i = 0; i < 3; ++i)
            row[i] *= share[i];
    }
    return columns;
}

/// Bradford's adaptation of XYZ from one white to another.
Matrix adaptation(const RgbSpace::Xy& from, const RgbSpace::Xy& to)
{
    const Matrix cones = {{{0.8951, 0.2664, -0.1614}, {-0.7502, 1.7135, 0.0367}, {0.0389, -0.0685, 1.0296}}};
    const Vector before = times(cones, xyzOf(from));
    const Vector after = times(cones, xyzOf(to));
    Matrix gains = {};
    for (size_t i = 0; i < 3; ++i)
        gains[i][i] = after[i] / before[i];
    return times(inverse(cones), times(gains, cones));
}

constexpr RgbSpace srgb = {{0.64, 0.33}, {0.30, 0.60}, {0.15, 0.06}, whiteD65, 0}; // its curve is no gamma

Matrix toD50(const RgbSpace& space)
{
    return times(adaptation(space.white, whiteD50), toXyz(space));
}

double srgbCurve(double light)
{
    return light <= 0.0031308 ? 12.92 * light : 1.055 * std::pow(light, 1 / 2.4) - 0.055;
}

double srgbLight(double value)
{
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

int byteOf(double light)
{
    return static_cast<int>(std::lround(255 * srgbCurve(std::clamp(light, 0.0, 1.0))));
}

Vector powers(const Vector& values, double gamma)
{
    return {std::pow(values[0], gamma), std::pow(values[1], gamma), std::pow(values[2], gamma)};
}

QByteArray bytesOf(cmsHPROFILE profile)
{
    cmsUInt32Number length = 0;
    cmsSaveProfileToMem(profile, nullptr, &length);
    QByteArray bytes(static_cast<qsizetype>(length), '\0');
    cmsSaveProfileToMem(profile, bytes.data(), &length);
    cmsCloseProfile(profile);
    return bytes.replace(24, 12, "\x07\xd0\0\1\0\1\0\0\0\0\0\0",
                         12); // a fixed date: the same bytes each time
}

cmsHPROFILE openRgbProfile(const RgbSpace& space)
{
    const auto full = [](const RgbSpace::Xy& xy) { return cmsCIExyY{xy[0], xy[1], 1}; };
    const cmsCIExyY white = full(space.white);
    const cmsCIExyYTRIPLE primaries = {full(space.red), full(space.green), full(space.blue)};
    cmsToneCurve* curve = cmsBuildGamma(nullptr, space.gamma);
    const std::array<cmsToneCurve*, 3> curves = {curve, curve, curve};
    const cmsHPROFILE profile = cmsCreateRGBProfile(&white, &primaries, curves.data());
    cmsFreeToneCurve(curve);
    return profile;
}

/// Lab of D50 in lcms2's 16 bits of version 2.
void storeLab(const Vector& xyz, cmsUInt16Number* out)
{
    const cmsCIEXYZ color = {xyz[0], xyz[1], xyz[2]};
    cmsCIELab lab;
    cmsXYZ2Lab(cmsD50_XYZ(), &lab, &color);
    cmsFloat2LabEncodedV2(out, &lab);
}

/// A profile of version 2 with one table from `inputs` numbers to Lab.
QByteArray labTableProfile(cmsColorSpaceSignature space, cmsUInt32Number inputs, cmsUInt32Number nodes,
                           cmsProfileClassSignature kind, cmsSAMPLER16 sampler, const void* cargo)
{
    const cmsHPROFILE profile = cmsCreateProfilePlaceholder(nullptr);
    cmsSetProfileVersion(profile, 2.1);
    cmsSetDeviceClass(profile, kind);
    cmsSetColorSpace(profile, space);
    cmsSetPCS(profile, cmsSigLabData);
    cmsPipeline* pipeline = cmsPipelineAlloc(nullptr, inputs, 3);
    cmsStage* table = cmsStageAllocCLut16bit(nullptr, nodes, inputs, 3, nullptr);
    cmsStageSampleCLut16bit(table, sampler, const_cast<void*>(cargo), 0);
    cmsPipelineInsertStage(pipeline, cmsAT_BEGIN, cmsStageAllocToneCurves(nullptr, inputs, nullptr));
    cmsPipelineInsertStage(pipeline, cmsAT_END, table);
    cmsPipelineInsertStage(pipeline, cmsAT_END, cmsStageAllocToneCurves(nullptr, 3, nullptr));
    cmsWriteTag(profile, cmsSigAToB0Tag, pipeline);
    cmsWriteTag(profile, cmsSigMediaWhitePointTag, cmsD50_XYZ());
    cmsPipelineFree(pipeline);
    return bytesOf(profile);
}

Vector shares(const cmsUInt16Number* in)
{
    return {in[0] / 65535.0, in[1] / 65535.0, in[2] / 65535.0};
}

/// Through cmykProfile(): the light of sRGB's primaries that four shares of ink leave.
Vector inkLight(const Vector& ink, double black)
{
    const auto left = [&](size_t own, size_t second, size_t third) {
        const double value = (1 - 0.75 * ink[own]) * (1 - 0.1 * ink[second]) * (1 - 0.1 * ink[third]);
        return srgbLight(value * (1 - black));
    };
    return {left(0, 1, 2), left(1, 0, 2), left(2, 0, 1)};
}

} // namespace

QByteArray rgbProfile(const RgbSpace& space)
{
    return bytesOf(openRgbProfile(space));
}

QByteArray floatProfile(const RgbSpace& space)
{
    const cmsHPROFILE profile = openRgbProfile(space);
    const std::array<cmsFloat64Number, 9> nothing = {};
    cmsPipeline* pipeline = cmsPipelineAlloc(nullptr, 3, 3);
    cmsPipelineInsertStage(pipeline, cmsAT_END, cmsStageAllocMatrix(nullptr, 3, 3, nothing.data(), nullptr));
    cmsWriteTag(profile, cmsSigDToB0Tag, pipeline);
    cmsPipelineFree(pipeline);
    return bytesOf(profile);
}

QRgb inSrgb(QRgb color, const RgbSpace& space)
{
    const Vector values = {qRed(color) / 255.0, qGreen(color) / 255.0, qBlue(color) / 255.0};
    const Vector light = times(inverse(toD50(srgb)), times(toD50(space), powers(values, space.gamma)));
    return qRgba(byteOf(light[0]), byteOf(light[1]), byteOf(light[2]), qAlpha(color));
}

QByteArray srgbProfile()
{
    return bytesOf(cmsCreate_sRGBProfile());
}

QByteArray grayProfile(double gamma)
{
    cmsToneCurve* curve = cmsBuildGamma(nullptr, gamma);
    const cmsHPROFILE profile = cmsCreateGrayProfile(cmsD50_xyY(), curve);
    cmsFreeToneCurve(curve);
    return bytesOf(profile);
}

int grayInSrgb(int value, double gamma)
{
    return byteOf(std::pow(value / 255.0, gamma));
}

QByteArray tintedGrayProfile()
{
    const auto sampler = [](const cmsUInt16Number in[], cmsUInt16Number out[], void*) -> cmsInt32Number {
        const double share = in[0] / 65535.0;
        const cmsCIELab sepia = {100 * share, 40 * share * (1 - share), 80 * share * (1 - share)};
        cmsFloat2LabEncodedV2(out, &sepia);
        return 1;
    };
    return labTableProfile(cmsSigGrayData, 1, 33, cmsSigOutputClass, sampler, nullptr);
}

QByteArray tableProfile(const RgbSpace& space)
{
    const auto sampler = [](const cmsUInt16Number in[], cmsUInt16Number out[],
                            void* cargo) -> cmsInt32Number {
        const auto& from = *static_cast<const RgbSpace*>(cargo);
        storeLab(times(toD50(from), powers(shares(in), from.gamma)), out);
        return 1;
    };
    return labTableProfile(cmsSigRgbData, 3, 17, cmsSigInputClass, sampler, &space);
}

QByteArray cmykProfile()
{
    const auto sampler = [](const cmsUInt16Number in[], cmsUInt16Number out[], void*) -> cmsInt32Number {
        storeLab(times(toD50(srgb), inkLight(shares(in), in[3] / 65535.0)), out);
        return 1;
    };
    return labTableProfile(cmsSigCmykData, 4, 16, cmsSigOutputClass, sampler, nullptr);
}

QRgb inkInSrgb(int cyan, int magenta, int yellow, int black)
{
    const Vector light = inkLight({cyan / 255.0, magenta / 255.0, yellow / 255.0}, black / 255.0);
    return qRgb(byteOf(light[0]), byteOf(light[1]), byteOf(light[2]));
}

QByteArray linkProfile()
{
    return bytesOf(cmsCreateInkLimitingDeviceLink(cmsSigCmykData, 300));
}

QByteArray labProfile()
{
    return bytesOf(cmsCreateLab4Profile(nullptr));
}

QByteArray withTagsAt(QByteArray profile, quint32 offset, quint32 length)
{
    constexpr qsizetype tableStart = 132; // behind the header and the number of tags
    const auto tags = qFromBigEndian<quint32>(profile.constData() + tableStart - 4);
    for (quint32 i = 0; i < tags; ++i) {
        char* const entry = profile.data() + tableStart + qsizetype(i) * 12;
        qToBigEndian(offset, entry + 4);
        qToBigEndian(length, entry + 8);
    }
    return profile;
}

int distance(QRgb one, QRgb other)
{
    return std::max({std::abs(qRed(one) - qRed(other)), std::abs(qGreen(one) - qGreen(other)),
                     std::abs(qBlue(one) - qBlue(other))});
}

} // namespace quorvia::test
