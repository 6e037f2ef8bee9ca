#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "platform/disk.h"

namespace tessaro {

// Tells one content of a file from another.
struct ContentStamp {
  uint64_t size = 0;  // bytes
  uint64_t hash = 0;  // XXH3 with 64 bits over all of them
  bool operator==(const ContentStamp&) const = default;
};

// The stamp of all bytes added so far.
class ContentHash {
 public:
  ContentHash();
  ~ContentHash();
  void Add(std::string_view bytes);
  ContentStamp Stamp() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// Takes the stamp of a file while it is read, or written.
class StampingReader : public ReadableFile {
 public:
  explicit StampingReader(ReadableFile& file) : file_(file) {}
  uint64_t Size() const override { return file_.Size(); }
  std::ptrdiff_t Read(char* buffer, size_t size) override;
  ContentStamp Stamp() const { return hash_.Stamp(); }

 private:
  ReadableFile& file_;
  ContentHash hash_;
};

class StampingWriter : public WritableFile {
 public:
  explicit StampingWriter(WritableFile& file) : file_(file) {}
  bool Write(std::string_view bytes) override;
  bool Flush() override { return file_.Flush(); }
  bool Close() override { return file_.Close(); }
  ContentStamp Stamp() const { return hash_.Stamp(); }

 private:
  WritableFile& file_;
  ContentHash hash_;
};

// The stamp of a file on the disk; nothing when it cannot be read.
std::optional<ContentStamp> StampOf(Disk& disk, const std::filesystem::path& path);

}  // namespace tessaro
