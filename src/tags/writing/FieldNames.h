#pragma once

#include "core/model/CleanerFields.h"

#include <QByteArrayView>
#include <QString>

/// How the formats name the fields that can be cleaned.
namespace FieldNames {

/// Whether an ID3v2 frame holds one of the fields. \param id three or four letters.
bool isId3Frame(QByteArrayView id, CleanerFields fields);
/// The same of the key of an APEv2 item or a Vorbis comment, in letters of either case.
bool isCommentKey(const QString& key, CleanerFields fields);

} // namespace FieldNames
