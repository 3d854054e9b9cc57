#include "core/model/LibraryTab.h"

#include "core/model/LibrarySection.h"

QString rawValue(LibraryTab tab)
{
    return LibrarySection::of(tab).rawValue;
}

std::optional<LibraryTab> libraryTabFromRawValue(const QString& raw)
{
    for (LibraryTab tab : kAllLibraryTabs) {
        if (rawValue(tab) == raw)
            return tab;
    }
    return std::nullopt;
}
