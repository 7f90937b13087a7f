#!/usr/bin/env python3
"""Times the library on small hostile inputs that used to blow up (quadratic imports, huge face
counts, large printer-font folders, one outline shared by thousands of families).

usage: bench/blowups.py LIBTYPEPRINT.so [CASE...]

Each case builds its input in a scratch folder from the committed test fonts, calls the library
through its C interface (ctypes) and prints the wall time of the call. A case stops at
--limit seconds (default 300) and is then reported as "> limit". Run it against two builds to
get before and after figures (bench/RESULTS.md, section "Hostile inputs").
"""
import ctypes, multiprocessing, os, shutil, struct, sys, tempfile, time

HERE = os.path.dirname(os.path.abspath(__file__))
FONTS = os.path.join(HERE, '..', 'tests', 'fonts')


def xml_empty_records():
    return ('xml', '<TypeprintData>\n' + '<FontData></FontData>\n' * 20000 + '</TypeprintData>\n')


def xml_distinct_names():
    body = ''.join('<FontData><PostScriptName>F%d</PostScriptName></FontData>\n' % i for i in range(100000))
    return ('xml', '<TypeprintData>\n' + body + '</TypeprintData>\n')


def collection(face_count, listed, scratch):
    """A .ttc holding DejaVuSans-kern.ttf once, with `listed` offset entries all naming it and a
    header claiming `face_count` faces."""
    ttf = open(os.path.join(FONTS, 'sfnt', 'DejaVuSans-kern.ttf'), 'rb').read()
    base = 12 + 4 * listed
    num = struct.unpack('>H', ttf[4:6])[0]
    face = bytearray(ttf)
    for i in range(num):
        at = 12 + 16 * i + 8
        face[at:at + 4] = struct.pack('>I', struct.unpack('>I', ttf[at:at + 4])[0] + base)
    data = b'ttcf' + struct.pack('>II', 0x00010000, face_count) + struct.pack('>I', base) * listed + bytes(face)
    path = os.path.join(scratch, 'c.ttc')
    open(path, 'wb').write(data)
    return ('files', [path])


def printer_folder(scratch, suitcases=50, others=2000):
    """A folder of `others` non-font files and `suitcases` copies of a Type 1 suitcase whose
    printer files are missing: every suitcase looks for them in the folder."""
    src = os.path.join(FONTS, 'mac', 'c-type1-family', 'macbinary', 'NimbusSans')
    paths = []
    for i in range(suitcases):
        path = os.path.join(scratch, 'Suitcase%03d' % i)
        shutil.copy(src, path)
        paths.append(path)
    for i in range(others):
        open(os.path.join(scratch, 'other%05d.txt' % i), 'wb').write(b'not a font\n' * 10)
    return ('files', paths)


def shared_outline(scratch, families=4000, outline_size=5 << 20):
    """A .dfont with one 5 MB sfnt resource and `families` FOND resources each naming it."""
    ttf = open(os.path.join(FONTS, 'sfnt', 'DejaVuSans-kern.ttf'), 'rb').read()
    outline = ttf + bytes(outline_size - len(ttf))
    # FOND: 52-byte header (ffFlags .. ffVersion, table offsets 0), one entry: size 0, style 0, ID 500.
    fond = struct.pack('>hhhhhhhh', 0, 0, 0, 255, 0, 0, 0, 0) + bytes(12 + 18 + 4) + struct.pack('>h', 2)
    fond += struct.pack('>hhhh', 0, 0, 0, 500)
    resources = [(b'sfnt', [(500, outline)]), (b'FOND', [(1000 + f, fond) for f in range(families)])]
    data, refs = bytearray(), {}
    for rtype, items in resources:
        for rid, body in items:
            refs[(rtype, rid)] = len(data)
            data += struct.pack('>I', len(body)) + body
    type_list = struct.pack('>h', len(resources) - 1)
    ref_lists = bytearray()
    ref_start = 2 + 8 * len(resources)
    for rtype, items in resources:
        type_list += rtype + struct.pack('>hH', len(items) - 1, ref_start + len(ref_lists))
        for rid, _ in items:
            off = refs[(rtype, rid)]
            ref_lists += struct.pack('>hhB', rid, -1, 0) + off.to_bytes(3, 'big') + bytes(4)
    map_body = type_list + ref_lists
    data_off, map_off = 256, 256 + len(data)
    header = struct.pack('>IIII', data_off, map_off, len(data), 28 + len(map_body))
    res_map = header + bytes(6) + struct.pack('>hHH', 0, 28, 28 + len(map_body)) + map_body
    path = os.path.join(scratch, 'shared.dfont')
    open(path, 'wb').write(header + bytes(240) + data + res_map)
    return ('files', [path])


CASES = {
    'xml-empty-records': lambda d: xml_empty_records(),
    'xml-100000-distinct-names': lambda d: xml_distinct_names(),
    'ttc-count-2^31-1': lambda d: collection(0x7FFFFFFF, 1, d),
    'ttc-million-listed': lambda d: collection(1000000, 1000000, d),
    'printer-folder-50-suitcases': lambda d: printer_folder(d),
    'shared-outline-4000-families': lambda d: shared_outline(d),
}


def run(lib_path, name, result):
    lib = ctypes.CDLL(lib_path)
    array = ctypes.c_void_p()
    with tempfile.TemporaryDirectory() as scratch:
        kind, what = CASES[name](scratch)
        start = time.perf_counter()
        if kind == 'xml':
            lib.TP_CreateSpecifierFromXML(what.encode(), ctypes.byref(array))
            lib.TP_SpecifierFree(array)
        else:
            for path in what:
                lib.TP_CreateSpecifier(path.encode(), 0, 0x001FF03F, ctypes.byref(array))
                lib.TP_SpecifierFree(array)
        result.value = time.perf_counter() - start


def main():
    args = sys.argv[1:]
    limit = 300.0
    if '--limit' in args:
        i = args.index('--limit')
        limit = float(args[i + 1])
        del args[i:i + 2]
    if not args:
        sys.exit(__doc__)
    lib, names = os.path.abspath(args[0]), args[1:] or list(CASES)
    for name in names:
        result = multiprocessing.Value('d', -1.0)
        proc = multiprocessing.Process(target=run, args=(lib, name, result))
        proc.start()
        proc.join(limit)
        if proc.is_alive():
            proc.kill()
            proc.join()
            print('%-32s > %.0f s' % (name, limit))
        elif result.value < 0:
            print('%-32s crashed (exit %s)' % (name, proc.exitcode))
        else:
            print('%-32s %.3f s' % (name, result.value))
        sys.stdout.flush()


if __name__ == '__main__':
    main()
