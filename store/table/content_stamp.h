#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>

#include "platform/disk.h"

namespace tessaro {

// Tells one content of a file from another.
struct ContentStamp {
  uint64_t size = 0;  // bytes
  uint64_t hash = 0;  // of all of them, see ContentHash
  bool operator==(const ContentStamp&) const = default;
};

// The stamp of all bytes added so far. The hash is XXH3 with 64 bits over the XXH3 hashes of all pieces of the content,
// each of kPiece bytes but the last, so that two threads can take the stamp of one content.
class ContentHash {
 public:
  static constexpr size_t kPiece = size_t{256} * 1024;

  // Of no bytes at first.
  ContentHash();
  ContentHash(ContentHash&&) noexcept;
  ContentHash& operator=(ContentHash&&) noexcept;
  ~ContentHash();
  // Adds bytes behind those so far; pieces may come in any sizes.
  void Add(std::string_view bytes);
  // Adds what was added to `behind`. The bytes before must be whole pieces.
  void Append(ContentHash behind);
  ContentStamp Stamp() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// Takes the stamp of a file while it is written.
class StampingWriter : public WritableFile {
 public:
  // Writes on to `file`, which must outlive it.
  explicit StampingWriter(WritableFile& file) : file_(file) {}
  bool Write(std::string_view bytes) override;
  bool Flush() override { return file_.Flush(); }
  bool Close() override { return file_.Close(); }
  // Of all that was written; also of what the file then refused.
  ContentStamp Stamp() const { return hash_.Stamp(); }

 private:
  WritableFile& file_;
  ContentHash hash_;
};

// The stamp of a file on the disk; nothing when it cannot be read.
std::optional<ContentStamp> StampOf(Disk& disk, const std::filesystem::path& path);

}  // namespace tessaro
