#pragma once

#include <string>
#include <string_view>

namespace tessaro {

// Where the picture's name stands on the front of a template card: behind the first img src=" or img SRC=".
// The front with another name there; unchanged where the name is not quoted.
std::string WithPicture(std::string_view front, std::string_view file);
// Whether the front of a template card shows a picture at all.
bool IsPictureTemplate(std::string_view front);

}  // namespace tessaro
