"""Shapes and fills that a picture is drawn with.

A shape is a function of a point: how far outside of its edge that point is, negative inside, in the units of the picture.
A fill is a function of a point too, which gives a colour; a plain colour stands for itself.

Of floating-point numbers only sums, products, quotients and square roots are used, which are the same to the last bit on
every machine; sines, powers and the like are not, so they have no place here.
"""
from math import sqrt

# A half, the sine of an eighth of a turn: for what goes around in eights.
DIAGONAL = sqrt(0.5)


def distance(x, y):
    return sqrt(x * x + y * y)


def clamped(value, low=0.0, high=1.0):
    return low if value < low else high if value > high else value


def circle(x0, y0, radius):
    return lambda x, y: distance(x - x0, y - y0) - radius


def ring(x0, y0, radius, width):
    """A circle's line, half of its width on either side."""
    return outline(circle(x0, y0, radius), width)


def outline(shape, width):
    return lambda x, y: abs(shape(x, y)) - width / 2


def box(left, top, right, bottom, radius=0.0):
    """A rectangle with rounded corners."""
    x0, y0 = (left + right) / 2, (top + bottom) / 2
    half_width, half_height = (right - left) / 2 - radius, (bottom - top) / 2 - radius

    def shape(x, y):
        dx, dy = abs(x - x0) - half_width, abs(y - y0) - half_height
        if dx <= 0 or dy <= 0:
            return max(dx, dy) - radius
        return distance(dx, dy) - radius
    return shape


def line(x0, y0, x1, y1, width):
    """With round ends."""
    dx, dy = x1 - x0, y1 - y0
    length = dx * dx + dy * dy

    def shape(x, y):
        along = clamped(((x - x0) * dx + (y - y0) * dy) / length)
        return distance(x - x0 - along * dx, y - y0 - along * dy) - width / 2
    return shape


def lines(points, width):
    """A line from point to point, with round corners."""
    return union(*(line(*start, *end, width) for start, end in zip(points, points[1:])))


def polygon(*points):
    edges = [line(*start, *end, 0) for start, end in zip(points, points[1:] + points[:1])]
    sides = list(zip(points, points[1:] + points[:1]))

    def shape(x, y):
        inside = False
        for (ax, ay), (bx, by) in sides:
            if (ay > y) != (by > y) and x < (bx - ax) * (y - ay) / (by - ay) + ax:
                inside = not inside
        nearest = min(edge(x, y) for edge in edges)
        return -nearest if inside else nearest
    return shape


def ellipse(x0, y0, half_width, half_height):
    """Near its edge the distance is right; that is all that drawing asks."""
    def shape(x, y):
        u, v = (x - x0) / half_width, (y - y0) / half_height
        size = distance(u, v)
        slope = distance(u / half_width, v / half_height)
        return (size - 1) * size / slope if slope > 0 else -min(half_width, half_height)
    return shape


def rounded(shape, radius):
    """Grown all around, so that corners come out round."""
    return lambda x, y: shape(x, y) - radius


def union(*shapes):
    return lambda x, y: min(shape(x, y) for shape in shapes)


def common(*shapes):
    return lambda x, y: max(shape(x, y) for shape in shapes)


def without(shape, hole):
    return lambda x, y: max(shape(x, y), -hole(x, y))


def blend(start, end, share):
    return tuple(a + (b - a) * share for a, b in zip(start, end))


def gradient(x0, y0, x1, y1, *colours):
    """From the first colour at one point over those between to the last one at the other."""
    dx, dy = x1 - x0, y1 - y0
    length = dx * dx + dy * dy

    def fill(x, y):
        place = clamped(((x - x0) * dx + (y - y0) * dy) / length) * (len(colours) - 1)
        step = min(int(place), len(colours) - 2)
        return blend(colours[step], colours[step + 1], place - step)
    return fill


def vertical(top, bottom, *colours):
    return gradient(0, top, 0, bottom, *colours)


def fading(x0, y0, radius, opacity):
    """An opacity, as a function of a point: this in the middle, nothing at the radius."""
    return lambda x, y: opacity * (1 - clamped(distance(x - x0, y - y0) / radius))
