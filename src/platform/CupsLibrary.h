// The client library of the print server, loaded when something is first printed: it and what it brings would
// cost each start of the program some milliseconds. The first call costs that load, the others nothing.
#pragma once

#include <cups/cups.h>
#include <cups/pwg.h>

namespace quorvia::platform {

/// The functions of the library that are used, by their names there.
#define QUORVIA_CUPS_FUNCTIONS(EACH)                                                                         \
    EACH(cupsAddOption)                                                                                      \
    EACH(cupsCancelDestJob)                                                                                  \
    EACH(cupsCheckDestSupported)                                                                             \
    EACH(cupsCopyDest)                                                                                       \
    EACH(cupsCopyDestInfo)                                                                                   \
    EACH(cupsCreateDestJob)                                                                                  \
    EACH(cupsEncryption)                                                                                     \
    EACH(cupsFindDestDefault)                                                                                \
    EACH(cupsFindDestSupported)                                                                              \
    EACH(cupsFinishDestDocument)                                                                             \
    EACH(cupsFreeDestInfo)                                                                                   \
    EACH(cupsFreeDests)                                                                                      \
    EACH(cupsFreeOptions)                                                                                    \
    EACH(cupsGetDests2)                                                                                      \
    EACH(cupsGetNamedDest)                                                                                   \
    EACH(cupsGetOption)                                                                                      \
    EACH(cupsLastError)                                                                                      \
    EACH(cupsLastErrorString)                                                                                \
    EACH(cupsServer)                                                                                         \
    EACH(cupsSetPasswordCB2)                                                                                 \
    EACH(cupsStartDestDocument)                                                                              \
    EACH(cupsWriteRequestData)                                                                               \
    EACH(httpClose)                                                                                          \
    EACH(httpConnect2)                                                                                       \
    EACH(httpError)                                                                                          \
    EACH(httpGetStatus)                                                                                      \
    EACH(httpSetTimeout)                                                                                     \
    EACH(ippGetCount)                                                                                        \
    EACH(ippGetResolution)                                                                                   \
    EACH(ippGetString)                                                                                       \
    EACH(ippPort)                                                                                            \
    EACH(pwgMediaForLegacy)                                                                                  \
    EACH(pwgMediaForPPD)                                                                                     \
    EACH(pwgMediaForPWG)

struct CupsLibrary
{
#define QUORVIA_CUPS_MEMBER(name) decltype(&::name) name{};
    QUORVIA_CUPS_FUNCTIONS(QUORVIA_CUPS_MEMBER)
#undef QUORVIA_CUPS_MEMBER

    /// The library, made ready once; null when it is not there. It stays loaded to the end.
    static const CupsLibrary* get();
};

} // namespace quorvia::platform
