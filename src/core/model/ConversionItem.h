#pragma once

#include "core/model/FreshID.h"

#include <QString>
#include <QUrl>
#include <QUuid>

#include <optional>

/// One row of the converter's queue.
struct ConversionItem {
    /// How far a row of the queue is.
    struct Status {
        /// Completed and Failed are final: another try is another row.
        enum class Case { Waiting, Converting, Completed, Failed };
        Case value = Case::Waiting;
        QString message; ///< why, for Failed only

        bool operator==(const Status&) const = default;
    };

    QUuid id = freshID();
    QUrl url; ///< source file
    Status status;
    std::optional<QUrl> outputURL; ///< set when done

    bool operator==(const ConversionItem&) const = default;
};
