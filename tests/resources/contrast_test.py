#!/usr/bin/env python3
"""Every word in the drawings stands out from what it is written on, as the web's
accessibility guidelines (WCAG 2, AA) ask of small type: by 4.5 to 1.

What is dimmed because it is of no use at the moment need not, by the same guidelines.
"""
import pathlib
import re
import sys
import unittest
import xml.etree.ElementTree as ElementTree

DRAWINGS = pathlib.Path(__file__).resolve().parents[2] / "resources"
LEAST = 4.5


def luminance(colour):
    def linear(component):
        c = component / 255
        return c / 12.92 if c <= 0.04045 else ((c + 0.055) / 1.055) ** 2.4

    red, green, blue = (linear(int(colour[i:i + 2], 16)) for i in (1, 3, 5))
    return 0.2126 * red + 0.7152 * green + 0.0722 * blue


def contrast(a, b):
    darker, lighter = sorted((luminance(a), luminance(b)))
    return (lighter + 0.05) / (darker + 0.05)


def translation(element):
    match = re.fullmatch(r"translate\(([-\d.]+)[ ,]([-\d.]+)\)", element.get("transform", ""))
    if match is None:
        assert "transform" not in element.attrib, element.get("transform")
        return 0.0, 0.0
    return float(match[1]), float(match[2])


def words(drawing):
    """The words of a drawing as (text, their colour, the colour behind them): that of
    the last rectangle under their anchor."""
    found = []
    rectangles = []

    def walk(element, x, y, fill):
        dx, dy = translation(element)
        x, y = x + dx, y + dy
        fill = element.get("fill", fill)
        if element.tag.endswith("}rect"):
            left, top = x + float(element.get("x", 0)), y + float(element.get("y", 0))
            rectangles.append((left, top, left + float(element.get("width")),
                               top + float(element.get("height")), fill))
        if "data-text" in element.attrib:
            at_x, at_y = (float(part) for part in element.get("data-at").split(","))
            at_x, at_y = at_x + x, at_y + y - 1  # on a letter's lowest row
            behind = [colour for left, top, right, bottom, colour in rectangles
                      if left <= at_x < right and top <= at_y < bottom]
            found.append((element.get("data-text"), fill, behind[-1]))
        for child in element:
            walk(child, x, y, fill)

    walk(ElementTree.parse(drawing).getroot(), 0.0, 0.0, None)
    return found


class Contrast(unittest.TestCase):
    def test_is_computed_as_the_guidelines_do(self):
        self.assertAlmostEqual(contrast("#000000", "#ffffff"), 21)
        self.assertAlmostEqual(contrast("#767676", "#ffffff"), 4.54, places=2)

    def test_of_every_word_is_enough(self):
        count = 0
        for drawing in sorted(DRAWINGS.glob("*.svg")):
            for text, colour, behind in words(drawing):
                count += 1
                with self.subTest(drawing=drawing.name, text=text, colour=colour, behind=behind):
                    self.assertGreaterEqual(contrast(colour, behind), LEAST)
        self.assertGreater(count, 50)


if __name__ == "__main__":
    sys.exit(unittest.main())
