#!/usr/bin/env python3
"""What this deployment's built skin shows can be read: contrast of texts, and sizes and clear pixels of the pictures.

    skin_look_test.py SKIN-FOLDER
"""
import base64
import pathlib
import re
import struct
import sys
import unittest
import xml.etree.ElementTree as xml

sys.dont_write_bytecode = True
from gif_reader import gif_pixels

FOLDER = pathlib.Path(sys.argv.pop(1))
SOURCES = pathlib.Path(__file__).parents[2] / "src/programs/Trawlbeam"
LEAST = 4.5
BLACK = (0, 0, 0)
MAGENTA = (255, 0, 255)
TWIPS = 15
SHARED = {name: (size, True) for size, names in ((18, "X XMouseDown XMouseOver XInactive"), (64, "TrawlLogo"),
                                                (14, "X2 X2MouseDown X2MouseOver S2 S2MouseDown S2MouseOver"))
          for name in names.split()} | {"DropZone": (64, False)}
WINDOWS = {"frmTrawlMain": (9600, 6900), "frmSplash": (5400, 2700), "frmAbout": (5400, 3600)}
CLOSE = {"frmTrawlMain": "1", "frmAbout": "1", "frmSubCat": "1", "frmMessage": None}
OUTSIDE = {f"SUB{number}": (20, 20) for number in range(8)} | {f"BAR{number}": (32, 32) for number in range(1, 6)} | \
          {name: (16, 16) for name in ("NODE0", "NODE1", "LAMPOFF", "LAMP0", "LAMP16", "LAMP32", "LAMP48")} | \
          {"PICTRAWL": (96, 96), "PICDROP": (240, 140)}


def contrast(one, other):
    def light(colour):
        parts = [part / 255 / 12.92 if part <= 10 else ((part / 255 + 0.055) / 1.055) ** 2.4 for part in colour]
        return 0.2126 * parts[0] + 0.7152 * parts[1] + 0.0722 * parts[2]
    darker, lighter = sorted((light(one), light(other)))
    return (lighter + 0.05) / (darker + 0.05)


def colour(text):
    return tuple(int(text).to_bytes(4, "little")[:3])


def lightened(pixel, factor):
    return pixel if pixel == (255, 255, 255) else tuple(min(255, round(part * (100 + factor) / 100)) for part in pixel)


class SkinLookTest(unittest.TestCase):
    def setUp(self):
        self.text = (FOLDER / "skin.xml").read_text(encoding="utf-8")
        self.root = xml.fromstring(self.text)
        self.windows = {window.get("Name"): window for window in self.root}
        self.resources = {name: FOLDER / file for name, file in
                          re.findall(r'(\w+) \w+ ".*/(.*)"', (FOLDER / "pictures.rc").read_text())}

    def assert_read(self, text, ground, what, least=LEAST):
        self.assertGreaterEqual(contrast(text, ground), least, f"{what}: {text} on {ground}")

    def picture(self, element):
        return gif_pixels(base64.b64decode(element.text, validate=True))

    def test_the_document_fits_the_program(self):
        sys.path.insert(0, str(SOURCES))
        import make_strings
        make_strings.strings(self.text.encode("cp1252").decode("cp1252"))
        self.assertEqual(self.text[0], "<")
        self.assertIsNone(self.root.get("FormBackColor"), "it would win over every window's")
        for name, size in WINDOWS.items():
            self.assertEqual((int(self.windows[name].get("Width")), int(self.windows[name].get("Height"))), size, name)
        for name in ("frmMessage", "frmSubCat", "frmNotify", "frmNotifyURL"):
            self.assertFalse(self.windows[name].attrib.keys() & {"Width", "Height"}, name)
        found = {name: window.find("Caption").get("Close") for name, window in self.windows.items() if window.find("Caption") is not None}
        self.assertEqual(found, CLOSE)
        self.assertEqual((self.root.get("CaptionHeight"), self.windows["frmSplash"].get("EdgeRadius")), ("420", "12"))

    def test_titles_can_be_read_on_the_bar_active_and_inactive(self):
        get = self.root.get
        factor = int(get("CaptionNonFocusFactor"))
        active, inactive = colour(get("CaptionActiveForeColor")), colour(get("CaptionInActiveForeColor"))
        left, top = int(get("CaptionTextLeft")) // TWIPS, int(get("CaptionTextTop")) // TWIPS
        # Of a bold font a line is about one and two thirds of its size in pixels high.
        bottom = top + round(int(get("CaptionFontSize")) * 96 / 72 * 5 / 3)
        for name in CLOSE:
            bar = self.picture(self.windows[name].find("Caption"))
            self.assertEqual((len(bar[0]), len(bar)), (800, 28), name)
            self.assertNotIn(None, {pixel for row in bar for pixel in row}, "a bar has no holes")
            ground = {pixel for row in bar[top:bottom] for pixel in row[left:]} | {colour(get("CaptionBackColor"))}
            for pixel in ground:
                self.assert_read(active, pixel, f"{name}, active")
                self.assert_read(inactive, lightened(pixel, factor), f"{name}, inactive")

    def test_texts_can_be_read_on_their_windows(self):
        for name, window in self.windows.items():
            if name in ("Globals", "frmSysTray", "frmTrawlDrop"):
                continue
            ground = colour(window.get("FormBackColor"))
            self.assert_read(BLACK, ground, f"{name}, a text that the skin leaves alone")
            for component in window.iterfind("Components/Component"):
                grounds, texts = [ground], ["ForeColor", "NormTextColor", "HoverTextColor"]
                if component.get("CaptionColor"):
                    # A bar: its text lies on what is done and on what is left.
                    grounds, texts = [colour(component.get("BackColor")), colour(component.get("ForeColor"))], ["CaptionColor"]
                for text in filter(component.get, texts):
                    for below in grounds:
                        self.assert_read(colour(component.get(text)), below, f"{name}, {component.get('Name')}, {text}")

    def test_menu_items_can_be_read_and_tell_whether_they_can_be_chosen(self):
        menu = {name: colour(text) for name, text in self.windows["frmSysTray"].items() if name != "Name"}
        self.assertEqual(len(menu), 11)
        for text, ground in (("menutext", "menubg"), ("selectedtext", "selected"), ("generaltext", "menubg"), ("headingtext", "headingbg"),
                             ("menutext", "body"), ("menutext", "table1bg"), ("menutext", "table2bg")):
            self.assert_read(menu[text], menu[ground], f"{text} on {ground}")
        self.assert_read(menu["menutext"], menu["generaltext"], "an item that can be chosen beside one that cannot", 2)
        self.assertNotEqual(menu["selected"], menu["menubg"])

    def test_shared_pictures_are_of_their_size_and_clear_where_they_lie_on_something(self):
        pictures = {picture.get("Name"): self.picture(picture) for picture in self.windows["Globals"]}
        self.assertEqual(pictures.keys(), SHARED.keys())
        for name, (size, clear) in SHARED.items():
            rows = pictures[name]
            self.assertEqual((len(rows[0]), len(rows)), (size, size), name)
            self.assertEqual(rows[0][0] is None and rows[-1][-1] is None, clear, name)
        self.assertNotIn((0, 255, 0), {pixel for row in pictures["DropZone"] for pixel in row}, "the drop zone's key colour")
        for image in self.root.iterfind("Window/Graphics/*"):
            self.picture(image)

    def test_pictures_of_the_program_file_are_of_their_size(self):
        for name, (width, height) in OUTSIDE.items():
            rows = gif_pixels(self.resources[name].read_bytes())
            self.assertEqual((len(rows[0]), len(rows), rows[0][0]), (width, height, None), name)
        for number in range(103, 113):
            data = self.resources[str(number)].read_bytes()
            corner = tuple(reversed(data[struct.unpack("<I", data[10:14])[0]:][:3]))
            self.assertEqual((*struct.unpack("<ii", data[18:26]), corner), (16, 16, MAGENTA), number)
        for number in range(121, 125):
            data = self.resources[str(number)].read_bytes()
            # The mask of one bit a pixel and the header belong to an image too.
            images = [(size, 32, 40 + size * size * 4 + (size + 31) // 32 * 4 * size) for size in (32, 48)]
            self.assertEqual([struct.unpack("<BxxxxxHI", data[start:start + 12]) for start in (6, 22)], images, number)


if __name__ == "__main__":
    unittest.main()
