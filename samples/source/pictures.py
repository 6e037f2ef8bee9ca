"""The illustrations and pictograms of the sample card files."""

import math

from drawing import Canvas, dashes, ellipse, mix, moved, polygon, rectangle, stroke, turned

INK, PAPER, WHITE = "#33415c", "#fffdf6", "#ffffff"
BLUE, GREEN, RED, SAND, GOLD, TEAL, PLUM = ("#3d6fa8", "#3a8a5f", "#c0504d", "#e9dcc0", "#e0a83c", "#3c8d93", "#7b5c8e")
SKY, SEA, SNOW = "#cfe3f2", "#4d8fb8", "#f6f9fc"


def forgetting_curve():
    """Memory over time: falling fast without repetition, ever slower after each repetition."""
    canvas = Canvas(520, 240)
    left, bottom, width, height = 34, 208, 470, 178
    canvas.fill(rectangle(0, 0, 520, 240, 14), "#f3f6fa")

    def place(time, memory):
        return (left + time * width, bottom - memory * height)

    for level in (0.25, 0.5, 0.75, 1.0):
        canvas.line([place(0, level), place(1, level)], 1, "#d5dee8")
    moments = [0.0, 0.055, 0.15, 0.33, 0.63, 1.0]
    curve = []
    for begin, end in zip(moments, moments[1:]):
        strength = (end - begin) / 0.45
        curve += [place(t, math.exp(-(t - begin) / strength))
                  for t in (begin + (end - begin) * i / 40 for i in range(41))]
    canvas.fill([curve + [place(1, 0), place(0, 0)]], GREEN, 0.14)
    lost = [place(i / 80, 0.06 + 0.94 * math.exp(-i / 80 / 0.09)) for i in range(81)]
    for piece in dashes(lost, 8, 7):
        canvas.line(piece, 2.5, RED)
    canvas.line(curve, 3, GREEN)
    for moment in moments[:-1]:
        canvas.fill(ellipse(*place(moment, 1), 7), PAPER)
        canvas.fill(ellipse(*place(moment, 1), 5), GREEN)
    draw_axes(canvas, left, bottom, width, height)
    canvas.save_png("Medien/lernkurve.png")


def draw_axes(canvas, left, bottom, width, height):
    canvas.line([(left, bottom - height - 14), (left, bottom), (left + width + 4, bottom)], 2, INK)
    canvas.fill(polygon((left - 5, bottom - height - 12), (left + 5, bottom - height - 12),
                        (left, bottom - height - 21)), INK)
    tip = left + width + 11
    canvas.fill(polygon((tip - 9, bottom - 5), (tip - 9, bottom + 5), (tip, bottom)), INK)


def growing_gaps():
    """Repetitions on a line of time, each gap twice the one before; the next one is only foreseen."""
    canvas = Canvas(520, 84)
    canvas.fill(rectangle(0, 0, 520, 84, 14), "#f3f6fa")
    unit, left, y = 36, 34, 54
    places = [left + unit * steps for steps in (0, 1, 3, 7, 7 + 16 / 3)]
    canvas.line([(left - 14, y), (places[3], y)], 3, INK)
    for piece in dashes([(places[3], y), (places[4], y)], 7, 8):
        canvas.line(piece, 3, INK)
    for begin, end in zip(places, places[1:]):
        arc = ellipse((begin + end) / 2, y - 10, (end - begin) / 2 - 3, 12 + (end - begin) / 14, 180, 360)[0]
        if end == places[4]:
            for piece in dashes(arc, 7, 6):
                canvas.line(piece, 2, BLUE)
        else:
            canvas.line(arc, 2, BLUE)
    for x in places[:4]:
        canvas.fill(ellipse(x, y, 8), GREEN)
        canvas.line([(x - 3.5, y), (x - 1, y + 3), (x + 4, y - 3)], 1.8, WHITE)
    canvas.fill(ellipse(places[4], y, 9), BLUE)
    canvas.fill(ellipse(places[4], y, 6.5), "#f3f6fa")
    canvas.save_png("Medien/abstaende.png")


def card_face(canvas, cx, cy, degrees, colour, mark):
    frame = rectangle(cx - 62, cy - 44, 124, 88, 9)
    canvas.fill(moved(turned(frame, degrees, cx, cy), 3, 5), INK, 0.16)
    canvas.fill(turned(frame, degrees, cx, cy), colour)
    canvas.fill(turned(rectangle(cx - 59, cy - 41, 118, 82, 7), degrees, cx, cy), PAPER)
    for y in (-22, 24):
        canvas.fill(turned(rectangle(cx - 46, cy + y, 92, 3, 1.5), degrees, cx, cy), SAND)
    for part, width in mark:
        canvas.fill(turned(stroke([(cx + x, cy + y) for x, y in part], width), degrees, cx, cy), colour)


def card_turning():
    """A card with a question, an arrow, the same card with its answer."""
    canvas = Canvas(380, 168)
    hook = ellipse(0, -6, 10, 10, 190, 410)[0]
    question = [(hook + [(0, 8)], 5), ([(0, 16.5), (0, 16.6)], 6)]
    card_face(canvas, 86, 92, -6, BLUE, question)
    card_face(canvas, 292, 92, 5, GREEN, [([(-15, 1), (-4, 12), (17, -12)], 6)])
    arc = ellipse(188, 62, 54, 44, 215, 325)[0]
    canvas.line(arc, 5, GOLD)
    tip_x, tip_y = arc[-1]
    canvas.fill(turned(polygon((tip_x - 13, tip_y - 9), (tip_x - 13, tip_y + 9), (tip_x + 8, tip_y)), 52, tip_x, tip_y),
                GOLD)
    canvas.save_bmp("Medien/karte-drehen.bmp")


def tile(name, colour, paint):
    """A pictogram of the tour: a white sign on a coloured tile."""
    canvas = Canvas(44, 44)
    canvas.fill(rectangle(0, 0, 44, 44, 10), colour)
    paint(canvas, colour)
    canvas.save_png(f"Medien/{name}.png")


def sign_cards(canvas, colour):
    for degrees, tint in ((-14, 0.45), (0, 0.75), (12, 1.0)):
        card = turned(rectangle(11, 14, 22, 16, 2.5), degrees, 22, 34)
        canvas.fill(card, mix(colour, WHITE, tint))
    canvas.line([(20, 20), (24, 24), (31, 16.5)], 2.6, colour)


def sign_clock(canvas, colour):
    canvas.fill(ellipse(22, 22, 13.5), WHITE)
    canvas.fill(ellipse(22, 22, 10.5), colour)
    canvas.line([(22, 15.5), (22, 22), (27, 25)], 2.6, WHITE)


def sign_next(canvas, colour):
    canvas.fill(rectangle(9, 12, 14, 20, 2.5), mix(colour, WHITE, 0.5))
    canvas.fill(rectangle(13, 12, 14, 20, 2.5), WHITE)
    canvas.line([(29, 22), (36, 22)], 2.8, WHITE)
    canvas.line([(32.5, 17.5), (37, 22), (32.5, 26.5)], 2.8, WHITE)


def sign_link(canvas, colour):
    for x, y in ((17.5, 26.5), (26.5, 17.5)):
        canvas.fill(turned(rectangle(x - 9, y - 5.5, 18, 11, 5.5), -45, x, y), WHITE)
        canvas.fill(turned(rectangle(x - 6, y - 2.5, 12, 5, 2.5), -45, x, y), colour)
    canvas.line([(18.5, 25.5), (25.5, 18.5)], 3, WHITE)


def sign_key(canvas, colour):
    canvas.fill(rectangle(9, 10, 26, 24, 4), mix(colour, WHITE, 0.5))
    canvas.fill(rectangle(11, 10, 22, 20, 3), WHITE)
    canvas.line([(28, 14.5), (28, 21), (17, 21)], 2.4, colour)
    canvas.line([(20, 17.8), (16.5, 21), (20, 24.2)], 2.4, colour)


def sign_box(canvas, colour):
    canvas.fill(rectangle(14, 9, 16, 14, 2), mix(colour, WHITE, 0.55))
    canvas.fill(rectangle(12, 13, 20, 12, 2), mix(colour, WHITE, 0.78))
    canvas.fill(polygon((8, 19), (36, 19), (33.5, 34), (10.5, 34)), WHITE)
    canvas.fill(rectangle(18, 24, 8, 4, 2), colour)


def medallion(name, sky, paint):
    """A pictogram of a continent: a little scene in a circle."""
    canvas = Canvas(64, 64)
    disc = ellipse(32, 32, 31)
    canvas.fill(disc, sky)
    paint(canvas, disc)
    canvas.save_png(f"Medien/{name}.png")


def scene_europe(canvas, disc):
    canvas.fill(ellipse(32, 74, 50, 28), "#7fa968", inside=disc)
    canvas.fill(rectangle(20, 26, 24, 26), "#e7d6b4")
    for x in (16, 38):
        canvas.fill(rectangle(x, 22, 10, 30), "#f3e6ca")
        canvas.fill(polygon((x - 2, 22), (x + 12, 22), (x + 5, 9)), RED)
        canvas.fill(rectangle(x + 3.5, 28, 3, 6, 1.5), INK)
    canvas.fill([ellipse(32, 42, 4)[0], rectangle(28, 42, 8, 10)[0]], INK)
    for x in (27, 31, 35):
        canvas.fill(rectangle(x - 0.5, 23, 3, 4), "#e7d6b4")


def scene_asia(canvas, disc):
    canvas.fill(ellipse(46, 18, 7), "#f6d88a")
    canvas.fill(ellipse(32, 78, 52, 28), "#8fb174", inside=disc)
    for level, half in enumerate((9, 12, 15)):
        y = 17 + 12 * level
        canvas.fill(rectangle(32 - half + 3, y + 3, 2 * half - 6, 10), "#f5ead2")
        canvas.fill(polygon((32 - half - 5, y + 5), (32 - half + 3, y - 1), (32 + half - 3, y - 1),
                            (32 + half + 5, y + 5), (32 + half, y + 4), (32 - half, y + 4)), RED)
    canvas.line([(32, 9), (32, 17)], 2, INK)
    canvas.fill(rectangle(29, 46, 6, 8, 1), INK)


def scene_africa(canvas, disc):
    canvas.fill(ellipse(43, 38, 12), "#f2734b", 0.9)
    canvas.fill(rectangle(0, 45, 64, 20), "#b9843c", inside=disc)
    canvas.line([(27, 50), (27, 36), (20, 27)], 3, INK)
    canvas.line([(27, 37), (35, 27)], 2.4, INK)
    for cx, cy, rx in ((20, 24, 12), (35, 23, 11), (27, 19, 12)):
        canvas.fill(ellipse(cx, cy, rx, 4.2), "#46683f")


def scene_north_america(canvas, disc):
    canvas.fill(rectangle(0, 48, 64, 16), SEA, inside=disc)
    for x, top, width, colour in ((9, 30, 9, PLUM), (19, 20, 10, BLUE), (30, 12, 9, INK), (40, 24, 9, TEAL),
                                  (50, 33, 8, PLUM)):
        canvas.fill(rectangle(x, top, width, 50 - top), colour, inside=disc)
        for y in range(top + 4, 45, 6):
            for dx in (2, width - 4):
                canvas.fill(rectangle(x + dx, y, 2, 3), "#f6e3a6", inside=disc)
    canvas.fill(polygon((31.5, 12), (37.5, 12), (34.5, 5)), INK)


def scene_south_america(canvas, disc):
    canvas.fill(ellipse(47, 17, 6), "#f6d88a")
    for x, top, half, colour in ((44, 24, 26, "#7d8fa8"), (22, 14, 26, "#5d7190")):
        slope = (52 - top) / half
        canvas.fill(polygon((x - half, 52), (x, top), (x + half, 52)), colour, inside=disc)
        canvas.fill(polygon((x, top), (x - 11 / slope, top + 11), (x - 4, top + 8), (x + 1, top + 12), (x + 5, top + 8),
                            (x + 11 / slope, top + 11)), SNOW, inside=disc)
    canvas.fill(ellipse(32, 76, 52, 30), "#4f8a5b", inside=disc)


def scene_oceania(canvas, disc):
    canvas.fill(rectangle(0, 44, 64, 20), SEA, inside=disc)
    canvas.fill(ellipse(32, 46, 18, 6), "#f0dca8")
    canvas.line([(30, 45), (32, 34), (36, 24)], 3, "#7a5a3a")
    for tip, bend in (((18, 24), (25, 17)), ((22, 32), (27, 22)), ((54, 25), (46, 17)), ((48, 33), (45, 23)),
                      ((40, 11), (36, 15))):
        canvas.fill(polygon((36, 23), bend, tip, ((bend[0] + 36) / 2, bend[1] + 6)), GREEN)
    for y in (52, 57):
        wave = [(x, y + 1.3 * math.sin(x / 2.6 + y)) for x in range(10, 55)]
        canvas.line(wave, 1.4, "#d7ebf6", inside=disc)


def globe():
    """A globe on its stand, nothing but its lines of latitude and longitude."""
    canvas = Canvas(150, 150)
    cx, cy, radius = 75, 66, 52
    canvas.fill(ellipse(cx, 141, 30, 5), INK, 0.18)
    canvas.fill(stroke([(cx, 124), (cx, 136)], 6) + stroke([(cx - 20, 138), (cx + 20, 138)], 6), INK)
    canvas.line(ellipse(cx, cy, 60, None, -62, 118)[0], 4, GOLD)
    disc = ellipse(cx, cy, radius)
    canvas.fill(disc, SEA)
    canvas.fill(ellipse(cx - 12, cy - 14, 34), "#6fb0d4", 0.55, inside=disc)
    lines = [ellipse(cx, cy, radius * share, radius)[0] for share in (0.38, 0.75)]
    lines.append([(cx, cy - radius), (cx, cy + radius)])
    for latitude in (-50, -25, 0, 25, 50):
        sin, cos = math.sin(math.radians(latitude)), math.cos(math.radians(latitude))
        lines.append([(cx - radius * cos, cy + radius * sin), (cx + radius * cos, cy + radius * sin)])
    for line in lines:
        canvas.fill(turned(stroke(line, 1.3), 23, cx, cy), WHITE, 0.7, inside=disc)
    for angle in (-67, 113):
        x, y = cx + 56 * math.cos(math.radians(angle)), cy + 56 * math.sin(math.radians(angle))
        canvas.fill(ellipse(x, y, 4.5), GOLD)
    canvas.save_png("Medien/globus.png")


def draw_all():
    forgetting_curve()
    growing_gaps()
    card_turning()
    globe()
    for name, colour, paint in (("antworten", GREEN, sign_cards), ("zeit", BLUE, sign_clock), ("auswahl", TEAL, sign_next),
                                ("links", PLUM, sign_link), ("tasten", GOLD, sign_key), ("kasten", RED, sign_box)):
        tile(name, colour, paint)
    for name, sky, paint in (("europa", SKY, scene_europe), ("asien", "#f3d9c4", scene_asia),
                             ("afrika", "#fbd48b", scene_africa), ("nordamerika", "#dfe5f3", scene_north_america),
                             ("suedamerika", SKY, scene_south_america), ("ozeanien", "#c9ecef", scene_oceania)):
        medallion(name, sky, paint)
