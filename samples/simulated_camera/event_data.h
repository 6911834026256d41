// The bytes of an event: how they are made, and what EventGetDataInfo reads out of them.
//
//   EVENT_NEW_BUFFER                    buffer handle (8), user pointer (8)
//   EVENT_ERROR                         error code (int32), text
//   EVENT_FEATURE_INVALIDATE, _CHANGE   name of the feature, its value (texts, the latter empty
//                                       for an invalidated feature)
//
// Texts end with a NUL.
#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_EVENT_DATA_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_EVENT_DATA_H

#include <cstddef>
#include <memory>
#include <string_view>

#include "event_queue.h"

namespace simcam {

[[nodiscard]] Event NewBufferEvent(const std::shared_ptr<Object>& buffer, void* userPointer);
[[nodiscard]] Event ErrorEvent(GC_ERROR code, std::string_view text);
[[nodiscard]] Event FeatureEvent(std::string_view feature, std::string_view value = {});

// The largest size of an event's data in bytes.
[[nodiscard]] size_t LargestEvent(EVENT_TYPE type);

// Reads delivered data. Throws GC_ERR_INVALID_PARAMETER if they do not hold what is asked for,
// GC_ERR_NOT_AVAILABLE or GC_ERR_NOT_IMPLEMENTED for the command.
[[nodiscard]] InfoValue EventDataInfo(EVENT_TYPE type, std::string_view data,
                                      EVENT_DATA_INFO_CMD command);

}  // namespace simcam

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_EVENT_DATA_H
