#!/usr/bin/python3
"""Builds a tree of real duplicate cases from Debian's fonts with fontTools, labels every copy
with the verdict it must get as it is made, runs `typeprint duplicates --format json` on it and
checks every verdict, the suggested keeper and fontconfig's choice (asked of fc-match with the
same configuration). Precision and recall of every verdict must be 1.0.

usage: duplicates_tree_test.py TYPEPRINT VARIABLE_FONT SCHEMA
"""
import json
import os
import shutil
import subprocess
import sys
import tempfile

import jsonschema
from fontTools.ttLib import TTCollection, TTFont
from fontTools.varLib import instancer

DEJAVU = "/usr/share/fonts/truetype/dejavu"
URW_OTF = "/usr/share/fonts/opentype/urw-base35/NimbusRoman-Regular.otf"
URW_T1 = "/usr/share/fonts/type1/urw-base35/NimbusRoman-Regular.t1"
EXIT_CONFLICT = 3


class Tree:
    """The test tree: a system folder, a user folder and another folder, and the labels."""

    def __init__(self, root):
        self.root = root
        self.system = os.path.join(root, "share", "fonts")
        self.user = os.path.join(root, "home", ".local", "share", "fonts")
        self.other = os.path.join(root, "other")
        for folder in (self.system, self.user, self.other):
            os.makedirs(folder)
        self.labels = {}  # (path, face) -> expected verdict
        self.keepers = {}  # PostScript name of the group -> (path, face) of the expected keeper

    def path(self, folder, name):
        return os.path.join(folder, name)

    def label(self, group, path, verdict, face=0):
        self.labels[(path, face)] = verdict
        if verdict == "reference":
            self.keepers[group] = (path, face)


def load(name, **options):
    return TTFont(os.path.join(DEJAVU, name), recalcTimestamp=False, **options)


def set_name(font, name_id, text):
    for record in font["name"].names:
        if record.nameID == name_id:
            record.string = text


def build(tree, variable_font):
    t = tree
    # Copies and links: the system's copy is kept; the user's copy is identical; links are the same file.
    group = "DejaVuSans-Bold"
    kept = t.path(t.system, "DejaVuSans-Bold.ttf")
    shutil.copy(os.path.join(DEJAVU, "DejaVuSans-Bold.ttf"), kept)
    t.label(group, kept, "reference")
    shutil.copy(kept, t.path(t.user, "DejaVuSans-Bold.ttf"))
    t.label(group, t.path(t.user, "DejaVuSans-Bold.ttf"), "identical")
    os.link(kept, t.path(t.other, "hard-DejaVuSans-Bold.ttf"))
    t.label(group, t.path(t.other, "hard-DejaVuSans-Bold.ttf"), "same-file")
    os.symlink(kept, t.path(t.other, "link-DejaVuSans-Bold.ttf"))
    t.label(group, t.path(t.other, "link-DejaVuSans-Bold.ttf"), "same-file")

    # A version raised: the newer copy is kept even outside the system's folders.
    group = "DejaVuSans"
    shutil.copy(os.path.join(DEJAVU, "DejaVuSans.ttf"), t.path(t.system, "DejaVuSans.ttf"))
    t.label(group, t.path(t.system, "DejaVuSans.ttf"), "other-version")
    font = load("DejaVuSans.ttf")
    set_name(font, 5, "Version 2.38")
    font["head"].fontRevision = 2.38
    font.save(t.path(t.other, "DejaVuSans-2.38.ttf"))
    t.label(group, t.path(t.other, "DejaVuSans-2.38.ttf"), "reference")

    # One kerning pair changed in the kern table.
    group = "DejaVuSerif"
    shutil.copy(os.path.join(DEJAVU, "DejaVuSerif.ttf"), t.path(t.system, "DejaVuSerif.ttf"))
    t.label(group, t.path(t.system, "DejaVuSerif.ttf"), "reference")
    font = load("DejaVuSerif.ttf")
    pairs = font["kern"].kernTables[0].kernTable
    first = sorted(pairs)[0]
    pairs[first] += 20
    font.save(t.path(t.other, "DejaVuSerif-kerned.ttf"))
    t.label(group, t.path(t.other, "DejaVuSerif-kerned.ttf"), "modified")

    # One glyph moved.
    group = "DejaVuSansMono"
    shutil.copy(os.path.join(DEJAVU, "DejaVuSansMono.ttf"), t.path(t.system, "DejaVuSansMono.ttf"))
    t.label(group, t.path(t.system, "DejaVuSansMono.ttf"), "reference")
    font = load("DejaVuSansMono.ttf")
    glyph = font["glyf"]["A"]
    glyph.coordinates.translate((7, 0))
    font.save(t.path(t.other, "DejaVuSansMono-moved.ttf"))
    t.label(group, t.path(t.other, "DejaVuSansMono-moved.ttf"), "modified")

    # Another family renamed to clash with this one's PostScript name.
    group = "DejaVuSerif-Bold"
    shutil.copy(os.path.join(DEJAVU, "DejaVuSerif-Bold.ttf"), t.path(t.system, "DejaVuSerif-Bold.ttf"))
    t.label(group, t.path(t.system, "DejaVuSerif-Bold.ttf"), "reference")
    font = load("DejaVuSansMono-Bold.ttf")
    set_name(font, 6, "DejaVuSerif-Bold")
    font.save(t.path(t.other, "Clash.ttf"))
    t.label(group, t.path(t.other, "Clash.ttf"), "conflict")

    # A collection face and the same face split out by fontTools (another table layout).
    group = "DejaVuSerif-Italic"
    collection = TTCollection()
    collection.fonts = [load("DejaVuSerif-Italic.ttf"), load("DejaVuSerif-BoldItalic.ttf")]
    collection.save(t.path(t.other, "DejaVuSerif-Italics.ttc"))
    TTCollection(t.path(t.other, "DejaVuSerif-Italics.ttc"), recalcTimestamp=False).fonts[0].save(
        t.path(t.other, "DejaVuSerif-Italic-split.ttf"))
    t.label(group, t.path(t.other, "DejaVuSerif-Italics.ttc"), "same-face", face=0)
    t.label(group, t.path(t.other, "DejaVuSerif-Italic-split.ttf"), "reference")

    # The OpenType and Type 1 siblings of fonts-urw-base35, and the Type 1 program as PFB.
    group = "NimbusRoman-Regular"
    shutil.copy(URW_OTF, t.path(t.other, "NimbusRoman-Regular.otf"))
    t.label(group, t.path(t.other, "NimbusRoman-Regular.otf"), "reference")
    shutil.copy(URW_T1, t.path(t.other, "NimbusRoman-Regular.t1"))
    t.label(group, t.path(t.other, "NimbusRoman-Regular.t1"), "other-format")
    subprocess.run(["t1binary", URW_T1, t.path(t.user, "NimbusRoman-Regular.pfb")], check=True)
    t.label(group, t.path(t.user, "NimbusRoman-Regular.pfb"), "other-format")

    # A WOFF2 of an installed font.
    group = "DejaVuSans-Oblique"
    shutil.copy(os.path.join(DEJAVU, "DejaVuSans-Oblique.ttf"), t.path(t.system, "DejaVuSans-Oblique.ttf"))
    t.label(group, t.path(t.system, "DejaVuSans-Oblique.ttf"), "reference")
    font = load("DejaVuSans-Oblique.ttf")
    font.flavor = "woff2"
    font.save(t.path(t.other, "DejaVuSans-Oblique.woff2"))
    t.label(group, t.path(t.other, "DejaVuSans-Oblique.woff2"), "other-format")

    # A variable font and a static face of its named instance Thin.
    group = "TypeprintVar-Thin"
    shutil.copy(variable_font, t.path(t.other, "TypeprintVar.ttf"))
    t.label(group, t.path(t.other, "TypeprintVar.ttf"), "reference")
    static = instancer.instantiateVariableFont(TTFont(variable_font), {"wght": 100, "wdth": 100})
    static["name"].names = [n for n in static["name"].names if n.nameID not in (16, 17, 25)]
    for name_id, text in ((1, "Typeprint Var"), (2, "Thin"), (4, "Typeprint Var Thin"), (6, "TypeprintVar-Thin")):
        static["name"].setName(text, name_id, 3, 1, 0x409)
        set_name(static, name_id, text)
    static["OS/2"].usWeightClass = 100
    static.save(t.path(t.other, "TypeprintVar-Thin.ttf"))
    t.label(group, t.path(t.other, "TypeprintVar-Thin.ttf"), "instance")


def fontconfig_environment(tree):
    config = os.path.join(tree.root, "fonts.conf")
    with open(config, "w") as out:
        out.write('<?xml version="1.0"?>\n<!DOCTYPE fontconfig SYSTEM "fonts.dtd">\n<fontconfig>\n')
        for folder in (tree.system, tree.user, tree.other):
            out.write("  <dir>%s</dir>\n" % folder)
        out.write("  <cachedir>%s</cachedir>\n</fontconfig>\n" % os.path.join(tree.root, "cache"))
    env = dict(os.environ)
    env.update(FONTCONFIG_FILE=config, HOME=os.path.join(tree.root, "home"),
               XDG_DATA_DIRS=os.path.join(tree.root, "share"), LC_ALL="C")
    env.pop("XDG_DATA_HOME", None)
    env.pop("FONTCONFIG_PATH", None)
    return env


def fc_match(env, family, style):
    """fontconfig's choice through its own command: (path, face)."""
    pattern = family.replace("-", "\\-") + (":style=" + style if style else "")
    out = subprocess.run(["fc-match", "-f", "%{file}|%{index}", pattern], env=env, check=True,
                         capture_output=True, text=True).stdout
    path, index = out.rsplit("|", 1)
    return path, int(index) & 0xFFFF


def names_of(path, face):
    """Family and style the way fontconfig is asked for them: typographic names first."""
    font = TTCollection(path).fonts[face] if path.endswith(".ttc") else TTFont(path)
    name = font["name"]
    family = name.getDebugName(16) or name.getDebugName(1)
    style = name.getDebugName(17) or name.getDebugName(2)
    return family, style


def precision_recall(expected, actual):
    verdicts = sorted(set(expected.values()) | set(actual.values()))
    scores = {}
    for verdict in verdicts:
        tp = sum(1 for key, v in actual.items() if v == verdict and expected.get(key) == verdict)
        fp = sum(1 for key, v in actual.items() if v == verdict and expected.get(key) != verdict)
        fn = sum(1 for key, v in expected.items() if v == verdict and actual.get(key) != verdict)
        scores[verdict] = (tp / (tp + fp) if tp + fp else 0.0, tp / (tp + fn) if tp + fn else 0.0)
    return scores


def main():
    typeprint, variable_font, schema = sys.argv[1], sys.argv[2], sys.argv[3]
    failures = []

    def check(condition, message):
        if not condition:
            failures.append(message)

    with tempfile.TemporaryDirectory() as root:
        tree = Tree(root)
        build(tree, variable_font)
        env = fontconfig_environment(tree)
        run = subprocess.run([typeprint, "duplicates", "--format", "json"], env=env,
                             capture_output=True, text=True)
        check(run.returncode == EXIT_CONFLICT, "exit status %d, not %d: %s" % (run.returncode, EXIT_CONFLICT, run.stderr))
        document = json.loads(run.stdout)
        with open(schema) as f:
            jsonschema.Draft7Validator(json.load(f)).validate(document)
        groups = {g["postScriptName"]: g for g in document["groups"]}
        actual = {(c["path"], c["face"]): c["verdict"] for g in document["groups"] for c in g["copies"]}
        for verdict, (precision, recall) in precision_recall(tree.labels, actual).items():
            print("%-14s precision %.2f recall %.2f" % (verdict, precision, recall))
            check(precision == 1.0 and recall == 1.0, "%s: precision %.2f, recall %.2f" % (verdict, precision, recall))
        for key, verdict in sorted(tree.labels.items()):
            check(actual.get(key) == verdict, "%s face %d: %s, expected %s" % (key[0], key[1], actual.get(key), verdict))

        for name, keeper in sorted(tree.keepers.items()):
            group = groups.get(name)
            if not group:
                check(False, "no group %s" % name)
                continue
            kept = [(c["path"], c["face"]) for c in group["copies"] if c["keep"]]
            check(kept == [keeper], "%s: keeps %s, expected %s" % (name, kept, keeper))
            check(bool(group["keep"]["reason"]), "%s: no reason to keep" % name)
            for c in group["copies"]:
                check(c["verdict"] == "reference" or c["evidence"]["text"], "%s: %s without evidence" % (name, c["path"]))
            # fontconfig is asked for the family and style of the face the group is about.
            face_key = next(k for k, v in tree.labels.items() if v == "instance") if name == "TypeprintVar-Thin" else keeper
            expected = fc_match(env, *names_of(*face_key))
            chosen = group["fontconfig"]
            check(chosen and (chosen["path"], chosen["face"]) == expected,
                  "%s: fontconfig choice %s, fc-match says %s" % (name, chosen, expected))
            flagged = [(c["path"], c["face"]) for c in group["copies"] if c["fontconfig"]]
            in_group = [k for k in ((c["path"], c["face"]) for c in group["copies"]) if k == expected]
            check(flagged == in_group, "%s: flagged %s as fontconfig's, expected %s" % (name, flagged, in_group))
            check(chosen["isKeeper"] == (expected == keeper), "%s: keeper flag of fontconfig's choice" % name)

        evidence = {(c["path"], c["face"]): c["evidence"] for g in document["groups"] for c in g["copies"]}
        kerned = evidence[(tree.path(tree.other, "DejaVuSerif-kerned.ttf"), 0)]["differing"]
        moved = evidence[(tree.path(tree.other, "DejaVuSansMono-moved.ttf"), 0)]["differing"]
        check("kerning" in kerned and "outlines" not in kerned and "checksum" in kerned,
              "kerning change evidence: %s" % kerned)
        check("outlines" in moved and "kerning" not in moved and "checksum" in moved, "moved glyph evidence: %s" % moved)

        # Without the clash there is no conflict: exit 0.
        run = subprocess.run([typeprint, "duplicates", tree.system, tree.user], env=env, capture_output=True, text=True)
        check(run.returncode == 0, "exit status %d without conflicts" % run.returncode)
        check(all(len(line) <= 80 for line in run.stdout.splitlines() if root not in line),
              "text lines wider than 80 columns")

    for failure in failures:
        print("FAIL:", failure)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
