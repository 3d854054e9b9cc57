#pragma once

#include <QString>

/// The numbered genres of ID3v1 and of players that extended its list.
namespace GenreNames {

/// The name of a number of the list, counted from 0. Empty for a number without name.
QString fromNumber(int number);
/// A genre of ID3v2.2 and 2.3 with its references in brackets put into words: "(17)" gives "Rock", "(4)Eurodisco" its
/// own wording "Eurodisco", "(31)(39)" both names, "(RX)" and "(CR)" Remix and Cover, and "((x)" is the escape of
/// "(x)". Anything else, bare numbers included, is returned as it is.
QString withReferences(const QString& genre);
/// A genre of ID3v2.4, where a bare "17", "RX" or "CR" is a reference; "(17)" is found there too.
QString withNumbers(const QString& genre);

} // namespace GenreNames
