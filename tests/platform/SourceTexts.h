#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

/// The string literals of C++ sources.
namespace SourceTexts {

struct Text {
    QString text; ///< escapes resolved, neighbouring literals joined
    QString file;
    int line = 0; ///< where it begins
};

/// The literals of a source, in order, but those on a line that ends with the comment "// not shown". Comments and
/// character literals are skipped.
QList<Text> inCode(const QByteArray& code, const QString& file);

/// The literals with Cyrillic letters of every .cpp and .h below a folder, under file names relative to it.
QList<Text> cyrillicBelow(const QString& folder);

} // namespace SourceTexts
