#!/usr/bin/python3
"""Checks FoundryNameTable.plist against the fonts installed on this machine.

For every face under the given folders (default /usr/share/fonts) it takes the texts that name a
font's maker (manufacturer, copyright, trademark, Type 1 notice), lower-cases them as the library
does (ASCII letters only) and runs the table over them. It prints:

  1. partial-word matches: a pattern that begins inside a longer word, or a short one that ends
     inside one ("itc" in "switch"), the usual sign of a pattern too short to be safe;
  2. faces whose texts name more than one foundry, with the one the library picks from its
     foundry text (manufacturer, else copyright; the notice for Type 1), so a wrong winner shows;
  3. how many faces get a foundry at all, and the commonest foundry texts that get none.

Usage: check_foundry_patterns.py [--table FILE] [--cache FILE.json] [FOLDER...]
"""
import argparse
import collections
import os
import plistlib
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import font_survey  # noqa: E402

TEXT_FIELDS = ("manufacturer", "copyright", "trademark", "notice")


def ascii_lower(text):
    return "".join(chr(ord(c) + 32) if "A" <= c <= "Z" else c for c in text)


def load_entries(path):
    with open(path, "rb") as f:
        table = plistlib.load(f)
    return [(e["Pattern"], e["FoundryName"]) for e in table
            if isinstance(e, dict) and e.get("Pattern") and e.get("FoundryName")]


def first_match(entries, text):
    lowered = ascii_lower(text)
    return next((name for pattern, name in entries if pattern in lowered), None)


def partial_word_matches(pattern, text):
    """Places where `pattern` begins inside a longer word, or where a short pattern (five
    characters or fewer) ends inside one: "itc" in "switch". Longer patterns may end inside a
    word on purpose ("ascender corp" for "corporation")."""
    found = []
    start = text.find(pattern)
    while start >= 0:
        end = start + len(pattern)
        runs_left = start > 0 and text[start - 1].isalnum() and pattern[0].isalnum()
        runs_right = end < len(text) and text[end].isalnum() and pattern[-1].isalnum() and len(pattern) <= 5
        if runs_left or runs_right:
            found.append(text[max(0, start - 15):end + 15].replace("\n", " "))
        start = text.find(pattern, start + 1)
    return found


def main():
    here = os.path.dirname(os.path.abspath(__file__))
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--table", default=os.path.join(here, "FoundryNameTable.plist"))
    parser.add_argument("--cache", help="keep the font survey in this JSON file")
    parser.add_argument("folders", nargs="*", default=["/usr/share/fonts"])
    args = parser.parse_args()

    entries = load_entries(args.table)
    records = font_survey.cached_survey(args.folders, args.cache)

    partial = collections.defaultdict(set)
    several = collections.Counter()
    unmatched = collections.Counter()
    matched_faces = 0
    for record in records:
        names = set()
        for field in TEXT_FIELDS:
            lowered = ascii_lower(record[field])
            for pattern, name in entries:
                if pattern in lowered:
                    names.add(name)
                    for context in partial_word_matches(pattern, lowered):
                        partial[(pattern, name)].add((context, os.path.basename(record["path"])))
        text = font_survey.foundry_text(record)
        chosen = first_match(entries, text)
        if chosen:
            matched_faces += 1
        else:
            unmatched[text[:90].replace("\n", " ")] += 1
        if len(names) > 1:
            several[(chosen or "--", tuple(sorted(names)))] += 1

    print(f"{len(entries)} patterns, {len(records)} faces")
    print("\n== Partial-word matches ==")
    for (pattern, name), places in sorted(partial.items()):
        print(f"'{pattern}' ({name}):")
        for context, font in sorted(places)[:5]:
            print(f"    ...{context}...   [{font}]")
    print("\n== Faces naming more than one foundry: chosen <- all named ==")
    for (chosen, names), count in several.most_common():
        print(f"{count:5}  {chosen} <- {', '.join(names)}")
    print(f"\n== {matched_faces} of {len(records)} faces get a foundry; commonest texts without one ==")
    for text, count in unmatched.most_common(40):
        print(f"{count:5}  {text}")


if __name__ == "__main__":
    main()
