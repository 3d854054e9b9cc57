#pragma once

#include <QDateTime>
#include <QFile>
#include <gtest/gtest.h>

/// Makes a file look as if it had been written, and read, at that time.
inline void setModified(const QString& path, const QDateTime& time)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.setFileTime(time, QFileDevice::FileAccessTime));
    ASSERT_TRUE(file.setFileTime(time, QFileDevice::FileModificationTime));
}
