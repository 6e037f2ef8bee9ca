// Pictures, sounds, videos and texts on their way onto a card: chosen, dropped or pasted.

#include <QBuffer>
#include <QImage>

#include "edit/ed_texts.h"
#include "edit/media_names.h"
#include "edit/side_field.h"
#include "edit/wned.h"
#include "widgets/text.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

QString FilterOf(int use) {
  static const QStringList kFilters = {u"Bilder (*.bmp *.jpg *.jpeg *.png *.gif *.BMP *.JPG *.JPEG *.PNG *.GIF)"_s,
                                       u"Video und Ton (*.avi *.mpg *.wav *.mid *.AVI *.MPG *.WAV *.MID)"_s,
                                       u"Windows Texte (*.txt *.rtf *.TXT *.RTF)"_s,
                                       u"Bilder (*.bmp *.jpg *.BMP *.JPG)"_s, u"Video (*.avi *.mpg *.AVI *.MPG)"_s};
  return kFilters.at(use);
}

bool HasEnding(const QString& path, std::initializer_list<const char16_t*> endings) {
  for (const char16_t* ending : endings) {
    if (path.endsWith(QString::fromUtf16(ending), Qt::CaseInsensitive)) return true;
  }
  return false;
}

}  // namespace

void TF_wned::InsertMedia(MediaUse use) {
  if (desk_.row() == 0) return;
  const QString path =
      machine_.messages.ChooseFileToOpen(this, u"Datei für die Karte wählen"_s,
                                         FromPath(file_.paths().cards.parent_path()), FilterOf(static_cast<int>(use)));
  if (!path.isEmpty()) InsertFile(use, path);
}

void TF_wned::InsertFile(MediaUse use, const QString& path) {
  const std::string name = NameFor(use, path);
  if (name.empty()) return;
  switch (use) {
    case MediaUse::Picture:
      return InsertTagText(PictureTag(name));
    case MediaUse::Media:
      return InsertTagText(EmbedTag(name));
    case MediaUse::TextFile:
      return InsertTagText(AttachmentTag(Attachment::Text, name));
    case MediaUse::PictureFile:
      return InsertTagText(AttachmentTag(Attachment::Picture, name));
    case MediaUse::VideoFile:
      return InsertTagText(AttachmentTag(Attachment::Video, name));
  }
}

std::string TF_wned::CopyToMedia(const std::filesystem::path& file) {
  const std::string name = FreeName(machine_.disk, MediaFolder(), PlainNameOf(file));
  const std::filesystem::path target = MediaFolder() / name;
  if (!CopyFile(machine_.disk, file, target)) {
    machine_.messages.Error(this, u"\nDie Datei konnte nicht in den Medienordner\nkopiert werden."_s);
    return {};
  }
  ReadLooks();
  return RelativeMediaName(Folders(), target).value_or(name);
}

std::string TF_wned::NameFor(MediaUse use, const QString& path) {
  const std::filesystem::path file = ToPath(path);
  const auto fits = [use](const std::optional<std::string>& name) {
    if (!name) return false;
    if (use == MediaUse::Picture || use == MediaUse::Media) return FitsInTag(*name);
    const Attachment kind = use == MediaUse::TextFile      ? Attachment::Text
                            : use == MediaUse::PictureFile ? Attachment::Picture
                                                           : Attachment::Video;
    return FitsInAttachment(kind, *name);
  };
  const auto relative = RelativeMediaName(Folders(), file);
  if (fits(relative)) return *relative;
  const auto full = FullMediaName(file);
  const bool can_stay = !relative && fits(full);
  const QString question =
      can_stay ? u"\nDie Datei liegt nicht im Medienordner.\nSoll sie dorthin kopiert werden?"_s
               : u"\nEine Karte kann diesen Dateinamen nicht enthalten.\nSoll die Datei unter einfachem Namen in den\n"
                 u"Medienordner kopiert werden?"_s;
  const Answer answer =
      machine_.messages.Question(this, question, u"Kopieren"_s, u"Nicht kopieren"_s, u"Abbrechen"_s, Answer::Yes);
  if (answer == Answer::Yes) return CopyToMedia(file);
  return answer == Answer::No && can_stay ? *full : std::string();
}

void TF_wned::DropFiles(EditSide side, const QStringList& paths) {
  Activate(side);
  for (const QString& path : paths) {
    if (HasEnding(path, {u".bmp", u".jpg", u".jpeg", u".png", u".gif"})) {
      InsertFile(MediaUse::Picture, path);
    } else if (HasEnding(path, {u".avi", u".mpg", u".mpeg", u".wav", u".mid", u".mp3", u".ogg"})) {
      InsertFile(MediaUse::Media, path);
    } else if (HasEnding(path, {u".txt", u".rtf"})) {
      InsertFile(MediaUse::TextFile, path);
    } else {
      ShowStatus(u"Diese Art von Datei kann eine Karte nicht zeigen: %1"_s.arg(path));
    }
  }
}

void TF_wned::PastePicture(EditSide side, const QImage& picture) {
  Activate(side);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  const std::string name = FreeName(machine_.disk, MediaFolder(), "Bild_" + desk_.id() + ".png");
  if (!picture.save(&buffer, "PNG") ||
      !WriteNewFile(machine_.disk, MediaFolder() / name,
                    std::string_view(bytes.constData(), static_cast<size_t>(bytes.size())))) {
    return machine_.messages.Error(this, u"\nDas Bild konnte nicht im Medienordner\ngespeichert werden."_s);
  }
  ReadLooks();
  InsertTagText(PictureTag(RelativeMediaName(Folders(), MediaFolder() / name).value_or(name)));
}

}  // namespace tessaro
