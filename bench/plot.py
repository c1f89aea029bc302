"""Draws the speed of all libraries by operation: a row for each operation, a dot for each library."""

import math

from results import BASE, HELD, OURS, mean

COLOURS = ["#c0392b", "#2c3e50", "#2980b9", "#27ae60", "#8e44ad", "#e67e22", "#7f8c8d"]
LEFT, TOP, WIDTH, ROW = 150, 60, 620, 26
LOWEST, HIGHEST = 0.01, 30.0  # what is beyond stands at the edge


def place(ratio):
    """Where a ratio stands on the logarithmic axis."""
    bounded = min(max(ratio, LOWEST), HIGHEST)
    return LEFT + WIDTH * math.log(bounded / LOWEST) / math.log(HIGHEST / LOWEST)


def text(x, y, words, anchor="start"):
    return f'<text x="{x:.0f}" y="{y:.0f}" text-anchor="{anchor}">{words}</text>'


def axis(bottom):
    for mark in (0.01, 0.03, 0.1, 0.3, 1, 3, 10, 30):
        x = place(mark)
        yield f'<line x1="{x:.1f}" y1="{TOP - 10}" x2="{x:.1f}" y2="{bottom}" stroke="{"#444" if mark == 1 else "#ddd"}"/>'
        yield text(x, bottom + 16, f"{mark:g}", "middle")
    yield text(LEFT + WIDTH / 2, bottom + 36, f"times as fast as {BASE}, geometric mean over the documents", "middle")


def legend(colours):
    step = (LEFT + WIDTH) / len(colours)
    for i, (name, colour) in enumerate(colours.items()):
        yield f'<circle cx="{20 + i * step:.0f}" cy="20" r="5" fill="{colour}"/>'
        yield text(30 + i * step, 24, name)


def row(results, operation, y, colours):
    yield text(LEFT - 12, y + 4, operation, "end")
    for name, colour in reversed(colours.items()):
        ratio = mean(results.over_documents(lambda document: results.speed(document, operation, name)).values())
        if ratio:
            yield (f'<circle cx="{place(ratio):.1f}" cy="{y}" r="{6 if name == OURS else 5}" fill="{colour}">'
                   f"<title>{name}: {ratio:.2f}</title></circle>")


def draw(results):
    """The plot as SVG."""
    colours = dict(zip(results.of_kind("ours", "tree"), COLOURS))
    operations = [operation for operation in results.operations() if operation not in HELD + ["validate"]]
    bottom = TOP + ROW * len(operations)
    lines = [*legend(colours), *axis(bottom)]
    for i, operation in enumerate(operations):
        lines += row(results, operation, TOP + ROW * i + ROW // 3, colours)
    return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{LEFT + WIDTH + 30}" height="{bottom + 50}" '
            'font-family="sans-serif" font-size="12">\n<rect width="100%" height="100%" fill="white"/>\n'
            + "\n".join(lines) + "\n</svg>\n")
