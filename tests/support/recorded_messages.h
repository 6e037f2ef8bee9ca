#pragma once

#include <QStringList>
#include <deque>

#include "widgets/messages.h"

namespace tessaro {

// Message boxes and file choosers of a test: what is shown is kept, what is asked is answered in advance. Without a
// prepared answer the safe one is given, and no file is chosen.
class RecordedMessages : public Messages {
 public:
  void Information(QWidget*, const QString& text) override { shown += text; }
  void Error(QWidget*, const QString& text) override { errors += text; }
  Answer Question(QWidget*, const QString& text, const QString&, const QString&, const QString&, Answer safe) override {
    asked += text;
    return Next(answers, safe);
  }
  QString ChooseFileToOpen(QWidget*, const QString&, const QString&, const QString&) override { return Next(files); }
  QStringList ChooseFilesToOpen(QWidget*, const QString&, const QString&, const QString&) override {
    const QString chosen = Next(files);
    return chosen.isEmpty() ? QStringList() : chosen.split(u'|');
  }
  QString ChooseFileToSave(QWidget*, const QString&, const QString&, const QString&) override { return Next(files); }
  QString ChooseFolder(QWidget*, const QString&, const QString&) override { return Next(files); }

  QStringList shown;
  QStringList errors;
  QStringList asked;
  std::deque<Answer> answers;
  std::deque<QString> files;

 private:
  template <typename Value>
  static Value Next(std::deque<Value>& prepared, Value otherwise = {}) {
    if (prepared.empty()) return otherwise;
    Value next = prepared.front();
    prepared.pop_front();
    return next;
  }
};

}  // namespace tessaro
