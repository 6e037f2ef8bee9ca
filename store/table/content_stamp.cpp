#include "store/table/content_stamp.h"

#define XXH_INLINE_ALL
#include <xxhash.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace tessaro {

struct ContentHash::State {
  std::vector<uint64_t> whole_pieces;
  XXH3_state_t piece;
  size_t piece_size = 0;
  uint64_t size = 0;
};

ContentHash::ContentHash() : state_(std::make_unique<State>()) {
  XXH3_64bits_reset(&state_->piece);
}

ContentHash::ContentHash(ContentHash&&) noexcept = default;
ContentHash& ContentHash::operator=(ContentHash&&) noexcept = default;
ContentHash::~ContentHash() = default;

void ContentHash::Add(std::string_view bytes) {
  state_->size += bytes.size();
  while (!bytes.empty()) {
    const std::string_view part = bytes.substr(0, kPiece - state_->piece_size);
    XXH3_64bits_update(&state_->piece, part.data(), part.size());
    state_->piece_size += part.size();
    bytes.remove_prefix(part.size());
    if (state_->piece_size < kPiece) continue;
    state_->whole_pieces.push_back(XXH3_64bits_digest(&state_->piece));
    XXH3_64bits_reset(&state_->piece);
    state_->piece_size = 0;
  }
}

void ContentHash::Append(ContentHash behind) {
  std::vector<uint64_t>& pieces = behind.state_->whole_pieces;
  pieces.insert(pieces.begin(), state_->whole_pieces.begin(), state_->whole_pieces.end());
  behind.state_->size += state_->size;
  *this = std::move(behind);
}

ContentStamp ContentHash::Stamp() const {
  std::vector<uint64_t> pieces = state_->whole_pieces;
  if (state_->piece_size > 0) pieces.push_back(XXH3_64bits_digest(&state_->piece));
  return {state_->size, XXH3_64bits(pieces.data(), pieces.size() * sizeof(uint64_t))};
}

bool StampingWriter::Write(std::string_view bytes) {
  hash_.Add(bytes);
  return file_.Write(bytes);
}

std::optional<ContentStamp> StampOf(Disk& disk, const std::filesystem::path& path) {
  const std::unique_ptr<ReadableFile> file = disk.Open(path);
  if (file == nullptr) return std::nullopt;
  ContentHash hash;
  std::string buffer(ContentHash::kPiece, '\0');
  std::ptrdiff_t count = 1;
  while (count > 0) {
    count = file->Read(buffer.data(), buffer.size());
    if (count > 0) hash.Add({buffer.data(), static_cast<size_t>(count)});
  }
  if (count < 0) return std::nullopt;
  return hash.Stamp();
}

}  // namespace tessaro
