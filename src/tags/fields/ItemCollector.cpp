#include "tags/fields/ItemCollector.h"

#include "tags/text/TagText.h"
#include "tags/text/Windows1251.h"

#include <algorithm>

MetadataItem* ItemCollector::add(const FieldName& name)
{
    if (m_items.size() >= kMaximumItems)
        return nullptr;
    MetadataItem& item = m_items.emplace_back();
    item.identifier = name.format + u'/' + name.key;
    item.key = name.key;
    item.commonKey = name.commonKey;
    item.extraDescription = name.extraDescription;
    return &item;
}

void ItemCollector::addText(const FieldName& name, const QString& value)
{
    if (MetadataItem* item = add(name))
        item->stringValue = value;
}

void ItemCollector::addLegacyText(const FieldName& name, QByteArrayView bytes, QString (*transform)(const QString&))
{
    if (add(name))
        m_legacyTexts.push_back({m_items.size() - 1, bytes.toByteArray(), transform});
}

void ItemCollector::addUtf8(const FieldName& name, QByteArrayView bytes)
{
    if (TagText::isUtf8(bytes))
        addText(name, TagText::fromUtf8(bytes));
    else
        addLegacyText(name, bytes);
}

void ItemCollector::addData(const FieldName& name, const QByteArray& value)
{
    if (MetadataItem* item = add(name))
        item->dataValue = value;
}

std::vector<MetadataItem> ItemCollector::take(bool readsWindows1251)
{
    using Windows1251::Evidence;
    const bool isCyrillicFile = readsWindows1251 && std::ranges::any_of(m_legacyTexts, [](const LegacyText& text) {
                                    return Windows1251::evidence(text.bytes) == Evidence::Plain;
                                });
    for (const LegacyText& text : m_legacyTexts) {
        MetadataItem& item = m_items[text.item];
        const QString value =
            TagText::fromLegacy(text.bytes, isCyrillicFile && Windows1251::fitsCyrillicFile(text.bytes));
        item.stringValue = TagText::joined(value, text.transform);
    }
    m_legacyTexts.clear();
    return std::exchange(m_items, {});
}
