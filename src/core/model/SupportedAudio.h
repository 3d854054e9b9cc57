#pragma once

#include <QStringList>
#include <QStringView>

/// The file types that the program takes in.
namespace SupportedAudio {

/// Lower-case extensions without the point, in the order in which the file dialog names them.
const QStringList& extensions();
/// Whether a file of this name is taken in: by its extension, in any case of letters. A name that begins with its
/// only point, such as ".mp3", has none.
bool hasSupportedExtension(QStringView fileName);

} // namespace SupportedAudio
