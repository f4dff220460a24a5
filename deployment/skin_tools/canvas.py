"""A picture of pixels with an opacity each, painted with shapes."""
from shapes import blend, clamped

# Where an edge passes through a pixel, so many points a side are asked.
POINTS = 4


class Canvas:
    """`scale` is how many pixels a unit of the shapes takes: one drawing gives icons of several sizes."""

    def __init__(self, width, height, scale=1):
        self.width, self.height, self.scale = width, height, scale
        self.rows = [[(0.0, 0.0, 0.0, 0.0)] * width for _ in range(height)]

    def paint(self, shape, fill, opacity=1.0):
        """Opacity is a share of 1, or a function of a point that gives one."""
        colour = fill if callable(fill) else lambda x, y: fill
        strength = opacity if callable(opacity) else lambda x, y: opacity
        for j, row in enumerate(self.rows):
            for i in range(self.width):
                x, y = (i + 0.5) / self.scale, (j + 0.5) / self.scale
                share = self._coverage(shape, i, j) * strength(x, y)
                if share > 0:
                    row[i] = _over(row[i], colour(x, y), share)
        return self

    def cut(self, shape):
        """Takes away again what was painted there."""
        for j, row in enumerate(self.rows):
            for i, pixel in enumerate(row):
                if pixel[3] > 0:
                    row[i] = (*pixel[:3], pixel[3] * (1 - self._coverage(shape, i, j)))
        return self

    def _coverage(self, shape, i, j):
        away = shape((i + 0.5) / self.scale, (j + 0.5) / self.scale) * self.scale
        if away >= 1:
            return 0.0
        if away <= -1:
            return 1.0
        total = 0.0
        for b in range(POINTS):
            for a in range(POINTS):
                x, y = i + (a + 0.5) / POINTS, j + (b + 0.5) / POINTS
                total += clamped(0.5 - shape(x / self.scale, y / self.scale) * self.scale * POINTS)
        return total / (POINTS * POINTS)

    def pixels(self):
        """Rows of (red, green, blue, opacity), each 0 to 255."""
        return [[(*(_level(part) for part in pixel[:3]), _level(255 * pixel[3])) for pixel in row] for row in self.rows]

    def on(self, ground, clear=True):
        """Rows of (red, green, blue) as the picture looks on a ground, a colour or a function of a point.

        With `clear` a pixel that nothing was painted on is None instead.
        """
        colour = ground if callable(ground) else lambda x, y: ground
        return [[None if clear and pixel[3] < 1 / 32 else
                 tuple(_level(part) for part in blend(colour((i + 0.5) / self.scale, (j + 0.5) / self.scale), pixel[:3], pixel[3]))
                 for i, pixel in enumerate(row)] for j, row in enumerate(self.rows)]


def _over(below, colour, share):
    opacity = share + below[3] * (1 - share)
    return (*blend(below[:3], colour, share / opacity), opacity)


def _level(value):
    return int(clamped(value + 0.5, 0, 255))
