#pragma once

#include "core/model/Track.h"
#include "platform/Localization.h"

#include <QString>
#include <QStringList>

/// Words for values, in the language of the interface. Thread: main.
namespace Texts {

/// The text for a Russian key.
inline QString localized(const QString& key)
{
    return VelmoraLocalization::string(key);
}

/// "3:07" or "1:02:45"; an em dash for an unknown length.
QString length(double seconds);
/// A place in a track, "0:00" to its length, in whole seconds that have passed. \param duration seconds; 0 if not
/// known.
QString position(double seconds, double duration);
/// What is left of a track, "−3:41" with a real minus sign; an em dash while the length is not known. Changes together
/// with position(), and both together give the length.
QString remaining(double seconds, double duration);
/// A total such as "96 ч 12 мин"; empty for nothing.
QString totalLength(double seconds);
/// "1 248 треков".
QString trackCount(qint64 count);
/// A count as the sidebar shows it, "1 248".
QString number(qint64 value);
/// The facts of a list in one line, empty parts left out.
QString facts(const QStringList& parts);
/// Size of a file, "412 КБ" or "1,5 МБ"; steps of 1,024.
QString byteCount(qint64 bytes);
/// "Title — Artist" for screen readers and tooltips.
QString spoken(const Track& track);

} // namespace Texts
