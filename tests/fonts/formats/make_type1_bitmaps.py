# FontForge script (fontforge -lang=py -script make_type1_bitmaps.py OUTDIR): a Type 1 subset of
# Nimbus Sans with its AFM, and the 5x7 X11 bitmap font as BDF and as a Mac bitmap-only family.
import sys
import fontforge

out = sys.argv[1]
keep = set("AVWTafilo Hamburgefonstiv")

font = fontforge.open("/usr/share/fonts/type1/urw-base35/NimbusSans-Regular.t1")
font.selection.none()
for g in font.glyphs():
    if g.unicode >= 0 and chr(g.unicode) in keep or g.glyphname == ".notdef":
        font.selection.select(("more",), g.glyphname)
font.selection.invert()
font.clear()
font.generate(out + "/NimbusSans-Regular.pfb", flags=("afm",))
font.generate(out + "/pfm-only.pfb", flags=("pfm",))

bitmap = fontforge.open("/usr/share/fonts/X11/misc/5x7-ISO8859-1.pcf.gz")
bitmap.generate(out + "/Fixed-5x7.bdf", bitmap_type="bdf")
bitmap.familyname = "Fixed Bitmap"
bitmap.fontname = "FixedBitmap"
bitmap.generate(out + "/FixedBitmap.bin", bitmap_type="nfnt")
