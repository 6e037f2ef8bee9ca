#pragma once

#include <future>

namespace tessaro {

// How std::async is to begin work that goes on beside that of its caller. Where there is no thread to spare, or the
// work is not worth one, it is done when its result is asked for.
inline std::launch OnOtherThread(bool worth_it = true) {
  return worth_it ? std::launch::async | std::launch::deferred : std::launch::deferred;
}

}  // namespace tessaro
