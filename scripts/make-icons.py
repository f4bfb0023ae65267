#!/usr/bin/env python3
"""Draws the client's image assets as SVG files into src/resources/images/.

Every picture the client asks for by name is made here, so that the whole set
shares one grid, one stroke weight and one palette, and can be redrawn after a
change of style. Text inside pictures is turned into outlines from the bundled
Mulish font, so that a picture looks the same wherever it is rendered.

Usage: scripts/make-icons.py            (writes the set, removes stale files)
       scripts/make-icons.py --list     (prints the asset names)

Python 3 standard library only.
"""

import math
import os
import struct
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
IMAGES = os.path.join(ROOT, "src", "resources", "images")
FONTS = os.path.join(ROOT, "src", "resources", "fonts")

# The product's palette.
ACCENT = "#F26723"
ACCENT_DARK = "#D4531A"
ACCENT_TINT = "#FDEEE6"
BADGE = "#E78169"
LIGHT_ROW = "#FAFAFA"
BORDER = "#979797"
LINE = "#CECECE"
TEXT = "#58585B"
WHITE = "#FFFFFF"
ALERT_RED = "#F96D6D"
ALERT_YELLOW = "#FFCE00"
STATUS_DARK = "#3A3A3D"


def num(v):
    """A coordinate as short text: at most two decimals, no trailing zeros."""
    s = "%.2f" % v
    s = s.rstrip("0").rstrip(".")
    return "0" if s in ("-0", "") else s


# --------------------------------------------------------------------------
# Outlines of text from a TrueType font (glyf outlines, cmap, hmtx, GPOS kerning)
# --------------------------------------------------------------------------

class Font:
    def __init__(self, path):
        with open(path, "rb") as f:
            self.data = f.read()
        d = self.data
        self.tables = {}
        for i in range(struct.unpack(">H", d[4:6])[0]):
            tag, _, off, length = struct.unpack(">4sIII", d[12 + 16 * i:28 + 16 * i])
            self.tables[tag.decode("latin-1")] = (off, length)
        head = self.tables["head"][0]
        self.units_per_em = self.u16(head + 18)
        self.long_loca = self.s16(head + 50) == 1
        self.num_glyphs = self.u16(self.tables["maxp"][0] + 4)
        self.num_hmetrics = self.u16(self.tables["hhea"][0] + 34)
        self.cmap = self._read_cmap()
        self.kerning = self._read_kerning()

    def u16(self, o):
        return struct.unpack(">H", self.data[o:o + 2])[0]

    def s16(self, o):
        return struct.unpack(">h", self.data[o:o + 2])[0]

    def u32(self, o):
        return struct.unpack(">I", self.data[o:o + 4])[0]

    def _read_cmap(self):
        base = self.tables["cmap"][0]
        best = None
        for i in range(self.u16(base + 2)):
            pid, eid, off = struct.unpack(">HHI", self.data[base + 4 + 8 * i:base + 12 + 8 * i])
            fmt = self.u16(base + off)
            if fmt == 4 and (pid, eid) in ((3, 1), (0, 3)):
                best = base + off
        if best is None:
            raise SystemExit("font has no Unicode BMP cmap")
        o = best
        seg = self.u16(o + 6) // 2
        ends = o + 14
        starts = ends + 2 * seg + 2
        deltas = starts + 2 * seg
        ranges = deltas + 2 * seg
        cmap = {}
        for s in range(seg):
            end = self.u16(ends + 2 * s)
            start = self.u16(starts + 2 * s)
            delta = self.s16(deltas + 2 * s)
            roff = self.u16(ranges + 2 * s)
            for c in range(start, end + 1):
                if c == 0xFFFF:
                    continue
                if roff == 0:
                    g = (c + delta) & 0xFFFF
                else:
                    g = self.u16(ranges + 2 * s + roff + 2 * (c - start))
                    if g:
                        g = (g + delta) & 0xFFFF
                if g:
                    cmap[c] = g
        return cmap

    def advance(self, gid):
        hmtx = self.tables["hmtx"][0]
        return self.u16(hmtx + 4 * min(gid, self.num_hmetrics - 1))

    # GPOS pair adjustment of the 'kern' feature: enough for Latin text.
    def _read_kerning(self):
        if "GPOS" not in self.tables:
            return []
        g = self.tables["GPOS"][0]
        features = g + self.u16(g + 6)
        lookups = g + self.u16(g + 8)
        wanted = set()
        for i in range(self.u16(features)):
            tag = self.data[features + 2 + 6 * i:features + 6 + 6 * i]
            if tag == b"kern":
                f = features + self.u16(features + 6 + 6 * i)
                for j in range(self.u16(f + 2)):
                    wanted.add(self.u16(f + 4 + 2 * j))
        subtables = []
        for li in sorted(wanted):
            lk = lookups + self.u16(lookups + 2 + 2 * li)
            ltype = self.u16(lk)
            for k in range(self.u16(lk + 4)):
                st = lk + self.u16(lk + 6 + 2 * k)
                t = ltype
                if t == 9:
                    t = self.u16(st + 2)
                    st = st + self.u32(st + 4)
                if t == 2:
                    subtables.append(st)
        return subtables

    def _coverage(self, o, gid):
        fmt = self.u16(o)
        if fmt == 1:
            for i in range(self.u16(o + 2)):
                if self.u16(o + 4 + 2 * i) == gid:
                    return i
        elif fmt == 2:
            for i in range(self.u16(o + 2)):
                start, end, index = struct.unpack(">HHH", self.data[o + 4 + 6 * i:o + 10 + 6 * i])
                if start <= gid <= end:
                    return index + gid - start
        return -1

    def _class(self, o, gid):
        fmt = self.u16(o)
        if fmt == 1:
            first = self.u16(o + 2)
            count = self.u16(o + 4)
            if first <= gid < first + count:
                return self.u16(o + 6 + 2 * (gid - first))
        elif fmt == 2:
            for i in range(self.u16(o + 2)):
                start, end, cls = struct.unpack(">HHH", self.data[o + 4 + 6 * i:o + 10 + 6 * i])
                if start <= gid <= end:
                    return cls
        return 0

    @staticmethod
    def _value_size(fmt):
        return 2 * bin(fmt).count("1")

    def _x_advance(self, o, fmt):
        # XAdvance is the third possible field of a value record.
        if not fmt & 4:
            return 0
        skip = 2 * bin(fmt & 3).count("1")
        return struct.unpack(">h", self.data[o + skip:o + skip + 2])[0]

    def kern(self, left, right):
        for st in self.kerning:
            fmt = self.u16(st)
            cov = self._coverage(st + self.u16(st + 2), left)
            if cov < 0:
                continue
            vf1, vf2 = self.u16(st + 4), self.u16(st + 6)
            size1, size2 = self._value_size(vf1), self._value_size(vf2)
            if fmt == 1:
                ps = st + self.u16(st + 10 + 2 * cov)
                for i in range(self.u16(ps)):
                    rec = ps + 2 + i * (2 + size1 + size2)
                    if self.u16(rec) == right:
                        return self._x_advance(rec + 2, vf1)
            elif fmt == 2:
                c1 = self._class(st + self.u16(st + 8), left)
                c2 = self._class(st + self.u16(st + 10), right)
                count2 = self.u16(st + 14)
                rec = st + 16 + (c1 * count2 + c2) * (size1 + size2)
                return self._x_advance(rec, vf1)
        return 0

    def glyph_contours(self, gid):
        """Contours of a glyph: lists of (x, y, on_curve) in font units."""
        loca = self.tables["loca"][0]
        glyf = self.tables["glyf"][0]
        if self.long_loca:
            start, end = self.u32(loca + 4 * gid), self.u32(loca + 4 * gid + 4)
        else:
            start, end = 2 * self.u16(loca + 2 * gid), 2 * self.u16(loca + 2 * gid + 2)
        if start == end:
            return []
        o = glyf + start
        ncont = self.s16(o)
        if ncont < 0:
            return self._composite(o + 10)
        ends = [self.u16(o + 10 + 2 * i) for i in range(ncont)]
        npts = ends[-1] + 1
        p = o + 10 + 2 * ncont
        p += 2 + self.u16(p)
        flags = []
        while len(flags) < npts:
            f = self.data[p]
            p += 1
            flags.append(f)
            if f & 8:
                flags.extend([f] * self.data[p])
                p += 1
        coords = []
        for short_bit, same_bit in ((2, 16), (4, 32)):
            v, vals = 0, []
            for f in flags:
                if f & short_bit:
                    dv = self.data[p]
                    p += 1
                    v += dv if f & same_bit else -dv
                elif not f & same_bit:
                    v += self.s16(p)
                    p += 2
                vals.append(v)
            coords.append(vals)
        contours, first = [], 0
        for e in ends:
            contours.append([(coords[0][i], coords[1][i], bool(flags[i] & 1)) for i in range(first, e + 1)])
            first = e + 1
        return contours

    def _composite(self, o):
        contours = []
        while True:
            flags, gid = self.u16(o), self.u16(o + 2)
            o += 4
            if flags & 1:
                dx, dy = self.s16(o), self.s16(o + 2)
                o += 4
            else:
                dx, dy = struct.unpack(">bb", self.data[o:o + 2])
                o += 2
            a, b, c, d = 1.0, 0.0, 0.0, 1.0
            if flags & 8:
                a = d = self.s16(o) / 16384.0
                o += 2
            elif flags & 0x40:
                a, d = self.s16(o) / 16384.0, self.s16(o + 2) / 16384.0
                o += 4
            elif flags & 0x80:
                a, b, c, d = (self.s16(o + 2 * i) / 16384.0 for i in range(4))
                o += 8
            if not flags & 2:
                dx = dy = 0  # point matching is not used by this font's Latin glyphs
            for cont in self.glyph_contours(gid):
                contours.append([(a * x + c * y + dx, b * x + d * y + dy, on) for x, y, on in cont])
            if not flags & 0x20:
                return contours

    def text_width(self, text, size, spacing=0.0):
        scale = size / self.units_per_em
        gids = [self.cmap.get(ord(ch), 0) for ch in text]
        w = 0.0
        for i, g in enumerate(gids):
            w += self.advance(g) * scale
            if i + 1 < len(gids):
                w += self.kern(g, gids[i + 1]) * scale + spacing
        return w

    def text_path(self, text, size, x, baseline, anchor="middle", spacing=0.0):
        """SVG path data of a line of text set at the given baseline."""
        scale = size / self.units_per_em
        width = self.text_width(text, size, spacing)
        if anchor == "middle":
            x -= width / 2
        elif anchor == "end":
            x -= width
        gids = [self.cmap.get(ord(ch), 0) for ch in text]
        parts = []
        pen = x
        for i, g in enumerate(gids):
            for cont in self.glyph_contours(g):
                parts.append(self._contour_path(cont, pen, baseline, scale))
            pen += self.advance(g) * scale
            if i + 1 < len(gids):
                pen += self.kern(g, gids[i + 1]) * scale + spacing
        return "".join(parts)

    @staticmethod
    def _contour_path(cont, ox, oy, scale):
        pts = [(ox + px * scale, oy - py * scale, on) for px, py, on in cont]
        n = len(pts)
        start = next((i for i in range(n) if pts[i][2]), None)
        if start is None:
            a, b = pts[0], pts[1]
            pts.insert(0, ((a[0] + b[0]) / 2, (a[1] + b[1]) / 2, True))
            start, n = 0, n + 1
        seq = pts[start:] + pts[:start]
        out = ["M%s %s" % (num(seq[0][0]), num(seq[0][1]))]
        i = 1
        while i <= n:
            p = seq[i % n]
            if p[2]:
                out.append("L%s %s" % (num(p[0]), num(p[1])))
                i += 1
                continue
            nxt = seq[(i + 1) % n]
            if nxt[2]:
                end = nxt
                i += 2
            else:
                end = ((p[0] + nxt[0]) / 2, (p[1] + nxt[1]) / 2, True)
                i += 1
            out.append("Q%s %s %s %s" % (num(p[0]), num(p[1]), num(end[0]), num(end[1])))
        out.append("Z")
        return "".join(out)


FONT_BOLD = Font(os.path.join(FONTS, "Mulish-Bold.ttf"))
FONT_SEMIBOLD = Font(os.path.join(FONTS, "Mulish-SemiBold.ttf"))
FONT_REGULAR = Font(os.path.join(FONTS, "Mulish-Regular.ttf"))


def text(label, x, baseline, size, color, font=FONT_BOLD, anchor="middle", spacing=0.0):
    return '<path fill="%s" d="%s"/>' % (color, font.text_path(label, size, x, baseline, anchor, spacing))


# --------------------------------------------------------------------------
# Drawing helpers
# --------------------------------------------------------------------------

def svg(w, h, body):
    return ('<svg xmlns="http://www.w3.org/2000/svg" width="%d" height="%d" viewBox="0 0 %d %d">\n%s\n</svg>\n'
            % (w, h, w, h, "\n".join(body)))


def stroke(d, color, width=2.0, extra="", cap="round"):
    return ('<path d="%s" fill="none" stroke="%s" stroke-width="%s" stroke-linecap="%s" '
            'stroke-linejoin="round"%s/>' % (d, color, num(width), cap, extra))


def fill(d, color, extra=""):
    return '<path d="%s" fill="%s"%s/>' % (d, color, extra)


def circle(cx, cy, r, fill_color="none", stroke_color=None, width=1.0, extra=""):
    s = ' stroke="%s" stroke-width="%s"' % (stroke_color, num(width)) if stroke_color else ""
    return '<circle cx="%s" cy="%s" r="%s" fill="%s"%s%s/>' % (num(cx), num(cy), num(r), fill_color, s, extra)


def rect(x, y, w, h, r, fill_color="none", stroke_color=None, width=1.0, extra=""):
    s = ' stroke="%s" stroke-width="%s"' % (stroke_color, num(width)) if stroke_color else ""
    return ('<rect x="%s" y="%s" width="%s" height="%s" rx="%s" fill="%s"%s%s/>'
            % (num(x), num(y), num(w), num(h), num(r), fill_color, s, extra))


def arc_path(cx, cy, r, a0, a1):
    """An arc from angle a0 to a1 in degrees, clockwise, 0 pointing right."""
    sweep = (a1 - a0) % 360 or 360
    if sweep >= 359.99:
        return ("M%s %s A%s %s 0 1 1 %s %s A%s %s 0 1 1 %s %s" %
                (num(cx + r), num(cy), num(r), num(r), num(cx - r), num(cy), num(r), num(r), num(cx + r), num(cy)))
    x0 = cx + r * math.cos(math.radians(a0))
    y0 = cy + r * math.sin(math.radians(a0))
    x1 = cx + r * math.cos(math.radians(a0 + sweep))
    y1 = cy + r * math.sin(math.radians(a0 + sweep))
    return "M%s %s A%s %s 0 %d 1 %s %s" % (num(x0), num(y0), num(r), num(r), 1 if sweep > 180 else 0, num(x1), num(y1))


def group(transform, body):
    return '<g transform="%s">%s</g>' % (transform, "".join(body))


# --------------------------------------------------------------------------
# Tab bar: 32 x 32, glyphs on a 2-point stroke over whole-pixel lines
# --------------------------------------------------------------------------

def glyph_workspaces(c):
    return [stroke("M7 9H13L15 11H25V24H7Z", c), stroke("M7 14.5H25", c, 1.0, cap="butt")]


def glyph_file_drop(c):
    return [stroke("M7 18V25H25V18", c), stroke("M7 18H12L13.5 21H18.5L20 18H25", c),
            stroke("M16 6V15", c), stroke("M12 11L16 15L20 11", c)]


def glyph_marketplace(c):
    return [stroke("M8 12H24L23 25H9Z", c), stroke("M12.5 15V10.5A3.5 3.5 0 0 1 19.5 10.5V15", c)]


def gear_path(cx, cy, r_out, r_in, teeth=8, half_tip=9.0, half_base=15.0):
    step = 360.0 / teeth
    d = ""
    for i in range(teeth):
        a = -90 + i * step
        corners = [(a - half_base, r_in), (a - half_tip, r_out), (a + half_tip, r_out), (a + half_base, r_in)]
        for j, (ang, r) in enumerate(corners):
            x = cx + r * math.cos(math.radians(ang))
            y = cy + r * math.sin(math.radians(ang))
            if i == 0 and j == 0:
                d += "M%s %s" % (num(x), num(y))
            elif j == 0:
                d += "A%s %s 0 0 1 %s %s" % (num(r_in), num(r_in), num(x), num(y))
            else:
                d += "L%s %s" % (num(x), num(y))
    x0 = cx + r_in * math.cos(math.radians(-90 - half_base))
    y0 = cy + r_in * math.sin(math.radians(-90 - half_base))
    d += "A%s %s 0 0 1 %s %s Z" % (num(r_in), num(r_in), num(x0), num(y0))
    return d


def glyph_preferences(c):
    return [stroke(gear_path(16, 16, 10, 7.5), c), circle(16, 16, 3, "none", c, 2)]


def tab_icon(glyph, color):
    return svg(32, 32, glyph(color))


def arrow_up(x, top, bottom, c, w=2.0):
    return [stroke("M%s %sV%s" % (num(x), num(bottom), num(top)), c, w),
            stroke("M%s %sL%s %sL%s %s" % (num(x - 3.5), num(top + 3.5), num(x), num(top), num(x + 3.5), num(top + 3.5)), c, w)]


def arrow_down(x, top, bottom, c, w=2.0):
    return [stroke("M%s %sV%s" % (num(x), num(top), num(bottom)), c, w),
            stroke("M%s %sL%s %sL%s %s" % (num(x - 3.5), num(bottom - 3.5), num(x), num(bottom), num(x + 3.5), num(bottom - 3.5)), c, w)]


def glyph_transfers(c):
    return arrow_up(11, 7, 25, c) + arrow_down(21, 7, 25, c)


def solid_arrow(x, top, bottom, c, up):
    """An arrow with a filled head, for a direction that is at work."""
    if up:
        return [stroke("M%s %sV%s" % (num(x), num(bottom), num(top + 5)), c, 2),
                fill("M%s %sL%s %sL%s %sZ" % (num(x - 4.5), num(top + 6), num(x), num(top), num(x + 4.5), num(top + 6)),
                     c, ' stroke="%s" stroke-width="1" stroke-linejoin="round"' % c)]
    return [stroke("M%s %sV%s" % (num(x), num(top), num(bottom - 5)), c, 2),
            fill("M%s %sL%s %sL%s %sZ" % (num(x - 4.5), num(bottom - 6), num(x), num(bottom), num(x + 4.5), num(bottom - 6)),
                 c, ' stroke="%s" stroke-width="1" stroke-linejoin="round"' % c)]


def transfers_icon(color, uploading, downloading):
    """Up and down arrows; a direction at work turns accent with a solid head."""
    body = []
    body += solid_arrow(11, 6, 26, ACCENT, True) if uploading else arrow_up(11, 7, 25, color)
    body += solid_arrow(21, 6, 26, ACCENT, False) if downloading else arrow_down(21, 7, 25, color)
    return svg(32, 32, body)


# --------------------------------------------------------------------------
# Status item: 24 x 24, a "V" in a ring
# --------------------------------------------------------------------------

V_MARK = "M7.5 8.5L12 16.5L16.5 8.5"


def status_item(ring, mark, ring_opacity=1.0):
    op = ' stroke-opacity="%s"' % num(ring_opacity) if ring_opacity < 1 else ""
    return svg(24, 24, [circle(12, 12, 10, "none", ring, 2, op), stroke(V_MARK, mark, 2.5)])


FRAMES = 33


def busy_frame(f):
    """Frame f of the busy cycle: an accent arc runs twice round the ring while
    it grows and shrinks once, so that frame 33 would be frame 0 again."""
    t = f / FRAMES
    length = 150 - 90 * math.cos(2 * math.pi * t)
    head = -90 + 720 * t + 60 * math.sin(2 * math.pi * t)
    return svg(24, 24, [
        circle(12, 12, 10, "none", BORDER, 2, ' stroke-opacity="0.45"'),
        stroke(arc_path(12, 12, 10, head - length, head), ACCENT, 2),
        stroke(V_MARK, ACCENT, 2.5),
    ])


# --------------------------------------------------------------------------
# Transfer rows: 15 x 15
# --------------------------------------------------------------------------

def disc(color, glyph):
    return svg(15, 15, [circle(7.5, 7.5, 7.5, color)] + glyph)


def ring_icon(color, glyph):
    return svg(15, 15, [circle(7.5, 7.5, 6.5, "none", color, 1)] + glyph)


def kind_glyph(kind, c):
    if kind == "upload":
        return [stroke("M7.5 11.5V4", c, 1.5), stroke("M4.5 7L7.5 4L10.5 7", c, 1.5)]
    if kind == "download":
        return [stroke("M7.5 3.5V11", c, 1.5), stroke("M4.5 8L7.5 11L10.5 8", c, 1.5)]
    if kind == "auto_revision":
        return arc_arrow(7.5, 7.5, 3.75, 195, 335, c, 1.4, 1.7) + arc_arrow(7.5, 7.5, 3.75, 15, 155, c, 1.4, 1.7)
    if kind == "share_closed":
        return [rect(4, 7, 7, 5, 1, c), stroke("M5.5 7V5.5A2 2 0 0 1 9.5 5.5V7", c, 1.2)]
    if kind == "share_opened":
        return [rect(3.5, 7, 7, 5, 1, c), stroke("M8.5 7V5A2 2 0 0 1 12.5 5V5.5", c, 1.2)]
    raise ValueError(kind)


def cross(c, w=1.2, s=2.25):
    return [stroke("M%s %sL%s %sM%s %sL%s %s" % (num(7.5 - s), num(7.5 - s), num(7.5 + s), num(7.5 + s),
                                                num(7.5 + s), num(7.5 - s), num(7.5 - s), num(7.5 + s)), c, w)]


def pause_bars(c, cx, cy, h, gap=1.5, w=1.5):
    return [rect(cx - gap - w, cy - h / 2, w, h, 0.5, c), rect(cx + gap, cy - h / 2, w, h, 0.5, c)]


def play(c, cx, cy, h):
    return [fill("M%s %sL%s %sL%s %sZ" % (num(cx - h * 0.35), num(cy - h / 2), num(cx + h * 0.5), num(cy),
                                         num(cx - h * 0.35), num(cy + h / 2)), c, ' stroke="%s" stroke-width="1" stroke-linejoin="round"' % c)]


def arc_arrow(cx, cy, r, a0, a1, c, w=1.2, head=1.6):
    """A clockwise arc from a0 to a1 degrees ending in a filled arrow head."""
    a = math.radians(a1)
    ex, ey = cx + r * math.cos(a), cy + r * math.sin(a)
    tx, ty = -math.sin(a), math.cos(a)   # direction of travel
    nx, ny = math.cos(a), math.sin(a)    # outwards
    tip = (ex + tx * head * 1.1, ey + ty * head * 1.1)
    left = (ex - tx * head * 0.4 + nx * head, ey - ty * head * 0.4 + ny * head)
    right = (ex - tx * head * 0.4 - nx * head, ey - ty * head * 0.4 - ny * head)
    return [stroke(arc_path(cx, cy, r, a0, a1 - 8), c, w, cap="butt"),
            fill("M%s %sL%s %sL%s %sZ" % (num(tip[0]), num(tip[1]), num(left[0]), num(left[1]),
                                         num(right[0]), num(right[1])), c)]


def retry_icon(c):
    # Bare, without the buttons' ring, so that it does not read as a copyright sign.
    return svg(15, 15, arc_arrow(7.5, 7.5, 5.25, -15, 265, c, 1.5, 2.4))


# --------------------------------------------------------------------------
# Text buttons
# --------------------------------------------------------------------------

BUTTON_STYLES = {
    # name: (fill, border, label colour)
    "primary": (ACCENT, None, WHITE),
    "primary_hover": (ACCENT_DARK, None, WHITE),
    "outline": (WHITE, BORDER, TEXT),
    "outline_accent": (WHITE, ACCENT, ACCENT),
    "outline_error": (WHITE, BADGE, BADGE),
    "filled_accent": (ACCENT, None, WHITE),
    "on_red": ("none", WHITE, WHITE),
    "on_red_active": (WHITE, None, ALERT_RED),
    "on_yellow": ("none", TEXT, TEXT),
    "on_yellow_active": (TEXT, None, ALERT_YELLOW),
}


def button(w, h, label, style, size=11, icon=None, radius=3):
    bg, border, fg = BUTTON_STYLES[style]
    body = []
    if border:
        body.append(rect(0.5, 0.5, w - 1, h - 1, radius, bg, border, 1))
    else:
        body.append(rect(0, 0, w, h, radius, bg))
    spacing = 0.6
    baseline = h / 2 + size * 0.36
    if icon:
        tw = FONT_BOLD.text_width(label, size, spacing)
        left = (w - (tw + 18)) / 2
        body.append(group("translate(%s %s)" % (num(round(left)), num(round(h / 2 - 6))), icon(fg)))
        body.append(text(label, round(left) + 18, baseline, size, fg, anchor="start", spacing=spacing))
    else:
        body.append(text(label, w / 2, baseline, size, fg, spacing=spacing))
    return svg(w, h, body)


# Little 12 x 12 glyphs that go before a button's label.
def icon_help(c):
    return [circle(6, 6, 5.25, "none", c, 1.5), stroke("M4.3 4.6A1.75 1.75 0 1 1 6.6 6.3C6.1 6.5 6 6.8 6 7.3", c, 1.3),
            circle(6, 9.3, 0.85, c)]


def icon_quit(c):
    return [stroke(arc_path(6, 6.5, 4.75, -50, 230), c, 1.5), stroke("M6 1V6", c, 1.5)]


def icon_log_in(c):
    return [stroke("M7 1.5H10.5V10.5H7", c, 1.5), stroke("M1.5 6H7.5", c, 1.5), stroke("M5 3.5L7.5 6L5 8.5", c, 1.5)]


def icon_log_out(c):
    return [stroke("M5 1.5H1.5V10.5H5", c, 1.5), stroke("M4.5 6H10.5", c, 1.5), stroke("M8 3.5L10.5 6L8 8.5", c, 1.5)]


def icon_uninstall(c):
    return [stroke("M1.5 3H10.5", c, 1.5), stroke("M4.5 3V1.5H7.5V3", c, 1.2),
            stroke("M2.75 3L3.5 10.5H8.5L9.25 3", c, 1.5)]


# --------------------------------------------------------------------------
# Other pictures
# --------------------------------------------------------------------------

def warning_triangle():
    return svg(16, 16, [fill("M8 1.5L15 14H1Z", ACCENT, ' stroke="%s" stroke-width="1.5" stroke-linejoin="round"' % ACCENT),
                        rect(7, 5, 2, 5, 1, WHITE), circle(8, 12, 1, WHITE)])


def card(c, bg=None):
    body = [rect(2, 5, 17, 12, 2, bg or "none", c, 1.5), stroke("M2.5 9H18.5", c, 2, cap="butt"),
            stroke("M5 13.5H9", c, 1.5)]
    return body


def cc_expired():
    return svg(24, 24, card(WHITE) + [circle(18, 17, 5, WHITE),
                                      stroke("M16.25 15.25L19.75 18.75M19.75 15.25L16.25 18.75", ALERT_RED, 1.5)])


def cc_about_to_expire():
    return svg(24, 24, card(TEXT) + [circle(18, 17, 5, TEXT), stroke("M18 14.5V17L19.75 18.25", ALERT_YELLOW, 1.5)])


def avatar_blank():
    return svg(48, 48, [rect(0, 0, 48, 48, 0, LINE), circle(24, 19, 8.5, LIGHT_ROW),
                        fill("M7 48C7 38 14.5 31.5 24 31.5S41 38 41 48Z", LIGHT_ROW)])


def avatar_ellipsis():
    return svg(48, 48, [rect(0, 0, 48, 48, 0, LINE)] + [circle(x, 24, 3, TEXT) for x in (14, 24, 34)])


def workspace_popup():
    w, h = 240, 26
    return svg(w, h, [rect(0.5, 0.5, w - 1, h - 1, 3, WHITE, BORDER, 1),
                      stroke("M%s 4.5V21.5" % num(w - 24.5), LINE, 1, cap="butt"),
                      stroke("M%s 10.5L%s 7.5L%s 10.5" % (num(w - 15.5), num(w - 12.5), num(w - 9.5)), TEXT, 1.5),
                      stroke("M%s 15.5L%s 18.5L%s 15.5" % (num(w - 15.5), num(w - 12.5), num(w - 9.5)), TEXT, 1.5)])


def drop_target(active):
    c = ACCENT if active else BORDER
    bg = ACCENT_TINT if active else WHITE
    return svg(72, 72, [rect(1, 1, 70, 70, 8, bg, c, 2, ' stroke-dasharray="6 4"'),
                        stroke("M25 18H39L47 26V52H25Z", c, 2), stroke("M39 18V26H47", c, 2),
                        circle(47, 50, 10, ACCENT if active else BORDER, WHITE, 2),
                        stroke("M47 45V55M42 50H52", WHITE, 2)])


# Full-page pictures, 240 x 150: a round emblem, a title and a line beneath.
PAGE_W, PAGE_H = 240, 150


def page(emblem, title, subtitle):
    body = [circle(120, 48, 34, WHITE, LINE, 1)] + emblem
    body.append(text(title, 120, 112, 13, TEXT, FONT_SEMIBOLD))
    if subtitle:
        body.append(text(subtitle, 120, 131, 11, BORDER, FONT_REGULAR))
    return svg(PAGE_W, PAGE_H, body)


def scaled_glyph(glyph, color, scale=1.5):
    # The tab glyphs, enlarged about the emblem's centre.
    return group("translate(%s %s) scale(%s)" % (num(120 - 16 * scale), num(48 - 16 * scale), num(scale)), glyph(color))


def loading_page(glyph):
    emblem = [circle(120, 48, 34, "none", LINE, 3),
              stroke(arc_path(120, 48, 34, -90, 30), ACCENT, 3),
              scaled_glyph(glyph, BORDER)]
    return page(emblem, "Loading\u2026", None)


def envelope_emblem():
    return [rect(98, 33, 44, 30, 3, WHITE, BORDER, 2),
            stroke("M99.5 35L120 50L140.5 35", BORDER, 2),
            circle(139, 61, 9, ACCENT), stroke("M134.75 61L137.75 64L143.25 58", WHITE, 2)]


def needs_confirm_page():
    return page(envelope_emblem(), "Please confirm your e-mail address", "Follow the link in the message we sent you.")


def workspaces_empty_page():
    emblem = [scaled_glyph(glyph_workspaces, BORDER), circle(139, 61, 9, ACCENT),
              stroke("M139 56.5V65.5M134.5 61H143.5", WHITE, 2)]
    return page(emblem, "No workspaces yet", "Create one to share files with your team.")


# --------------------------------------------------------------------------
# The catalogue
# --------------------------------------------------------------------------

def catalogue():
    a = {}
    tabs = {"Workspaces": glyph_workspaces, "FileDrop": glyph_file_drop,
            "Marketplace": glyph_marketplace, "Preferences": glyph_preferences}
    for name, glyph in tabs.items():
        a["tabBar%sUnselected" % name] = tab_icon(glyph, BORDER)
        a["tabBar%sMouseOver" % name] = tab_icon(glyph, TEXT)
        a["tabBar%sSelected" % name] = tab_icon(glyph, ACCENT)
    state_colours = {"inactive": BORDER, "mouseover": TEXT, "active": ACCENT}
    for prefix, up, down in (("queue_main_icon", False, False),
                             ("queue_main_icon_upload_in_progress", True, False),
                             ("queue_main_icon_download_in_progress", False, True),
                             ("queue_main_icon_transfers_in_progress", True, True)):
        for state, colour in state_colours.items():
            if state == "mouseover" and up and down:
                continue  # with both at work the active picture serves for the mouse-over
            a["%s_%s" % (prefix, state)] = transfers_icon(colour, up, down)

    a["statusItemGreyedOut"] = status_item(BORDER, BORDER)
    a["statusItemLightMode"] = status_item(STATUS_DARK, ACCENT)
    a["statusItemDarkMode"] = status_item(WHITE, ACCENT)
    for f in range(FRAMES):
        a["V-icon2_%05d" % f] = busy_frame(f)

    for kind in ("upload", "download", "share_closed", "share_opened", "auto_revision"):
        a["queue_icon_%s_inactive" % kind] = disc(BORDER, kind_glyph(kind, WHITE))
        a["queue_icon_%s_active" % kind] = disc(ACCENT, kind_glyph(kind, WHITE))
    for kind in ("upload", "download", "auto_revision"):
        a[kind] = disc(TEXT, kind_glyph(kind, WHITE))
    a["queue_icon_transfer_queued_inactive"] = ring_icon(BORDER, [stroke("M7.5 4.5V7.5H10", BORDER, 1.2)])
    a["queue_icon_transfer_queued_active"] = ring_icon(ACCENT, [stroke("M7.5 4.5V7.5H10", ACCENT, 1.2)])
    a["queue_icon_transfer_completed"] = ring_icon(TEXT, [stroke("M4.75 7.75L6.75 9.75L10.5 5.5", TEXT, 1.5)])
    a["queue_icon_transfer_error"] = disc(BADGE, [rect(6.75, 3.5, 1.5, 5.5, 0.75, WHITE), circle(7.5, 11, 0.9, WHITE)])
    a["queue_button_cancel_inactive"] = ring_icon(BORDER, cross(BORDER))
    a["queue_button_cancel_active"] = ring_icon(ACCENT, cross(ACCENT))
    a["queue_button_transfer_pause_inactive"] = ring_icon(BORDER, pause_bars(BORDER, 7.5, 7.5, 5, 0.75, 1.25))
    a["queue_button_transfer_pause_active"] = ring_icon(ACCENT, pause_bars(ACCENT, 7.5, 7.5, 5, 0.75, 1.25))
    a["queue_button_transfer_resume_active"] = ring_icon(ACCENT, play(ACCENT, 7.75, 7.5, 4.5))
    a["queue_icons_transfer_retry"] = retry_icon(ACCENT)
    a["queue_button_pauseall_inactive"] = svg(20, 20, [circle(10, 10, 9, "none", BORDER, 1)] + pause_bars(BORDER, 10, 10, 7, 1, 2))
    a["queue_button_pauseall_active"] = svg(20, 20, [circle(10, 10, 9, "none", ACCENT, 1)] + pause_bars(ACCENT, 10, 10, 7, 1, 2))
    a["queue_button_resumeall_active"] = svg(20, 20, [circle(10, 10, 9, ACCENT)] + play(WHITE, 10.5, 10, 6.5))

    a["warning_triangle"] = warning_triangle()
    a["blankAvatar"] = avatar_blank()
    a["ellipsisAvatar"] = avatar_ellipsis()

    a["log_in_button_inactive"] = button(200, 32, "LOG IN", "primary", 12)
    a["log_in_button_active"] = button(200, 32, "LOG IN", "primary_hover", 12)
    prefs = {"help": ("HELP", icon_help), "quit": ("QUIT", icon_quit),
             "log_in": ("LOG IN", icon_log_in), "log_out": ("LOG OUT", icon_log_out)}
    for key, (label, icon) in prefs.items():
        a["preferences_%s_inactive" % key] = button(104, 26, label, "outline", 10, icon)
        a["preferences_%s_active" % key] = button(104, 26, label, "outline_accent", 10, icon)
    a["preferences_uninstall_inactive"] = button(104, 26, "UNINSTALL", "outline", 10, icon_uninstall)
    a["preferences_uninstall_mouseover"] = button(104, 26, "UNINSTALL", "outline_error", 10, icon_uninstall)

    a["file_drop_drop_target_inactive"] = drop_target(False)
    a["file_drop_drop_target_active"] = drop_target(True)
    for key, label in (("create", "CREATE"), ("publish", "PUBLISH"), ("archive", "ARCHIVE")):
        a["file_drop_%s_inactive" % key] = button(128, 30, label, "primary")
        a["file_drop_%s_active" % key] = button(128, 30, label, "primary_hover")
    a["file_drop_workspace_popup"] = workspace_popup()

    a["create_workspace_active"] = button(184, 30, "CREATE A WORKSPACE", "primary")
    a["create_workspace_hover"] = button(184, 30, "CREATE A WORKSPACE", "primary_hover")
    a["learn_about_workspaces_active"] = svg(184, 20, [
        text("Learn about workspaces", 92, 14, 12, ACCENT, FONT_SEMIBOLD),
        stroke("M%s 17.5H%s" % (num(92 - FONT_SEMIBOLD.text_width("Learn about workspaces", 12) / 2),
                                  num(92 + FONT_SEMIBOLD.text_width("Learn about workspaces", 12) / 2)),
               ACCENT, 1, ' stroke-opacity="0.5"', "butt")])
    a["resend_confirmation"] = button(224, 28, "RESEND CONFIRMATION E-MAIL", "outline_accent")

    for key, label in (("install", "INSTALL"), ("update", "UPDATE")):
        a["marketplace_%s_inactive" % key] = button(68, 22, label, "outline_accent", 10)
        a["marketplace_%s_mouseover" % key] = button(68, 22, label, "filled_accent", 10)
        a["marketplace_%s_all_inactive" % key] = button(88, 20, label + " ALL", "outline_accent", 9)
        a["marketplace_%s_all_mouseover" % key] = button(88, 20, label + " ALL", "filled_accent", 9)
    a["marketplace_manage_inactive"] = button(68, 22, "MANAGE", "outline", 10)
    a["marketplace_manage_mouseover"] = button(68, 22, "MANAGE", "outline_accent", 10)
    a["marketplace_cc_expired"] = cc_expired()
    a["marketplace_cc_about_to_expire"] = cc_about_to_expire()
    a["marketplace_button_cc_expired_inactive"] = button(96, 22, "UPDATE CARD", "on_red", 10)
    a["marketplace_button_cc_expired_active"] = button(96, 22, "UPDATE CARD", "on_red_active", 10)
    a["marketplace_button_cc_warning_inactive"] = button(96, 22, "UPDATE CARD", "on_yellow", 10)
    a["marketplace_button_cc_warning_active"] = button(96, 22, "UPDATE CARD", "on_yellow_active", 10)

    for page_name, glyph in (("file_drop", glyph_file_drop), ("transfers", glyph_transfers),
                             ("workspaces", glyph_workspaces), ("marketplace", glyph_marketplace)):
        a["%s_loading" % page_name] = loading_page(glyph)
    for page_name in ("file_drop", "transfers", "workspaces"):
        a["%s_needs_confirm" % page_name] = needs_confirm_page()
    a["workspaces_empty_background"] = workspaces_empty_page()
    return a


def main():
    assets = catalogue()
    if sys.argv[1:] == ["--list"]:
        print("\n".join(sorted(assets)))
        return
    os.makedirs(IMAGES, exist_ok=True)
    for stale in os.listdir(IMAGES):
        if stale.endswith(".svg") and stale[:-4] not in assets:
            os.remove(os.path.join(IMAGES, stale))
    for name, content in assets.items():
        with open(os.path.join(IMAGES, name + ".svg"), "w", encoding="utf-8") as f:
            f.write(content)
    print("%d images written to %s" % (len(assets), os.path.relpath(IMAGES, ROOT)))


if __name__ == "__main__":
    main()
