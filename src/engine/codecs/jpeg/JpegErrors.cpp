#include "engine/codecs/jpeg/JpegErrors.h"

#include <jerror.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>

namespace quorvia::engine {

namespace {

JpegErrors& errorsOf(j_common_ptr info)
{
    return *reinterpret_cast<JpegErrors*>(info->err);
}

[[noreturn]] void leave(j_common_ptr info)
{
    JpegErrors& errors = errorsOf(info);
    static_assert(sizeof errors.landing.text >= JMSG_LENGTH_MAX);
    info->err->format_message(info, errors.landing.text);
    std::longjmp(errors.landing.place, 1);
}

/// True once a scan has begun: what is skipped from there to the end mark should have been pixels.
bool isAmongScans(j_common_ptr info)
{
    return info->is_decompressor && reinterpret_cast<j_decompress_ptr>(info)->input_scan_number > 0;
}

bool losesPixels(j_common_ptr info)
{
    switch (info->err->msg_code) {
    case JWRN_EXTRANEOUS_DATA:
        return isAmongScans(info);
    case JWRN_ARITH_BAD_CODE:
    case JWRN_BOGUS_PROGRESSION:
    case JWRN_HIT_MARKER:
    case JWRN_HUFF_BAD_CODE:
    case JWRN_JPEG_EOF:
    case JWRN_MUST_RESYNC:
    case JWRN_NOT_SEQUENTIAL:
        return true;
    default:
        return false;
    }
}

void takeMessage(j_common_ptr info, int level)
{
    if (level >= 0)
        return; // a trace
    JpegErrors& errors = errorsOf(info);
    info->err->num_warnings++;
    if (losesPixels(info))
        errors.damage++;
    if (info->err->msg_code == JWRN_HIT_MARKER)
        errors.dataEnded = true;
    if (info->err->msg_code == JWRN_JPEG_EOF)
        errors.fileEnded = true;
}

void printNothing(j_common_ptr) {}

ErrorKind kindOf(int message)
{
    static constexpr int tooLarge[] = {JERR_IMAGE_TOO_BIG, JERR_NO_BACKING_STORE, JERR_OUT_OF_MEMORY,
                                       JERR_WIDTH_OVERFLOW};
    static constexpr int unsupported[] = {
        JERR_ARITH_NOTIMPL,   JERR_BAD_J_COLORSPACE,   JERR_BAD_PRECISION,        JERR_CCIR601_NOTIMPL,
        JERR_COMPONENT_COUNT, JERR_CONVERSION_NOTIMPL, JERR_FRACT_SAMPLE_NOTIMPL, JERR_NOTIMPL,
        JERR_NOT_COMPILED,    JERR_SOF_UNSUPPORTED};
    if (std::find(std::begin(tooLarge), std::end(tooLarge), message) != std::end(tooLarge))
        return ErrorKind::TooLarge;
    if (std::find(std::begin(unsupported), std::end(unsupported), message) != std::end(unsupported))
        return ErrorKind::Unsupported;
    return ErrorKind::Damaged;
}

} // namespace

jpeg_error_mgr* JpegErrors::attach()
{
    jpeg_std_error(&manager);
    manager.error_exit = leave;
    manager.emit_message = takeMessage;
    manager.output_message = printNothing;
    return &manager;
}

Error JpegErrors::error() const
{
    if (cancelled)
        return Error{ErrorKind::Cancelled, QStringLiteral("dropped by the asker")};
    return Error{kindOf(manager.msg_code), QString::fromLatin1(landing.text)};
}

void leaveCancelled(j_common_ptr info)
{
    JpegErrors& errors = errorsOf(info);
    errors.cancelled = true;
    std::longjmp(errors.landing.place, 1);
}

} // namespace quorvia::engine
