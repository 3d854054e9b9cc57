#pragma once

#include "core/model/CleanerFields.h"
#include "core/model/TagField.h"
#include "support/TagsOf.h"

#include <QByteArray>

#include <functional>
#include <utility>
#include <vector>

/// Changes a file, by its URL.
using Change = std::function<void(const QUrl&)>;

using TagTexts = std::vector<std::pair<QString AudioTags::*, QString>>;
/// Tags with these fields alone.
AudioTags tagsWith(const TagTexts& texts);
/// Every field with a text of its own; letters of three scripts.
AudioTags fullTags();
/// Of those, what the program reads back into a row. Album artist, year, track and tempo are written alone.
AudioTags readableTags();

/// The paths of all files in a folder and below.
QStringList filesBelow(const QString& folder);
QByteArray contentOf(const QUrl& url);
/// What \p change makes of a file of these bytes.
QByteArray changed(const QString& name, const QByteArray& bytes, const Change& change);

Change writing(const AudioTags& tags);
Change assigning(const QByteArray& artwork, const AudioTags& tags);
/// The save that leaves all else as it is.
Change keeping(const AudioTags& tags, TagFields fields = TagFieldSet::kAll);
Change keepingWithPicture(const QByteArray& artwork, const AudioTags& tags, TagFields fields = TagFieldSet::kAll);
Change cleaning(CleanerFields fields, const QString& title = {}, const QString& album = {});

/// The name of the error that \p change ends with, and what it carries; "none" without an error.
QString failureOf(const Change& change, const QUrl& url);
/// Whether \p change on a file of these bytes fails with this error, the file stays as it was and nothing is left
/// beside it.
void expectRefused(const QString& name, const QByteArray& bytes, const Change& change, const QString& failure,
                   const char* what);

/// A second of noise, made by the encoder program. \param arguments of the output.
QUrl makeSound(const FileFolder& folder, const QString& name, const QStringList& arguments = {});
/// A digest of all packets of sound as another program reads them; empty if it cannot.
QByteArray packetDigest(const QUrl& url);
/// A tag's value as another library reads it. \param key in the library's spelling. Empty without one.
QString foreignTag(const QUrl& url, const QString& key);
