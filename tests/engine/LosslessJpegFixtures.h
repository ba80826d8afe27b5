// Lossless JPEGs for the tests: made and read by DCMTK's tools inside DICOM files, or put together bit by bit
// for the variants that those do not write.
#pragma once

#include "CodecFixtures.h"

#include <vector>

namespace quorvia::test {

/// Samples of a picture, a plane a component, rows from the top.
struct SamplePlanes
{
    QSize size;
    int precision = 8; ///< bits a sample
    std::vector<std::vector<int>> planes;
};

/// Planes made of samplePicture(size): `components` of `precision` bits, the lower bits filled with noise.
SamplePlanes samplePlanes(QSize size, int components, int precision);
/// What the planes show, 16 bits brought to 8 by v * 255 / maximum, rounded: grey for one or two, RGB for
/// three; the file's `shift` lowest bits are gone.
Rgba shownPlanes(const SamplePlanes& planes, int shift = 0);

/// The lossless JPEG that dcmcjpeg makes of one or three planes.
QByteArray dcmtkJpeg(const SamplePlanes& planes, int predictor, int shift = 0);
/// The samples as dcmdjpeg reads them from `file`, which holds `facts.planes.size()` components of the size
/// and precision of `facts`.
SamplePlanes readByDcmtk(const QByteArray& file, const SamplePlanes& facts);

/// A lossless JPEG put together from ITU-T T.81, bit by bit.
struct LosslessJpegMaker
{
    SamplePlanes picture;
    int predictor = 1;
    int shift = 0;           ///< point transform
    int restartRows = 0;     ///< rows between restart markers
    bool interleaved = true; ///< one scan for all components, else one each
    bool longCodes = false;  ///< codes of 1 to 16 bits instead of 5 bits each
    bool acTable = false;    ///< with a table of class AC that says nonsense
    QByteArray marks;        ///< segments behind the start of the image
    int process = 0xc3;      ///< second byte of the frame header's marker
    int sampling = 0x11;     ///< of the first component

    QByteArray bytes() const;
    /// A segment with its length, as for `marks`.
    static QByteArray segment(int code, const QByteArray& body);
};

/// An Adobe segment with `transform`, and a JFIF one.
QByteArray adobeMark(int transform);
QByteArray jfifMark();

} // namespace quorvia::test
