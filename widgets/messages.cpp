#include "widgets/messages.h"

#include <QDialog>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <algorithm>

#include "widgets/help_request.h"

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

QString WithoutSpacing(QString text) {
  while (text.startsWith(u'\n')) text.remove(0, 1);
  return text;
}

// Qt presses the button for its underlined letter, in a box also without Alt.
QString WithKey(const QString& caption) {
  return u'&' + caption;
}

// The folder, or the nearest above it that is there. Qt would take the last part of a missing folder for a file's name.
QString NearestFolder(const QString& folder) {
  QFileInfo nearest(QDir::current().absoluteFilePath(folder));
  while (!nearest.isDir() && !nearest.isRoot()) nearest.setFile(nearest.path());
  return nearest.filePath();
}

// A box may open while long work shows the wait cursor.
class ArrowCursor {
 public:
  ArrowCursor() { QGuiApplication::setOverrideCursor(Qt::ArrowCursor); }
  ~ArrowCursor() { QGuiApplication::restoreOverrideCursor(); }
  ArrowCursor(const ArrowCursor&) = delete;
  ArrowCursor& operator=(const ArrowCursor&) = delete;
};

// The box stays open beside the help.
void AddHelpButton(QMessageBox& box) {
  QPushButton* button = box.addButton(u"&Hilfe"_s, QMessageBox::HelpRole);
  button->setToolTip(u"Was die Meldung bedeutet und was zu tun ist (F1)"_s);
  button->disconnect();
  QObject::connect(button, &QPushButton::clicked, &box, [&box] { RequestHelp(box); });
}

void ShowBox(QWidget* parent, QMessageBox::Icon icon, const QString& text) {
  const ArrowCursor arrow;
  QMessageBox box(icon, u"Tessaro"_s, WithoutSpacing(text), QMessageBox::NoButton, parent);
  box.setTextFormat(Qt::PlainText);
  QPushButton* ok = box.addButton(u"OK"_s, QMessageBox::AcceptRole);
  box.setDefaultButton(ok);
  box.setEscapeButton(ok);
  if (text.contains(u"Siehe Hilfeindex"_s)) AddHelpButton(box);
  box.exec();
}

// The ending of a filter such as "Karteien (*.mlb *.MLB)", without the dot; empty when it names none.
QString FirstEnding(const QString& filter) {
  static const QRegularExpression ending(uR"(\*\.(\w+))"_s);
  return ending.match(filter).captured(1);
}

}  // namespace

void BoxMessages::Information(QWidget* parent, const QString& text) {
  ShowBox(parent, QMessageBox::Information, text);
}

void BoxMessages::Error(QWidget* parent, const QString& text) {
  ShowBox(parent, QMessageBox::Warning, text);
}

Answer BoxMessages::Question(QWidget* parent, const QString& text, const QString& yes, const QString& no,
                             const QString& cancel, Answer safe) {
  const ArrowCursor arrow;
  QMessageBox box(QMessageBox::Question, u"Tessaro"_s, WithoutSpacing(text), QMessageBox::NoButton, parent);
  box.setTextFormat(Qt::PlainText);
  QPushButton* yes_button = box.addButton(WithKey(yes), QMessageBox::YesRole);
  QPushButton* no_button = box.addButton(WithKey(no), QMessageBox::NoRole);
  QPushButton* cancel_button = cancel.isEmpty() ? nullptr : box.addButton(WithKey(cancel), QMessageBox::RejectRole);
  box.setEscapeButton(cancel_button != nullptr ? cancel_button : no_button);
  box.setDefaultButton(safe == Answer::Yes                                  ? yes_button
                       : safe == Answer::Cancel && cancel_button != nullptr ? cancel_button
                                                                            : no_button);
  box.exec();
  if (box.clickedButton() == yes_button) return Answer::Yes;
  return cancel_button == nullptr || box.clickedButton() == no_button ? Answer::No : Answer::Cancel;
}

QString BoxMessages::ChooseFileToOpen(QWidget* parent, const QString& title, const QString& folder,
                                      const QString& filter) {
  return QFileDialog::getOpenFileName(parent, title, NearestFolder(folder), filter);
}

QStringList BoxMessages::ChooseFilesToOpen(QWidget* parent, const QString& title, const QString& folder,
                                           const QString& filter) {
  return QFileDialog::getOpenFileNames(parent, title, NearestFolder(folder), filter);
}

QString BoxMessages::ChooseFileToSave(QWidget* parent, const QString& title, const QString& path,
                                      const QString& filter) {
  QFileDialog chooser(parent, title, path, filter);
  chooser.setAcceptMode(QFileDialog::AcceptSave);
  chooser.setDefaultSuffix(FirstEnding(filter));
  if (!path.isEmpty()) chooser.selectFile(path);
  return chooser.exec() == QDialog::Accepted ? chooser.selectedFiles().value(0) : QString();
}

QString BoxMessages::ChooseFolder(QWidget* parent, const QString& title, const QString& folder) {
  return QFileDialog::getExistingDirectory(parent, title, NearestFolder(folder));
}

bool HasOpenDialog(const QWidget& window) {
  // One that was just closed is still modal, and still on the stack, until its loop has ended.
  const auto open = [](const QDialog* dialog) { return dialog->isModal(); };
  const auto dialogs = window.findChildren<QDialog*>();
  return std::any_of(dialogs.begin(), dialogs.end(), open);
}

}  // namespace tessaro
