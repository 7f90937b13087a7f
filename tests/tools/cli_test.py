#!/usr/bin/python3
"""End-to-end cases for the typeprint command, run on real files in a scratch tree.

usage: cli_test.py TOOL FONTS SCHEMA VERSION
Expected names and checksums come from tests/fonts/sfnt/README.md (fontTools, zlib) and the
Mac fixture dump tests/fonts/mac/expected.tsv, never from the command itself.
"""
import base64
import concurrent.futures
import json
import os
import plistlib
import pty
import re
import shutil
import subprocess
import sys
import tempfile
import time
import unittest
import xml.dom.minidom

import jsonschema

TOOL, FONTS, SCHEMA = (os.path.abspath(a) for a in sys.argv[1:4])
VERSION = sys.argv[4]
SFNT = os.path.join(FONTS, "sfnt")
TTC3 = os.path.join(SFNT, "DejaVuSans-3faces.ttc")
OTF = os.path.join(SFNT, "NimbusSans-Regular.otf")
BAD_NAME = b"caf\xe9-latin1.otf"  # not valid UTF-8


def write(path, data):
    with open(path, "wb" if isinstance(data, bytes) else "w") as f:
        f.write(data)


def run(*args, cwd=None, env=None, timeout=20, user=None):
    command = [TOOL, *args]
    if user:
        command = ["setpriv", "--reuid=" + user, "--regid=nogroup", "--clear-groups", *command]
    done = subprocess.run(command, cwd=cwd, env=env, capture_output=True, timeout=timeout)
    return done.returncode, done.stdout, done.stderr.decode("utf-8", "replace")


class Command(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.work = tempfile.mkdtemp()
        os.chmod(cls.work, 0o755)
        tree = cls.tree = os.path.join(cls.work, "tree")
        os.makedirs(os.path.join(tree, "sub"))
        shutil.copy(TTC3, tree)
        shutil.copy(os.path.join(SFNT, "DejaVuSans-kern.ttf"), os.path.join(tree, "sub"))
        shutil.copy(OTF, os.path.join(tree.encode(), BAD_NAME))
        with open(os.path.join(SFNT, "DejaVuSans-kern.ttf"), "rb") as f:
            write(os.path.join(tree, "sub", "damaged.ttf"), f.read(300))
        write(os.path.join(tree, "README"), "not a font\n")
        os.mkfifo(os.path.join(tree, "fifo"))
        os.symlink("nowhere", os.path.join(tree, "broken"))
        os.symlink("..", os.path.join(tree, "sub", "loop"))
        cls.outside = os.path.join(cls.work, "outside")
        os.makedirs(cls.outside)
        shutil.copy(OTF, os.path.join(cls.outside, "linked.otf"))
        os.symlink(cls.outside, os.path.join(tree, "out-link"))
        shutil.copy(OTF, os.path.join(cls.work, "-dash.otf"))
        with open(SCHEMA) as f:
            cls.validator = jsonschema.Draft7Validator(json.load(f))

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(cls.work)

    def valid_json(self, out):
        document = json.loads(out.decode("utf-8"))  # raises on invalid UTF-8 or JSON
        self.validator.validate(document)
        return document

    def test_usage(self):
        rows = [
            # what, args, exit status, text expected in stdout, text expected in stderr
            ("--version", ["--version"], 0, "typeprint " + VERSION + "\n", ""),
            ("top help lists the commands", ["--help"], 0, "duplicates", ""),
            ("per-command help", ["identify", "--help"], 0, "--format", ""),
            ("unknown command reads as a missing file", ["frobnicate"], 1, "", "frobnicate: No such file"),
            ("unknown option", ["identify", "--frobnicate", OTF], 2, "", "--frobnicate"),
            ("unknown format names the option", ["identify", "-f", "yaml", OTF], 2, "", "--format"),
            ("jobs out of range says the range", ["scan", "-j", "1025", SFNT], 2, "", "1024"),
            ("jobs 0 means the cores", ["scan", "-j", "0", "-f", "json", SFNT], 0, '"identified":6', ""),
            ("short options", ["identify", "-f", "json", "-q", OTF], 0, '"checksum":"7400df99"', ""),
            ("-- ends the options", ["identify", "--", "-dash.otf"], 0, "NimbusSans-Regular", ""),
            ("bare FILE identifies it", [OTF], 0, "NimbusSans-Regular", ""),
            ("missing file", ["identify", "nothere.ttf"], 1, "", "nothere.ttf: No such file or directory"),
            ("a folder", ["identify", SFNT], 1, "", "Is a directory"),
            ("not a font", ["identify", "tree/README"], 1, "", "README: not a font file"),
            ("damaged font", ["identify", "tree/sub/damaged.ttf"], 1, "", "damaged.ttf: damaged"),
            ("FIFO named directly is not opened", ["identify", "tree/fifo"], 1, "", "fifo: a FIFO, not read"),
            ("-q silences messages, not the status", ["identify", "-q", "nothere.ttf"], 1, "", None),
            ("checksums are lower-case hex in text", ["identify", TTC3], 0, "checksum          e902afd2", ""),
        ]
        for what, args, status, out, err in rows:
            with self.subTest(what):
                code, stdout, stderr = run(*args, cwd=self.work)
                self.assertEqual(code, status, stderr)
                self.assertIn(out, stdout.decode("utf-8", "replace"))
                if err is None:
                    self.assertEqual(stderr, "")
                else:
                    self.assertIn(err, stderr)

    def test_scan_walks_odd_trees(self):
        rows = [
            # what, extra args, paths that must be listed, paths that must not, messages expected
            ("plain walk", [], ["DejaVuSans-3faces.ttc", "sub/DejaVuSans-kern.ttf"], ["linked.otf", "fifo"],
             ["broken: broken symbolic link", "damaged.ttf: damaged"]),
            ("--follow leaves the tree through links and ends link loops", ["--follow"], ["out-link/linked.otf"],
             ["fifo"], ["broken: broken symbolic link"]),
        ]
        for what, extra, present, absent, messages in rows:
            with self.subTest(what):
                code, stdout, stderr = run("scan", "-j", "2", *extra, self.tree, timeout=20)
                listing = stdout.decode("utf-8", "replace")
                self.assertEqual(code, 1)
                for path in present:
                    self.assertIn(path, listing)
                for path in absent:
                    self.assertNotIn(path, listing)
                for message in messages:
                    self.assertIn(message, stderr)
                self.assertRegex(stderr, r"\d+ files, \d+ identified, \d+ faces, \d+ failures")
                self.assertNotIn("files,", listing)  # the summary goes to stderr only

    @unittest.skipUnless(os.geteuid() == 0, "needs root to run as another user")
    def test_unreadable_folder_and_file_as_another_user(self):
        locked = os.path.join(self.work, "locked")
        os.makedirs(os.path.join(locked, "closed"))
        shutil.copy(OTF, locked)
        os.chmod(os.path.join(locked, os.path.basename(OTF)), 0o600)
        os.chmod(os.path.join(locked, "closed"), 0o700)
        os.chmod(locked, 0o755)
        code, _, stderr = run("scan", locked, user="nobody")
        self.assertEqual(code, 1)
        self.assertIn("closed: Permission denied", stderr)
        self.assertIn("NimbusSans-Regular.otf: Permission denied", stderr)

    def test_json_documents_validate(self):
        rows = [
            ("identify", ["identify", "-f", "json", TTC3, "tree/README", "nothere"]),
            ("scan", ["scan", "-f", "json", "tree"]),
            ("duplicates", ["duplicates", "-f", "json", SFNT, "tree"]),
        ]
        for what, args in rows:
            with self.subTest(what):
                _, stdout, _ = run(*args, cwd=self.work)
                document = self.valid_json(stdout)
                statuses = {f["status"] for f in document["files"]}
                self.assertTrue({"ok", "failed"} <= statuses or what == "duplicates", statuses)
        _, stdout, _ = run("scan", "-f", "jsonl", self.tree)
        lines = stdout.decode("utf-8").splitlines()
        self.assertGreater(len(lines), 3)
        file_schema = dict(self.validator.schema, **{"$ref": "#/definitions/file"})
        for line in lines:
            jsonschema.Draft7Validator(file_schema).validate(json.loads(line))

    def test_duplicates_and_non_utf8_names(self):
        _, stdout, _ = run("duplicates", "-f", "json", SFNT, self.tree)
        document = self.valid_json(stdout)
        group = next(g for g in document["duplicates"] if g["checksum"] == "e902afd2")
        self.assertEqual(len(group["faces"]), 2)  # the collection in tests/fonts and its copy
        bad = [f for f in document["files"] if "path_bytes" in f]
        self.assertEqual(len(bad), 1)
        self.assertIn("\ufffd", bad[0]["path"])
        self.assertTrue(base64.b64decode(bad[0]["path_bytes"]).endswith(BAD_NAME))

    def test_mac_faces_show_family_and_style(self):
        with open(os.path.join(FONTS, "mac", "expected.tsv")) as f:
            rows = [line.rstrip("\n").split("\t") for line in f]
        expected = {cells[1]: int(cells[3]) for cells in rows if cells[0] == "res" and cells[2] == "FOND"}
        _, stdout, _ = run("identify", "-f", "json", os.path.join(FONTS, "mac", "a-dfont", "DejaVuSans.dfont"))
        faces = self.valid_json(stdout)["files"][0]["faces"]
        self.assertTrue(faces)
        for face in faces:
            self.assertEqual(face["familyResourceID"], expected["a-dfont/DejaVuSans.dfont"])
        self.assertEqual(len({face["style"] for face in faces}), len(faces))

    def test_every_format_gives_its_faces(self):
        # Reference values from tests/fonts/formats/README.md (woff2sfnt, woff2_decompress, fontTools).
        formats = os.path.join(FONTS, "formats")
        shutil.copy(os.path.join(formats, "NimbusSans-Regular-subset.otf"), os.path.join(self.work, "cff.ttf"))
        rows = [  # file, kind, PostScript name, content checksum, named instances
            ("DejaVuSans-subset.woff", "WOFF (TrueType)", "DejaVuSans", "6c6da89d", 0),
            ("TypeprintVar.woff2", "WOFF2 (TrueType)", "TypeprintVar-Regular", "73417482", 3),
            ("TypeprintVar.ttf", "TrueType", "TypeprintVar-Regular", None, 3),
            ("NimbusSans-subset.otc", "OpenType - PS", "NimbusSans-Regular", None, 0),
            ("NimbusSans-Regular.pfb", "PostScript", "NimbusSans-Regular", None, 0),
            ("NimbusSans-CFF.dfont.hqx", "OpenType - PS", "NimbusSans-Regular", None, 0),
            ("Fixed-5x7.pcf.gz", "PCF", None, None, 0),
            ("FixedBitmap-bitmaps.bin", "PostScript", "FixedBitmap", None, 0),
        ]
        _, stdout, _ = run("identify", "-f", "json", *[os.path.join(formats, r[0]) for r in rows], "cff.ttf",
                           cwd=self.work)
        files = self.valid_json(stdout)["files"]
        for (name, kind, name_ps, checksum, instances), file in zip(rows, files):
            with self.subTest(name):
                self.assertEqual(file["status"], "ok")
                face = file["faces"][0]
                self.assertEqual(face["kind"], kind)
                self.assertEqual(face.get("postScriptName"), name_ps)
                self.assertEqual(face["contentChecksum"], checksum or face["contentChecksum"])
                self.assertEqual(len(face.get("instances", [])), instances)
        self.assertEqual(files[-1]["faces"][0]["kindNote"], "named .ttf (TrueType) but its bytes are OpenType - PS")
        self.assertEqual(files[-2]["faces"][0]["pointSizes"], [7])
        # One Type 1 program in four containers: one content checksum.
        type1 = ["NimbusSans-Regular.pfb", "NimbusSans-Regular.pfa", "NimbusSans-Regular.t1", "NimbuSanReg.hqx"]
        _, stdout, _ = run("identify", "-f", "json", *[os.path.join(formats, f) for f in type1])
        sums = {f["faces"][0]["contentChecksum"] for f in self.valid_json(stdout)["files"]}
        self.assertEqual(len(sums), 1)
        _, stdout, _ = run("scan", "-f", "json", formats)
        self.assertEqual(self.valid_json(stdout)["summary"]["instances"], 6)

    def test_several_files_make_one_document(self):
        files = [TTC3, OTF]
        _, stdout, _ = run("identify", "-f", "xml", *files)
        dom = xml.dom.minidom.parseString(stdout)
        paths = [p.firstChild.data for p in dom.getElementsByTagName("Path")]
        self.assertEqual(paths, [TTC3] * 3 + [OTF])
        _, stdout, _ = run("identify", "-f", "plist", *files)
        faces = plistlib.loads(stdout)
        self.assertEqual([f["Path"] for f in faces], [TTC3] * 3 + [OTF])
        self.assertEqual(faces[1]["PostScriptName"], "DejaVuSans-Bold")

    def test_split_into_a_relative_folder(self):
        rows = [
            ("creates the folder and names faces", [], 0, {"DejaVuSans.ttf", "DejaVuSans-Bold.ttf", "DejaVuSans-Oblique.ttf"}),
            ("refuses to overwrite", [], 1, None),
            ("--force overwrites", ["--force"], 0, None),
        ]
        for what, extra, status, names in rows:
            with self.subTest(what):
                code, stdout, stderr = run("split", *extra, TTC3, "out/faces", cwd=self.work)
                self.assertEqual(code, status, stderr)
                written = set(os.listdir(os.path.join(self.work, "out", "faces")))
                self.assertEqual(written, names or written)
                self.assertEqual(len(written), 3)
        _, stdout, _ = run("identify", "-f", "json", "out/faces/DejaVuSans-Bold.ttf", cwd=self.work)
        face = self.valid_json(stdout)["files"][0]["faces"][0]
        self.assertEqual((face["postScriptName"], face["checksum"]), ("DejaVuSans-Bold", "66f9f536"))
        code, _, stderr = run("split", OTF, "out/none", cwd=self.work)
        self.assertEqual((code, "not a TrueType collection" in stderr), (1, True))

    def test_missing_data_files_are_named(self):
        empty = os.path.join(self.work, "no-data")
        os.makedirs(empty, exist_ok=True)
        for args in (["classify", "DejaVu Sans"], ["styles", "Helvetica-Bold"], ["identify", OTF]):
            with self.subTest(args[0]):
                code, _, stderr = run(*args, env=dict(os.environ, TYPEPRINT_DATA_DIR=empty))
                self.assertEqual(code, 1)
                self.assertTrue(stderr.startswith("typeprint: data files not found"), stderr)
                self.assertIn(empty, stderr)

    @unittest.skipUnless(shutil.which("fc-list"), "needs fontconfig's fc-list")
    def test_installed_families_are_classified(self):
        listed = subprocess.run(["fc-list", ":", "family"], capture_output=True, text=True).stdout
        families = sorted({name.strip() for line in listed.splitlines() for name in line.split(",") if name.strip()})
        classes = {"Serif", "Sans Serif", "Slab Serif", "Script", "Handwriting", "Display", "Monospace",
                   "Blackletter", "Symbol"}
        with concurrent.futures.ThreadPoolExecutor(4) as pool:
            answers = list(pool.map(lambda f: run("classify", f)[1].decode().strip(), families))
        unclassified = [f for f, answer in zip(families, answers) if answer not in classes]
        self.assertLessEqual(len(unclassified), len(families) // 100, unclassified)

    def test_default_folders_come_from_fontconfig(self):
        conf = os.path.join(self.work, "fonts.conf")
        write(conf, f"<?xml version='1.0'?><fontconfig><dir>{self.outside}</dir></fontconfig>")
        code, stdout, _ = run("scan", env=dict(os.environ, FONTCONFIG_FILE=conf))
        self.assertEqual(code, 0)
        self.assertTrue(stdout.endswith(b" " + os.path.join(self.outside, "linked.otf").encode() + b"\n"), stdout[-300:])

    def test_progress_on_a_terminal(self):
        many = os.path.join(self.work, "many", "a-rather-long-folder-name-for-the-progress-line")
        os.makedirs(many)
        for i in range(1500):
            os.link(TTC3, os.path.join(many, f"face-{i:04}.ttc"))
        columns = 50
        master, slave = pty.openpty()
        import fcntl, struct, termios
        fcntl.ioctl(slave, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))
        start = time.monotonic()
        process = subprocess.Popen([TOOL, "scan", "-j", "1", many], stdout=subprocess.DEVNULL, stderr=slave)
        os.close(slave)
        drawn = b""
        while True:
            try:
                chunk = os.read(master, 65536)
            except OSError:
                break
            if not chunk:
                break
            drawn += chunk
        process.wait(timeout=60)
        seconds = time.monotonic() - start
        os.close(master)
        text = drawn.decode("utf-8", "replace").replace("\r\n", "\n")
        progress, _, summary = text.rpartition("\r\x1b[K")  # the final erase, then the summary
        redraws = [line.replace("\x1b[K", "") for line in progress.split("\r") if line]
        self.assertGreater(len(redraws), 0)
        self.assertLessEqual(len(redraws), seconds * 10 + 2)
        for line in redraws:
            self.assertLessEqual(len(line), columns - 1, line)
            self.assertRegex(line, r"^\d+/1500 files, \d+ faces, \d+ files/s")
        self.assertIn("1500 files, 1500 identified, 4500 faces", summary)
        self.assertTrue(any(line.endswith(".ttc") and "..." in line for line in redraws))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=1)
