#pragma once

#include <QString>

inline QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}
