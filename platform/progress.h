#pragma once

#include <cstdint>

namespace tessaro {

// Hears how far long work has come. It is handed down to whoever does a part of the work; a null pointer there means
// that nobody listens, and work on another thread gets none.
class Progress {
 public:
  virtual ~Progress() = default;
  // Counted from 0 in each part of the work, in what the part says: characters read, fields written, rows. Called
  // often (after every row of a table): must be cheap when nothing is to be repainted.
  virtual void SetPosition(int64_t position) = 0;
};

}  // namespace tessaro
