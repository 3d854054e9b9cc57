#pragma once

#include <QByteArrayView>
#include <QString>

/// Russian and Ukrainian text that old programs wrote into fields meant for Latin-1.
///
/// What tells it apart: a Cyrillic word consists of bytes above 0x7F alone, while the accented letters of Western
/// languages stand among plain ones ("Beyoncé", "Mötley Crüe", "Ñandú"). So words of three and more high bytes speak
/// for Cyrillic, words that mix both speak against it, and shorter ones ("Ñ", "À", "Öö") say nothing by themselves.
///
/// Known errors: a single one- or two-letter word that is not in the small list of Russian ones stays Latin unless
/// another field of the file is plainly Cyrillic ("Юз" alone); Western words of high letters only ("ÆØÅ") are kept by
/// a list; Greek, Hebrew, KOI8-R and the rare all-accented Polish word ("żółć") in such fields, unreadable before, are
/// shown as Cyrillic letters; Western words with two accented letters side by side ("Größe") are, in a file with
/// plainly Cyrillic fields.
namespace Windows1251 {

enum class Evidence {
    None,     ///< Latin, or no letter above 0x7F at all
    Possible, ///< short words of high letters only: Cyrillic if the rest of the file is
    Plain     ///< Cyrillic
};

Evidence evidence(QByteArrayView bytes);
/// Whether a field of a file that is plainly Cyrillic elsewhere is Cyrillic too. Besides what is possible by itself,
/// these are words that mix alphabets ("МакSим", "Цветкоff"), told by two high letters side by side, and texts of
/// letters that double as signs ("Ї"). A lone high letter among plain ones ("Beyoncé") stays Latin.
bool fitsCyrillicFile(QByteArrayView bytes);
/// Every byte has a character; the one unassigned byte 0x98 gives U+FFFD.
QString decode(QByteArrayView bytes);

} // namespace Windows1251
