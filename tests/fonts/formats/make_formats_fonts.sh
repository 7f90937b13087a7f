#!/usr/bin/env bash
# Regenerates tests/fonts/formats/ (or OUTDIR) from Debian's fonts, then prints the reference
# values the tests hold: CRC-32s of the sfnt files the reference WOFF tools decode to, fontTools'
# instance counts, fc-scan's view of the bitmap fonts.
# Needs: python3-fonttools python3-brotli fontforge t1utils macutils woff-tools woff2 
#        fontconfig fonts-dejavu-core fonts-urw-base35 xfonts-base
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
out=${1:-$here}
mkdir -p "$out"
export SOURCE_DATE_EPOCH=1700000000
/usr/bin/python3 "$here/make_formats_fonts.py" "$out"
fontforge -lang=py -script "$here/make_type1_bitmaps.py" "$out" 2>/dev/null
cd "$out"
mv Fixed-5x7-7.bdf Fixed-5x7.bdf
rm -f FixedBitmap.bin FixedBitmap.afm pfm-only.pfb
mv pfm-only.pfm NimbusSans-Regular.pfm
mv FixedBitmap.bmap.bin FixedBitmap-bitmaps.bin
# The same Type 1 program in every container: PFA (hex), PFA with binary eexec (the PFB's
# segments joined, the form Debian's .t1 files take), a printer file in MacBinary, and that
# printer file as BinHex 4.0.
t1ascii NimbusSans-Regular.pfb NimbusSans-Regular.pfa
/usr/bin/python3 - <<'PY'
import struct
data = open("NimbusSans-Regular.pfb", "rb").read()
parts, at = [], 0
while data[at + 1] != 3:
    n = struct.unpack("<I", data[at + 2:at + 6])[0]
    parts.append(data[at + 6:at + 6 + n]); at += 6 + n
open("NimbusSans-Regular.t1", "wb").write(b"".join(parts))
PY
t1mac -o NimbuSanReg.bin NimbusSans-Regular.pfb
binhex NimbuSanReg.bin > NimbuSanReg.hqx
# A data-fork suitcase from the Mac fixtures, archived as a data file with its Finder codes.
(cd "$here/../mac/a-dfont" && binhex -d -t dfon -c DMOV NimbusSans-CFF.dfont) > NimbusSans-CFF.dfont.hqx
# The PCF as xfonts-base ships it, and decompressed.
cp /usr/share/fonts/X11/misc/5x7-ISO8859-1.pcf.gz Fixed-5x7.pcf.gz
gzip -d -c Fixed-5x7.pcf.gz > Fixed-5x7.pcf

echo "reference decodes (CRC-32 of the sfnt):"
woff2sfnt DejaVuSans-subset.woff > /tmp/ref-woff.ttf
for f in DejaVuSans-subset.woff2 NimbusSans-Regular-subset.woff2 TypeprintVar.woff2; do
  cp "$f" /tmp/ref.woff2 && woff2_decompress /tmp/ref.woff2 >/dev/null && mv /tmp/ref.ttf "/tmp/ref-${f%.woff2}.ttf"
done
for f in /tmp/ref-woff.ttf /tmp/ref-*.ttf; do
  /usr/bin/python3 -c "import sys,zlib; print('%08x' % zlib.crc32(open(sys.argv[1],'rb').read()), sys.argv[1])" "$f"
done
echo "fontTools instances:"
/usr/bin/python3 -c "
from fontTools.ttLib import TTFont
for f in ['TypeprintVar.ttf']:
    t = TTFont(f)
    print(f, len(t['fvar'].instances), [(a.axisTag, a.minValue, a.defaultValue, a.maxValue) for a in t['fvar'].axes])"
echo "fc-scan:"
fc-scan --format '%{file}: %{family} / %{style} / %{pixelsize}\n' Fixed-5x7.pcf Fixed-5x7.pcf.gz Fixed-5x7.bdf
