#include "rescue/glyph_names.h"

namespace typeprint::rescue {
namespace {

// Control codes and DEL have no glyph.
constexpr const char* kMacRoman[256] = {
    "", "", "", "", "", "", "", "",  // 0x00
    "", "", "", "", "", "", "", "",  // 0x08
    "", "", "", "", "", "", "", "",  // 0x10
    "", "", "", "", "", "", "", "",  // 0x18
    "space", "exclam", "quotedbl", "numbersign", "dollar", "percent", "ampersand", "quotesingle",  // 0x20
    "parenleft", "parenright", "asterisk", "plus", "comma", "hyphen", "period", "slash",  // 0x28
    "zero", "one", "two", "three", "four", "five", "six", "seven",  // 0x30
    "eight", "nine", "colon", "semicolon", "less", "equal", "greater", "question",  // 0x38
    "at", "A", "B", "C", "D", "E", "F", "G",  // 0x40
    "H", "I", "J", "K", "L", "M", "N", "O",  // 0x48
    "P", "Q", "R", "S", "T", "U", "V", "W",  // 0x50
    "X", "Y", "Z", "bracketleft", "backslash", "bracketright", "asciicircum", "underscore",  // 0x58
    "grave", "a", "b", "c", "d", "e", "f", "g",  // 0x60
    "h", "i", "j", "k", "l", "m", "n", "o",  // 0x68
    "p", "q", "r", "s", "t", "u", "v", "w",  // 0x70
    "x", "y", "z", "braceleft", "bar", "braceright", "asciitilde", "",  // 0x78
    "Adieresis", "Aring", "Ccedilla", "Eacute", "Ntilde", "Odieresis", "Udieresis", "aacute",  // 0x80
    "agrave", "acircumflex", "adieresis", "atilde", "aring", "ccedilla", "eacute", "egrave",  // 0x88
    "ecircumflex", "edieresis", "iacute", "igrave", "icircumflex", "idieresis", "ntilde", "oacute",  // 0x90
    "ograve", "ocircumflex", "odieresis", "otilde", "uacute", "ugrave", "ucircumflex", "udieresis",  // 0x98
    "dagger", "degree", "cent", "sterling", "section", "bullet", "paragraph", "germandbls",  // 0xA0
    "registered", "copyright", "trademark", "acute", "dieresis", "notequal", "AE", "Oslash",  // 0xA8
    "infinity", "plusminus", "lessequal", "greaterequal", "yen", "mu", "partialdiff", "summation",  // 0xB0
    "product", "pi", "integral", "ordfeminine", "ordmasculine", "Omega", "ae", "oslash",  // 0xB8
    "questiondown", "exclamdown", "logicalnot", "radical", "florin", "approxequal", "Delta", "guillemotleft",  // 0xC0
    "guillemotright", "ellipsis", "nbspace", "Agrave", "Atilde", "Otilde", "OE", "oe",  // 0xC8
    "endash", "emdash", "quotedblleft", "quotedblright", "quoteleft", "quoteright", "divide", "lozenge",  // 0xD0
    "ydieresis", "Ydieresis", "fraction", "currency", "guilsinglleft", "guilsinglright", "fi", "fl",  // 0xD8
    "daggerdbl", "periodcentered", "quotesinglbase", "quotedblbase", "perthousand", "Acircumflex", "Ecircumflex", "Aacute",  // 0xE0
    "Edieresis", "Egrave", "Iacute", "Icircumflex", "Idieresis", "Igrave", "Oacute", "Ocircumflex",  // 0xE8
    "apple", "Ograve", "Uacute", "Ucircumflex", "Ugrave", "dotlessi", "circumflex", "tilde",  // 0xF0
    "macron", "breve", "dotaccent", "ring", "cedilla", "hungarumlaut", "ogonek", "caron",  // 0xF8
};

constexpr const char* kStandardEncoding[256] = {
    "", "", "", "", "", "", "", "",  // 0x00
    "", "", "", "", "", "", "", "",  // 0x08
    "", "", "", "", "", "", "", "",  // 0x10
    "", "", "", "", "", "", "", "",  // 0x18
    "space", "exclam", "quotedbl", "numbersign", "dollar", "percent", "ampersand", "quoteright",  // 0x20
    "parenleft", "parenright", "asterisk", "plus", "comma", "hyphen", "period", "slash",  // 0x28
    "zero", "one", "two", "three", "four", "five", "six", "seven",  // 0x30
    "eight", "nine", "colon", "semicolon", "less", "equal", "greater", "question",  // 0x38
    "at", "A", "B", "C", "D", "E", "F", "G",  // 0x40
    "H", "I", "J", "K", "L", "M", "N", "O",  // 0x48
    "P", "Q", "R", "S", "T", "U", "V", "W",  // 0x50
    "X", "Y", "Z", "bracketleft", "backslash", "bracketright", "asciicircum", "underscore",  // 0x58
    "quoteleft", "a", "b", "c", "d", "e", "f", "g",  // 0x60
    "h", "i", "j", "k", "l", "m", "n", "o",  // 0x68
    "p", "q", "r", "s", "t", "u", "v", "w",  // 0x70
    "x", "y", "z", "braceleft", "bar", "braceright", "asciitilde", "",  // 0x78
    "", "", "", "", "", "", "", "",  // 0x80
    "", "", "", "", "", "", "", "",  // 0x88
    "", "", "", "", "", "", "", "",  // 0x90
    "", "", "", "", "", "", "", "",  // 0x98
    "", "exclamdown", "cent", "sterling", "fraction", "yen", "florin", "section",  // 0xA0
    "currency", "quotesingle", "quotedblleft", "guillemotleft", "guilsinglleft", "guilsinglright", "fi", "fl",  // 0xA8
    "", "endash", "dagger", "daggerdbl", "periodcentered", "", "paragraph", "bullet",  // 0xB0
    "quotesinglbase", "quotedblbase", "quotedblright", "guillemotright", "ellipsis", "perthousand", "", "questiondown",  // 0xB8
    "", "grave", "acute", "circumflex", "tilde", "macron", "breve", "dotaccent",  // 0xC0
    "dieresis", "", "ring", "cedilla", "", "hungarumlaut", "ogonek", "caron",  // 0xC8
    "emdash", "", "", "", "", "", "", "",  // 0xD0
    "", "", "", "", "", "", "", "",  // 0xD8
    "", "AE", "", "ordfeminine", "", "", "", "",  // 0xE0
    "Lslash", "Oslash", "OE", "ordmasculine", "", "", "", "",  // 0xE8
    "", "ae", "", "", "", "dotlessi", "", "",  // 0xF0
    "lslash", "oslash", "oe", "germandbls", "", "", "", "",  // 0xF8
};

}  // namespace

std::string_view macRomanGlyphName(uint8_t code) { return kMacRoman[code]; }

std::string_view standardEncodingGlyphName(uint8_t code) { return kStandardEncoding[code]; }

}  // namespace typeprint::rescue
