#!/usr/bin/env python3
"""Writes expected.tsv: what an independent reader (the fixture set's macdump.py, plus zlib for
data checksums) finds in every Mac-format fixture in this folder.

    python3 make_expected.py PATH/TO/macdump.py > expected.tsv

Lines:
    file  <path>  <container>  <type>  <creator>  <map source: resource|data|none>
    res   <path>  <type>  <id>  <attributes>  <size>  <crc32 of the data>  <name, or ->
Type and creator are "-" when the file has none. Resources are listed in map order.
"""
import importlib.util
import os
import sys
import zlib

loader_spec = importlib.util.spec_from_file_location("macdump", sys.argv[1])
macdump = importlib.util.module_from_spec(loader_spec)
loader_spec.loader.exec_module(macdump)

here = os.path.dirname(os.path.abspath(__file__))
skip_dirs = {".AppleDouble"}
paths = []
for root, dirs, files in os.walk(here):
    dirs[:] = sorted(d for d in dirs if d not in skip_dirs)
    for f in sorted(files):
        if f.startswith("._") or f.endswith((".py", ".md", ".tsv")):
            continue
        paths.append(os.path.join(root, f))

for path in paths:
    rel = os.path.relpath(path, here)
    info = macdump.locate(path)
    rm, source = None, "none"
    if info.get("rsrc"):
        rm = macdump.parse_resource_map(info["rsrc"])
        source = "resource" if rm else "none"
    if rm is None and info.get("data"):
        rm = macdump.parse_resource_map(info["data"])
        source = "data" if rm else "none"
    container = info["container"].split(" (")[0]
    print("\t".join(["file", rel, container, info.get("type", "-"), info.get("creator", "-"), source]))
    if not rm:
        continue
    for t in rm["types"]:
        for r in t["resources"]:
            name = r["name"] if r["name"] is not None else "-"
            print("\t".join(["res", rel, t["type"], str(r["id"]), str(r["attributes"]),
                             str(r["size"]), "%08x" % (zlib.crc32(r["_data"]) & 0xFFFFFFFF), name]))
