#pragma once

#include <QString>

/// Why the program could not save something of its own: the end of a sentence. \param systemError errno.
/// \return localised.
QString saveReason(int systemError);
