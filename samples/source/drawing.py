"""A small canvas: fills and strokes polygons with smooth edges and writes PNG and BMP files.

Coordinates are pixels from the top left corner; colours are "#rrggbb". A shape is a list of polygons, a polygon a
list of (x, y); overlapping polygons of one shape count once.
"""

import math
import struct
import zlib

SUBROWS = 8  # every pixel row is sampled that often; inside a sample, widths are exact


def rgb(colour):
    return tuple(int(colour[i:i + 2], 16) / 255 for i in (1, 3, 5))


def mix(first, second, share):
    """The colour between two, `share` of the way to the second."""
    parts = [a + (b - a) * share for a, b in zip(rgb(first), rgb(second))]
    return "#" + "".join(f"{round(255 * part):02x}" for part in parts)


def ellipse(cx, cy, rx, ry=None, start=0.0, end=360.0):
    ry = rx if ry is None else ry
    steps = max(12, int(abs(end - start) / 360 * (24 + 2 * max(rx, ry))))
    angles = [math.radians(start + (end - start) * i / steps) for i in range(steps + 1)]
    return [[(cx + rx * math.cos(a), cy + ry * math.sin(a)) for a in angles]]


def rectangle(left, top, width, height, radius=0.0):
    if radius <= 0:
        return [[(left, top), (left + width, top), (left + width, top + height), (left, top + height)]]
    corners = ((left + width - radius, top + radius, 270), (left + width - radius, top + height - radius, 0),
               (left + radius, top + height - radius, 90), (left + radius, top + radius, 180))
    return [[p for cx, cy, a in corners for p in ellipse(cx, cy, radius, None, a, a + 90)[0]]]


def polygon(*points):
    return [list(points)]


def stroke(points, width):
    """A line along the points with round ends and joints."""
    half = width / 2
    shape = [ellipse(x, y, half)[0] for x, y in points]
    for (x1, y1), (x2, y2) in zip(points, points[1:]):
        length = math.hypot(x2 - x1, y2 - y1)
        if length > 0:
            dx, dy = -(y2 - y1) / length * half, (x2 - x1) / length * half
            shape.append([(x1 + dx, y1 + dy), (x2 + dx, y2 + dy), (x2 - dx, y2 - dy), (x1 - dx, y1 - dy)])
    return shape


def dashes(points, dash, gap):
    """Cuts a line into pieces of length `dash`, `gap` apart."""
    pieces, piece, rest, drawing = [], [points[0]], dash, True
    for start, end in zip(points, points[1:]):
        while math.dist(start, end) > rest:
            share = rest / math.dist(start, end)
            start = (start[0] + (end[0] - start[0]) * share, start[1] + (end[1] - start[1]) * share)
            if drawing:
                pieces.append(piece + [start])
            drawing = not drawing
            piece, rest = [start], dash if drawing else gap
        rest -= math.dist(start, end)
        piece.append(end)
    return pieces + ([piece] if drawing and len(piece) > 1 else [])


def turned(shape, degrees, cx, cy):
    cos, sin = math.cos(math.radians(degrees)), math.sin(math.radians(degrees))
    return [[(cx + (x - cx) * cos - (y - cy) * sin, cy + (x - cx) * sin + (y - cy) * cos) for x, y in part]
            for part in shape]


def moved(shape, dx, dy):
    return [[(x + dx, y + dy) for x, y in part] for part in shape]


def _area(part):
    return sum(x1 * y2 - x2 * y1 for (x1, y1), (x2, y2) in zip(part, part[1:] + part[:1]))


def _crossings(shape, y):
    """Where the horizontal line at y enters (+1) and leaves (-1) a polygon, from left to right."""
    found = []
    for part in shape:
        part = part if _area(part) > 0 else part[::-1]
        for (x1, y1), (x2, y2) in zip(part, part[1:] + part[:1]):
            if (y1 <= y) != (y2 <= y):
                found.append((x1 + (y - y1) * (x2 - x1) / (y2 - y1), 1 if y2 > y1 else -1))
    return sorted(found)


class Canvas:
    def __init__(self, width, height):
        self.width, self.height = width, height
        self.pixels = [(0.0, 0.0, 0.0, 0.0)] * (width * height)  # red, green, blue times alpha; alpha

    def fill(self, shape, colour, alpha=1.0, inside=None):
        """Paints a shape; `inside` is a shape that bounds it."""
        red, green, blue = rgb(colour)
        for y, row in self._coverage(shape):
            limit = dict(self._coverage(inside, y, y)).get(y) if inside else None
            for x, cover in enumerate(row):
                cover = alpha * min(cover, limit[x] if limit else 0 if inside else 1)
                if cover > 0:
                    r, g, b, a = self.pixels[y * self.width + x]
                    rest = 1 - cover
                    self.pixels[y * self.width + x] = (r * rest + red * cover, g * rest + green * cover,
                                                       b * rest + blue * cover, a * rest + cover)

    def line(self, points, width, colour, alpha=1.0, inside=None):
        self.fill(stroke(points, width), colour, alpha, inside)

    def _coverage(self, shape, first=0, last=None):
        ys = [y for part in shape for _, y in part]
        first = max(first, math.floor(min(ys)))
        last = min(self.height - 1 if last is None else last, math.ceil(max(ys)))
        for y in range(first, last + 1):
            row = [0.0] * self.width
            for sub in range(SUBROWS):
                self._add_spans(row, _crossings(shape, y + (sub + 0.5) / SUBROWS))
            yield y, row

    def _add_spans(self, row, crossings):
        winding, begin = 0, 0.0
        for x, direction in crossings:
            if winding == 0:
                begin = x
            winding += direction
            if winding == 0:
                left, right = max(0.0, begin), min(float(self.width), x)
                for column in range(int(left), math.ceil(right)):
                    row[column] += max(0.0, min(right, column + 1) - max(left, column)) / SUBROWS

    def save_png(self, path):
        raw = bytearray()
        for y in range(self.height):
            raw.append(0)
            for r, g, b, a in self.pixels[y * self.width:(y + 1) * self.width]:
                # What is fully transparent is white below, for a reader that ignores transparency.
                raw += bytes(round(255 * min(1.0, c / a)) if a > 0 else 255 for c in (r, g, b)) + bytes([round(255 * a)])
        chunks = [(b"IHDR", struct.pack(">IIBBBBB", self.width, self.height, 8, 6, 0, 0, 0)),
                  (b"IDAT", zlib.compress(bytes(raw), 9)), (b"IEND", b"")]
        with open(path, "wb") as file:
            file.write(b"\x89PNG\r\n\x1a\n")
            for kind, data in chunks:
                file.write(struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data)))

    def save_bmp(self, path):
        """On white, which the program shows as transparent."""
        rows = bytearray()
        for y in range(self.height - 1, -1, -1):
            line = bytearray()
            for r, g, b, a in self.pixels[y * self.width:(y + 1) * self.width]:
                line += bytes(round(255 * min(1.0, c + 1 - a)) for c in (b, g, r))
            rows += line + bytes(-len(line) % 4)
        header = struct.pack("<IiiHHIIiiII", 40, self.width, self.height, 1, 24, 0, len(rows), 3780, 3780, 0, 0)
        with open(path, "wb") as file:
            file.write(struct.pack("<2sIHHI", b"BM", 54 + len(rows), 0, 0, 54) + header + rows)
