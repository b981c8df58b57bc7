"""Draws curves of growth as SVG: the time of one item over the number of items, one panel a step, both axes
logarithmic."""

import html
import math

WIDTH, HEIGHT = 380, 260  # of a panel
LEFT, RIGHT, TOP, BOTTOM = 58, 28, 34, 30  # of the space around its axes
COLUMNS = 3
LEGEND = 64

COLORS = ["#d62728", "#1f77b4", "#2ca02c", "#9467bd", "#8c564b", "#e377c2", "#17becf", "#bcbd22", "#ff7f0e", "#7f7f7f",
          "#1b4f72", "#145a32", "#6e2c00", "#4a235a", "#b7950b", "#5d6d7e"]


def tag(name, text="", **attributes):
    listed = "".join(f' {key.replace("_", "-")}="{html.escape(str(value))}"' for key, value in attributes.items())
    return f"<{name}{listed}>{html.escape(text)}</{name}>"


def decades(low, high):
    return range(math.floor(math.log10(low) + 1e-9), math.ceil(math.log10(high) - 1e-9) + 1)


class Panel:
    """One panel at a place on the page, with axes that span what is in it."""

    def __init__(self, x, y, lines):
        counts = [count for line in lines.values() for count in line]
        prices = [price for line in lines.values() for price in line.values()]
        self.x, self.y = x, y
        self.columns = decades(min(counts), max(counts))
        self.rows = decades(min(prices), max(prices))

    def across(self, count):
        share = (math.log10(count) - self.columns[0]) / max(1, self.columns[-1] - self.columns[0])
        return self.x + LEFT + share * (WIDTH - LEFT - RIGHT)

    def down(self, price):
        share = (math.log10(price) - self.rows[0]) / max(1, self.rows[-1] - self.rows[0])
        return self.y + HEIGHT - BOTTOM - share * (HEIGHT - TOP - BOTTOM)

    def grid(self, seconds):
        left, right = self.x + LEFT, self.x + WIDTH - RIGHT
        top, bottom = self.y + TOP, self.y + HEIGHT - BOTTOM
        for decade in self.columns:
            at = round(self.across(10.0**decade), 1)
            yield tag("line", x1=at, y1=top, x2=at, y2=bottom, stroke="#ddd")
            yield tag("text", f"{10**decade:,}", x=at, y=bottom + 14, text_anchor="middle")
        for decade in self.rows:
            at = round(self.down(10.0**decade), 1)
            yield tag("line", x1=left, y1=at, x2=right, y2=at, stroke="#ddd")
            yield tag("text", seconds(10.0**decade * (1 + 1e-9)), x=left - 5, y=at + 3, text_anchor="end")

    def curve(self, line, style):
        points = [(round(self.across(count), 1), round(self.down(price), 1)) for count, price in sorted(line.items())]
        yield tag("polyline", points=" ".join(f"{x},{y}" for x, y in points), fill="none", **style)
        for x, y in points:
            yield tag("circle", cx=x, cy=y, r=1 + style["stroke_width"] / 2, fill=style["stroke"])


def style_of(subject, number):
    """How the lines of a subject look: colors are used again with dashes."""
    style = {"stroke": COLORS[number % len(COLORS)], "stroke_width": 3 if subject.startswith("ours") else 1.3}
    return style if number < len(COLORS) else {**style, "stroke_dasharray": "4 2"}


def svg(panels, titles, seconds):
    """The page: `panels` gives for each step and subject the time of an item by size, `seconds` writes a time."""
    subjects = sorted({subject for lines in panels.values() for subject in lines},
                      key=lambda subject: (not subject.startswith("ours"), subject))
    styles = {subject: style_of(subject, number) for number, subject in enumerate(subjects)}
    height = LEGEND + HEIGHT * math.ceil(len(panels) / COLUMNS)
    parts = [tag("rect", width="100%", height="100%", fill="white")]
    for number, subject in enumerate(subjects):
        x, y = 20 + number % 8 * 140, 18 + number // 8 * 15
        parts.append(tag("line", x1=x, y1=y - 4, x2=x + 18, y2=y - 4, **styles[subject]))
        parts.append(tag("text", subject, x=x + 23, y=y))
    for number, (step, lines) in enumerate(panels.items()):
        panel = Panel(number % COLUMNS * WIDTH, LEGEND + number // COLUMNS * HEIGHT, lines)
        parts.append(tag("text", f"{step}: {titles[step]}", x=panel.x + 10, y=panel.y + TOP - 10, font_weight="bold"))
        parts += panel.grid(seconds)
        for subject, line in lines.items():
            parts += panel.curve(line, styles[subject])
    head = (f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH * COLUMNS}" height="{height}" '
            'font-family="sans-serif" font-size="10">')
    return "\n".join([head, *parts, "</svg>", ""])
