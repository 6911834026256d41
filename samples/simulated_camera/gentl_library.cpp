#include "info_value.h"
#include "library.h"

using simcam::Call;
using simcam::Library;
using simcam::Required;

GC_ERROR GC_CALLTYPE GCInitLib(void) {
  try {
    Library::Init();
    return GC_ERR_SUCCESS;
  } catch (...) {
    return simcam::RememberCurrentException("GCInitLib");
  }
}

GC_ERROR GC_CALLTYPE GCCloseLib(void) {
  try {
    Library::Close();
    return GC_ERR_SUCCESS;
  } catch (...) {
    return simcam::RememberCurrentException("GCCloseLib");
  }
}

GC_ERROR GC_CALLTYPE GCGetInfo(TL_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, void* pBuffer,
                               size_t* piSize) {
  return Call("GCGetInfo", [&](const Library&) {
    simcam::TransportLayerInfo(iInfoCmd).CopyTo(piType, pBuffer, piSize);
  });
}

// Works without an initialised library, to tell why that is so. Its own failures are not
// remembered: a second try with more room has to tell the same.
GC_ERROR GC_CALLTYPE GCGetLastError(GC_ERROR* piErrorCode, char* sErrText, size_t* piSize) {
  const simcam::ErrorRecord& last = simcam::LastErrorOfThisThread();
  try {
    Required(piErrorCode, "piErrorCode") = last.code;
    simcam::CopyText(last.text, sErrText, piSize);
    return GC_ERR_SUCCESS;
  } catch (const simcam::Failure& failure) {
    return failure.Code();
  } catch (...) {
    return GC_ERR_ERROR;
  }
}
