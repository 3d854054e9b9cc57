#include "platform/Collation.h"

#include "platform/Localization.h"

#include <unicode/coll.h>

#include <array>
#include <memory>
#include <stdexcept>
#include <vector>

namespace Collation {

namespace {

enum class Digits { ByValue, AsLetters };

std::unique_ptr<const icu::Collator> makeCollator(const char* language, Digits digits)
{
    UErrorCode error = U_ZERO_ERROR;
    std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(icu::Locale(language), error));
    if (U_SUCCESS(error)) {
        collator->setAttribute(UCOL_STRENGTH, UCOL_SECONDARY, error);
        collator->setAttribute(UCOL_ALTERNATE_HANDLING, UCOL_NON_IGNORABLE, error);
        collator->setAttribute(UCOL_NUMERIC_COLLATION, digits == Digits::ByValue ? UCOL_ON : UCOL_OFF, error);
        collator->setAttribute(UCOL_NORMALIZATION_MODE, UCOL_ON, error); // file names come decomposed and composed
    }
    if (U_FAILURE(error))
        throw std::runtime_error("the collation data of ICU cannot be loaded");
    return collator;
}

/// The collator of the present language. Never changed after it was made, so any thread may use it.
const icu::Collator& collator(Digits digits)
{
    static const std::array kCollators{makeCollator("ru", Digits::ByValue), makeCollator("ru", Digits::AsLetters),
                                       makeCollator("en", Digits::ByValue), makeCollator("en", Digits::AsLetters)};
    const size_t language = VelmoraLocalization::language() == AppLanguage::Russian ? 0 : 2;
    return *kCollators[language + (digits == Digits::ByValue ? 0 : 1)];
}

const char16_t* units(const QString& text)
{
    return reinterpret_cast<const char16_t*>(text.utf16());
}

int compare(const QString& left, const QString& right, Digits digits)
{
    UErrorCode error = U_ZERO_ERROR;
    return collator(digits).compare(units(left), static_cast<int32_t>(left.size()), units(right),
                                    static_cast<int32_t>(right.size()), error);
}

QByteArray sortKey(const QString& text, Digits digits)
{
    std::array<uint8_t, 512> shortKey;
    const icu::Collator& order = collator(digits);
    const auto length = static_cast<int32_t>(text.size());
    // The length counts the zero byte that ends the key.
    const int32_t size = order.getSortKey(units(text), length, shortKey.data(), static_cast<int32_t>(shortKey.size()));
    if (size <= static_cast<int32_t>(shortKey.size()))
        return QByteArray(reinterpret_cast<const char*>(shortKey.data()), size - 1);
    std::vector<uint8_t> longKey(static_cast<size_t>(size));
    order.getSortKey(units(text), length, longKey.data(), size);
    return QByteArray(reinterpret_cast<const char*>(longKey.data()), size - 1);
}

} // namespace

int standardCompare(const QString& left, const QString& right)
{
    return compare(left, right, Digits::ByValue);
}

int caseInsensitiveCompare(const QString& left, const QString& right)
{
    return compare(left, right, Digits::AsLetters);
}

QByteArray standardSortKey(const QString& text)
{
    return sortKey(text, Digits::ByValue);
}

QByteArray caseInsensitiveSortKey(const QString& text)
{
    return sortKey(text, Digits::AsLetters);
}

} // namespace Collation
