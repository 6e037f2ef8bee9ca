#include "store/content_stamp.h"

#define XXH_INLINE_ALL
#include <xxhash.h>

#include <string>

namespace tessaro {

struct ContentHash::State {
  XXH3_state_t hash;
  uint64_t size = 0;
};

ContentHash::ContentHash() : state_(std::make_unique<State>()) {
  XXH3_64bits_reset(&state_->hash);
}

ContentHash::~ContentHash() = default;

void ContentHash::Add(std::string_view bytes) {
  XXH3_64bits_update(&state_->hash, bytes.data(), bytes.size());
  state_->size += bytes.size();
}

ContentStamp ContentHash::Stamp() const {
  return {state_->size, XXH3_64bits_digest(&state_->hash)};
}

std::ptrdiff_t StampingReader::Read(char* buffer, size_t size) {
  const std::ptrdiff_t count = file_.Read(buffer, size);
  if (count > 0) hash_.Add({buffer, static_cast<size_t>(count)});
  return count;
}

bool StampingWriter::Write(std::string_view bytes) {
  hash_.Add(bytes);
  return file_.Write(bytes);
}

std::optional<ContentStamp> StampOf(Disk& disk, const std::filesystem::path& path) {
  const std::unique_ptr<ReadableFile> file = disk.Open(path);
  if (file == nullptr) return std::nullopt;
  StampingReader stamped(*file);
  std::string buffer(size_t{1} << 18U, '\0');
  std::ptrdiff_t count = 1;
  while (count > 0) count = stamped.Read(buffer.data(), buffer.size());
  if (count < 0) return std::nullopt;
  return stamped.Stamp();
}

}  // namespace tessaro
