#include "edit/card_media.h"

#include <QBuffer>
#include <QImage>
#include <array>

#include "edit/ed_texts.h"
#include "edit/markup_tools.h"
#include "edit/media_names.h"
#include "settings/keys.h"
#include "settings/program_settings.h"
#include "settings/side_settings.h"
#include "store/file/card_file.h"
#include "widgets/messages.h"
#include "widgets/text.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

QString FilterOf(MediaUse use) {
  switch (use) {
    case MediaUse::Picture:
      return PictureFilter();
    case MediaUse::Media:
      return u"Video und Ton (*.avi *.mpg *.mpeg *.wav *.mid *.mp3 *.ogg *.AVI *.MPG *.MPEG *.WAV *.MID *.MP3 *.OGG)"_s;
    case MediaUse::TextFile:
      return u"Windows Texte (*.txt *.rtf *.TXT *.RTF)"_s;
    case MediaUse::PictureFile:
      return u"Bilder (*.bmp *.jpg *.BMP *.JPG)"_s;
    case MediaUse::VideoFile:
      return u"Video (*.avi *.mpg *.AVI *.MPG)"_s;
  }
  return {};
}

Attachment AttachmentOf(MediaUse use) {
  if (use == MediaUse::TextFile) return Attachment::Text;
  return use == MediaUse::PictureFile ? Attachment::Picture : Attachment::Video;
}

bool Fits(MediaUse use, const std::optional<std::string>& name) {
  if (!name) return false;
  if (use == MediaUse::Picture || use == MediaUse::Media) return FitsInTag(*name);
  return FitsInAttachment(AttachmentOf(use), *name);
}

}  // namespace

CardMedia::CardMedia(const CardFile& file, const ProgramSettings& settings, const EditorMachine& machine)
    : file_(file), settings_(settings), machine_(machine) {}

MediaFolders CardMedia::Folders() const {
  return FoldersOf(file_.paths().cards, keys::kMediaFolder.Read(settings_.ini), ReadCodePages(file_.settings()));
}

std::string CardMedia::ChosenTag(MediaUse use, QWidget* asker) {
  const std::filesystem::path& folder = last_folder_.empty() ? Folders().alternative : last_folder_;
  const QString path =
      machine_.messages.ChooseFileToOpen(asker, u"Datei für die Karte wählen"_s, FromPath(folder), FilterOf(use));
  if (path.isEmpty()) return {};
  last_folder_ = ToPath(path).parent_path();
  return TagOf(use, path, asker);
}

std::string CardMedia::TagOf(MediaUse use, const QString& path, QWidget* asker) const {
  const std::string name = NameFor(use, path, asker);
  if (name.empty()) return {};
  if (use == MediaUse::Picture) return PictureTag(name);
  if (use == MediaUse::Media) return EmbedTag(name);
  return AttachmentTag(AttachmentOf(use), name);
}

std::optional<MediaUse> CardMedia::UseOf(const QString& path) {
  struct Ending {
    const char16_t* text;
    MediaUse use;
  };
  static constexpr std::array kEndings = {
      Ending{u".bmp", MediaUse::Picture},  Ending{u".jpg", MediaUse::Picture}, Ending{u".jpeg", MediaUse::Picture},
      Ending{u".png", MediaUse::Picture},  Ending{u".gif", MediaUse::Picture}, Ending{u".avi", MediaUse::Media},
      Ending{u".mpg", MediaUse::Media},    Ending{u".mpeg", MediaUse::Media},  Ending{u".wav", MediaUse::Media},
      Ending{u".mid", MediaUse::Media},    Ending{u".mp3", MediaUse::Media},   Ending{u".ogg", MediaUse::Media},
      Ending{u".txt", MediaUse::TextFile}, Ending{u".rtf", MediaUse::TextFile}};
  for (const Ending& ending : kEndings) {
    if (path.endsWith(QString::fromUtf16(ending.text), Qt::CaseInsensitive)) return ending.use;
  }
  return std::nullopt;
}

std::string CardMedia::NameOf(const QString& path) const {
  const std::filesystem::path file = ToPath(path);
  return RelativeMediaName(Folders(), file).value_or(FullMediaName(file).value_or(std::string()));
}

std::string CardMedia::CopyToMedia(const std::filesystem::path& file, QWidget* asker) const {
  const std::filesystem::path folder = Folders().alternative;
  const std::string name = FreeName(machine_.disk, folder, PlainNameOf(file));
  if (!CopyFile(machine_.disk, file, folder / name)) {
    machine_.messages.Error(asker, u"\nDie Datei konnte nicht in den Medienordner\nkopiert werden."_s);
    return {};
  }
  return RelativeMediaName(Folders(), folder / name).value_or(name);
}

std::string CardMedia::NameFor(MediaUse use, const QString& path, QWidget* asker) const {
  const std::filesystem::path file = ToPath(path);
  const auto relative = RelativeMediaName(Folders(), file);
  if (Fits(use, relative)) return *relative;
  const auto full = FullMediaName(file);
  const bool can_stay = !relative && Fits(use, full);
  const QString question =
      can_stay ? u"\nDie Datei liegt nicht im Medienordner.\nSoll sie dorthin kopiert werden?"_s
               : u"\nEine Karte kann diesen Dateinamen nicht enthalten.\nSoll die Datei unter einfachem Namen in den\n"
                 u"Medienordner kopiert werden?"_s;
  const Answer answer =
      machine_.messages.Question(asker, question, u"Kopieren"_s, u"Nicht kopieren"_s, u"Abbrechen"_s, Answer::Yes);
  if (answer == Answer::Yes) return CopyToMedia(file, asker);
  return answer == Answer::No && can_stay ? *full : std::string();
}

std::string CardMedia::PastedTag(const QImage& picture, const std::string& card_id, QWidget* asker) const {
  const std::filesystem::path folder = Folders().alternative;
  const std::string name = FreeName(machine_.disk, folder, "Bild_" + card_id + ".png");
  QByteArray bytes;
  QBuffer buffer(&bytes);
  if (!picture.save(&buffer, "PNG") ||
      !WriteNewFile(machine_.disk, folder / name, {bytes.constData(), static_cast<size_t>(bytes.size())})) {
    machine_.messages.Error(asker, u"\nDas Bild konnte nicht im Medienordner\ngespeichert werden."_s);
    return {};
  }
  return PictureTag(RelativeMediaName(Folders(), folder / name).value_or(name));
}

}  // namespace tessaro
