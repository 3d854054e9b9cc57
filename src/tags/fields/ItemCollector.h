#pragma once

#include "tags/fields/MetadataItem.h"

#include <vector>

/// What one tag format calls a field.
struct FieldName {
    QLatin1StringView format; ///< "id3", "vorbis", "ape", "riff", "aiff", "itsk" or "itlk"
    QString key;
    std::optional<CommonKey> commonKey = std::nullopt;
    /// What the field calls itself, see MetadataItem.
    std::optional<QString> extraDescription = std::nullopt;
};

/// Gathers the items of a file in order. Text without a stated encoding is decoded at the end, when all of it has been
/// seen: whether a short word is Cyrillic is told by its neighbours.
class ItemCollector {
public:
    /// Chosen: far above any real file; what comes after is not kept.
    static constexpr std::size_t kMaximumItems = 4096;

    /// Adds decoded text. Like all of these it does nothing once the collector is full.
    void addText(const FieldName& name, const QString& value);
    /// \param bytes of a field meant for Latin-1.
    /// \param transform applied to each of its values; may be null.
    void addLegacyText(const FieldName& name, QByteArrayView bytes, QString (*transform)(const QString&) = nullptr);
    /// \param bytes of a field meant for UTF-8. What is something else counts as a field meant for Latin-1.
    void addUtf8(const FieldName& name, QByteArrayView bytes);
    /// Adds bytes, such as a picture.
    void addData(const FieldName& name, const QByteArray& value);
    std::size_t size() const { return m_items.size(); }

    /// The items; the collector is empty afterwards. \param readsWindows1251 whether Cyrillic is looked for.
    std::vector<MetadataItem> take(bool readsWindows1251);

private:
    struct LegacyText {
        std::size_t item;
        QByteArray bytes;
        QString (*transform)(const QString&);
    };
    MetadataItem* add(const FieldName& name);

    std::vector<MetadataItem> m_items;
    std::vector<LegacyText> m_legacyTexts;
};
