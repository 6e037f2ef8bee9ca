#include "learn/start_method.h"

#include "settings/keys.h"

namespace tessaro {
namespace {

// As kStartMethod has them.
enum class FileMethod { Programs, Standard, RowOrder };

FileMethod MethodOf(const IniFile& card_file) {
  return static_cast<FileMethod>(keys::kStartMethod.Read(card_file));
}

}  // namespace

Method StartMethod(const IniFile& program, const IniFile& card_file) {
  const FileMethod own = MethodOf(card_file);
  const bool row_order = own == FileMethod::Programs ? keys::kRowOrder.Read(program) : own == FileMethod::RowOrder;
  return row_order ? Method::RowOrder : Method::Standard;
}

void KeepStartMethod(Method method, IniFile& program, IniFile& card_file) {
  if (method == Method::Leitner) return;
  const bool row_order = method == Method::RowOrder;
  if (MethodOf(card_file) == FileMethod::Programs) return keys::kRowOrder.Write(row_order, program);
  const FileMethod own = row_order ? FileMethod::RowOrder : FileMethod::Standard;
  keys::kStartMethod.Write(static_cast<int64_t>(own), card_file);
}

}  // namespace tessaro
