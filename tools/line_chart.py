"""A line chart as SVG."""
import html

WIDTH, HEIGHT = 760, 300
LEFT, RIGHT, TOP, BOTTOM = 64, 16, 56, 40
COLOURS = ("#1f6feb", "#d1570c", "#2da44e", "#8250df")


def round_up(value):
    """To a number that an axis may end with."""
    power = 1
    while power * 10 <= value:
        power *= 10
    return next(step * power for step in (1, 2, 5, 10) if step * power >= value)


class Scale:
    def __init__(self, most_x, most_y):
        self.most_x, self.most_y = most_x, round_up(most_y)

    def x(self, value):
        return LEFT + value / self.most_x * (WIDTH - LEFT - RIGHT)

    def y(self, value):
        return HEIGHT - BOTTOM - value / self.most_y * (HEIGHT - TOP - BOTTOM)


def text(x, y, words, anchor="middle", more=""):
    return f'<text x="{x:.0f}" y="{y:.0f}" text-anchor="{anchor}"{more}>{html.escape(words)}</text>'


def grid(scale, unit):
    for part in range(5):
        value = scale.most_y * part / 4
        y = scale.y(value)
        yield f'<path d="M{LEFT} {y:.1f}H{WIDTH - RIGHT}" stroke="#d0d7de"/>'
        yield text(LEFT - 6, y + 4, f"{value:,.0f}", "end")
    for part in range(7):
        value = scale.most_x * part / 6
        yield text(scale.x(value), HEIGHT - BOTTOM + 16, f"{value:g}")
    yield text(WIDTH / 2, HEIGHT - 6, unit)


def line_chart(title, unit, lines):
    """`lines`: pairs of a name and points (x, y), all from 0."""
    points = [point for _, line in lines for point in line]
    scale = Scale(max(x for x, _ in points), max(1, max(y for _, y in points)))
    parts = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {HEIGHT}" '
             'font-family="sans-serif" font-size="12" fill="#24292f">',
             f'<rect width="{WIDTH}" height="{HEIGHT}" fill="#ffffff"/>',
             text(LEFT, 20, title, "start", ' font-weight="bold"'), *grid(scale, unit)]
    for index, (name, line) in enumerate(lines):
        path = "L".join(f"{scale.x(x):.1f} {scale.y(y):.1f}" for x, y in line)
        colour = COLOURS[index % len(COLOURS)]
        parts.append(f'<path d="M{path}" fill="none" stroke="{colour}" stroke-width="1.5"/>')
        parts.append(text(LEFT + 230 * index, 40, name, "start", f' fill="{colour}"'))
    return "\n".join(parts) + "\n</svg>\n"
