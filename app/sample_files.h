#pragma once

#include <filesystem>
#include <optional>
#include <vector>

namespace tessaro {

// The folder with the sample card files of a program that lies in `program_folder`: installed, or in the source tree
// around it. Empty when there is none.
std::filesystem::path FindSampleFolder(const std::filesystem::path& program_folder);

// The card file of the help of such a program, looked for in the same places. Empty when there is none.
std::filesystem::path FindHelp(const std::filesystem::path& program_folder);

// The sample card files of the folder, sorted by name.
std::vector<std::filesystem::path> SampleFiles(const std::filesystem::path& folder);

// The user's own copy of a sample, in `documents`. It is made if there is none, with the media files beside it; what is
// there already is never written over, for the user has learned with it. Nothing when the copy could not be made.
std::optional<std::filesystem::path> OwnCopyOfSample(const std::filesystem::path& sample,
                                                     const std::filesystem::path& documents);

}  // namespace tessaro
