#!/usr/bin/env python3
"""Builds the sample card files and their pictures from the texts in source/.

    samples/build_samples.py              builds the card files, draws the pictures
    samples/build_samples.py --no-pictures    only the card files

The results are committed, so this is for whoever changes a text or a picture. A text with a fault (a link without
target, a missing picture, a letter outside the code page, ...) stops the build with a message and writes nothing.
"""

import os
import re
import sys
from collections import namedtuple
from pathlib import Path

HERE = Path(__file__).resolve().parent
SEPARATOR, ENCODING = "\x0f", "cp1252"
COLUMNS = ("ID", "Topic", "Question", "Answer", "Score", "TimeLearned", "YesNoRow", "TimeRow")
HISTORY = 64
MAX_LINKS = 110  # of the links of one side beyond these, only the last one answers a click
DOT = "\u00a0· "  # between links; the first blank does not let a line begin with the dot
SMALL_GAP = '<font size="5"><br></font>'

Card = namedtuple("Card", "question answer")
Country = namedtuple("Country", "name capital fact continent region picture id")


def fail(message):
    sys.exit(f"build_samples: {message}")


def link(target, face):
    return f'<a href="{target:06d}">{face}</a>'


def picture(name):
    return f'<img src="Medien\\{name}" border="0">'


def title(text):
    return f'<font size="18"><b>{text}</b></font>'


# --- The tour: "== name" begins a card, "--" its back. An empty line is a paragraph, "# " a title,
# --- [[name|text]] a link and ((file)) a picture.

def read_tour():
    blocks = re.split(r"^== (\S+)\n", (HERE / "source/erste_schritte.txt").read_text("utf-8"), flags=re.M)
    names = blocks[1::2]
    if len(set(names)) != len(names):
        fail("a name stands twice in erste_schritte.txt")
    numbers = {name: number for number, name in enumerate(names, 1)}
    cards = []
    for name, block in zip(names, blocks[2::2]):
        sides = re.split(r"^--\n", block, flags=re.M)
        if len(sides) != 2:
            fail(f'card "{name}" needs one line "--" between front and back')
        question, answer = (markup(side, numbers) for side in sides)
        if "<navigation>" not in question:
            question = f'<font size="18">{question}</font>'
        cards.append(Card(question, answer))
    return cards


def markup(side, numbers):
    paragraphs = [paragraph(lines) for lines in re.split(r"\n{2,}", side.strip("\n"))]
    text = "".join(paragraphs).removesuffix("<br><br>")
    text = re.sub(r"\(\((\S+?)\)\)", lambda found: picture(found[1]), text)

    def expand(found):
        if found[1] not in numbers:
            fail(f'no card "{found[1]}" in erste_schritte.txt')
        return link(numbers[found[1]], found[2])
    return re.sub(r"\[\[(\S+?)\|(.+?)\]\]", expand, text)


def paragraph(lines):
    """One paragraph with the empty line below it. A picture ends its line by itself and wants some air below."""
    text = re.sub(r"\n?^# (.*)$", lambda found: title(found[1]), lines, flags=re.M)
    text = " ".join(text.split("\n")).replace("<br> ", "<br>")
    text = re.sub(r"^(\(\(\S+\)\)) ", r"\1" + SMALL_GAP, text).replace(" · ", DOT)
    return text + "<br><br>"


# --- The capitals: an index in two parts, an overview for each continent, a card for each state.

def read_countries():
    countries, continent, region, file_name = [], "", "", ""
    lines = (HERE / "source/hauptstaedte.txt").read_text("utf-8").splitlines()
    continents = [line[3:].split(" | ") for line in lines if line.startswith("== ")]
    first_id = 4 + len(continents)
    for line in lines:
        if line.startswith("== "):
            continent, file_name = line[3:].split(" | ")
        elif line.startswith("-- "):
            region = line[3:]
        elif line and not line.startswith("#"):
            parts = line.split(" | ")
            if len(parts) != 3:
                fail(f'not "Staat | Hauptstadt | Wissenswertes": {line}')
            countries.append(Country(*parts, continent, region, file_name, first_id + len(countries)))
    return countries, continents


def read_capitals():
    countries, continents = read_countries()
    overview = {name: number for number, (name, _) in enumerate(continents, 4)}
    cards = [capitals_home(countries, continents, overview)] + capitals_index(countries)
    cards += [continent_card(name, file_name, countries) for name, file_name in continents]
    return cards + [capital_card(country, overview[country.continent]) for country in countries]


def capitals_home(countries, continents, overview):
    pictures = "".join(link(overview[name], picture(file_name)) + " " for name, file_name in continents)
    names = []
    for name, _ in continents:
        count = sum(country.continent == name for country in countries)
        names.append(f"{link(overview[name], name)}\u00a0({count})")
    question = (f'<font size="3"><navigation><home><br></font>'
                f"{title('Hauptstädte der Welt')}<br>{picture('globus.png')}"
                f"{len(countries)} Karten: vorn ein Staat, hinten seine Hauptstadt.<br>"
                f"Lernen Sie mit Enter, oder wählen Sie einen Erdteil:<br>{SMALL_GAP}{pictures}<br>{SMALL_GAP}"
                f'{DOT.join(names)}<br>{SMALL_GAP}<font size="12">Alle Staaten: {link(2, "A bis L")}{DOT}'
                f'{link(3, "M bis Z")}</font>')
    back = ("Aufgenommen sind die 193 Mitglieder der Vereinten Nationen, dazu Vatikanstadt, Kosovo, Palästina, Taiwan, "
            "die Cookinseln und Niue. Namen und Hauptstädte haben den Stand von 2025; die Regionen folgen dem "
            f'üblichen Gebrauch.<br><br>{link(1, "Nach vorn")}')
    return Card(question, back)


def sort_key(name):
    return name.lower().translate(str.maketrans("äöüé", "aoue"))


def capitals_index(countries):
    def side(first, last):
        entries = {}
        for country in sorted(countries, key=lambda country: sort_key(country.name)):
            letter = sort_key(country.name)[0].upper()
            if first <= letter <= last:
                entries.setdefault(letter, []).append(link(country.id, country.name))
        return "<br>".join(f"<b>{letter}</b>  {DOT.join(links)}" for letter, links in entries.items())

    back = f'Die Staaten stehen auf der Vorderseite.<br><br>{link(1, "Zur Startkarte")}'
    start = '<br><br><font size="12">' + link(1, "Zur Startkarte") + DOT
    return [Card(f"<index><navigation>{title('A bis L')}<br><br>{side('A', 'L')}{start}{link(3, 'M bis Z')}</font>", back),
            Card(f"<navigation>{title('M bis Z')}<br><br>{side('M', 'Z')}{start}{link(2, 'A bis L')}</font>", back)]


def continent_card(name, file_name, countries):
    regions = {}
    for country in countries:
        if country.continent == name:
            regions.setdefault(country.region, []).append(link(country.id, country.name))
    text = f"<navigation>{link(1, picture(file_name))}  {title(name)}<br>"
    for region, links in regions.items():
        heading = "" if len(regions) == 1 else f"<b>{region}</b><br>"
        text += f"{SMALL_GAP}{heading}{DOT.join(links)}<br>"
    text += f'{SMALL_GAP}<font size="12">{link(1, "Zur Startkarte")}</font>'
    back = ("Die Farben der Links zeigen, wie Sie stehen: grün = gewusst, rot = fällig oder zuletzt nicht gewusst, "
            f'blau = noch nie beantwortet.<br><br>{link(1, "Zur Startkarte")}')
    return Card(text, back)


def capital_card(country, overview):
    question = (f'<topic="{country.continent}"><font size="12">{country.region}</font><br><br>'
                f'<font size="26"><b>{country.name}</b></font>')
    answer = (f'<font size="26"><b>{country.capital}</b></font><br><br>{country.fact}<br><br>'
              f'<font size="12">{link(overview, country.continent)}</font>')
    return Card(question, answer)


# --- Typing training: a card for each line, under the topic of its row of keys.

def read_typing():
    topic, rows = "", []
    for line in (HERE / "source/tastatur.txt").read_text("utf-8").splitlines():
        if line.startswith("== "):
            topic = line[3:]
        elif line and not line.startswith("#"):
            rows.append((topic, line))
    first, topics = {}, {}
    for number, (topic, _) in enumerate(rows, 3):
        first.setdefault(topic, number)
        topics[topic] = topics.get(topic, 0) + 1
    names = DOT.join(f"{link(first[name], name)}\u00a0({count})" for name, count in topics.items())
    home = Card(f'<font size="3"><navigation><home><br></font>{title("Tastaturtraining")}<br><br>'
                "Schalten Sie im Lernfenster das Tastaturtraining ein (Strg+3) und schreiben Sie den Text jeder Karte ab."
                f"<br><br>{names}<br><br>Gewusst ist eine Karte, die schnell genug und mit wenig Fehlern getippt ist. "
                "Beide Grenzen stehen unter Extras, Optionen.", f'{link(1, "Nach vorn")}')
    index = Card(f'<index><navigation>{title("Reihen")}<br><br>{names}<br><br>{link(1, "Zur Startkarte")}',
                 link(1, "Zur Startkarte"))
    return [home, index] + [Card(f'<topic="{topic}"><font size="18">{text}</font>', topic) for topic, text in rows]


# --- Test questions: options with letters or numbers in front, the key alone behind.

def read_questions():
    blocks = re.split(r"^== (.+)\n", (HERE / "source/pruefungsfragen.txt").read_text("utf-8"), flags=re.M)
    cards = [question_card(key, block.strip().splitlines()) for key, block in zip(blocks[1::2], blocks[2::2])]
    home = Card(f'<font size="3"><navigation><home><br></font>{title("Prüfungsfragen")}<br><br>'
                f"{len(cards)} Fragen, bei manchen sind mehrere Antworten richtig. Schalten Sie im Lernfenster die "
                "Auswahlleiste ein (Strg+1).<br><br>Eine Antwort: Buchstaben oder Ziffer drücken oder anklicken. "
                "Mehrere: ankreuzen, dann Eingabetaste.", link(1, "Nach vorn"))
    index = Card(f'<index><navigation>{title("Fragen")}<br><br>'
                 + DOT.join(link(number, str(number - 2)) for number in range(3, len(cards) + 3)), link(1, "Zur Startkarte"))
    return [home, index] + cards


def question_card(key, lines):
    numbers = key[0].isdigit()
    names = [str(number) if numbers else "ABCDEFGH"[number - 1] for number in range(1, len(lines))]
    for name in key.split():
        if name not in names:
            fail(f"the question {lines[0]!r} has no option {name}")
    options = "<br>".join(f"<b>{name}</b>  {option}" for name, option in zip(names, lines[1:]))
    return Card(f'<font size="18">{lines[0]}<br><br>{options}</font>', key)


# --- Checks and output

def check(name, cards):
    for number, card in enumerate(cards, 1):
        for side in card:
            place = f"{name}, card {number:06d}"
            try:
                side.encode(ENCODING)
            except UnicodeEncodeError as error:
                fail(f"{place}: {side[error.start]!r} is not in the code page")
            links = re.findall(r'<a href="([^"]*)">', side)
            if len(links) > MAX_LINKS:
                fail(f"{place}: {len(links)} links on one side, more than {MAX_LINKS}")
            for target in links:
                if not re.fullmatch(r"\d{6}", target) or not 1 <= int(target) <= len(cards):
                    fail(f"{place}: the link {target!r} has no target")
            for file_name in re.findall(r'<img src="Medien\\([^"]*)"', side):
                if not (HERE / "Medien" / file_name).is_file():
                    fail(f"{place}: no picture {file_name}")
            if re.search(r"\[\[|\(\(|\n|\r", side) or not side:
                fail(f"{place}: a mark was left over, or the side is empty")
            if side.count("<a ") != side.count("</a>") or len(re.findall("<font ", side)) != side.count("</font>"):
                fail(f"{place}: a tag stays open")
    for mark in ("<home>", "<index>"):
        if sum(mark in card.question for card in cards) != 1:
            fail(f"{name}: exactly one card carries {mark}")


def escape(text):
    return text.replace("\\", "\\\\").replace("\n", "\\n").replace(SEPARATOR, "\\" + SEPARATOR)


def write(name, cards, folder=HERE):
    blank = [""] * (len(COLUMNS) - 1)
    rows = [list(COLUMNS), ["@@"] + blank]
    for number, card in enumerate(cards, 1):
        rows.append([f"{number:06d}", "00", card.question, card.answer, "000000001", "00", "f" * HISTORY,
                     " ".join("0" * HISTORY)])
    rows.append(["##"] + blank)
    lines = [SEPARATOR.join(map(escape, row)) + "\n" for row in rows]
    (folder / f"{name}.mlb").write_bytes("".join(lines).encode(ENCODING))
    print(f"{name}.mlb: {len(cards)} cards")


def write_settings():
    """The tour begins with its home card and goes on in its order, however its reader learned before."""
    (HERE / "Erste Schritte.ini").write_text("[START]\nMethode=2\nStartkarte=1\n")


def main():
    if "--no-pictures" not in sys.argv[1:]:
        sys.dont_write_bytecode = True
        sys.path.insert(0, str(HERE / "source"))
        import pictures
        os.chdir(HERE)
        os.makedirs("Medien", exist_ok=True)
        pictures.draw_all()
    decks = {"Erste Schritte": read_tour(), "Hauptstädte der Welt": read_capitals(),
             "Prüfungsfragen": read_questions(), "Tastaturtraining": read_typing()}
    for name, cards in decks.items():
        check(name, cards)
    for name, cards in decks.items():
        write(name, cards)
    write_settings()


if __name__ == "__main__":
    main()
