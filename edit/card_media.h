#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "edit/editor_machine.h"
#include "hypertext/media.h"

class QImage;
class QString;
class QWidget;

namespace tessaro {

class CardFile;
struct ProgramSettings;

// How a file comes onto a card: as a tag in its text, or as a directive that shows it beside the card.
enum class MediaUse { Picture, Media, TextFile, PictureFile, VideoFile };

// Pictures, sounds, videos and texts on their way onto a card of the open file, as the tags that name them. What lies
// in none of its media folders is copied there where the user wants it so; no file is ever written over.
class CardMedia {
 public:
  // All must live longer.
  CardMedia(const CardFile& file, const ProgramSettings& settings, const EditorMachine& machine);

  // Lets the user choose a file. The tag is empty when none comes onto the card; the user knows why.
  std::string ChosenTag(MediaUse use, QWidget* asker);
  // The tag for that file, empty as above.
  std::string TagOf(MediaUse use, const QString& path, QWidget* asker) const;
  // The tag for a picture that is saved in the media folder under a name made of `card_id`, empty as above.
  std::string PastedTag(const QImage& picture, const std::string& card_id, QWidget* asker) const;
  // How a file that is dropped onto a card is used, by its ending; nothing: a card cannot show it.
  static std::optional<MediaUse> UseOf(const QString& path);
  // How a card names a file where it lies; empty when no card can.
  std::string NameOf(const QString& path) const;

 private:
  MediaFolders Folders() const;
  std::string NameFor(MediaUse use, const QString& path, QWidget* asker) const;
  std::string CopyToMedia(const std::filesystem::path& file, QWidget* asker) const;

  const CardFile& file_;
  const ProgramSettings& settings_;
  EditorMachine machine_;
  std::filesystem::path last_folder_;  // where a file was chosen last; empty: in the media folder
};

}  // namespace tessaro
