// The table of the editor's commands, and the menus and tool bars that are made of it.

#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QShortcut>
#include <QToolBar>
#include <QToolButton>
#include <algorithm>
#include <array>
#include <string_view>

#include "edit/ed_texts.h"
#include "edit/side_field.h"
#include "edit/wned.h"
#include "widgets/help_request.h"
#include "widgets/icons.h"
#include "widgets/messages.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

enum class Menu { Card, Go, Text, Hypertext, Tools, Help };
enum class Bar { None, Cards, Tags };

constexpr const char16_t* kMenuTitles[] = {u"&Karte", u"&Gehe zu", u"&Text", u"&Hypertext", u"&Werkzeuge", u"H&ilfe"};

}  // namespace

struct EditorCommands {
  using Run = void (*)(TF_wned& editor);
  struct Command {
    Menu menu;
    const char* name;      // of the action
    const char16_t* text;  // in the menu
    const char16_t* key;   // in Qt's portable form; after a tab in brackets: shown, but owned by another
    Run run;
    Bar bar = Bar::None;
    const char* tool = "";  // object name of the tool button
    const char16_t* hint = u"";
    const char* icon = "";
    const char16_t* face = u"";  // of a tool button without an icon
    bool ends_group = false;
  };
  static const Command kCommands[];

  template <MediaUse use>
  static void InsertChosen(TF_wned& editor) {
    editor.InsertMedia(editor.media_.ChosenTag(use, &editor));
  }
  static bool OnlyLooks(const Command& command);
  static QAction* Add(TF_wned& editor, QMenu& menu, QToolBar* bar, const Command& command);
};

#define RUN(call) [](TF_wned& editor) { editor.call; }

const EditorCommands::Command EditorCommands::kCommands[] = {
    {Menu::Card, "MCardSaveToFile", u"Alle Karten ab&speichern (Datenträger)", u"Ctrl+S", RUN(MCardSaveToFile()),
     Bar::Cards, "CardSaveToFile", u"Alle Karten abspeichern (Datenträger)", "save"},
    {Menu::Card, "MCardDrucken", u"Karten drucke&n …", u"Ctrl+P",
     [](TF_wned& editor) { Q_EMIT editor.PrintWanted(&editor); }, Bar::None, "", u"", "print"},
    {Menu::Card, "MCardSave", u"Karte z&wischenspeichern (normalerweise automatisch)", u"", RUN(Do([] {})), Bar::Cards,
     "CardSave", u"Karte zwischenspeichern (normalerweise automatisch)", "store", u"", true},
    {Menu::Card, "MCardLeer", u"&Leerkarte einfügen", u"Alt+N", RUN(MCardLeer()), Bar::Cards, "CardLeer",
     u"Leerkarte einfügen", "new"},
    {Menu::Card, "MCardCut", u"Karte &ausschneiden", u"Alt+X", RUN(MCardCut()), Bar::Cards, "CardCut",
     u"Karte ausschneiden", "cut"},
    {Menu::Card, "MCardCopy", u"Karte &kopieren", u"Alt+C", RUN(MCardCopy()), Bar::Cards, "CardCopy", u"Karte kopieren",
     "copy"},
    {Menu::Card, "MCardPaste", u"Karte ein&fügen (Paste)", u"Alt+V", RUN(MCardPaste()), Bar::Cards, "CardPaste",
     u"Karte einfügen (Paste)", "paste"},
    {Menu::Card, "MCardDelete", u"Karte lös&chen (markieren)", u"Alt+D", RUN(MCardDelete()), Bar::Cards, "CardDelete",
     u"Karte löschen (markieren)", "delete"},
    {Menu::Card, "MCardDelStat", u"Statis&tik der Karte löschen", u"", RUN(MCardDelStat()), Bar::Cards, "CardDelStat",
     u"Statistik der Karte löschen", "chart", u"", true},
    {Menu::Card, "MCommandUndo", u"Kartenbefehl &zurücknehmen", u"Ctrl+Alt+Z", RUN(TakeCommand(true)), Bar::Cards,
     "CommandUndo", u"Letzten Kartenbefehl zurücknehmen", "undo"},
    {Menu::Card, "MCommandRedo", u"Kartenbefehl wi&ederholen", u"Ctrl+Alt+Shift+Z", RUN(TakeCommand(false)), Bar::Cards,
     "CommandRedo", u"Zurückgenommenen Kartenbefehl wiederholen", "redo", u"", true},
    {Menu::Card, "MCardBuildLinkIndex", u"Link&index nach Cut oder Paste neu aufbauen", u"\tCtrl+L",
     RUN(MCardBuildLinkIndex()), Bar::None, "", u"", "index", u"", true},
    {Menu::Card, "MLernen", u"Zurück zum Le&rnen", u"F8", [](TF_wned& editor) { Q_EMIT editor.LearnWanted(); },
     Bar::Cards, "TbLern", u"zurück zum Lernen", "learn"},
    {Menu::Card, "MCardClose", u"Editor schlie&ßen", u"Alt+F4", [](TF_wned& editor) { editor.close(); }, Bar::Cards,
     "BitBtnClose", u"Editor schließen", "close", u"", true},

    {Menu::Go, "MCardGoHome", u"Zur Startkarte (&Home) gehen", u"", RUN(GoBy(&CardDesk::Home)), Bar::Cards,
     "CardGoHome", u"Zur Indexkarte des Hypertextes gehen (Home)", "home"},
    {Menu::Go, "MCardGoAuto", u"Zur &Gesamtübersicht (View)", u"",
     RUN(GoBy(&CardDesk::Overview, u"Es gibt noch keine Gesamtübersicht; das Menü Werkzeuge erstellt sie"_s)),
     Bar::Cards, "CardGoAuto", u"Visuelle Gesamtübersicht", "overview"},
    {Menu::Go, "MCardGoLastLink", u"Zum letzten &Linkverweis zurück (back)", u"",
     RUN(GoBy(&CardDesk::GoBack, u"Kein Linkverweis, zu dem zurückzugehen wäre"_s)), Bar::Cards, "CardGoLastLink",
     u"Zurück zum letzen Linkverweis (Back)", "back", u"", true},
    {Menu::Go, "MCardTop", u"Zum Kartei&anfang", u"Ctrl+Home", RUN(GoBy(&CardDesk::First)), Bar::Cards, "CardTop",
     u"Zum Karteianfang", "first"},
    {Menu::Go, "MCardGoBack", u"&Vorherige Karte anzeigen", u"F4",
     RUN(GoBy(&CardDesk::Previous, u"Anfang der Kartei"_s)), Bar::Cards, "CardGoBack", u"Vorherige Karte anzeigen",
     "previous"},
    {Menu::Go, "MCardGoNext", u"&Nächste Karte anzeigen", u"F2", RUN(GoBy(&CardDesk::Next, u"Ende der Kartei"_s)),
     Bar::Cards, "CardGoNext", u"Nächste Karte anzeigen", "following"},
    {Menu::Go, "MCardBottom", u"Zum Kartei&ende", u"Ctrl+End", RUN(GoBy(&CardDesk::Last)), Bar::Cards, "CardBottom",
     u"Zum Karteiende", "last", u"", true},
    {Menu::Go, "MCardSearch", u"Karte &suchen", u"Ctrl+F", RUN(ShowSearch()), Bar::Cards, "CardSearch", u"Karte suchen",
     "search"},
    {Menu::Go, "MCardSearchMore", u"&Weitersuchen", u"F3", RUN(MCardSearchMore())},
    {Menu::Go, "MTabelle", u"Übersichts&tabelle aufrufen", u"", RUN(ShowTable()), Bar::Cards, "BitBtnTabelle",
     u"Übersichtstabelle aufrufen", "table", u"", true},

    {Menu::Text, "MTextUndo", u"Letzte Aktion &rückgängig", u"Ctrl+Z", RUN(ActiveText().undo()), Bar::Tags, "TextUndo",
     u"Letzte Aktion rückgängig", "undo"},
    {Menu::Text, "MTextRedo", u"Letzte Aktion &wiederholen", u"Ctrl+Shift+Z", RUN(ActiveText().redo())},
    {Menu::Text, "MCardUndo", u"&Alle Änderungen rückgängig", u"", RUN(MCardUndo()), Bar::Tags, "CardUndo",
     u"Alle Änderungen rückgängig", "restore"},
    {Menu::Text, "MTextClear", u"Kartenseite Text &löschen", u"Ctrl+D", RUN(ActiveText().Replace({})), Bar::None, "",
     u"", "", u"", true},
    {Menu::Text, "MTextCut", u"Text aus&schneiden", u"Ctrl+X", RUN(ActiveText().cut())},
    {Menu::Text, "MTextCopy", u"Text &kopieren", u"Ctrl+C", RUN(ActiveText().copy())},
    {Menu::Text, "MTextPaste", u"Text &einfügen", u"Ctrl+V", RUN(ActiveText().paste()), Bar::None, "", u"", "", u"",
     true},
    {Menu::Text, "MTextSign", u"&Zeichentabelle", u"", RUN(MTextSign()), Bar::Tags, "TextSign", u"Zeichentabelle", "",
     u"Ω"},
    {Menu::Text, "MTextRegister", u"Karte &Vorder- Rückseite wechseln", u"Ctrl+Y", RUN(sides_.TurnOver()), Bar::Tags,
     "TextRegister", u"Karte Vorder- Rückseite wechseln", "turn", u"", true},

    {Menu::Hypertext, "MHtmlBr", u"&Zeilenumbruchmarke <br>", u"Ctrl+R", RUN(ActiveText().PutTag(kLineBreakTag)),
     Bar::Tags, "HtmlBr", u"Neue Zeile <br>", "", u"<br>"},
    {Menu::Hypertext, "MHtmlBold", u"&Fettschrift", u"Ctrl+B", RUN(ActiveText().Enclose("<b>", "</b>")), Bar::Tags,
     "HtmlBold", u"Fette Schrift", "", u"F"},
    {Menu::Hypertext, "MHtmlItalic", u"&Kursivschrift", u"Ctrl+I", RUN(ActiveText().Enclose("<i>", "</i>")), Bar::Tags,
     "HtmlItalic", u"Kursivschrift", "", u"K"},
    {Menu::Hypertext, "MHtmlUnderline", u"&Unterstreichung", u"Ctrl+U", RUN(ActiveText().Enclose("<u>", "</u>")),
     Bar::Tags, "HtmlUnderline", u"Unterstreichung", "", u"U"},
    {Menu::Hypertext, "MHtmlKleiner", u"Zeichen < als &&lt;", u"", RUN(ActiveText().PutTag("&lt;")), Bar::Tags,
     "HtmlErsatzKleiner", u"Ersatzzeichen für <", "", u"<"},
    {Menu::Hypertext, "MHtmlGroesser", u"Zeichen > als &&gt;", u"", RUN(ActiveText().PutTag("&gt;")), Bar::Tags,
     "HtmlErsatzGroesser", u"Ersatzzeichen für >", "", u">", true},
    {Menu::Hypertext, "MHtmlLink", u"Hyper&link auf andere Karte setzen", u"\tCtrl+L", RUN(MHtmlLink()), Bar::Tags,
     "HtmlLink", u"Link auf andere Karteikarte", "link"},
    {Menu::Hypertext, "MHtmlImage", u"&Grafiken einfügen", u"", InsertChosen<MediaUse::Picture>, Bar::Tags, "HtmlImage",
     u"Grafikverweis einfügen", "picture"},
    {Menu::Hypertext, "MHtmlMedia", u"&Video / Sound einfügen", u"", InsertChosen<MediaUse::Media>, Bar::Tags,
     "HtmlMedia", u"Sound und Video, Verweis einfügen", "film"},
    {Menu::Hypertext, "MRichText", u"&Textbeilage (txt+)", u"", InsertChosen<MediaUse::TextFile>, Bar::Tags,
     "TbRichText", u"Textbeilage als Zusatztext zur Karteikarte", "", u"txt+"},
    {Menu::Hypertext, "MGrafikAnlage", u"Grafik als &Anlage (pic+)", u"", InsertChosen<MediaUse::PictureFile>,
     Bar::Tags, "BtGrafikAnlage", u"Grafik als Anlage beifügen", "", u"pic+"},
    {Menu::Hypertext, "MAvi", u"V&ideo als Anlage (avi+)", u"", InsertChosen<MediaUse::VideoFile>, Bar::Tags, "TbAvi",
     u"Einfügen einer Video-Anlage", "", u"avi+", true},
    {Menu::Hypertext, "MHtmlHome", u"Karte als HTML-&Startkarte definieren", u"", RUN(HtmlHome()), Bar::Tags,
     "HtmlHome", u"Karte als Hypertext-Indexkarte (Home) markieren", "home"},
    {Menu::Hypertext, "MHtmlNoLearn", u"Karte als &Navigationskarte markieren", u"", RUN(MarkCard(kNavigationTag)),
     Bar::Tags, "HtmlNoLearn", u"Karte als Navigationskarte (nicht lernbar) definieren", "", u"Nav"},
    {Menu::Hypertext, "MHtmlVis", u"Karte als Startkarte der automatischen Übersicht &markieren", u"", RUN(HtmlAuto()),
     Bar::Tags, "HtmlAuto", u"Karte als Index der automatischen Übersicht definieren", "overview", u"", true},
    {Menu::Hypertext, "MHtmlInfo", u"Information zu den Hyperte&xtformaten", u"",
     RUN(machine_.messages.Information(&editor, FormatsText())), Bar::Tags, "HtmlInfo",
     u"Information zu den Hypertextformaten", "help"},

    {Menu::Tools, "MHtmlTrans", u"Alle &Zeilenumbruchmarken setzen", u"", RUN(ActiveText().TransferBreaks()), Bar::Tags,
     "HtmlTransfer", u"Die sichtbaren Umbrüche der Textzeilen mit HTML-Umruchzeichen versehen", "", u"¶"},
    {Menu::Tools, "MHtmlTransferAll", u"Zeilenumbruchmarken auf allen &Karten setzen", u"", RUN(MHtmlTransferAll()),
     Bar::None, "", u"", "", u"", true},
    {Menu::Tools, "MHtmlAutoLink", u"&Auswahlübersichten nach Themen u. Reihenfolge", u"", RUN(MHtmlAutoLink())},
    {Menu::Tools, "MHtmlAutoBild", u"Karteikarten automatisch anhand &Bildarchiv erstellen", u"", RUN(MHtmlAutoBild())},
    {Menu::Tools, "MNummerieren", u"Karten neu durch&nummerieren", u"", RUN(MNummerierenClick())},

    {Menu::Help, "MHilfe", u"&Hilfe zum Karteneditor", u"\tF1", [](TF_wned& editor) { RequestHelp(editor); }},
};

#undef RUN

// Whether it leaves the cards as they are.
bool EditorCommands::OnlyLooks(const Command& command) {
  static constexpr std::array<std::string_view, 12> kLooking = {
      "MHilfe",  "MCardSaveToFile", "MCardDrucken", "MCardSave", "MCardCopy",     "MCardBuildLinkIndex",
      "MLernen", "MCardClose",      "MTextCopy",    "MTextSign", "MTextRegister", "MHtmlInfo"};
  return command.menu == Menu::Go || std::find(kLooking.begin(), kLooking.end(), command.name) != kLooking.end();
}

QAction* EditorCommands::Add(TF_wned& editor, QMenu& menu, QToolBar* bar, const Command& command) {
  const QString key = QString::fromUtf16(command.key);
  const bool owned = !key.startsWith(u'\t');
  const QString keys =
      QKeySequence(owned ? key : key.mid(1), QKeySequence::PortableText).toString(QKeySequence::NativeText);
  QAction* action = menu.addAction(QString::fromUtf16(command.text) + (owned ? QString() : u'\t' + keys));
  action->setObjectName(QString::fromLatin1(command.name));
  if (owned && !key.isEmpty()) action->setShortcut(QKeySequence(key, QKeySequence::PortableText));
  if (*command.icon != '\0') action->setIcon(Icon(command.icon));
  if (command.ends_group) menu.addSeparator();
  QObject::connect(action, &QAction::triggered, &editor, [&editor, &command] {
    if (OnlyLooks(command) || editor.MayChange()) command.run(editor);
  });
  if (bar == nullptr) return action;
  QString hint = QString::fromUtf16(command.hint).toHtmlEscaped();
  if (!keys.isEmpty()) hint += u" ("_s + keys + u')';
  action->setToolTip(u"<span>"_s + hint + u"</span>"_s);
  action->setIconText(QString::fromUtf16(command.face));
  bar->addAction(action);
  if (command.ends_group) bar->addSeparator();
  QWidget* button = bar->widgetForAction(action);
  button->setObjectName(QString::fromLatin1(command.tool));
  button->setAccessibleName(QString::fromUtf16(command.hint));
  return action;
}

void TF_wned::MakeCommands() {
  QList<QMenu*> menus;
  for (const char16_t* title : kMenuTitles) menus += menuBar()->addMenu(QString::fromUtf16(title));
  QToolBar* cards = addToolBar(u"Karten"_s);
  addToolBarBreak();
  QToolBar* tags = addToolBar(u"Hypertext"_s);
  for (QToolBar* bar : {cards, tags}) {
    bar->setMovable(false);
    bar->setIconSize({18, 18});
    bar->setContextMenuPolicy(Qt::PreventContextMenu);
  }
  cards->setObjectName(u"ToolBarKarten"_s);
  tags->setObjectName(u"ToolBarHypertext"_s);
  for (const EditorCommands::Command& command : EditorCommands::kCommands) {
    QToolBar* bar = command.bar == Bar::None ? nullptr : command.bar == Bar::Cards ? cards : tags;
    EditorCommands::Add(*this, *menus[static_cast<int>(command.menu)], bar, command);
  }
  MakeBoxes(*cards, *tags);
  connect(new QShortcut(QKeySequence(u"Ctrl+L"_s), this), &QShortcut::activated, this, &TF_wned::LinkOrIndex);
}

// The boxes for the size of letters and the topic of the card.
void TF_wned::MakeBoxes(QToolBar& cards, QToolBar& tags) {
  font_size_ = new QComboBox(&tags);
  font_size_->setObjectName(u"HtmlFontSize"_s);
  font_size_->setToolTip(u"Schriftgröße des markierten Textes"_s);
  font_size_->setAccessibleName(u"Schriftgröße"_s);
  font_size_->setPlaceholderText(u"Größe"_s);
  for (int size = kSmallestFontSize; size <= kLargestFontSize; ++size) font_size_->addItem(QString::number(size));
  font_size_->setCurrentIndex(-1);
  connect(font_size_, &QComboBox::activated, this, [this](int index) {
    if (MayChange()) ActiveText().Enclose(FontSizeTag(index + kSmallestFontSize), "</font>");
    // The same size may be chosen again.
    font_size_->setCurrentIndex(-1);
  });
  topics_ = new QComboBox(&cards);
  topics_->setObjectName(u"ComboBoxThema"_s);
  topics_->setEditable(true);
  topics_->setMinimumContentsLength(12);
  topics_->setToolTip(u"Thema der Karte"_s);
  topics_->setAccessibleName(u"Thema"_s);
  topics_->lineEdit()->setPlaceholderText(u"Thema"_s);
  QAction* before = tags.actions().value(4);
  tags.insertWidget(before, font_size_);
  cards.addWidget(topics_);
  QAction* topic = cards.addAction(u"Thema"_s);
  topic->setToolTip(u"Die ausgewählte Themenbezeichnung in die Karte einfügen"_s);
  connect(topic, &QAction::triggered, this, &TF_wned::HtmlThema);
  cards.widgetForAction(topic)->setObjectName(u"HtmlThema"_s);
}

}  // namespace tessaro
