#!/usr/bin/env python3
"""Writes family_checksums.tsv: the faces of every family fixture in this folder and the checksums
of each face, worked out here from the resource bytes that the fixture set's own dumper
(macdump.py) reads, with zlib's CRC-32.

    python3 make_family_checksums.py PATH/TO/macdump.py > family_checksums.tsv

One line per face, families in map order, styles ascending:
    face  <path>  <FOND id>  <style>  <PostScript name, or ->  <printer file, or ->
          <kerning byte sum>  <face crc>  <legacy crc>  <face crc, cross-platform>  <legacy crc, cross-platform>
All numbers are hexadecimal. The kerning byte sum adds the bytes of the kerning-table entries of
the style (their 4-byte headers and their pairs). The face CRC continues a CRC of the style's
kerning pairs over the printer file's POST resources 501, 502, ...; when that adds nothing, over
the style's sfnt resources and, if the CRC is still 0, its NFNT and FONT resources. When nothing
was added, or for a cross-platform face, it is replaced by the CRC of the whole file (data fork
then resource fork), or, cross-platform, of the data fork alone.
The printer file of a face is named in the fixture set's README (its name follows from the
PostScript name); a face whose style has an outline entry (size 0) has none.
"""
import importlib.util
import os
import struct
import sys
import zlib

loader_spec = importlib.util.spec_from_file_location("macdump", sys.argv[1])
macdump = importlib.util.module_from_spec(loader_spec)
loader_spec.loader.exec_module(macdump)

here = os.path.dirname(os.path.abspath(__file__))
FAMILY_FILES = [
    "a-dfont/DejaVuSans.dfont",
    "a-dfont/DejaVuSans-ufond.dfont",
    "a-dfont/NimbusSans-CFF.dfont",
    "a-dfont/DejaVuSans.dfont.bin",
    "b-suitcase-truetype/appledouble/DejaVuSans",
    "b-suitcase-truetype/macbinary/DejaVuSans.bin",
    "c-type1-family/appledouble/NimbusSans",
    "c-type1-family/macbinary/NimbusSans",
]
# The printer files of the fixture README, by PostScript name.
PRINTER_FILES = {
    "NimbusSans-Regular": "NimbuSanReg",
    "NimbusSans-Bold": "NimbuSanBol",
    "NimbusSans-Italic": "NimbuSanIta",
    "NimbusSans-BoldItalic": "NimbuSanBolIta",
}


def forks(path):
    info = macdump.locate(path)
    return info.get("data") or b"", info.get("rsrc") or b""


def resources(path):
    data, rsrc = forks(path)
    rm = macdump.parse_resource_map(rsrc) if rsrc else None
    if rm is None:
        rm = macdump.parse_resource_map(data)
    table = {}
    order = []
    for t in rm["types"] if rm else []:
        for r in t["resources"]:
            table[(t["type"], r["id"])] = r["_data"]
            order.append((t["type"], r["id"]))
    return table, order


def kerning_entries(fond, style):
    """(header, pairs) of the entries of this style; pairs empty when they run past the end."""
    ko = struct.unpack_from(">i", fond, 20)[0]
    if ko == 0 or ko + 2 > len(fond):
        return []
    count = struct.unpack_from(">h", fond, ko)[0] + 1
    pos, out = ko + 2, []
    for _ in range(count):
        if pos + 4 > len(fond):
            continue
        st, n = struct.unpack_from(">Hh", fond, pos)
        header = fond[pos:pos + 4]
        pairs_at = pos + 4
        pos = pairs_at + 4 * n
        if st == style:
            out.append((header, fond[pairs_at:pos] if pos <= len(fond) and n > 0 else b""))
    return out


def faces(path):
    table, order = resources(path)
    folder = os.path.dirname(path)
    data, rsrc = forks(path)
    for rtype, rid in order:
        if rtype != "FOND":
            continue
        fond = table[(rtype, rid)]
        decoded = macdump.decode_fond(fond)
        entries = decoded.get("assoc", [])
        names = decoded.get("style_table", {}).get("postscript_names_by_style", {})
        for style in sorted({e["style"] for e in entries}):
            ps = names.get(style, "")
            kern = kerning_entries(fond, style)
            bastion = sum(sum(h) + sum(p) for h, p in kern) & 0xFFFFFFFF
            k = 0
            for _, p in kern:
                k = zlib.crc32(p, k)
            crc = k
            needs_printer = not any(e["style"] == style and e["size"] == 0 for e in entries)
            printer = PRINTER_FILES.get(ps) if needs_printer else None
            if printer and os.path.exists(os.path.join(folder, printer)):
                ptable, _ = resources(os.path.join(folder, printer))
                pid = 501
                while ptable.get(("POST", pid)):
                    crc = zlib.crc32(ptable[("POST", pid)], crc)
                    pid += 1
            else:
                printer = None
            if crc == k:
                ids = sorted({e["id"] for e in entries if e["style"] == style})
                for i in ids:
                    if ("sfnt", i) in table:
                        crc = zlib.crc32(table[("sfnt", i)], crc)
                if crc == 0:
                    for i in ids:
                        for t in ("NFNT", "FONT"):
                            if (t, i) in table:
                                crc = zlib.crc32(table[(t, i)], crc)
            results = []
            for cross in (False, True):
                if crc != k and not cross:
                    results += [crc, crc]
                    continue
                whole = zlib.crc32(rsrc, zlib.crc32(data))
                ok = bool(rsrc) or whole != k
                if ok:
                    results += [zlib.crc32(data) if cross else whole, whole]
                else:
                    results += [crc, crc]
            yield [os.path.relpath(path, here), str(rid), str(style), ps or "-", printer or "-",
                   "%08x" % bastion] + ["%08x" % (v & 0xFFFFFFFF) for v in results]


for relative in FAMILY_FILES:
    for row in faces(os.path.join(here, relative)):
        print("\t".join(["face"] + row))
