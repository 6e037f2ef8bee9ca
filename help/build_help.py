#!/usr/bin/env python3
"""Builds the card file of the help, Hilfe.mlb, from the texts in source/. Run it after a change and commit both.

A file is a chapter; its first line "# Name" names it. "== name | Title" begins a card. Lines below it may say
    place: TF_wnmain TFrameBegin      the windows and controls that the card is the help for
    message: Fehler Speichern Kartei  the beginning of a line in messages of the program that it explains
    words: Speichern, Sichern         its entries in the index beside the title
Then the text follows: an empty line is a paragraph, "- " begins an item of a list, "## " a heading, **text** is bold,
`text` a key or a thing to click, [[name]] and [[name|text]] are links, "> name name" the cards to read next.
Overview and index are made of all cards. A text with a fault stops the build with a message and writes nothing.
"""

import re
import sys
from collections import namedtuple
from pathlib import Path

HERE = Path(__file__).resolve().parent
sys.dont_write_bytecode = True
sys.path.insert(0, str(HERE.parent / "samples"))
import build_samples  # noqa: E402

CHAPTERS = ("anfang", "lernen", "antworten", "karten", "austausch", "auswertung", "einstellungen", "fehler")
GAP = '<font size="5"><br></font>'
LETTERS = (("A", "E"), ("F", "K"), ("L", "R"), ("S", "T"), ("U", "Z"))

Text = namedtuple("Text", "name title chapter places messages words body")


def read_chapter(file_name):
    head, *blocks = re.split(r"^== (.+)\n", (HERE / "source" / f"{file_name}.txt").read_text("utf-8"), flags=re.M)
    chapter = re.fullmatch(r"# (.+)\n+", head)[1]
    for heading, block in zip(blocks[::2], blocks[1::2]):
        name, title = heading.split(" | ")
        marks, body = {"place": [], "message": [], "words": []}, block
        while found := re.match(r"(place|message|words): (.+)\n", body):
            marks[found[1]].append(found[2])
            body = body[found.end():]
        words = [word.strip() for line in marks["words"] for word in line.split(",")]
        yield Text(name, title, chapter, marks["place"], marks["message"], words, body.strip("\n"))


class Builder:
    def __init__(self, texts):
        self.texts = texts
        self.numbers = {text.name: number for number, text in enumerate(texts, 2 + len(LETTERS))}
        self.titles = {text.name: text.title for text in texts}
        if len(self.numbers) != len(texts):
            build_samples.fail("a name stands twice in the help")
        entries = [word for text in texts for word in [text.title] + text.words]
        if twice := sorted({word for word in entries if entries.count(word) > 1}):
            build_samples.fail(f"these entries of the help lead to two cards: {', '.join(twice)}")

    def link(self, name, face=None):
        if name not in self.numbers:
            build_samples.fail(f'the help has no card "{name}"')
        return build_samples.link(self.numbers[name], face or self.titles[name])

    def inline(self, text):
        # A side knows two entities only; one to be read as it stands is parted by a tag.
        text = text.replace("&", "&\0").replace("<", "&lt;").replace(">", "&gt;").replace("&\0", "&<i></i>")
        text = re.sub(r"\*\*(.+?)\*\*", r"<b>\1</b>", text)
        text = re.sub(r"`(.+?)`", r"<b>\1</b>", text)
        return re.sub(r"\[\[([^\]|]+)(?:\|(.+?))?\]\]", lambda found: self.link(found[1], found[2]), text)

    def paragraph(self, lines):
        """Its lines; what begins with a mark begins a line, all else goes on in the line before."""
        parts = []
        for line in lines.split("\n"):
            if line.startswith("- "):
                parts.append("•\u00a0" + self.inline(line[2:]))
            elif line.startswith("## "):
                parts.append(f"<b>{self.inline(line[3:])}</b>")
            elif line.startswith("> "):
                links = build_samples.DOT.join(self.link(name) for name in line[2:].split())
                parts.append(f"<b>Siehe auch:</b> {links}")
            elif parts and not parts[-1].startswith("<b>Siehe") and not lines.startswith("## "):
                parts[-1] += " " + self.inline(line)
            else:
                parts.append(self.inline(line))
        return "<br>".join(parts)

    def card(self, text):
        tags = f'<topic="{text.chapter}">'
        tags += "".join(f'<place="{place}">' for place in text.places)
        tags += "".join(f'<message="{message}">' for message in text.messages)
        body = f"<br>{GAP}".join(self.paragraph(lines) for lines in re.split(r"\n{2,}", text.body))
        side = f"<navigation>{tags}{build_samples.title(text.title)}<br>{GAP}{body}"
        return build_samples.Card(side, "<br>".join([text.title] + text.words))

    def home(self):
        side = f'<navigation><home><topic="Überblick"><place="TF_wnhelp">{build_samples.title("Übersicht")}<br>{GAP}'
        side += "F1 öffnet die Hilfe zu dem Fenster, in dem Sie gerade arbeiten. Hier stehen alle Karten nach Themen."
        for chapter in dict.fromkeys(text.chapter for text in self.texts):
            links = (self.link(text.name) for text in self.texts if text.chapter == chapter)
            side += f"<br>{GAP}<b>{chapter}</b><br>{build_samples.DOT.join(links)}"
        pages = (build_samples.link(2 + i, f"{first}–{last}") for i, (first, last) in enumerate(LETTERS))
        side += f"<br>{GAP}<b>Stichwörter</b><br>{build_samples.DOT.join(pages)}"
        return build_samples.Card(side, "Inhalt<br>Hilfe")

    def index(self, page):
        first, last = LETTERS[page]
        entries = {}
        for text in self.texts:
            for word in [text.title] + text.words:
                key = build_samples.sort_key(word.lstrip("„.<"))
                letter = key[0].upper()
                if first <= letter <= last:
                    entries.setdefault(letter, []).append((key, self.link(text.name, word)))
        mark = "<index>" if page == 0 else ""
        side = f'<navigation>{mark}<topic="Überblick">{build_samples.title(f"Stichwörter {first}–{last}")}'
        for letter in sorted(entries):
            links = build_samples.DOT.join(link for _, link in sorted(set(entries[letter])))
            side += f"<br>{GAP}<b>{letter}</b>  {links}"
        others = [build_samples.link(2 + i, f"{a}–{z}") for i, (a, z) in enumerate(LETTERS) if i != page]
        side += f"<br>{GAP}{build_samples.DOT.join([build_samples.link(1, 'Übersicht')] + others)}"
        return build_samples.Card(side, f"Stichwörter {first}–{last}<br>Index {first}–{last}")


def main():
    builder = Builder([text for chapter in CHAPTERS for text in read_chapter(chapter)])
    cards = [builder.home()] + [builder.index(page) for page in range(len(LETTERS))]
    cards += [builder.card(text) for text in builder.texts]
    build_samples.check("Hilfe", cards)
    build_samples.write("Hilfe", cards, HERE)


if __name__ == "__main__":
    main()
