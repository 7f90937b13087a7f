#!/usr/bin/python3
"""Makes the small real fonts under tests/fonts/formats/ from Debian's fonts (see README.md)."""
import gzip, os, subprocess, sys
from fontTools import subset
from fontTools.fontBuilder import FontBuilder
from fontTools.pens.ttGlyphPen import TTGlyphPen
from fontTools.ttLib import TTFont, TTCollection

OUT = sys.argv[1] if len(sys.argv) > 1 else os.path.dirname(os.path.abspath(__file__))
TEXT = "AVWTafilo Hamburgefonstiv"
DEJAVU = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf"
URW = "/usr/share/fonts/opentype/urw-base35/"
os.environ.setdefault("SOURCE_DATE_EPOCH", "1700000000")


def out(name):
    return os.path.join(OUT, name)


def make_subset(source, target, flavor=None):
    options = subset.Options()
    options.flavor = flavor
    options.name_IDs = ["*"]
    options.notdef_outline = True
    font = subset.load_font(source, options)
    subsetter = subset.Subsetter(options)
    subsetter.populate(text=TEXT)
    subsetter.subset(font)
    subset.save_font(font, target, options)


def make_variable(target):
    """Two axes (wght, wdth) and three named instances over a one-glyph TrueType font."""
    fb = FontBuilder(1000, isTTF=True)
    fb.setupGlyphOrder([".notdef", "A"])
    fb.setupCharacterMap({0x41: "A"})
    pen = TTGlyphPen(None)
    pen.moveTo((100, 0)); pen.lineTo((500, 700)); pen.lineTo((900, 0)); pen.closePath()
    glyph = pen.glyph()
    fb.setupGlyf({".notdef": TTGlyphPen(None).glyph(), "A": glyph})
    fb.setupHorizontalMetrics({".notdef": (500, 0), "A": (1000, 100)})
    fb.setupHorizontalHeader(ascent=800, descent=-200)
    fb.setupNameTable({"familyName": "Typeprint Var", "styleName": "Regular",
                       "psName": "TypeprintVar-Regular", "version": "Version 1.000"})
    axes = [("wght", 100, 400, 900, "Weight"), ("wdth", 75, 100, 125, "Width")]
    instances = [
        {"location": {"wght": 100, "wdth": 100}, "stylename": "Thin", "postscriptfontname": "TypeprintVar-Thin"},
        {"location": {"wght": 400, "wdth": 100}, "stylename": "Regular", "postscriptfontname": "TypeprintVar-Regular"},
        {"location": {"wght": 900, "wdth": 75}, "stylename": "Black Condensed"},
    ]
    fb.setupFvar(axes, instances)
    from fontTools.ttLib.tables.TupleVariation import TupleVariation
    heavier = TupleVariation({"wght": (0, 1, 1)}, [(-20, 0), (0, 0), (20, 0), None, None, None, None])
    fb.setupGvar({"A": [heavier], ".notdef": []})
    fb.setupOS2(); fb.setupPost()
    fb.save(target)


def make_collection(faces, target):
    collection = TTCollection()
    collection.fonts = [TTFont(f) for f in faces]
    collection.save(target)


def run(*args):
    subprocess.run(args, check=True)


make_subset(DEJAVU, out("DejaVuSans-subset.ttf"))
make_subset(DEJAVU, out("DejaVuSans-subset.woff"), "woff")
make_subset(DEJAVU, out("DejaVuSans-subset.woff2"), "woff2")
make_subset(URW + "NimbusSans-Regular.otf", out("NimbusSans-Regular-subset.otf"))
make_subset(URW + "NimbusSans-Bold.otf", "/tmp/NimbusSans-Bold-subset.otf")
make_subset(URW + "NimbusSans-Regular.otf", out("NimbusSans-Regular-subset.woff2"), "woff2")
make_collection([out("NimbusSans-Regular-subset.otf"), "/tmp/NimbusSans-Bold-subset.otf"], out("NimbusSans-subset.otc"))
make_variable(out("TypeprintVar.ttf"))
make_subset(out("TypeprintVar.ttf"), out("TypeprintVar.woff2"), "woff2")

