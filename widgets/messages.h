#pragma once

#include <QStringList>

class QWidget;

namespace tessaro {

enum class Answer { Yes, No, Cancel };

// Every message box and file chooser of the program goes through here, so that tests answer in advance. Texts are the
// program's own, with "\n" line breaks; leading line breaks are for spacing and not shown.
class Messages {
 public:
  virtual ~Messages() = default;
  // Tells something good or neutral, or a failure; returns when the user has seen it.
  virtual void Information(QWidget* parent, const QString& text) = 0;
  virtual void Error(QWidget* parent, const QString& text) = 0;
  // The answers bear the given captions, for example "Speichern", "Nicht speichern"; `cancel` empty = no such button.
  // The first letters of the captions, which must differ, are their keys. Esc and closing give Cancel, or No where
  // there is no cancel. The default button is `safe`.
  virtual Answer Question(QWidget* parent, const QString& text, const QString& yes, const QString& no,
                          const QString& cancel, Answer safe) = 0;
  // Path of a file chosen; empty when cancelled. `filter` in Qt's form. Where there is no such folder the choice begins
  // in the nearest one above it.
  virtual QString ChooseFileToOpen(QWidget* parent, const QString& title, const QString& folder,
                                   const QString& filter) = 0;
  // The same for any number of files.
  virtual QStringList ChooseFilesToOpen(QWidget* parent, const QString& title, const QString& folder,
                                        const QString& filter) = 0;
  // Asks before an existing file is chosen. A name without ending gets the first ending of `filter`.
  virtual QString ChooseFileToSave(QWidget* parent, const QString& title, const QString& path,
                                   const QString& filter) = 0;
  // An existing folder; empty when cancelled.
  virtual QString ChooseFolder(QWidget* parent, const QString& title, const QString& folder) = 0;
};

// The boxes and choosers on the screen.
class BoxMessages : public Messages {
 public:
  void Information(QWidget* parent, const QString& text) override;
  void Error(QWidget* parent, const QString& text) override;
  Answer Question(QWidget* parent, const QString& text, const QString& yes, const QString& no, const QString& cancel,
                  Answer safe) override;
  QString ChooseFileToOpen(QWidget* parent, const QString& title, const QString& folder,
                           const QString& filter) override;
  QStringList ChooseFilesToOpen(QWidget* parent, const QString& title, const QString& folder,
                                const QString& filter) override;
  QString ChooseFileToSave(QWidget* parent, const QString& title, const QString& path, const QString& filter) override;
  QString ChooseFolder(QWidget* parent, const QString& title, const QString& folder) override;
};

// True while a modal dialog or message box of this window, or one of that, runs its loop: the window must not end then.
bool HasOpenDialog(const QWidget& window);

}  // namespace tessaro
