#pragma once

#include <cstdint>

namespace tessaro {

// The bar of the progress dialog.
class ProgressBar {
 public:
  virtual ~ProgressBar() = default;
  // Called often (after every row of a table): must be cheap when nothing is to be repainted.
  virtual void SetPosition(int64_t position) = 0;
};

// How far long work has come. One for the whole thread, since one long work runs at a time: tables count the characters
// they read and the fields they write; the caller resets the counter and knows the range of the bar. Work that is given
// to another thread shows nothing.
struct ProgressState {
  int64_t counter = 0;
  // While set, reading a table moves the bar. Writing moves it in any case.
  bool display = false;
  ProgressBar* bar = nullptr;

  void ShowPosition(int64_t position) const {
    if (bar != nullptr) bar->SetPosition(position);
  }
};

inline ProgressState& Progress() {
  static thread_local ProgressState state;
  return state;
}

}  // namespace tessaro
