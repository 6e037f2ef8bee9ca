#pragma once

#include <array>

#include "settings/setting.h"
#include "store/table/card_columns.h"

// Every value that the program keeps in tessaro.ini and in the settings X.ini of a card file, but for those that come
// in groups of their own: the learning parameters, the learning keys, the looks of the sides, the places of windows,
// the recent files.
namespace tessaro::keys {

// tessaro.ini: how learning begins, and what the learning window shows.
inline constexpr FlagSetting kRowOrder = {"rowlearn", "checked", false};  // by row order, else by the standard method
inline constexpr FlagSetting kFewNewCards = {"newcards", "checked", false};
inline constexpr FlagSetting kShowStatistics = {"SHOW", "Stat", false};
inline constexpr FlagSetting kShowInput = {"SHOW", "Input", false};
inline constexpr FlagSetting kShowChoice = {"SHOW", "Select", false};
inline constexpr FlagSetting kShowTyping = {"SHOW", "Tipp", false};
inline constexpr FlagSetting kInputFloats = {"SHOW", "InputFrei", false};  // as windows of their own
inline constexpr FlagSetting kChoiceFloats = {"SHOW", "SelectFrei", false};
inline constexpr FlagSetting kTypingFloats = {"SHOW", "TippFrei", false};
inline constexpr FlagSetting kBarBelow = {"SHOW", "Align", false};
inline constexpr FlagSetting kShowFigures = {"SHOW", "Figures", true};
inline constexpr FlagSetting kRepeatQuestion = {"SHOW", "Frage", true};  // above the answer

// How many cards the Leitner boxes 1 to 5 should hold, as far as the fields of their dialog go.
inline constexpr std::array kBoxLimits = {
    NumberSetting{"Leitner", "Fach1", 25, 0, 999}, NumberSetting{"Leitner", "Fach2", 50, 0, 999},
    NumberSetting{"Leitner", "Fach3", 100, 0, 9999}, NumberSetting{"Leitner", "Fach4", 250, 0, 9999},
    NumberSetting{"Leitner", "Fach5", 500, 0, 99999}};

// The modes of answering.
inline constexpr NumberSetting kChoicePage = {"SEL", "i", 0, 0, 1};        // numbers, letters
inline constexpr FlagSetting kOfferAnswers = {"SEL", "Vorschlag", false};  // of other cards, where the card has no key
// Two blanks less than uncover the answer in the typed line.
inline constexpr NumberSetting kExtraBlanks = {"Keys", "Space", 0, 0, 8};
// What a typed answer may do otherwise than the card.
inline constexpr FlagSetting kAnyCase = {"Eingabe", "Gross", false};
inline constexpr FlagSetting kAnyAccents = {"Eingabe", "Akzente", false};
inline constexpr FlagSetting kAnyPunctuation = {"Eingabe", "Satzzeichen", false};
inline constexpr FlagSetting kOptionalBrackets = {"Eingabe", "Klammern", false};
inline constexpr DecimalSetting kErrorLimit = {"ttrain", "Fehler", 5.0, 0.0, 100.0};  // percent of the characters
inline constexpr NumberSetting kSpeedLimit = {"ttrain", "Anschlaege", 100, 1, 2000};  // characters a minute
inline constexpr NumberSetting kSpeedPercent = {"ttrain", "Prozent", 100, 1, 500};    // of the speed limit
inline constexpr NumberSetting kTypingMark = {"ttrain", "Cursor", 0, 0, 2};           // a character, a word, nothing
inline constexpr FlagSetting kTypingFigures = {"ttrain", "Show", true};
inline constexpr TextSetting kErrorSound = {"ttrain", "Sound", ""};

// Files and windows.
inline constexpr TextSetting kMediaFolder = {"MEDIA", "Folder", "Medien"};
inline constexpr NumberSetting kBytesPerCard = {"DISK", "BytesPerCard", 600};
inline constexpr FlagSetting kBackups = {"Sicherungen", "Aktiv", true};
inline constexpr NumberSetting kBackupMegabytes = {"Sicherungen", "MaxMB", 1000, 0, 1'000'000};
inline constexpr NumberSetting kTheme = {"Darstellung", "Farben", 0, 0, 2};              // the desktop's, light, dark
inline constexpr FlagSetting kWhitePaper = {"Darstellung", "WeissesPapier", false};      // in dark colours, too
inline constexpr NumberSetting kCardPercent = {"Darstellung", "Karte", 100, 50, 400};    // of the letters on cards
inline constexpr NumberSetting kTextPercent = {"Darstellung", "Schrift", 100, 80, 200};  // of the desktop's text

// What the print dialog offers first.
inline constexpr NumberSetting kPrintCards = {"DRUCK", "Karten", 0, 0, 4};          // all, found, due, marked, this one
inline constexpr NumberSetting kPrintForm = {"DRUCK", "Form", 0, 0, 2};             // list, cards to cut out, large
inline constexpr NumberSetting kPrintSides = {"DRUCK", "Seiten", 0, 0, 2};          // both, fronts, backs
inline constexpr NumberSetting kPrintGrid = {"DRUCK", "Blatt", 1, 0, 3};            // one of the sizes of cards
inline constexpr NumberSetting kPrintPercent = {"DRUCK", "Schrift", 100, 50, 200};  // of the letters' own size
inline constexpr FlagSetting kPrintNavigation = {"DRUCK", "Navigation", false};
inline constexpr FlagSetting kPreviewWide = {"DRUCK", "Breit", false};

// The comparison of card files: the index of the percentage in steps of 5, from 5 on.
inline constexpr NumberSetting kComparePercent = {"UPD", "pci", 9, 0, 18};

// X.ini: how learning begins there, and where a card file was left.
inline constexpr NumberSetting kStartMethod = {"START", "Methode", 0, 0, 2};  // the program's, standard, row order
inline constexpr FlagSetting kStartAtHome = {"START", "Startkarte", false};   // a run begins with the home card
inline constexpr NumberSetting kCheckPosition = {"CHK", "rpos", 1};
inline constexpr NumberSetting kRowPosition = {"ROW", "Pos", kFirstCardRow};    // a row of the card table
inline constexpr TextSetting kExamDay = {"PROG", "Datum", ""};                  // "2027-03-12"
inline constexpr NumberSetting kPlanMinutes = {"PROG", "Minuten", 20, 0, 600};  // of learning a day
inline constexpr NumberSetting kPlanNewCards = {"PROG", "Neu", 15, 0, 999};     // a day
inline constexpr TextSetting kCompareSource = {"UPD", "Quelle", ""};  // a comparison that did not come to its end
inline constexpr NumberSetting kCompareRow = {"UPD", "Pos", kFirstCardRow, kFirstCardRow, 999'990};
inline constexpr NumberSetting kOverviewCard = {"HTML", "Vis", 0};

}  // namespace tessaro::keys
