#pragma once

#include <QByteArrayView>

/// Checks that Qt's conversions leave out: they replace what is wrong in silence.
namespace Utf8 {

/// Whether the bytes are well-formed UTF-8: no overlong forms, no surrogates, nothing above U+10FFFF.
bool isValid(QByteArrayView bytes);

} // namespace Utf8
