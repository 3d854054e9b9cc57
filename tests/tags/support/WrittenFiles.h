#pragma once

#include "core/model/CleanerFields.h"
#include "core/model/TagField.h"
#include "support/TagsOf.h"

#include <QByteArray>

#include <functional>
#include <utility>
#include <vector>

inline const QString kCorrupt = QStringLiteral("fileReadCorruptFile");
inline const QByteArray kPng = "\x89PNG picture";

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
/// What \p change makes of a file of these bytes.
QByteArray changed(const QString& name, const QByteArray& bytes, const Change& change);

Change writing(const AudioTags& tags);
Change assigning(const QByteArray& artwork, const AudioTags& tags);
/// The save that leaves all else as it is.
Change keeping(const AudioTags& tags, TagFields fields = TagFieldSet::kAll);
Change keepingWithPicture(const QByteArray& artwork, const AudioTags& tags, TagFields fields = TagFieldSet::kAll);
Change cleaning(CleanerFields fields, const std::optional<QString>& title = {},
                const std::optional<QString>& album = {});

/// The name of the error that a call throws, and what it carries, e.g. "rewriteFailed wav"; empty if it throws none.
QString errorOf(const std::function<void()>& call);
QString failureOf(const Change& change, const QUrl& url);

/// A file before and after a change.
struct ChangeCase {
    const char* what;
    Change change;
    QByteArray before;
    QByteArray after;
};
/// Each change makes of the file what is said, and nothing more when it comes again.
void expectChanges(const QString& name, const std::vector<ChangeCase>& cases);

/// A change that a file is not fit for.
struct Refusal {
    const char* what;
    QByteArray bytes;
    Change change;
    QString failure;
};
/// Each change fails with its error, the file stays as it was and nothing is left beside it.
void expectRefusals(const QString& name, const std::vector<Refusal>& cases);

/// Lets a change of a file fail at each of its steps, and end before each of them. The file must hold the old bytes
/// after a failure, the old or the new ones after an end, and a failure must leave nothing else in the folder. \param
/// keepsTemporary whether a failure leaves the new file.
void expectWholeAtEveryStep(const QString& name, const QByteArray& original, const Change& change,
                            bool keepsTemporary = false);

/// A second of noise, made by the encoder program. \param arguments of the output, between single blanks.
QUrl makeSound(const FileFolder& folder, const QString& name, const QString& arguments = {});
/// A digest of all packets of sound as another program reads them; empty if it cannot.
QByteArray packetDigest(const QUrl& url);
/// A tag's value as another library reads it. \param key in the library's spelling. Empty without one.
QString foreignTag(const QUrl& url, const QString& key);
