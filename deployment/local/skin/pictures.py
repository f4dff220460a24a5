"""The pictures of this deployment. The build calls `pictures` and writes each as a file of its name.

Which names and sizes the program asks for is told in docs/skin.md. Pictures that lie on something have clear pixels; their
edges are mixed with the ground that they are meant for, since a pixel of a GIF is clear as a whole or not at all.
"""
import glyphs
from bitmaps import bmp, ico
from canvas import Canvas
from colours import lightened
from gif import gif
from shapes import blend, box, circle, ellipse, line, outline, polygon, rounded, vertical

CAPTION = (800, 28)
# Where the close box lies in the caption bar: its middle, with the two lines below left out.
CLOSE_TOP = 4
CLEAR = (255, 0, 255)


def pictures(colours, numbers):
    """Name to bytes. `colours` are (red, green, blue) by name, `numbers` whole numbers by name."""
    made = {}
    for part in (captions, corner_windows, logos, message_icons, menu_bitmaps, rows, lamps, panels):
        made |= part(colours, numbers)
    return made


def bar(colours):
    return vertical(0, CAPTION[1] - 2, colours["bar_top"], colours["bar_middle"], colours["bar_bottom"])


def captions(colours, numbers):
    fill = bar(colours)
    # The same in each column but for the mark at the left.
    left = Canvas(32, CAPTION[1])
    glyphs.mark(left, 16, 13, 9, colours)
    column = [fill(0, j + 0.5) for j in range(CAPTION[1])]
    rest = [tuple(int(part + 0.5) for part in colour) for colour in column]
    made = {"Caption.gif": gif([row + [colour] * (CAPTION[0] - len(row)) for row, colour in zip(left.on(fill, clear=False), rest)])}

    def ground(x, y):
        return fill(x, y + CLOSE_TOP)

    def inactive_ground(x, y):
        return lightened(tuple(int(part + 0.5) for part in ground(x, y)), numbers["nonfocus"])
    for name, plate, ink, below in (("X", None, "title", ground), ("XMouseOver", "red", "white", ground),
                                    ("XMouseDown", "scarlet", "white", ground),
                                    ("XInactive", None, "title_inactive", inactive_ground)):
        made[name + ".gif"] = gif(_close_box(18, plate and colours[plate], colours[ink]).on(below))
    return made


def _close_box(size, plate, ink):
    canvas = Canvas(size, size)
    if plate:
        canvas.paint(box(0, 0, size, size, 4), plate)
    glyphs.cross(canvas, size / 2, size / 2, size * 0.47, ink, 1.7)
    return canvas


def corner_windows(colours, _numbers):
    made = {}
    for state, plate, ink in (("", None, "grey"), ("MouseOver", "red", "white"), ("MouseDown", "scarlet", "white")):
        made[f"X2{state}.gif"] = gif(_close_box(14, plate and colours[plate], colours[ink]).on(colours["butter"]))
    for state, plate, ink, fold in (("", None, "blue", "butter"), ("MouseOver", "blue", "white", "blue"), ("MouseDown", "sea", "white", "sea")):
        canvas = Canvas(14, 14)
        if plate:
            canvas.paint(box(0, 0, 14, 14, 3), colours[plate])
        glyphs.plane(canvas, 6.8, 7.2, 9.5 if plate else 11.5, colours[ink], colours[fold])
        made[f"S2{state}.gif"] = gif(canvas.on(colours["butter"]))
    return made


def logos(colours, _numbers):
    logo = Canvas(64, 64)
    glyphs.mark(logo, 32, 32, 31, colours, fish=True)
    splash = Canvas(112, 112)
    glyphs.mark(splash, 56, 56, 55, colours, fish=True)
    zone = Canvas(64, 64)
    zone.paint(box(0, 0, 64, 64), vertical(0, 64, colours["rim"], colours["sea"]))
    zone.paint(outline(box(1, 1, 63, 63, 3), 1), colours["mist"], 0.6)
    glyphs.mark(zone, 32, 26, 19, colours)
    # The only pure white: what is dropped goes down here.
    zone.paint(rounded(polygon((24, 51), (40, 51), (32, 58.5)), 1), colours["white"])
    made = {"TrawlLogo.gif": gif(logo.on(colours["paper"])), "Splash.gif": gif(splash.on(colours["paper"])),
            "DropZone.gif": gif(zone.on(colours["sea"], clear=False))}
    made["Program.ico"] = ico([_program_icon(size, colours) for size in (16, 24, 32, 48)])
    return made


def _program_icon(size, colours):
    canvas = Canvas(size, size)
    glyphs.mark(canvas, size / 2, size / 2, size / 2 - size / 64, colours, fish=size >= 32)
    return canvas.pixels()


def message_icons(colours, _numbers):
    return {name + ".ico": ico([draw(Canvas(size, size, size / 32), colours).pixels() for size in (32, 48)])
            for name, draw in (("121", _stop), ("122", _question), ("123", _exclamation), ("124", _information))}


def _stop(canvas, colours):
    glyphs.disc(canvas, 16, 16, 14.5, colours["red"], colours["white"])
    glyphs.cross(canvas, 16, 16, 12.5, colours["white"], 3.4)
    return canvas


def _question(canvas, colours):
    glyphs.disc(canvas, 16, 16, 14.5, colours["blue"], colours["white"])
    glyphs.question(canvas, 16, 16, 17, colours["white"], 3.1)
    return canvas


def _exclamation(canvas, colours):
    glyphs.warning_sign(canvas, 16, 15.3, 28, colours["amber"], colours["white"])
    glyphs.exclamation(canvas, 16, 17.8, 15.5, colours["white"], 3.2)
    return canvas


def _information(canvas, colours):
    glyphs.disc(canvas, 16, 16, 14.5, colours["sky"], colours["white"])
    canvas.paint(circle(16, 9.6, 2.1), colours["white"])
    canvas.paint(line(16, 15.2, 16, 22.7, 3.4), colours["white"])
    return canvas


def menu_bitmaps(colours, _numbers):
    """In pairs: as it lies in the menu, and as the chosen item shows it."""
    made = {}
    for number, draw in ((103, _main), (105, _submit), (107, _preferences), (109, _home), (111, _help)):
        for offset, ground, ink in ((0, "white", "blue"), (1, "pale", "sea")):
            canvas = Canvas(16, 16)
            draw(canvas, colours, colours[ink], colours[ground])
            rows_made = [[pixel or CLEAR for pixel in row] for row in canvas.on(colours[ground])]
            made[f"{number + offset}.bmp"] = bmp(rows_made)
    return made


def _main(canvas, colours, ink, ground):
    canvas.paint(box(1, 2, 15, 14, 2), ink)
    canvas.paint(box(2, 5, 14, 13, 1), ground)
    canvas.paint(box(4, 7, 8, 11), colours["sky"])
    canvas.paint(box(9, 7, 12, 8), ink, 0.6)
    canvas.paint(box(9, 10, 12, 11), ink, 0.6)


def _submit(canvas, _colours, ink, ground):
    glyphs.envelope(canvas, 1, 3, 15, 13, ink, ground, 1.3)


def _preferences(canvas, _colours, ink, _ground):
    glyphs.gear(canvas, 8, 8, 7.4, ink)


def _home(canvas, _colours, ink, _ground):
    glyphs.globe(canvas, 8, 8, 7.2, ink, 1.3)


def _help(canvas, _colours, ink, ground):
    canvas.paint(circle(8, 8, 7.2), ink)
    glyphs.question(canvas, 8, 8, 9.2, ground, 1.6)


def rows(colours, _numbers):
    """Mail and link, each undecided, found malicious, found harmless, and closed; the triangles of a group."""
    made = {}
    kinds = [(draw, state) for draw in (_mail_row, _link_row) for state in ("amber", "red", "green", "slate")]
    for number, (draw, state) in enumerate(kinds):
        canvas = Canvas(20, 20)
        draw(canvas, colours["slate" if state == "slate" else "blue"], colours["white"])
        _badge(canvas, state, colours)
        made[f"Sub{number}.gif"] = gif(canvas.on(colours["white"]))
    for number, points in enumerate((((6.7, 4.2), (10.6, 8), (6.7, 11.8)), ((4.2, 6.7), (11.8, 6.7), (8, 10.6)))):
        made[f"Node{number}.gif"] = gif(Canvas(16, 16).paint(rounded(polygon(*points), 0.7), colours["ink"]).on(colours["white"]))
    return made


def _mail_row(canvas, colour, paper):
    glyphs.envelope(canvas, 1, 4, 17, 15, colour, paper, 1.4)


def _link_row(canvas, colour, _paper):
    glyphs.globe(canvas, 9, 9.5, 7.5, colour, 1.4)


def _badge(canvas, state, colours):
    x, y, white = 14.5, 14.5, colours["white"]
    canvas.cut(circle(x, y, 6.1))
    canvas.paint(circle(x, y, 5), colours["grey" if state == "slate" else state])
    if state == "amber":
        glyphs.question(canvas, x, y, 7.4, white, 1.3)
    elif state == "red":
        glyphs.exclamation(canvas, x, y, 7.2, white, 1.5)
    elif state == "green":
        glyphs.tick(canvas, x, y, 6, white, 1.5)
    else:
        glyphs.cross(canvas, x, y, 5, white, 1.5)


def lamps(colours, _numbers):
    made = {}
    for name, colour in (("Off", "slate"), ("0", "sky"), ("16", "green"), ("32", "amber"), ("48", "rim")):
        canvas = Canvas(16, 16)
        lit, white = colours[colour], colours["white"]
        canvas.paint(circle(8, 8, 7), blend(lit, white, 0.65))
        canvas.paint(circle(8, 8, 5.4), lit)
        canvas.paint(ellipse(8, 5.6, 3.2, 1.9), white, 0.2 if name == "Off" else 0.45)
        made[f"Lamp{name}.gif"] = gif(canvas.on(colours["paper"]))
    return made


def panels(colours, _numbers):
    """The column at the main window's side, what a panel shows without a network, and where mails are dropped."""
    made = {}
    white, blue = colours["white"], colours["blue"]
    for number, draw in enumerate((_bar_news, _bar_submit, _bar_preferences, _bar_home, _bar_help), 1):
        canvas = Canvas(32, 32)
        draw(canvas, colours)
        made[f"Bar{number}.gif"] = gif(canvas.on(colours["side"]))
    offline = Canvas(96, 96)
    glyphs.mark(offline, 44, 44, 43, colours)
    offline.cut(circle(74, 74, 21))
    offline.paint(circle(74, 74, 18), colours["slate"])
    glyphs.cross(offline, 74, 74, 15, white, 4)
    made["picTrawl.gif"] = gif(offline.on(colours["paper"]))
    drop = Canvas(240, 140)
    drop.paint(outline(box(2, 2, 238, 138, 12), 2), colours["mist"])
    glyphs.envelope(drop, 84, 26, 156, 74, blue, white, 4)
    drop.cut(circle(150, 72, 20))
    glyphs.globe(drop, 150, 72, 16, colours["rim"], 3)
    drop.paint(line(120, 88, 120, 108, 5), colours["rim"])
    drop.paint(rounded(polygon((110, 106), (130, 106), (120, 117)), 2), colours["rim"])
    made["picDrop.gif"] = gif(drop.on(colours["paper"]))
    return made


def _bar_news(canvas, colours):
    glyphs.browser(canvas, 4, 5, 28, 26, colours["blue"], colours["white"], colours["sky"], colours["hazy"])


def _bar_submit(canvas, colours):
    glyphs.envelope(canvas, 3, 8, 28, 26, colours["blue"], colours["white"], 2)
    canvas.cut(circle(25.5, 8.5, 7))
    canvas.paint(circle(25.5, 8.5, 5.5), colours["red"])
    glyphs.exclamation(canvas, 25.5, 8.5, 8, colours["white"], 1.7)


def _bar_preferences(canvas, colours):
    glyphs.gear(canvas, 16, 16, 13, colours["blue"])


def _bar_home(canvas, colours):
    glyphs.globe(canvas, 16, 16, 12.5, colours["blue"], 2)


def _bar_help(canvas, colours):
    canvas.paint(circle(16, 16, 12.5), colours["blue"])
    glyphs.question(canvas, 16, 16, 15, colours["white"], 2.6)
