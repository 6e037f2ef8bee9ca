// The end of a comparison: marked cards, links and media of cards that were taken over, and where it can go on.

#include <QPushButton>
#include <QTextEdit>
#include <algorithm>

#include "cards/card_edit.h"
#include "exchange/dlupd.h"
#include "exchange/exchange_texts.h"
#include "exchange/taken_cards.h"
#include "settings/keys.h"
#include "settings/side_settings.h"
#include "ui_dlupd.h"
#include "widgets/count_texts.h"
#include "widgets/long_work.h"
#include "widgets/messages.h"

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

namespace fs = std::filesystem;

}  // namespace

void TF_dlupd::BitBtnDeleteClick() {
  if (scan_ != nullptr) Run(false);
  if (scan_ != nullptr && !SettleEdits()) return;
  const int64_t marked = CountMarked(ties_.file);
  if (marked == ties_.file.CardCount()) {
    return ties_.messages.Error(this, u"Alle Karten sind markiert.\nMindestens eine muss bleiben."_s);
  }
  if (marked > 0) {
    const Answer answer = ties_.messages.Question(this, u"%1 mit der Marke „<+++>“ entfernen?"_s.arg(CardsText(marked)),
                                                  u"Entfernen"_s, u"Nicht entfernen"_s, {}, Answer::No);
    if (answer != Answer::Yes || !ties_.keep_state(this)) return;
  }
  // Inside one file the place to go on moves with the cards.
  const int64_t before = internal_ && scan_ != nullptr ? CountMarked(ties_.file, scan_->source_row()) : 0;
  if (scan_ != nullptr) Finish();
  const std::optional<int64_t> removed = RemoveMarked(ties_.file);
  if (!removed) return ShowFailure();
  IniFile& settings = ties_.file.settings();
  keys::kCompareRow.Write(keys::kCompareRow.Read(settings) - before, settings);
  ties_.messages.Information(
      this, u"%1 Doubletten gelöscht"_s.arg(*removed) + (*removed > 0 ? u"\n"_s + BackAgainText() : QString()));
  QDialog::accept();
}

void TF_dlupd::reject() {
  if (scan_ != nullptr) {
    Run(false);
    if (!SettleEdits()) return;
    Finish();
  }
  QDialog::reject();
}

bool TF_dlupd::SettleEdits() {
  const std::array<QTextEdit*, 4> texts = Texts();
  const bool edited = scan_->stop() && std::any_of(texts.begin(), texts.end(), [](const QTextEdit* edit) {
                        return edit->document()->isModified();
                      });
  if (!edited) return true;
  const Answer answer = ties_.messages.Question(this, u"Die geänderten Texte übernehmen?"_s, u"Übernehmen"_s,
                                                u"Nicht übernehmen"_s, u"Abbrechen"_s, Answer::Yes);
  if (answer != Answer::Yes) return answer == Answer::No;
  if (!MayTakeEdits()) return false;
  if (!scan_->KeepBoth(Edits())) ShowFailure();
  return true;
}

void TF_dlupd::Finish() {
  timer_.stop();
  running_ = false;
  if (!scan_->Settle()) ShowFailure();
  Remember();
  TellResult();
  OfferMedia();
  (void)CardEdit(ties_.file).Finish();
  scan_.reset();
  EnableActions(false);
  ui_->BitBtnStart->setEnabled(false);
}

void TF_dlupd::TellResult() {
  const CompareCounts& counts = scan_->counts();
  const TakenLinks links = RewriteTakenLinks(ties_.file, scan_->taken());
  QStringList lines;
  if (counts.taken > 0) lines << u"%1 übernommen."_s.arg(CardsText(counts.taken));
  if (counts.replaced > 0) lines << u"%1 ersetzt."_s.arg(CardsText(counts.replaced));
  if (counts.marked > 0) lines << u"%1 markiert."_s.arg(CardsText(counts.marked));
  if (counts.no_number > 0) lines << u"%1 nicht: die Kartennummern reichen nicht."_s.arg(CardsText(counts.no_number));
  if (links.left > 0) lines << u"Links, die noch zu Nummern der Quellkartei führen: %1."_s.arg(NumberText(links.left));
  if (lines.isEmpty()) return;
  lines.front().front() = lines.front().front().toUpper();
  lines << u"Noch ist nichts gespeichert. "_s + BackAgainText();
  ties_.messages.Information(this, lines.join(u'\n'));
}

void TF_dlupd::OfferMedia() {
  const fs::path media = keys::kMediaFolder.Read(ties_.settings);
  const auto folders = [&](const fs::path& cards) {
    return MediaFolders{cards.parent_path(), cards.parent_path() / media, ReadCodePages(ties_.file.settings())};
  };
  const std::vector<MediaCopy> copies =
      MissingMedia(ties_.disk, ties_.file, scan_->taken(), folders(source_path_), folders(ties_.file.paths().cards));
  if (copies.empty()) return;
  const Answer answer = ties_.messages.Question(
      this,
      u"Bilder oder Töne der übernommenen Karten, die noch bei der Quellkartei liegen: %1.\nJetzt kopieren?"_s.arg(
          copies.size()),
      u"Kopieren"_s, u"Nicht kopieren"_s, {}, Answer::Yes);
  if (answer != Answer::Yes) return;
  CopiedMedia done;
  {
    LongWork work(this, ties_.clock);
    work.AllowCancel();
    work.NextStage(u"Bilder und Töne kopieren"_s, BytesOf(ties_.disk, copies));
    done = CopyMedia(ties_.disk, copies, [&](int64_t bytes) { return work.GoesOn(bytes); });
  }
  if (done.cancelled) {
    ties_.messages.Information(this,
                               u"Abgebrochen. Kopierte Dateien: %1 von %2."_s.arg(done.copied).arg(copies.size()));
  }
  if (done.failed > 0) ties_.messages.Error(this, u"Dateien, die nicht kopiert werden konnten: %1."_s.arg(done.failed));
}

// Where a comparison that did not come to its end can be taken up again.
void TF_dlupd::Remember() {
  const bool ended = scan_->source_row() >= scan_->source_end();
  keys::kCompareRow.Write(ended ? kFirstCardRow : scan_->source_row(), ties_.file.settings());
  (void)keys::kCompareSource.Write(ended ? std::string() : source_path_.string(), ties_.file.settings());
}

}  // namespace tessaro
