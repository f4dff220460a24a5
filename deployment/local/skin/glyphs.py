"""Drawings that several pictures share. Places and sizes are in units of the canvas."""
from shapes import (DIAGONAL, blend, box, circle, common, ellipse, fading, gradient, line, lines, outline, polygon, ring, rounded,
                    union, vertical, without)

WHITE = (255, 255, 255)


def mark(canvas, x, y, radius, colours, fish=False):
    """The product's mark: a beam of light through a dark disc, and, where there is room, what it finds."""
    inner = circle(x, y, radius * 0.88)
    canvas.paint(circle(x, y, radius), vertical(y - radius, y + radius, colours["sky"], colours["rim"]))
    canvas.paint(inner, vertical(y - radius, y + radius, colours["sea"], colours["deep"]))
    lamp = (x - radius * 0.50, y - radius * 0.50)
    beam = polygon(lamp, (x + radius * 1.5, y + radius * 0.35), (x + radius * 0.35, y + radius * 1.5))
    light = gradient(*lamp, x + radius * 0.65, y + radius * 0.65, WHITE, colours["cream"], colours["cream"])
    canvas.paint(common(inner, beam), light)
    if fish:
        canvas.paint(_fish(x + radius * 0.30, y + radius * 0.27, radius * 0.27), colours["sea"])
        canvas.paint(circle(x + radius * 0.15, y + radius * 0.22, radius * 0.037), colours["cream"])
    canvas.paint(circle(*lamp, radius * 0.24), WHITE, fading(*lamp, radius * 0.24, 0.75))
    canvas.paint(circle(*lamp, radius * 0.10), WHITE)


def _fish(x, y, length):
    """Swims to the left."""
    body = common(circle(x, y + length * 0.75, length * 1.25), circle(x, y - length * 0.75, length * 1.25))
    tail = polygon((x + length * 0.80, y), (x + length * 1.42, y - length * 0.48), (x + length * 1.22, y), (x + length * 1.42, y + length * 0.48))
    return union(body, tail)


def envelope(canvas, left, top, right, bottom, colour, flap, width):
    canvas.paint(box(left, top, right, bottom, width * 1.1), colour)
    middle, fold = (left + right) / 2, top + (bottom - top) * 0.58
    canvas.paint(lines([(left + width * 0.7, top + width * 0.9), (middle, fold), (right - width * 0.7, top + width * 0.9)], width), flap)


def globe(canvas, x, y, radius, colour, width):
    canvas.paint(ring(x, y, radius - width / 2, width), colour)
    disc = circle(x, y, radius - width / 2)
    canvas.paint(common(outline(ellipse(x, y, radius * 0.44, radius - width / 2), width), disc), colour)
    canvas.paint(line(x - radius + width, y, x + radius - width, y, width), colour)


def gear(canvas, x, y, radius, colour):
    reach = radius - radius * 0.17
    ways = [(reach, 0), (0, reach), (reach * DIAGONAL, reach * DIAGONAL), (reach * DIAGONAL, -reach * DIAGONAL)]
    teeth = union(*(line(x - dx, y - dy, x + dx, y + dy, radius * 0.40) for dx, dy in ways))
    canvas.paint(union(circle(x, y, radius * 0.73), common(teeth, circle(x, y, radius))), colour)
    canvas.cut(circle(x, y, radius * 0.33))


def browser(canvas, left, top, right, bottom, colour, page, accent, lines_colour):
    """A window with a page in it."""
    unit = (right - left) / 24
    canvas.paint(box(left, top, right, bottom, unit * 2.6), colour)
    canvas.paint(box(left + unit * 2, top + unit * 5, right - unit * 2, bottom - unit * 2, unit), page)
    for number in range(2):
        canvas.paint(circle(left + unit * (3.2 + 3 * number), top + unit * 2.6, unit * 0.95), page)
    canvas.paint(box(left + unit * 4, top + unit * 7, left + unit * 11, bottom - unit * 4, unit * 0.6), accent)
    for number, end in enumerate((20, 20, 17)):
        height = top + unit * (8 + 3 * number)
        canvas.paint(line(left + unit * 14, height, left + unit * end, height, unit * 1.5), lines_colour)


def question(canvas, x, y, size, colour, width):
    """A question mark of this height, around its middle."""
    radius = size * 0.26
    head = y - size * 0.5 + width / 2 + radius
    arc = without(ring(x, head, radius, width), box(x - size, head, x, head + size))
    canvas.paint(union(arc, circle(x - radius, head, width / 2), line(x, head + radius, x, y + size * 0.17, width)), colour)
    canvas.paint(circle(x, y + size * 0.5 - width * 0.62, width * 0.64), colour)


def exclamation(canvas, x, y, size, colour, width):
    canvas.paint(line(x, y - size * 0.5 + width / 2, x, y + size * 0.5 - width * 2.15, width), colour)
    canvas.paint(circle(x, y + size * 0.5 - width * 0.55, width * 0.55), colour)


def cross(canvas, x, y, size, colour, width):
    """Of this width and height."""
    half = size / 2 - width / 2 * DIAGONAL
    canvas.paint(line(x - half, y - half, x + half, y + half, width), colour)
    canvas.paint(line(x - half, y + half, x + half, y - half, width), colour)


def tick(canvas, x, y, size, colour, width):
    canvas.paint(lines([(x - size * 0.42, y + size * 0.04), (x - size * 0.12, y + size * 0.32), (x + size * 0.42, y - size * 0.30)], width), colour)


def plane(canvas, x, y, size, colour, fold):
    """A folded paper plane: send."""
    def at(u, v):
        return x + u * size, y + v * size
    canvas.paint(rounded(polygon(at(-0.46, -0.02), at(0.46, -0.46), at(0.10, 0.46), at(-0.08, 0.08)), size * 0.03), colour)
    canvas.paint(line(*at(-0.08, 0.10), *at(0.30, -0.28), size * 0.075), fold)


def disc(canvas, x, y, radius, colour, light):
    """A coloured disc, a little lighter at its top."""
    canvas.paint(circle(x, y, radius), vertical(y - radius, y + radius, blend(colour, light, 0.22), colour))


def warning_sign(canvas, x, y, size, colour, light):
    """A triangle with round corners, of this height and a little more in width."""
    corner = size * 0.10
    shape = polygon((x, y - size * 0.5 + corner), (x + size * 0.54 - corner, y + size * 0.5 - corner), (x - size * 0.54 + corner, y + size * 0.5 - corner))
    canvas.paint(rounded(shape, corner), vertical(y - size / 2, y + size / 2, blend(colour, light, 0.22), colour))
