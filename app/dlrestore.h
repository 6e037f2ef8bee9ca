#pragma once

#include <QDateTime>
#include <QDialog>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

namespace Ui {
class TF_dlrestore;
}

namespace tessaro {

// A state of a card file that can be brought back.
struct BackupOffer {
  std::filesystem::path path;
  QDateTime saved;
  uint64_t bytes = 0;
  std::optional<int64_t> cards;  // nothing when the file is damaged
  bool last_save = false;        // the backup beside the card file: its state before the last save
  // Changes that were put aside, of so many cards; they can be taken over only if they fit the state of the cards.
  std::optional<int64_t> put_aside = {};
  bool fit = true;
};

// Offers the backups of a card file, and a free choice of a file.
class TF_dlrestore : public QDialog {
  Q_OBJECT

 public:
  // The offers stand in the order given; the first whole one is selected.
  TF_dlrestore(const QString& card_file, const std::vector<BackupOffer>& offers, QWidget* parent);
  ~TF_dlrestore() override;

  // Of value after accept: the backup chosen; empty for a free choice.
  const std::filesystem::path& path() const { return path_; }
  void accept() override;

 private:
  void AddOffer(const BackupOffer& offer);
  void ButtonOtherClick();

  std::unique_ptr<Ui::TF_dlrestore> ui_;
  std::vector<BackupOffer> offers_;
  std::filesystem::path path_;
};

}  // namespace tessaro
