#!/usr/bin/env python3
"""Writes the same property list as XML and as binary with Python's plistlib."""
import datetime
import plistlib

VALUE = {
    "Name": "Garamond",
    "Unicode": "\u00dcn\u00efc\u00f8d\u00e9 \u2603",
    "Count": 42,
    "Negative": -1,
    "Ratio": 0.5,
    "Flag": True,
    "Bytes": b"\x00\x01\xfe",
    "When": datetime.datetime(2001, 1, 2, 0, 0, 0),
    "List": ["a", 7, False],
    "Nested": {"Inner": "x"},
}

with open("sample.xml.plist", "wb") as f:
    plistlib.dump(VALUE, f, fmt=plistlib.FMT_XML)
with open("sample.binary.plist", "wb") as f:
    plistlib.dump(VALUE, f, fmt=plistlib.FMT_BINARY)
