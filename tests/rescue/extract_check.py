#!/usr/bin/python3
"""typeprint extract over every Mac fixture, checked with independent tools.

    extract_check.py TYPEPRINT FONTS_DIR SCHEMA

sfnt files: equal (size and CRC-32) to the resource listed in mac/expected.tsv, open in fontTools
and fc-query, identified with the CRC of their bytes; the checksum of the face inside its source
is the one in mac/family_checksums.tsv, and equal to the file's when nothing else is chained into
it. Printer fonts: byte-equal to t1unmac -b / -a on the printer file. AFM: parsed by afmLib, kerning
pair count as in the family's table, glyph boxes and widths as fontTools draws the written font.
BDF: accepted by bdftopcf, one glyph per glyph of the strike. Damaged sources fail and write nothing.
Every report follows the command's JSON schema.
"""
import glob
import json
import math
import os
import shutil
import struct
import subprocess
import sys
import tempfile
import zlib

import jsonschema

from fontTools import afmLib
from fontTools.pens.boundsPen import BoundsPen
from fontTools.t1Lib import T1Font
from fontTools.ttLib import TTFont

tool, fonts = sys.argv[1], sys.argv[2]
schema = json.load(open(sys.argv[3]))
mac = os.path.join(fonts, "mac")
work = tempfile.mkdtemp()
failures = []
checks = 0

# Kerning pairs per face, from the fixture README (counted there by the fixture set's dumper).
KERNING_PAIRS = {"NimbusSans-Regular": 133, "NimbusSans-Bold": 141, "NimbusSans-Italic": 142,
                 "NimbusSans-BoldItalic": 137}


def check(what, condition):
    global checks
    checks += 1
    if not condition:
        failures.append(what)
        print("FAILED:", what)


def rows(name, kind):
    with open(os.path.join(mac, name)) as f:
        return [line.rstrip("\n").split("\t")[1:] for line in f if line.startswith(kind + "\t")]


resources = {(r[0], r[1], int(r[2])): (int(r[4]), r[5]) for r in rows("expected.tsv", "res")}
face_crcs = {(r[0], int(r[1]), int(r[2])): r[6] for r in rows("family_checksums.tsv", "face")}


def extract(out, *args, expect=0):
    run = subprocess.run([tool, "extract", "-o", out, "--format", "json", *args], capture_output=True,
                         text=True, timeout=60)
    check("%s exits %d (got %d: %s)" % (args, expect, run.returncode, run.stderr), run.returncode == expect)
    report = json.loads(run.stdout)
    jsonschema.validate(report, schema)
    return [(file, source) for file, source in zip(report["files"], report["extract"])]


def t1unmac(fmt, layout, path):
    flag = {"MacBinary": "--macbinary", "AppleSingle": "--applesingle", "AppleDouble": "--appledouble",
            "bare fork": "--raw"}[layout["container"]]
    fork_file = layout.get("forkFile") or path
    return subprocess.run(["t1unmac", fmt, flag, fork_file], capture_output=True, timeout=20).stdout


def resource_fork(path):
    """The resource fork of a MacBinary file or of an AppleDouble companion."""
    data = open(path, "rb").read()
    if data[:4] == b"\x00\x05\x16\x07":
        for i in range(struct.unpack(">H", data[24:26])[0]):
            entry, offset, length = struct.unpack(">III", data[26 + 12 * i:38 + 12 * i])
            if entry == 2:
                return data[offset:offset + length]
    data_len, rsrc_len = struct.unpack(">II", data[83:91])
    start = 128 + (data_len + 127) // 128 * 128
    return data[start:start + rsrc_len]


def strike_glyph_counts(fork):
    """Glyphs per NFNT: offset/width entries other than 0xFFFF, the missing-glyph symbol included."""
    data_off, map_off = struct.unpack(">II", fork[:8])
    types_off = map_off + struct.unpack(">H", fork[map_off + 24:map_off + 26])[0]
    counts = {}
    for t in range(struct.unpack(">H", fork[types_off:types_off + 2])[0] + 1):
        kind, n, refs = struct.unpack(">4sHH", fork[types_off + 2 + 8 * t:types_off + 10 + 8 * t])
        for k in range(n + 1 if kind == b"NFNT" else 0):
            ref = types_off + refs + 12 * k
            rid = struct.unpack(">h", fork[ref:ref + 2])[0]
            at = data_off + int.from_bytes(fork[ref + 5:ref + 8], "big") + 4
            first, last = struct.unpack(">hh", fork[at + 2:at + 6])
            ow_at = at + 16 + 2 * struct.unpack(">H", fork[at + 16:at + 18])[0]
            widths = struct.unpack(">%dH" % (last - first + 2), fork[ow_at:ow_at + 2 * (last - first + 2)])
            counts[rid] = sum(1 for w in widths if w != 0xFFFF)
    return counts


def check_sfnt(source, f):
    rel = os.path.relpath(source, mac)
    data = open(f["path"], "rb").read()
    size, crc = resources[(rel, "sfnt", f["resourceID"])]
    check("%s equals sfnt %d" % (f["path"], f["resourceID"]), (len(data), "%08x" % zlib.crc32(data)) == (size, crc))
    check("%s opens in fontTools" % f["path"], len(TTFont(f["path"]).getGlyphOrder()) > 1)
    check("%s opens in fc-query" % f["path"], subprocess.run(["fc-query", f["path"]], capture_output=True).returncode == 0)
    check("%s identified with its CRC" % f["path"], f.get("checksum") == "%08x" % zlib.crc32(data))
    if "familyID" in f:
        expected = face_crcs[(rel, f["familyID"], f["style"])]
        check("%s: face checksum in the source %s" % (f["path"], expected), f.get("sourceChecksum") == expected)
        if f["sourceChecksumAlsoCovers"] == "":
            check("%s keeps the source's face checksum" % f["path"], f["checksumMatches"])


def check_afm(f, pfb_path):
    afm = afmLib.AFM(f["path"])
    name = afm.FontName
    check("%s has the family's %s kerning pairs" % (f["path"], KERNING_PAIRS.get(name)),
          len(afm._kerning) == KERNING_PAIRS.get(name))
    glyphs = T1Font(pfb_path).getGlyphSet()
    for glyph, (code, width, box) in afm._chars.items():
        pen = BoundsPen(glyphs)
        glyphs[glyph].draw(pen)
        b = pen.bounds or (0, 0, 0, 0)
        drawn = (math.floor(b[0]), math.floor(b[1]), math.ceil(b[2]), math.ceil(b[3]))
        check("%s %s box %s drawn %s" % (name, glyph, box, drawn), tuple(box) == drawn)
        check("%s %s width %d" % (name, glyph, width), width == round(glyphs[glyph].width))


def check_bdf(source, f):
    text = open(f["path"]).read()
    chars = int(text.split("\nCHARS ")[1].split("\n")[0])
    expected = strike_glyph_counts(resource_fork(source_fork_file(source)))[f["resourceID"]]
    check("%s has %d glyphs (CHARS %d)" % (f["path"], expected, chars),
          chars == expected == text.count("\nSTARTCHAR "))
    pcf = subprocess.run(["bdftopcf", f["path"]], capture_output=True)
    check("bdftopcf accepts %s" % f["path"], pcf.returncode == 0 and pcf.stdout[:4] == b"\x01fcp")


def source_fork_file(source):
    companion = os.path.join(os.path.dirname(source), "._" + os.path.basename(source))
    return companion if os.path.exists(companion) else source


def sources():
    for path in sorted(glob.glob(os.path.join(mac, "*", "*", "*")) + glob.glob(os.path.join(mac, "a-dfont", "*"))):
        if os.path.isfile(path) and not os.path.basename(path).startswith("._"):
            yield path


seen_formats = set()
for n, source in enumerate(sources()):
    for variant, flags in (("pfb", ["--afm", "--bitmaps"]), ("pfa", ["--pfa"])):
        out = os.path.join(work, "%d-%s" % (n, variant))
        report = extract(out, *flags, source)
        for status, s in report:
            check("%s extracted (%s)" % (s["path"], status.get("error")), status["status"] == "ok")
            printers = {}
            for f in s["written"]:
                seen_formats.add(f["format"])
                if f["format"] in ("ttf", "otf"):
                    check_sfnt(source, f)
                elif f["format"] in ("pfb", "pfa"):
                    reference = t1unmac("-b" if variant == "pfb" else "-a", f["layout"], f["from"])
                    check("%s equals t1unmac %s" % (f["path"], variant), open(f["path"], "rb").read() == reference)
                    printers[os.path.splitext(f["path"])[0]] = f["path"]
                elif f["format"] == "afm":
                    check_afm(f, printers[os.path.splitext(f["path"])[0]])
                elif f["format"] == "bdf":
                    check_bdf(source, f)
check("every output format was made", seen_formats >= {"ttf", "otf", "pfb", "pfa", "afm", "bdf"})

# Damaged and refused sources: a clear error and nothing written.
suitcase = os.path.join(mac, "b-suitcase-truetype", "macbinary", "DejaVuSans.bin")
cut = os.path.join(work, "cut", "DejaVuSans.bin")
os.makedirs(os.path.dirname(cut))
open(cut, "wb").write(open(suitcase, "rb").read()[:30000])

family = os.path.join(work, "bad-strike")
shutil.copytree(os.path.join(mac, "c-type1-family", "appledouble"), family)
companion = bytearray(open(os.path.join(family, "._NimbusSans"), "rb").read())
fork_at = companion.index(resource_fork(os.path.join(family, "._NimbusSans")))
data_off = struct.unpack(">I", companion[fork_at:fork_at + 4])[0]
struct.pack_into(">h", companion, fork_at + data_off + 4 + 24, 0x7FFF)  # first NFNT: rowWords past the end
open(os.path.join(family, "._NimbusSans"), "wb").write(companion)

for what, source, flags in (("cut suitcase", cut, []), ("damaged strike", os.path.join(family, "NimbusSans"), ["--afm", "--bitmaps"])):
    out = os.path.join(work, "out-" + what.replace(" ", "-"))
    report = extract(out, *flags, source, expect=1)
    errors = [status.get("error", "") for status, _ in report if status["status"] == "failed"]
    check("%s gives an error (%s)" % (what, errors), len(errors) == 1 and errors[0])
    check("%s writes nothing" % what, os.listdir(out) == [])

out = os.path.join(work, "existing")
os.makedirs(out)
open(os.path.join(out, "DejaVuSans.ttf"), "w").write("keep")
extract(out, suitcase, expect=1)
check("an existing file is kept", open(os.path.join(out, "DejaVuSans.ttf")).read() == "keep" and len(os.listdir(out)) == 1)
extract(out, "--force", suitcase)
check("--force replaces it", open(os.path.join(out, "DejaVuSans.ttf"), "rb").read(4) == b"\x00\x01\x00\x00")

# A printer font whose end-of-font resource is gone (POST 506 made a comment) is still written whole.
lwfn = os.path.join(work, "no-end")
shutil.copytree(os.path.join(mac, "d-t1mac-lwfn", "appledouble"), lwfn)
companion = bytearray(open(os.path.join(lwfn, "._C059Rom"), "rb").read())
end_at = companion.index(b"\x00\x00\x00\x02\x05\x00")
companion[end_at + 4] = 0
open(os.path.join(lwfn, "._C059Rom"), "wb").write(companion)
report = extract(os.path.join(work, "out-no-end"), os.path.join(lwfn, "C059Rom"))
reference = t1unmac("-b", {"container": "MacBinary"}, os.path.join(mac, "d-t1mac-lwfn", "macbinary", "C059Rom"))
check("a printer font without its end resource is written whole",
      open(os.path.join(work, "out-no-end", "C059-Roman.pfb"), "rb").read() == reference)

shutil.rmtree(work)
print("%d checks, %d failures" % (checks, len(failures)))
sys.exit(1 if failures else 0)
