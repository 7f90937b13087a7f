#!/usr/bin/python3
"""Writes DefaultClassifications.plist: the built-in classes and a class for every family name.

Sources, strongest first:
  1. CLASSIC: families a desktop user meets (the classic foundry and system families), and
     corrections made while reviewing the derived classes, chosen by hand;
  1a. a family whose name is another family plus weight, width or slope words takes that
     family's class ("roboto condensed light" -> "roboto");
  1b. FOLDER_CLASS: Debian packages whose families all share a class, chosen by hand;
  2. words in the family name that settle the class ("mono", "sans", "serif", "script"...);
  3. a fixed-pitch 'post' table;
  4. PANOSE (family kind, serif style, proportion);
  5. OS/2 sFamilyClass;
A family that none of these settles is not guessed: it is printed for review and left out.

Usage: make_classifications.py [--cache FILE.json] [--out FILE] [--keep] [FOLDER...]
With --keep, the mappings already in the output file stay as they are (families surveyed on other
machines) and only families new to it are added; junk keys are dropped either way.
Both the typographic family (name ID 16) and the legacy family (name ID 1) of each face are
mapped; keys are lower-cased with Python's Unicode str.lower(), which agrees with the library's
locale-free lower-casing for family names.
"""
import argparse
import collections
import os
import plistlib
import re
import sys
import unicodedata

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import font_survey  # noqa: E402

SERIF, SANS, SLAB, SCRIPT, HAND = "Serif", "Sans Serif", "Slab Serif", "Script", "Handwriting"
DISPLAY, MONO, BLACK, SYMBOL = "Display", "Monospace", "Blackletter", "Symbol"
BUILTIN_CLASSES = [SERIF, SANS, SLAB, SCRIPT, HAND, DISPLAY, MONO, BLACK, SYMBOL, "None"]

C = collections.OrderedDict()


def classic(cls, *families):
    for family in families:
        C[family.lower()] = cls


classic(SERIF, "Times", "Times New Roman", "Times Ten", "Georgia", "Garamond", "Adobe Garamond", "Adobe Garamond Pro",
        "ITC Garamond", "Stempel Garamond", "Sabon", "Granjon", "Janson", "Janson Text", "Caslon", "Adobe Caslon",
        "Adobe Caslon Pro", "Big Caslon", "Caslon 540", "Baskerville", "New Baskerville", "ITC New Baskerville",
        "Baskerville Old Face", "Libre Baskerville", "Bodoni", "Bauer Bodoni", "Bodoni MT", "Bodoni 72", "Didot",
        "Walbaum", "Palatino", "Palatino Linotype", "Book Antiqua", "Minion", "Minion Pro", "Utopia", "Bembo",
        "Perpetua", "Goudy Old Style", "Goudy", "Centaur", "Jenson", "Adobe Jenson", "Trajan", "Trajan Pro",
        "Cambria", "Constantia", "Sylfaen", "Century", "Century Schoolbook", "New Century Schoolbook",
        "Century Old Style", "Bookman", "ITC Bookman", "Bookman Old Style", "Cheltenham", "ITC Cheltenham",
        "Charter", "Bitstream Charter", "Iowan Old Style", "Hoefler Text", "Mrs Eaves", "Plantin", "Times Europa",
        "Meridien", "Méridien", "Trump Mediaeval", "Joanna", "Galliard", "ITC Galliard", "Stone Serif",
        "ITC Stone Serif", "Lucida Bright", "Lucida Fax", "Berkeley Oldstyle", "ITC Berkeley Oldstyle",
        "Weiss", "Goudy Sans", "Cochin", "Americana", "Aldus", "Optima Nova", "Kepler", "Warnock", "Arno",
        "Arno Pro", "Chaparral", "Chaparral Pro", "Miller", "Scotch Roman", "Electra", "Caledonia", "Fairfield",
        "Dante", "Poliphilus", "Fournier", "Ehrhardt", "Imprint", "Spectral", "Merriweather", "Lora",
        "Crimson Text", "Crimson Pro", "Cardo", "EB Garamond", "Cormorant", "Cormorant Garamond", "Playfair Display",
        "Source Serif Pro", "Source Serif 4", "Noto Serif", "PT Serif", "Droid Serif", "Tinos", "Gelasio",
        "Charis SIL", "Gentium", "Gentium Plus", "Gentium Book Basic", "Linux Libertine", "Linux Libertine O",
        "Libertinus Serif", "Liberation Serif", "DejaVu Serif", "Nimbus Roman", "Nimbus Roman No9 L", "C059",
        "P052", "URW Bookman", "URW Bookman L", "URW Palladio L", "Century Schoolbook L", "TeX Gyre Termes",
        "TeX Gyre Pagella", "TeX Gyre Bonum", "TeX Gyre Schola", "Latin Modern Roman", "Computer Modern",
        "CMU Serif", "FreeSerif", "Bitstream Vera Serif", "Luxi Serif", "Tiempos", "Sitka", "Calisto MT",
        "Californian FB", "Elephant", "High Tower Text", "Footlight MT Light", "Bell MT", "Modern No. 20",
        "Goudy Stout", "Perpetua Titling MT", "Copperplate Gothic", "Friz Quadrata", "Albertus", "Optima",
        "Hermann Zapf", "Zapf Calligraphic", "Zapf Elliptical", "Aldine 401", "Dutch 801", "Swiss 721 Serif",
        "Amasis", "Apollo", "Bell", "Bulmer", "Didot LT", "Linotype Didot", "Sabon Next", "Stempel Schneidler",
        "Hoefler Titling", "Mercury", "Tisa", "Skolar", "Le Monde Livre", "Freight Text", "Adobe Text", "Vollkorn",
        "Alegreya", "Old Standard TT", "Junicode", "Andika", "Doulos SIL", "Noto Serif Display", "IBM Plex Serif",
        "Literata", "Newsreader", "Fraunces", "Zilla Slab Highlight", "Brill", "Charis", "STIX Two Text", "STIXGeneral")
classic(SANS, "Helvetica", "Helvetica Neue", "Neue Helvetica", "Arial", "Arial Narrow", "Arial Black", "Verdana",
        "Tahoma", "Trebuchet MS", "Calibri", "Candara", "Corbel", "Segoe UI", "Segoe UI Variable", "Frutiger",
        "Univers", "Futura", "Gill Sans", "Gill Sans MT", "Franklin Gothic", "ITC Franklin Gothic",
        "Franklin Gothic Medium", "News Gothic", "Trade Gothic", "Akzidenz-Grotesk", "Avenir", "Avenir Next",
        "Myriad", "Myriad Pro", "Syntax", "Meta", "FF Meta", "DIN", "FF DIN", "DIN 1451", "Eurostile",
        "Microgramma", "Optima", "Lucida Sans", "Lucida Grande", "Lucida Sans Unicode", "Geneva", "Chicago",
        "Charcoal", "Skia", "Kabel", "ITC Kabel", "Avant Garde", "ITC Avant Garde Gothic", "Avant Garde Gothic",
        "Century Gothic", "Bauhaus 93", "Tw Cen MT", "Twentieth Century", "Gotham", "Proxima Nova", "Museo Sans",
        "Officina Sans", "ITC Officina Sans", "Stone Sans", "ITC Stone Sans", "Antique Olive", "Folio",
        "Neuzeit Grotesk", "Erbar", "Metro", "Bell Gothic", "Benton Sans", "Whitney", "Interstate", "Vista Sans",
        "Fira Sans", "Open Sans", "Roboto", "Roboto Condensed", "Lato", "Montserrat", "Raleway", "Oswald",
        "Source Sans Pro", "Source Sans 3", "PT Sans", "Noto Sans", "Droid Sans", "Arimo", "Carlito", "Cantarell",
        "Ubuntu", "Ubuntu Condensed", "Inter", "Work Sans", "Nunito", "Nunito Sans", "Poppins", "Rubik",
        "Mukta", "Hind", "Karla", "Barlow", "Overpass", "Red Hat Display", "Red Hat Text", "IBM Plex Sans",
        "Liberation Sans", "Liberation Sans Narrow", "DejaVu Sans", "Nimbus Sans", "Nimbus Sans L",
        "Nimbus Sans Narrow", "URW Gothic", "URW Gothic L", "TeX Gyre Heros", "TeX Gyre Heros Cn",
        "TeX Gyre Adventor", "Latin Modern Sans", "CMU Sans Serif", "FreeSans", "Bitstream Vera Sans",
        "Luxi Sans", "Quicksand", "Oxygen", "Noto Sans Display", "Noto Sans UI", "Clear Sans", "Signika",
        "Cabin", "Exo", "Exo 2", "Titillium Web", "Play", "Encode Sans", "Heebo", "Assistant", "Manrope",
        "Public Sans", "Jost", "Spartan", "League Spartan", "Josefin Sans", "Abel", "Archivo", "Asap",
        "Catamaran", "Dosis", "Muli", "Mulish", "Questrial", "Varela Round", "Comfortaa", "M PLUS 1p",
        "Swiss 721", "Dutch 801 Sans", "Zurich", "Humanist 521", "Geometric 231", "Helvetica Narrow",
        "Arial Unicode MS", "MS Sans Serif", "Microsoft Sans Serif", "San Francisco", "SF Pro", "SF Pro Text",
        "SF Pro Display", "Lucida Sans Typewriter Sans", "Bahnschrift", "Aptos", "Selawik", "Segoe Print Sans")
classic(SLAB, "Rockwell", "Clarendon", "Memphis", "Serifa", "Lubalin Graph", "ITC Lubalin Graph", "Glypha",
        "Egyptienne", "Egyptienne F", "Courier Slab", "Museo Slab", "Archer", "Sentinel", "Roboto Slab",
        "Zilla Slab", "Arvo", "Bitter", "Josefin Slab", "Crete Round", "Noticia Text", "Slabo 27px", "Slabo 13px",
        "Aleo", "Podkova", "Kameron", "Rokkitt", "Bree Serif", "Chaparral Slab", "Stymie", "City", "Beton",
        "Egyptian 505", "Calvert", "Officina Serif", "ITC Officina Serif", "Candida", "Volta", "Aachen",
        "Playbill", "Tex Gyre Cursor Slab", "PT Slab", "Ultra", "Alfa Slab One", "Copse", "Domine",
        "IBM Plex Slab", "Noto Serif Slab", "Zilla Slab Highlight")
classic(SCRIPT, "Zapf Chancery", "ITC Zapf Chancery", "URW Chancery L", "Z003", "Zapfino", "Apple Chancery",
        "Brush Script", "Brush Script MT", "Edwardian Script", "Edwardian Script ITC", "Kunstler Script",
        "Vivaldi", "Palace Script", "Shelley", "Shelley Allegro Script", "Snell Roundhand", "Bickham Script",
        "Mistral", "Freestyle Script", "French Script MT", "Vladimir Script", "Monotype Corsiva", "Lucida Calligraphy",
        "Lucida Handwriting", "Kaufmann", "Murray Hill", "Commercial Script", "Park Avenue", "Coronet",
        "Ribbon", "Bernhard Tango", "Young Baroque", "Medici Script", "Great Vibes", "Pacifico", "Dancing Script",
        "Lobster", "Allura", "Alex Brush", "Parisienne", "Tangerine", "Sacramento", "Satisfy", "Pinyon Script",
        "Petit Formal Script", "Berthold Script", "Künstler Script", "Englische Schreibschrift", "Mistral Std",
        "Segoe Script", "Rage Italic", "Script MT Bold", "Palace Script MT", "Blackadder ITC", "Gigi", "Chancery")
classic(HAND, "Comic Sans MS", "Comic Sans", "Comic Neue", "Chalkboard", "Chalkduster", "Marker Felt", "Bradley Hand",
        "Bradley Hand ITC", "Segoe Print", "Ink Free", "Kristen ITC", "Tempus Sans ITC", "Viner Hand ITC",
        "Juice ITC", "Papyrus", "Noteworthy", "Felt Tip", "Journal", "Caflisch Script", "Tekton", "Tekton Pro",
        "Architects Daughter", "Indie Flower", "Shadows Into Light", "Kalam", "Patrick Hand", "Gloria Hallelujah",
        "Permanent Marker", "Caveat", "Amatic SC", "Covered By Your Grace", "Reenie Beanie", "Rock Salt",
        "Schoolbell", "Coming Soon", "Just Another Hand", "Homemade Apple", "Nanum Pen", "Nanum Brush",
        "Humor Sans", "xkcd", "Sketch Block", "Dekko", "Handlee", "Neucha", "Short Stack", "Sriracha")
classic(DISPLAY, "Impact", "Haettenschweiler", "Cooper Black", "Cooper", "Broadway", "Stencil", "Algerian",
        "Jokerman", "Curlz MT", "Showcard Gothic", "Playbill", "Desdemona", "Harrington", "Herculanum",
        "Party LET", "Bernard MT Condensed", "Britannic Bold", "Castellar", "Colonna MT", "Chiller",
        "Ravie", "Snap ITC", "Magneto", "Niagara Solid", "Niagara Engraved", "Onyx", "Poster Bodoni", "Hobo",
        "Hobo Std", "Peignot", "Arnold Böcklin", "Bauhaus", "ITC Bauhaus", "Benguiat", "ITC Benguiat",
        "Souvenir", "ITC Souvenir", "Tiffany", "Windsor", "Davida", "Knockout", "Bebas", "Bebas Neue",
        "Lobster Two", "Abril Fatface", "Anton", "Righteous", "Bungee", "Fredoka One", "Luckiest Guy",
        "Press Start 2P", "VT323", "Orbitron", "Monoton", "Creepster", "Chicle", "Shrikhand", "Rye",
        "Trattatello", "Copperplate", "Engravers MT", "Matura MT Script Capitals", "Old English Text MT Display",
        "Luminari", "Phosphate", "Bodoni Ornaments Display", "Wide Latin", "Goudy Stout", "Gill Sans Ultra Bold")
classic(MONO, "Courier", "Courier New", "Courier Std", "Courier 10 Pitch", "Monaco", "Menlo", "SF Mono",
        "Consolas", "Lucida Console", "Lucida Sans Typewriter", "Andale Mono", "OCR A", "OCR-A", "OCR B",
        "OCR-B", "Letter Gothic", "Prestige Elite", "Orator", "American Typewriter Mono", "Pica", "Elite",
        "Fixedsys", "Terminal", "Inconsolata", "DejaVu Sans Mono", "Bitstream Vera Sans Mono", "Liberation Mono",
        "Nimbus Mono", "Nimbus Mono L", "Nimbus Mono PS", "TeX Gyre Cursor", "Latin Modern Mono", "CMU Typewriter Text",
        "FreeMono", "Droid Sans Mono", "Noto Sans Mono", "Noto Mono", "Cousine", "Source Code Pro",
        "Fira Mono", "Fira Code", "Hack", "JetBrains Mono", "Ubuntu Mono", "Roboto Mono", "IBM Plex Mono",
        "Anonymous Pro", "Cascadia Code", "Cascadia Mono", "Iosevka", "Monoid", "Go Mono", "Space Mono",
        "PT Mono", "Oxygen Mono", "Overpass Mono", "Red Hat Mono", "Luxi Mono", "Terminus", "Intel One Mono",
        "Victor Mono", "Mononoki", "Share Tech Mono", "Cutive Mono", "Courier Prime", "Input Mono",
        "Operator Mono", "Pragmata Pro", "Envy Code R", "ProFont", "Monofur", "Office Code Pro")
classic(BLACK, "Fraktur", "Old English Text MT", "Old English", "Engravers Old English", "Goudy Text",
        "Cloister Black", "Wilhelm Klingspor Gotisch", "Fette Fraktur", "Linotext", "Textura", "Rotunda",
        "Schwabacher", "Breitkopf Fraktur", "Duc de Berry", "San Marco", "Lucida Blackletter", "UnifrakturMaguntia",
        "UnifrakturCook", "Pirata One", "Germania One", "Grenze Gotisch", "New Rocker", "Manuskript Gothisch",
        "Yiggivoo Unicode", "Deutsche Zierschrift", "Alte Schwabacher", "Kanzlei", "Fraktur BT", "Blackletter 686",
        "Engravers Gothic BT")
classic(SYMBOL, "Symbol", "Standard Symbols PS", "Standard Symbols L", "Zapf Dingbats", "ITC Zapf Dingbats",
        "Dingbats", "D050000L", "Wingdings", "Wingdings 2", "Wingdings 3", "Webdings", "Marlett", "Segoe UI Symbol",
        "Segoe UI Emoji", "Segoe MDL2 Assets", "Apple Symbols", "Apple Color Emoji", "Noto Color Emoji",
        "Noto Emoji", "Noto Sans Symbols", "Noto Sans Symbols 2", "Noto Sans Math", "OpenSymbol", "Symbola",
        "MT Extra", "Cambria Math", "Latin Modern Math", "STIX Two Math", "Font Awesome", "FontAwesome",
        "Material Icons", "Webdings 2", "Carta", "Bodoni Ornaments", "Minion Pro Ornaments", "Universal News",
        "Mathematical Pi", "Euclid Symbol", "Lucida Math", "Euler", "Sonata", "Bravura", "Emmentaler",
        "Noto Music", "Estrangelo Edessa Symbols", "Twemoji", "EmojiOne", "Font Awesome 5 Free", "Unifont Upper")

classic(SANS, "texgyreheros", "texgyreheroscn", "texgyreadventor", "tiresias", "tiresias infofont",
        "kacstoffice", "kacstscreen", "kacstbook", "kinnari sans", "sawasdee", "garuda", "loma", "umpush", "waree",
        "khmer os system", "khmer os content", "khmer os battambang", "cmu bright", "katex_sansserif", "verana")
classic(SERIF, "texgyretermes", "texgyreschola", "texgyrepagella", "texgyrebonum", "kinnari", "norasi", "laksaman",
        "kacstnaskh", "kacstfarsi", "kacstqurn", "bookman uralic", "palladio uralic", "schoolbook uralic",
        "cmu concrete", "katex_main", "berenis adf pro", "irianis adf std", "romande adf std", "romande adf no2 std",
        "im fell dw pica", "khmer os siemreap", "khmer os", "junicode", "elstob")
classic(SCRIPT, "tex gyre chorus", "texgyrechorus", "katex_caligraphic", "kacstletter", "romande adf style std",
        "irianis adf style std", "khmer os fasthand", "khmer os freehand", "abecedario")
classic(HAND, "purisa", "kacstpen", "chilanka")
classic(DISPLAY, "kacstart", "kacstdecorative", "kacstposter", "kacsttitle", "kacsttitlel", "kacstdigital",
        "mekanus adf std", "mekanus adf titling std", "khmer os bokor", "khmer os muol", "khmer os muol light",
        "khmer os muol pali", "khmer os metal chrieng")
classic(SYMBOL, "katex_ams", "katex_size1", "katex_size2", "katex_size3", "katex_size4", "klingon piqad hasta")
classic(SANS, "baekmuk gulim", "wenquanyi zen hei", "wenquanyi zen hei sharp", "patchsans", "karla tamil inclined",
        "karla tamil upright", "kacstone")
classic(SERIF, "museum", "museum bible", "museum foundry", "patchserif", "tscu_times", "dejima")
classic(SCRIPT, "ar pl ukai hk", "ar pl ukai tw", "ar pl ukai tw mbe", "kouzanbrushfont", "kouzanbrushfontgyousyo",
        "kouzanbrushfontsousyo")
classic(HAND, "setofont", "setofont-ex", "aoyagikouzanfontt", "aoyagisosekifont2")
classic(DISPLAY, "patchstencil")
classic(SERIF, "cmr10", "cmmi10", "cmti10", "cmbx10", "cmcsc10")
classic(SANS, "cmss10")
classic(MONO, "cmtt10")
classic(SYMBOL, "cmsy10", "cmex10", "msam10", "msbm10", "wasy10")
classic(BLACK, "eufm10")
classic(SCRIPT, "ar pl ukai cn", "ar pl ukai")
classic(SYMBOL, "stix", "dsrom10", "esint10", "rsfs10", "stmary10", "wasy10")
classic(MONO, "gwmonospace", "tlwg typist", "tlwgtypewriter", "tlwg typo", "tlwg mono")

# The CJK families of fonts-noto-cjk and fonts-wqy-zenhei under every name fontconfig lists (the
# Chinese names of WenQuanYi included), and the same designs under their Source Han names.
CJK_REGIONS = ("HK", "JP", "KR", "SC", "TC")
classic(SANS, *(f"Noto Sans CJK {r}" for r in CJK_REGIONS), "Noto Sans CJK", "文泉驛正黑", "文泉驿正黑", "文泉驛點陣正黑",
        "文泉驿点阵正黑", "Source Han Sans", *(f"Source Han Sans {r}" for r in CJK_REGIONS + ("HC", "K", "CN", "TW")))
classic(MONO, *(f"Noto Sans Mono CJK {r}" for r in CJK_REGIONS), "Noto Sans Mono CJK", "wenquanyi zen hei mono",
        "文泉驛等寬正黑", "文泉驿等宽正黑", "Source Han Mono", *(f"Source Han Mono {r}" for r in CJK_REGIONS + ("HC", "K")))
classic(SERIF, *(f"Noto Serif CJK {r}" for r in CJK_REGIONS), "Noto Serif CJK", "Source Han Serif",
        *(f"Source Han Serif {r}" for r in CJK_REGIONS + ("HC", "K", "CN", "TW")))
# Nushu as written with a brush.
classic(SCRIPT, "Noto Traditional Nushu")

# Whole Debian packages (the folder under fonts/<format>/) whose families share one class.
FOLDER_CLASS = {
    "aenigma": DISPLAY, "dseg": DISPLAY, "dustin": DISPLAY, "gotico-antiqua": BLACK, "jsmath": SYMBOL,
    "stix": SYMBOL, "tiresias": SANS, "karla": SANS, "vollkorn": SERIF, "cantarell": SANS, "manrope": SANS,
    "league-spartan": SANS, "yanone-kaffeesatz": SANS, "bebas-neue": DISPLAY, "elstob": SERIF, "junicode": SERIF,
    "inter": SANS, "roboto": SANS, "roboto-fontface": SANS, "charis": SERIF, "gentium": SERIF,
    "gentium-basic": SERIF, "andikanewbasic": SANS, "didot": SERIF, "didot-classic": SERIF, "bodoni-classic": SERIF,
    "fanwood": SERIF, "linex": SERIF, "essays1743": SERIF, "neohellenic": SERIF, "artemisia": SERIF,
    "complutum": SERIF, "porson": SERIF, "solomos": SERIF, "theokritos": SERIF, "gazis": SERIF, "olga": SERIF,
    "baskerville": SERIF, "quattrocento": SERIF, "sortsmill": SERIF, "lindenhill": SERIF, "fifthhorseman": DISPLAY,
    "national-park": SANS, "jura": SANS, "sora": SANS, "arapey": SERIF, "averia-gwf": DISPLAY,
    "beteckna": SANS, "roadgeek": SANS, "compagnon": MONO, "ferrite-core": DISPLAY, "opendyslexic": SANS,
    "lemonada": DISPLAY, "allerta": SANS, "quicksand": SANS, "comfortaa": DISPLAY, "leckerli-one": SCRIPT,
    "kristi": SCRIPT, "rufscript": SCRIPT, "yusei-magic": HAND, "cherrybomb": DISPLAY, "reggae": DISPLAY,
    "staypuft": DISPLAY, "summersby": SCRIPT, "tomsontalks": HAND, "fantasma": DISPLAY, "havana": SCRIPT,
    "isabella": BLACK, "joscelyn": SCRIPT, "junction": SANS, "gamaliel": BLACK, "engadget": DISPLAY,
    "eurofurence": SANS, "ocr-a": MONO, "gnutypewriter": MONO, "fonts-atarismall": MONO, "atari": MONO,
    "fork-awesome": SYMBOL, "glyphicons": SYMBOL, "fonts-entypo": SYMBOL, "denemo": SYMBOL, "euterpe": SYMBOL,
    "povray": SANS, "ubuntu-title": DISPLAY, "galatia": SERIF, "uralic": SERIF, "cmu": SERIF,
    "klaudia-berenika": SERIF, "karmilla": SANS, "okolaks": SANS, "fonts-century-catalogue": SERIF,
    "triod-postnaja": SERIF, "mph-2b-damase": SERIF, "ezra": SERIF, "sophia-nubian": SANS, "akatab": SANS,
    "andika": SANS, "annapurna": SERIF, "abyssinica": SERIF, "harmattan": SANS, "lateef": SERIF,
    "scheherazade": SERIF, "alkalami": SERIF, "padauk": SANS, "tagmukay": SANS, "taiheritagepro": SERIF,
    "dai-banna": SANS, "nuosusil": SERIF, "mingzat": SANS, "zaghawa-beria": SANS, "gentiumplus-compact": SERIF,
    "fonts-hosny-amiri": SERIF, "fonts-hosny-thabit": MONO, "paktype": SERIF, "fonts-nafees": SCRIPT,
}

# Words in a family name that settle its class, checked in this order on whole words.
NAME_WORDS = [
    (MONO, r"mono|monospace|monospaced|code|console|typewriter|tt|terminal|fixed|pitch|courier"),
    (SYMBOL, r"symbols?|dingbats?|emoji|.*icons?|math|music|ornaments?|awesome|pi"),
    (SANS, r".*gothic|dotum|gulim|.*hei|heiti"),
    (SERIF, r".*mincho|uming|.*ming|batang|myeongjo"),
    (BLACK, r"fraktur|blackletter|gotisch|textura|schwabacher|unifraktur"),
    (SLAB, r"slab"),
    (SCRIPT, r"script|chancery|calligraphy|calligraphic|nastaliq|brush"),
    (HAND, r"hand|handwriting|handwritten|marker|pen|pencil|crayon|chalk|comic|kids"),
    (SANS, r"sans|grotesk|grotesque|gothic|sans-serif|ui|heros|adventor|cn"),
    (SERIF, r"serif|roman|mincho|ming|song|batang|myeongjo|naskh|antiqua|book|text|termes|pagella|bonum|schola"),
    (DISPLAY, r"display|decorative|poster|headline|stencil|outline|shadow|inline"),
]


def class_from_name(family):
    words = re.findall(r"[a-z0-9]+", family)
    for cls, pattern in NAME_WORDS:
        if any(re.fullmatch(pattern, word) for word in words):
            return cls
    return None


def class_from_panose(panose):
    if not panose or panose[0] < 2:
        return None
    kind, serif, proportion = panose[0], panose[1], panose[3]
    if kind == 2:
        if proportion == 9:
            return MONO
        if serif in (11, 12, 13, 14, 15):
            return SANS
        if serif == 6:
            return SLAB
        if 2 <= serif <= 10:
            return SERIF
        return None
    return {3: SCRIPT, 4: DISPLAY, 5: SYMBOL}.get(kind)


def class_from_family_class(family_class):
    if not family_class:
        return None
    return {1: SERIF, 2: SERIF, 3: SERIF, 4: SLAB, 5: SLAB, 7: SERIF, 8: SANS, 9: DISPLAY, 10: SCRIPT,
            12: SYMBOL}.get(family_class >> 8)


STYLE_WORDS = {"thin", "hairline", "extralight", "ultralight", "light", "book", "regular", "normal", "medium",
               "semibold", "demibold", "bold", "extrabold", "ultrabold", "heavy", "black", "extra", "ultra", "semi",
               "demi", "condensed", "narrow", "compressed", "expanded", "extended", "wide", "italic", "oblique",
               "sc", "caps", "small", "titling", "std", "pro", "lt", "blk", "it"}


def base_family(family):
    """The family without trailing weight, width or slope words: "roboto condensed light" -> "roboto"."""
    words = family.split()
    while len(words) > 1 and words[-1] in STYLE_WORDS:
        words.pop()
    return " ".join(words)


def is_junk(family):
    """Names that are no family: control characters, or fewer than two letters ("[f500]", ".")."""
    letters = sum(1 for c in family if unicodedata.category(c).startswith("L"))
    return letters < 2 and not re.search(r"\d", family) or any(unicodedata.category(c) == "Cc" for c in family) \
        or re.fullmatch(r"\[[0-9a-f]+\]", family) is not None


def folder_of(path):
    parts = path.split("/fonts/")[-1].split("/")
    return parts[1] if len(parts) > 2 else parts[0]


def classify(family, faces, known):
    if family in C:
        return C[family], "hand"
    base = base_family(family)
    if base != family and base in known:
        return known[base], "base family"
    folders = {folder_of(face["path"]) for face in faces} & FOLDER_CLASS.keys()
    if folders:
        return FOLDER_CLASS[sorted(folders)[0]], "package"
    by_name = class_from_name(family)
    if by_name:
        return by_name, "name"
    if any(face["isFixedPitch"] for face in faces):
        return MONO, "fixed pitch"
    votes = collections.Counter(filter(None, (class_from_panose(face["panose"]) for face in faces)))
    if votes:
        return votes.most_common(1)[0][0], "panose"
    votes = collections.Counter(filter(None, (class_from_family_class(face["familyClass"]) for face in faces)))
    if votes:
        return votes.most_common(1)[0][0], "sFamilyClass"
    return None, "none"


def main():
    here = os.path.dirname(os.path.abspath(__file__))
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--cache", help="keep the font survey in this JSON file")
    parser.add_argument("--out", default=os.path.join(here, "DefaultClassifications.plist"))
    parser.add_argument("--review", help="write family, class and source of each derived class here")
    parser.add_argument("--keep", action="store_true", help="keep the output file's mappings, add new families")
    parser.add_argument("folders", nargs="*", default=["/usr/share/fonts"])
    args = parser.parse_args()

    faces_of = collections.defaultdict(list)
    for record in font_survey.cached_survey(args.folders, args.cache):
        for key in ("family", "legacyFamily"):
            family = record[key].strip().lower()
            if family and record not in faces_of[family]:
                faces_of[family].append(record)

    kept = {}
    if args.keep and os.path.exists(args.out):
        with open(args.out, "rb") as f:
            kept = plistlib.load(f)["Mappings"]
    mappings = dict(C)
    mappings.update(kept)
    review = []
    # Shorter names first, so that a family's base name is classified before its weights.
    for family, faces in sorted(faces_of.items(), key=lambda item: (len(item[0]), item[0])):
        if family in kept:
            continue
        cls, source = classify(family, faces, mappings)
        if cls:
            mappings[family] = cls
        review.append(f"{family}\t{cls or '--'}\t{source}")
    review.sort()
    if args.review:
        with open(args.review, "w", encoding="utf-8") as f:
            f.write("\n".join(review) + "\n")
    mappings = {family: cls for family, cls in mappings.items() if not is_junk(family)}
    with open(args.out, "wb") as f:
        plistlib.dump({"Default Classifications": BUILTIN_CLASSES, "Mappings": mappings}, f, sort_keys=True)
    unresolved = [line for line in review if line.endswith("\tnone")]
    print(f"{len(mappings)} families mapped; {len(unresolved)} surveyed families left unclassified")
    for line in unresolved:
        print("  " + line.split("\t")[0])


if __name__ == "__main__":
    main()
