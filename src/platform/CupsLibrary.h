// The client library of the print server, loaded when something is first printed: it and what it brings would
// cost each start of the program some milliseconds. The first call costs that load, the others nothing.
#pragma once

#include <cups/cups.h>
#include <cups/pwg.h>

namespace quorvia::platform {

/// The functions of the library that are used, by their names there.
struct CupsLibrary
{
    decltype(&::cupsAddOption) cupsAddOption = nullptr;
    decltype(&::cupsCancelDestJob) cupsCancelDestJob = nullptr;
    decltype(&::cupsCheckDestSupported) cupsCheckDestSupported = nullptr;
    decltype(&::cupsCopyDest) cupsCopyDest = nullptr;
    decltype(&::cupsCopyDestInfo) cupsCopyDestInfo = nullptr;
    decltype(&::cupsCreateDestJob) cupsCreateDestJob = nullptr;
    decltype(&::cupsEncryption) cupsEncryption = nullptr;
    decltype(&::cupsFindDestDefault) cupsFindDestDefault = nullptr;
    decltype(&::cupsFindDestSupported) cupsFindDestSupported = nullptr;
    decltype(&::cupsFinishDestDocument) cupsFinishDestDocument = nullptr;
    decltype(&::cupsFreeDestInfo) cupsFreeDestInfo = nullptr;
    decltype(&::cupsFreeDests) cupsFreeDests = nullptr;
    decltype(&::cupsFreeOptions) cupsFreeOptions = nullptr;
    decltype(&::cupsGetDests2) cupsGetDests2 = nullptr;
    decltype(&::cupsGetNamedDest) cupsGetNamedDest = nullptr;
    decltype(&::cupsGetOption) cupsGetOption = nullptr;
    decltype(&::cupsLastError) cupsLastError = nullptr;
    decltype(&::cupsLastErrorString) cupsLastErrorString = nullptr;
    decltype(&::cupsServer) cupsServer = nullptr;
    decltype(&::cupsSetPasswordCB2) cupsSetPasswordCB2 = nullptr;
    decltype(&::cupsStartDestDocument) cupsStartDestDocument = nullptr;
    decltype(&::cupsWriteRequestData) cupsWriteRequestData = nullptr;
    decltype(&::httpClose) httpClose = nullptr;
    decltype(&::httpConnect2) httpConnect2 = nullptr;
    decltype(&::httpError) httpError = nullptr;
    decltype(&::httpGetStatus) httpGetStatus = nullptr;
    decltype(&::httpSetTimeout) httpSetTimeout = nullptr;
    decltype(&::ippGetCount) ippGetCount = nullptr;
    decltype(&::ippGetResolution) ippGetResolution = nullptr;
    decltype(&::ippGetString) ippGetString = nullptr;
    decltype(&::ippPort) ippPort = nullptr;
    decltype(&::pwgMediaForLegacy) pwgMediaForLegacy = nullptr;
    decltype(&::pwgMediaForPPD) pwgMediaForPPD = nullptr;
    decltype(&::pwgMediaForPWG) pwgMediaForPWG = nullptr;

    /// The library, made ready once; null when it is not there. It stays loaded to the end.
    static const CupsLibrary* get();
};

} // namespace quorvia::platform
