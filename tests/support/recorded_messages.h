#pragma once

#include <QStringList>
#include <deque>

#include "platform/qt/messages.h"

namespace tessaro {

// Message boxes and file choosers of a test: what is shown is kept, what is asked is answered in advance. Without a
// prepared answer the safe one is given, and no file is chosen.
class RecordedMessages : public Messages {
 public:
  void Information(QWidget* /*parent*/, const QString& text) override { shown += text; }
  void Error(QWidget* /*parent*/, const QString& text) override { errors += text; }
  Answer Question(QWidget* /*parent*/, const QString& text, const QString& /*yes*/, const QString& /*no*/,
                  const QString& /*cancel*/, Answer safe) override {
    asked += text;
    return Next(answers, safe);
  }
  QString ChooseFileToOpen(QWidget* /*parent*/, const QString& /*title*/, const QString& /*folder*/,
                           const QString& /*filter*/) override {
    return Next(files, QString());
  }
  QString ChooseFileToSave(QWidget* /*parent*/, const QString& /*title*/, const QString& /*path*/,
                           const QString& /*filter*/) override {
    return Next(files, QString());
  }
  QString ChooseFolder(QWidget* /*parent*/, const QString& /*title*/, const QString& /*folder*/) override {
    return Next(files, QString());
  }

  QStringList shown;
  QStringList errors;
  QStringList asked;
  std::deque<Answer> answers;
  std::deque<QString> files;

 private:
  template <typename Value>
  static Value Next(std::deque<Value>& prepared, Value otherwise) {
    if (prepared.empty()) return otherwise;
    Value next = prepared.front();
    prepared.pop_front();
    return next;
  }
};

}  // namespace tessaro
