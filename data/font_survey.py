#!/usr/bin/python3
"""Reads the identifying texts of the fonts under one or more folders with fontTools.

Used by check_foundry_patterns.py and make_classifications.py. For every outline font file
(.ttf .otf .ttc .otc .pfb .pfa .t1) it yields one record per face:

  path, family (typographic family, else family), fullName, postScriptName, copyright,
  trademark, manufacturer, designer, vendor (OS/2 achVendID), familyClass (OS/2
  sFamilyClass, class << 8 | subclass, or None), panose (list of 10 or None), isFixedPitch,
  notice (Type 1 /Notice), weight (Type 1 /Weight)

The foundry text the library itself keeps for an sfnt face is the manufacturer name when it is
present and the copyright otherwise; Type 1 fonts give their /Notice (or /Copyright).
"""
import json
import os
import sys
import warnings

from fontTools.ttLib import TTCollection, TTFont
from fontTools.t1Lib import T1Font

SFNT_EXTENSIONS = {".ttf", ".otf"}
COLLECTION_EXTENSIONS = {".ttc", ".otc"}
TYPE1_EXTENSIONS = {".pfb", ".pfa", ".t1"}


def name_text(font, name_id):
    table = font.get("name")
    if table is None:
        return ""
    record = table.getName(name_id, 3, 1, 0x409) or table.getName(name_id, 1, 0, 0)
    if record is None:
        record = next((r for r in table.names if r.nameID == name_id), None)
    if record is None:
        return ""
    try:
        return record.toUnicode().strip()
    except Exception:
        return ""


def sfnt_record(path, font):
    os2 = font.get("OS/2")
    post = font.get("post")
    panose = None
    family_class = None
    vendor = ""
    if os2 is not None:
        family_class = getattr(os2, "sFamilyClass", None)
        vendor = str(getattr(os2, "achVendID", "")).strip().strip("\0")
        p = getattr(os2, "panose", None)
        if p is not None:
            panose = [p.bFamilyType, p.bSerifStyle, p.bWeight, p.bProportion, p.bContrast,
                      p.bStrokeVariation, p.bArmStyle, p.bLetterForm, p.bMidline, p.bXHeight]
    return {
        "path": path,
        "family": name_text(font, 16) or name_text(font, 1),
        "legacyFamily": name_text(font, 1),
        "fullName": name_text(font, 4),
        "postScriptName": name_text(font, 6),
        "copyright": name_text(font, 0),
        "trademark": name_text(font, 7),
        "manufacturer": name_text(font, 8),
        "designer": name_text(font, 9),
        "vendor": vendor,
        "familyClass": family_class,
        "panose": panose,
        "isFixedPitch": bool(post.isFixedPitch) if post is not None else False,
        "notice": "",
        "weight": "",
    }


def type1_record(path):
    font = T1Font(path)
    font.parse()
    info = font.font.get("FontInfo", {})
    return {
        "path": path,
        "family": str(info.get("FamilyName", "")),
        "legacyFamily": str(info.get("FamilyName", "")),
        "fullName": str(info.get("FullName", "")),
        "postScriptName": str(font.font.get("FontName", "")),
        "copyright": str(info.get("Copyright", "")),
        "trademark": "",
        "manufacturer": "",
        "designer": "",
        "vendor": "",
        "familyClass": None,
        "panose": None,
        "isFixedPitch": bool(info.get("isFixedPitch", False)),
        "notice": str(info.get("Notice", "")),
        "weight": str(info.get("Weight", "")),
    }


def records_of(path):
    ext = os.path.splitext(path)[1].lower()
    with warnings.catch_warnings():
        warnings.simplefilter("ignore")
        try:
            if ext in SFNT_EXTENSIONS:
                with TTFont(path, lazy=True, fontNumber=0) as font:
                    return [sfnt_record(path, font)]
            if ext in COLLECTION_EXTENSIONS:
                collection = TTCollection(path, lazy=True)
                return [sfnt_record(path, font) for font in collection.fonts]
            if ext in TYPE1_EXTENSIONS:
                return [type1_record(path)]
        except Exception as error:  # a damaged or unsupported file is reported and skipped
            print(f"skipped {path}: {error}", file=sys.stderr)
    return []


def survey(roots):
    for root in roots:
        for folder, _, files in sorted(os.walk(root)):
            for name in sorted(files):
                yield from records_of(os.path.join(folder, name))


def foundry_text(record):
    """The text the library keeps as a face's foundry: manufacturer, else copyright; Type 1: notice."""
    if record["notice"] or not (record["manufacturer"] or record["copyright"]):
        return record["notice"] or record["copyright"]
    return record["manufacturer"] or record["copyright"]


def cached_survey(roots, cache):
    """The survey of `roots`, kept in the JSON file `cache` when one is named."""
    if cache and os.path.exists(cache):
        with open(cache, encoding="utf-8") as f:
            return json.load(f)
    records = list(survey(roots))
    if cache:
        with open(cache, "w", encoding="utf-8") as f:
            json.dump(records, f, ensure_ascii=False, indent=0)
    return records


if __name__ == "__main__":
    json.dump(list(survey(sys.argv[1:] or ["/usr/share/fonts"])), sys.stdout, ensure_ascii=False, indent=1)
